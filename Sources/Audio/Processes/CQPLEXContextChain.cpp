// The chain of a context: operations of its first process are kept at that process' end, then those of the second, so
// that all three run together at the end of the third. Whatever else is issued in between first runs what was kept, in
// the batches that it would have made at the end of its process.

#include <algorithm>

#include "Audio/Processes/CQPLEXContext.h"

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
    isOnChain_ = true;
}

void CQPLEXContext::leaveChain(int32_t kernelNumber) {
    if (chainStage_ > 0) {
        flush();
    }
    isOnChain_ = isOnChain_ && kernelNumber == expectedKernel_;
}

void CQPLEXContext::endProcess() {
    const bool isKept =
        isOnChain_ && chainFunction_ && counters_.operationsWaiting > 0 && chainStage_ < kChainStages - 1;
    if (!isKept) {
        flush();
        return;
    }
    expectedKernel_ = chainKernels_[++chainStage_];
}

/// Whether `operation` begins a chain that is there to its end, each stage waiting for nothing but the one before. Then
/// nothing that a stage writes is anything else to its channel: a stage that wrote what an earlier one uses would wait
/// for it, and one operation names no buffer twice.
bool CQPLEXContext::findChain(COperation* operation, COperation** stages) {
    stages[0] = operation;
    if (operation->holds != operation->kernel->holds) {
        return false;
    }
    for (int32_t s = 1; s < kChainStages; ++s) {
        const COperation& before = *stages[s - 1];
        const CBuffer& link = *before.buffers[0];
        if (link.waitHead == -1) {
            return false;
        }
        COperation* const next = waiters_[link.waitHead].operation;
        if (next->kernel != &kernels_[chainKernels_[s]] || next->pending != 1 || next->count != before.count ||
            next->pointers[2] != before.pointers[0] || next->holds != next->kernel->holds) {
            return false;
        }
        stages[s] = next;
    }
    return true;
}

/// Runs the chains that begin in a list of ready operations; gives the list of the others.
COperation* CQPLEXContext::runChains(COperation* ready) {
    COperation* others = nullptr;
    COperation** othersEnd = &others;
    while (ready != nullptr) {
        COperation* stages[kChainStages][kMaxBatch];
        int32_t n = 0;
        while (ready != nullptr && n < kMaxBatch) {
            COperation* found[kChainStages];
            const bool isChain = findChain(ready, found);
            if (isChain && n > 0 && ready->count != stages[0][0]->count) {
                break;
            }
            if (isChain) {
                for (int32_t s = 0; s < kChainStages; ++s) {
                    stages[s][n] = found[s];
                }
                ++n;
            } else {
                *othersEnd = ready;
                othersEnd = &ready->next;
            }
            ready = ready->next;
        }
        *othersEnd = nullptr;
        if (n == 0) {
            break;
        }
        COperation* const* const all[kChainStages] = {stages[0], stages[1], stages[2]};
        chainFunction_(all, n);
        ++counters_.calls;
        completeChains(all, n);
    }
    return others;
}

void CQPLEXContext::completeChains(COperation* const* const* stages, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        for (int32_t s = 0; s + 1 < kChainStages; ++s) {
            completeLink(*stages[s][i]->buffers[0]);
        }
        completeStage(*stages[0][i], 1u << 0);
        completeStage(*stages[1][i], 1u << 0 | 1u << 2);
        completeStage(*stages[2][i], 1u << 2);
    }
    counters_.operationsWaiting -= kChainStages * count;
}

/// As `complete`, without the operands of the mask, which are links.
void CQPLEXContext::completeStage(COperation& operation, uint32_t links) {
    const int32_t n = operation.kernel->operandCount;
    for (int32_t j = 0; j < n; ++j, links >>= 1) {
        if (links & 1u) {
            continue;
        }
        CBuffer& buffer = *operation.buffers[j];
        buffer.state -= operation.holds[j];
        if (buffer.state >= kWatched || (buffer.state & kReferences) == 0) {
            letGoSlowly(buffer, operation.holds[j]);
        }
    }
    operation.next = freeOperations_;
    freeOperations_ = &operation;
}

/// What is written by one stage and read by the next: the claims and references of both go at once.
void CQPLEXContext::completeLink(CBuffer& buffer) {
    const int32_t link = buffer.waitHead;
    buffer.waitHead = waiters_[link].next;
    waiters_[link].next = freeWaiters_;
    freeWaiters_ = link;
    buffer.state -= kWriter + 2 * kOneReference;
    letGoSlowly(buffer, kWriter);
}

}  // namespace tarv
