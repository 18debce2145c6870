#pragma once

#include <cstdint>

namespace tarv {

struct CKernel;
struct CContextBuffer;

/// Names a buffer of the context: the low 12 bits are the table index, the bits above a byte offset into the storage.
using CBufferHandle = int32_t;
constexpr CBufferHandle kNoBuffer = -1;

constexpr int32_t kMaxOperands = 8;

/// One call of a kernel. A kernel reads `count`, `immediate` and `pointers` and nothing else; the rest is the
/// context's.
struct COperation {
    void* pointers[kMaxOperands];  ///< operands as addresses, fixed when the operation is issued; 0 is the destination
    double immediate;              ///< the operation's constant: a gain, a sample rate, a phase
    int32_t count;                 ///< samples, 0 and up

    int32_t pending;  // operands that it still waits for
    CKernel* kernel;
    COperation* next;  // free list, or the kernel's list of ready operations
    CContextBuffer* buffers[kMaxOperands];
    const uint64_t* holds;  // what each operand adds to its buffer's state: the kernel's, or its own
    uint64_t ownHolds[kMaxOperands];

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

/// Kernels in series: `stages[s][c]` is stage s of channel c, each reading in operand 2 what the stage before writes to
/// operand 0. All channels have one sample count. Nothing that a stage writes overlaps anything else of its channel,
/// but several stages may read one signal. The same bits as one kernel after the other.
using CChainFunction = void (*)(COperation* const* const* stages, int32_t count);

}  // namespace tarv
