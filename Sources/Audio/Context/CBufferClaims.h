#pragma once

#include <cstdint>

#include "Audio/Context/CBufferTable.h"
#include "Audio/Context/CKernel.h"
#include "Audio/Context/COperationPool.h"
#include "Audio/Context/CReadyOperations.h"

namespace tarv {

/// Decides when an operation may run. Each operation claims its buffers, for reading or for writing; one that meets a
/// claim in its way waits for that buffer, in order of issue. What waits for nothing goes to the ready operations, and
/// a buffer that loses its last reference goes back to the table.
class CBufferClaims {
public:
    CBufferClaims(CBufferTable& buffers, COperationPool& operations, CReadyOperations& ready)
        : buffers_(buffers), operations_(operations), ready_(ready) {}
    CBufferClaims(const CBufferClaims&) = delete;
    CBufferClaims& operator=(const CBufferClaims&) = delete;

    /// Claims the N operands of an operation. `isRepeated`: it names a buffer more than once.
    template <int32_t N>
    void claim(CQueuedOperation& operation, bool isRepeated) {
        if (isRepeated) [[unlikely]] {
            claimMerged(operation);
        } else {
            claimEach<N>(operation);
        }
        if (operation.pending == 0) {
            ready_.add(operation);
        }
    }
    /// Gives back the claims of an operation that has run.
    void release(const CQueuedOperation& operation) {
        const int32_t n = operation.kernel->operandCount;
        for (int32_t j = 0; j < n; ++j) {
            release(*operation.buffers[j], operation.holds[j]);
        }
    }
    /// Gives back the claim and the reference of one operand, which added `hold` to the buffer's state.
    void release(CContextBuffer& buffer, uint64_t hold) {
        buffer.state -= hold;
        if (buffer.state >= CContextBuffer::kWatched) [[unlikely]] {
            releaseWatched(buffer, hold);
        } else if (buffer.references() == 0) {
            buffers_.giveBack(buffer);
        }
    }
    /// Sets both bytes to 1 when the next write of the buffer completes.
    void notifyOnWrite(CContextBuffer& buffer, uint8_t* first, uint8_t* second);

    /// A buffer that nobody claims was written.
    void noteWrite(CContextBuffer& buffer) {
        if (buffer.state >= CContextBuffer::kWatched) {
            buffers_.notices().deliver(buffer);
            buffer.state &= ~CContextBuffer::kWatched;
        }
    }

private:
    // An operand that waits for its buffer has the number of its operation's record and its place there. Each waits at
    // most once, so that the records hold the lists, too.
    static_assert(COperationPool::kOperationCount * kMaxOperands <= INT16_MAX);

    template <int32_t N>
    void claimEach(CQueuedOperation& operation) {
        const CKernel& kernel = *operation.kernel;
#pragma GCC unroll 8
        for (int32_t j = 0; j < N; ++j) {
            CContextBuffer& buffer = *operation.buffers[j];
            if (buffer.state < kernel.limits[j]) [[likely]] {
                buffer.state += kernel.holds[j];
            } else {
                waitFor(operation, j);
            }
        }
    }
    void claimMerged(CQueuedOperation& operation);
    static bool tryHold(CContextBuffer& buffer, uint64_t hold);
    void waitFor(CQueuedOperation& operation, int32_t operand);
    int16_t& nextWaiter(int32_t waiter) {
        return operations_.at(waiter / kMaxOperands).nextWaiter[waiter % kMaxOperands];
    }
    void releaseWatched(CContextBuffer& buffer, uint64_t hold);
    void settle(CContextBuffer& buffer);

    CBufferTable& buffers_;
    COperationPool& operations_;
    CReadyOperations& ready_;
};

}  // namespace tarv
