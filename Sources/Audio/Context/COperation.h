#pragma once

#include <cstdint>

#include "Audio/Context/CBufferHandle.h"

namespace tarv {

constexpr int32_t kMaxOperands = 8;

/// Operations that are handed to a kernel together, at most.
constexpr int32_t kMaxBatch = 16;

/// Kernels of a chain.
constexpr int32_t kChainStages = 3;

/// One call of a kernel.
struct COperation {
    void* pointers[kMaxOperands];  ///< operands as addresses, fixed when the operation is issued; 0 is the destination
    double immediate;              ///< the operation's constant: a gain, a sample rate, a phase
    int32_t count;                 ///< samples, 0 and up

    /// Operand `j` as 64-bit floats.
    double* signal(int32_t j) const { return static_cast<double*>(pointers[j]); }
    template <class T>
    T* operand(int32_t j) const {
        return static_cast<T*>(pointers[j]);
    }
};

/// A kernel: any count, also 0; writes nothing beyond it; never allocates; operands may be the same buffer.
using CKernelFunction = void (*)(COperation& operation);

/// The same for `count` (1 and up) independent operations of equal sample count, with the same bits as one by one.
using CKernelBatchFunction = void (*)(COperation* const* operations, int32_t count);

/// Operand in which a kernel of a chain reads what the one before it writes to operand 0.
constexpr int32_t kLinkOperand = 2;

/// Kernels in series: `stages[s][c]` is stage s of channel c, each reading in kLinkOperand what the stage before
/// writes. All channels have one sample count. Nothing that a stage writes overlaps anything else of its channel, but
/// several stages may read one signal. The destinations of all stages but the last may be null, in all channels: then
/// no operation reads what stands between. The same bits as one kernel after the other.
using CChainFunction = void (*)(COperation* const* const* stages, int32_t count);

}  // namespace tarv
