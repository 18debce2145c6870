#pragma once

#include <memory>

#include "Audio/Context/CQPLEXContext.h"

namespace tarv {

/// Returns a kernel context with the kernels that every instance has: the common ones, those of the filter sections, of
/// the transform and of the convolution. Processes register the kernels of their modules when they are built.
/// Allocates.
[[nodiscard]] std::unique_ptr<CQPLEXContext> makeStandardContext();

}  // namespace tarv
