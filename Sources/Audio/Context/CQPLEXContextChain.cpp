// The chain of a context: operations of its first process are kept at that process' end, then those of the second, so
// that all three run together at the end of the third. Whatever else is issued in between first runs what was kept, in
// the batches that it would have made at the end of its process. Operations of the chain stand in a table of their own,
// channel by channel: each waits for nothing outside it.

#include <algorithm>

#include "Audio/Context/CQPLEXContext.h"

namespace tarv {

void CQPLEXContext::registerChain(const int32_t (&kernelNumbers)[kChainStages], CChainFunction function) {
    for (const int32_t number : kernelNumbers) {
        if (number == -1) {
            return;
        }
    }
    if (chainFunction_ == function && std::equal(kernelNumbers, kernelNumbers + kChainStages, chainKernels_)) {
        return;
    }
    flush();
    std::copy_n(kernelNumbers, kChainStages, chainKernels_);
    chainFunction_ = function;
    restartChain();
}

void CQPLEXContext::restartChain() {
    chainStage_ = 0;
    expectedKernel_ = chainKernels_[0];
}

/// What was kept runs on its own; the chain begins again behind the next flush.
void CQPLEXContext::leaveChain() {
    if (chainStage_ > 0) {
        flush();
    }
    for (int32_t i = 0; i < chainCounts_[0]; ++i) {
        makeReady(*chain_[0][i]);
    }
    chainCounts_[0] = 0;
    expectedKernel_ = -1;
}

void CQPLEXContext::endProcess() {
    const bool isKept = expectedKernel_ != -1 && chainStage_ < kChainStages - 1 && chainCounts_[chainStage_] > 0;
    if (!isKept) {
        flush();
        return;
    }
    expectedKernel_ = chainKernels_[++chainStage_];
}

void CQPLEXContext::runChain() {
    if (chainCounts_[kChainStages - 1] == chainCounts_[0]) {
        dropLinks();
        COperation* operations[kChainStages][kMaxBatch] = {};
        for (int32_t s = 0; s < kChainStages; ++s) {
            std::copy_n(chain_[s], chainCounts_[0], operations[s]);
        }
        COperation* const* const stages[kChainStages] = {operations[0], operations[1], operations[2]};
        if (isRecording_) {
            recording_.addChain(chainFunction_, stages, chainCounts_[0]);
        }
        chainFunction_(stages, chainCounts_[0]);
        ++counters_.calls;
        completeChain();
    } else {
        // Begun and not ended: stage by stage. A later stage has no claim on what it reads from the one before.
        for (int32_t s = 0; s < kChainStages && chainCounts_[s] > 0; ++s) {
            for (int32_t i = 0; i < chainCounts_[s] && s > 0; ++i) {
                CQueuedOperation& operation = *chain_[s][i];
                std::copy_n(operation.holds, operation.kernel->operandCount, operation.ownHolds);
                operation.ownHolds[kLinkOperand] = kOneReference;
                operation.holds = operation.ownHolds;
            }
            runBatch(*chain_[s][0]->kernel, chain_[s], chainCounts_[s]);
        }
    }
    std::fill_n(chainCounts_, kChainStages, 0);
}

/// Links that nobody holds but the two stages need not be written.
void CQPLEXContext::dropLinks() {
    bool areUnseen = true;
    for (int32_t s = 0; s < kChainStages - 1; ++s) {
        for (int32_t i = 0; i < chainCounts_[0]; ++i) {
            areUnseen &= chain_[s][i]->buffers[0]->state == kWriter + 2 * kOneReference;
        }
    }
    for (int32_t s = 0; areUnseen && s < kChainStages - 1; ++s) {
        for (int32_t i = 0; i < chainCounts_[0]; ++i) {
            chain_[s][i]->pointers[0] = nullptr;
        }
    }
}

inline void CQPLEXContext::letGo(CQueuedOperation& operation, int32_t operand) {
    CBuffer& buffer = *operation.buffers[operand];
    const uint64_t hold = operation.holds[operand];
    buffer.state -= hold;
    if (buffer.state >= kWatched) [[unlikely]] {
        letGoSlowly(buffer, hold);
    } else if ((buffer.state & kReferences) == 0) {
        giveBack(buffer);
    }
}

void CQPLEXContext::completeChain() {
    for (int32_t i = 0; i < chainCounts_[0]; ++i) {
        letGo(*chain_[0][i], kLinkOperand);
        for (int32_t s = 0; s < kChainStages; ++s) {
            CQueuedOperation& operation = *chain_[s][i];
            if (s + 1 < kChainStages) {
                // The reference that the next stage has of it goes at once with this one's.
                operation.buffers[0]->state -= kOneReference;
            }
            letGo(operation, 0);
            letGo(operation, 1);
            for (int32_t j = kLinkOperand + 1; j < operation.kernel->operandCount; ++j) {
                letGo(operation, j);
            }
            operation.next = freeOperations_;
            freeOperations_ = &operation;
        }
    }
    counters_.operationsWaiting -= kChainStages * chainCounts_[0];
}

}  // namespace tarv
