#pragma once

#include <cstdint>

#include "Audio/Context/CContextBuffer.h"
#include "Audio/Context/CKernel.h"
#include "Audio/Context/CQueuedOperation.h"

namespace tarv {

class CBufferClaims;
class CKernelCalls;
class COperationPool;

/// The chain of a context: three kernels in series that one function runs in one loop. Operations of the first process
/// are kept at its end, then those of the second, so that all three run together at the end of the third. Kept
/// operations stand in a table by stage and channel; each waits for nothing outside the table, and the later stages
/// claim nothing of what the stage before writes. Whatever else is issued in between first runs what is kept.
class COperationChain {
public:
    COperationChain() = default;
    COperationChain(const COperationChain&) = delete;
    COperationChain& operator=(const COperationChain&) = delete;

    bool is(const int32_t (&kernelNumbers)[kChainStages], CChainFunction function) const;
    /// The kernels that begin, continue and end a chain from now on. Nothing is kept.
    void set(const int32_t (&kernelNumbers)[kChainStages], CChainFunction function);

    /// Operations may be kept. False from `close` to `restart`, and while no chain is set.
    bool isOpen() const { return expectedKernel_ != kNone; }
    bool expects(int32_t kernelNumber) const { return kernelNumber == expectedKernel_; }
    /// The first process has ended and its operations are kept.
    bool isUnderWay() const { return stage_ > 0; }
    bool isEmpty() const { return counts_[0] == 0; }

    /// Whether an operation of the expected kernel, with N different buffers, is the next of the chain: it waits for
    /// nothing, or for nothing but the stage before it. Then what a stage writes is no operand of another channel and
    /// no other operand of its channel: that would be claimed already.
    template <int32_t N>
    bool accepts(const CKernel& kernel, int32_t count, CContextBuffer* const* buffers, const void* source) const {
        const int32_t channel = counts_[stage_];
        if (channel == kMaxBatch || (stage_ > 0 && !isLinked(channel, *buffers[kLinkOperand], source))) {
            return false;
        }
        bool isFree = channel + stage_ == 0 || kept_[0][0]->count == count;
#pragma GCC unroll 8
        for (int32_t j = 0; j < N; ++j) {
            isFree &= buffers[j]->state < kernel.limits[j] || (j == kLinkOperand && stage_ > 0);
        }
        return isFree;
    }
    /// Keeps an operation that was accepted.
    template <int32_t N>
    void keep(CQueuedOperation& operation) {
        const int32_t link = stage_ > 0 ? kLinkOperand : kNone;
#pragma GCC unroll 8
        for (int32_t j = 0; j < N; ++j) {
            operation.buffers[j]->state += j == link ? CContextBuffer::kOneReference : operation.kernel->holds[j];
        }
        kept_[stage_][counts_[stage_]++] = &operation;
    }
    /// The process has ended; false if its operations are not to wait for the next one's.
    bool endStage();

    /// All channels have all stages.
    bool isComplete() const {
        return counts_[kChainStages - 1] == counts_[0];
    }
    /// Runs a complete chain in one call, and gives back what its operations held.
    void run(CKernelCalls& calls, CBufferClaims& claims, COperationPool& pool);
    /// Prepares the kept operations to run and to be completed stage by stage, each as any other operation.
    void takeApart();
    CQueuedOperation* const* stage(int32_t stage) const {
        return kept_[stage];
    }
    int32_t stageCount(int32_t stage) const {
        return counts_[stage];
    }
    /// Forgets what was kept.
    void clear();

    /// The next operation may begin a chain. Nothing is kept.
    void restart();
    /// Keeps nothing until `restart`.
    void close() {
        expectedKernel_ = kNone;
    }

private:
    static constexpr int32_t kNone = -1;

    /// The link is written by the stage before, and no other operation reads it or waits for it yet.
    bool isLinked(int32_t channel, const CContextBuffer& link, const void* source) const {
        return channel < counts_[stage_ - 1] && kept_[stage_ - 1][channel]->pointers[0] == source &&
               (link.state & ~CContextBuffer::kReferences) == CContextBuffer::kWriter;
    }
    void dropLinks();
    void complete(CBufferClaims& claims, COperationPool& pool);

    int32_t kernels_[kChainStages] = {kNone, kNone, kNone};
    CChainFunction function_ = nullptr;
    CQueuedOperation* kept_[kChainStages][kMaxBatch];  // by stage and channel
    int32_t counts_[kChainStages] = {0, 0, 0};
    int32_t stage_ = 0;               // processes that have ended
    int32_t expectedKernel_ = kNone;  // that continues the chain
};

}  // namespace tarv
