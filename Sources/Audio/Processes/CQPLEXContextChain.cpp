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

/// Whether `operation` begins a chain that is there to its end, each stage waiting for nothing but the one before.
bool CQPLEXContext::findChain(COperation* operation, COperation** stages) {
    stages[0] = operation;
    for (int32_t s = 1; s < kChainStages; ++s) {
        const COperation& before = *stages[s - 1];
        const CBuffer& link = *before.buffers[0];
        if (link.waitHead == -1) {
            return false;
        }
        COperation* const next = waiters_[link.waitHead].operation;
        if (next->kernel != &kernels_[chainKernels_[s]] || next->pending != 1 || next->count != before.count ||
            next->pointers[2] != before.pointers[0]) {
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
    for (int32_t s = 0; s < kChainStages; ++s) {
        // One more than it waits for: what has run must not become ready when the stage before completes.
        for (int32_t i = 0; s + 1 < kChainStages && i < count; ++i) {
            ++stages[s + 1][i]->pending;
        }
        complete(stages[s], count);
    }
}

}  // namespace tarv
