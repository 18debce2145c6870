#pragma once

#include <cstdint>

#include "Audio/Context/COperation.h"

namespace tarv {

struct CContextBuffer;
struct CKernel;

/// An operation from its issue until it has run.
struct CQueuedOperation : COperation {
    int32_t pending;  ///< operands that it waits for
    int32_t kernelNumber;
    const CKernel* kernel;
    CQueuedOperation* next;  ///< in the pool's free list, or in its kernel's list of ready operations
    CContextBuffer* buffers[kMaxOperands];
    const uint64_t* holds;  ///< what each operand adds to its buffer's state: the kernel's, or `ownHolds`
    uint64_t ownHolds[kMaxOperands];
    int16_t nextWaiter[kMaxOperands];  ///< of an operand that waits: the next one that waits for its buffer; -1: none
};

}  // namespace tarv
