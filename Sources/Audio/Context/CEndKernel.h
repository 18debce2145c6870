#pragma once

#include <cstdint>

#include "Audio/Context/COperation.h"

namespace tarv {

/// What a kernel can do at the ends of a recorded run, where the samples of a host come in and go out.
struct CEndKernel {
    CKernelFunction function = nullptr;  ///< the kernel
    /// The same kernel for a host's samples of 32 and of 64 bits in operand `source`; what is not finite counts as 0.
    /// Null: it has none.
    CKernelFunction ofFloats = nullptr;
    CKernelFunction ofDoubles = nullptr;
    int32_t source = 0;
    uint32_t writes = 0;  ///< bit j: it fills operand j, with `count` samples, whatever stood there
};

}  // namespace tarv
