#pragma once

#include <cstdint>

namespace tarv {

/// Number of the calling thread, never 0.
uint64_t currentThreadId();

}  // namespace tarv
