#pragma once

#include <memory>

#include "Audio/Context/CQPLEXContext.h"

namespace tarv {

/// A kernel context with the kernels that stand in every instance: the common ones, those of the filter sections, of
/// the transform and of the convolution. A module's own kernels come when its process is built. Allocates.
[[nodiscard]] std::unique_ptr<CQPLEXContext> makeStandardContext();

}  // namespace tarv
