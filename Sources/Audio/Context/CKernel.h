#pragma once

#include <cstdint>

#include "Audio/Context/COperation.h"

namespace tarv {

/// A registered kernel. Does not change afterwards.
struct CKernel {
    char name[65];
    CKernelFunction function;
    CKernelBatchFunction batch;  ///< null: the context calls `function` for each operation
    int32_t operandCount;
    uint32_t writeMask;  ///< bit j: operand j is written (it may be read too)
    uint64_t extra;
    int32_t next;                   ///< of the same hash; -1: none
    uint64_t holds[kMaxOperands];   ///< added to the state of an operand's buffer while an operation is queued ...
    uint64_t limits[kMaxOperands];  ///< ... which is allowed at once while the state is below this
};

}  // namespace tarv
