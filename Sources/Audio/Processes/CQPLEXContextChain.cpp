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
        COperation& first = *stages[0][i];
        COperation& last = *stages[kChainStages - 1][i];
        letGo(first, 2);
        for (int32_t s = 0; s < kChainStages; ++s) {
            COperation& operation = *stages[s][i];
            if (s + 1 < kChainStages) {
                completeLink(*operation.buffers[0]);
            }
            letGo(operation, 1);
            for (int32_t j = 3; j < operation.kernel->operandCount; ++j) {
                letGo(operation, j);
            }
            operation.next = s + 1 < kChainStages ? stages[s + 1][i] : freeOperations_;
        }
        letGo(last, 0);
        freeOperations_ = &first;
    }
    counters_.operationsWaiting -= kChainStages * count;
}

inline void CQPLEXContext::letGo(COperation& operation, int32_t operand) {
    CBuffer& buffer = *operation.buffers[operand];
    const uint64_t hold = operation.holds[operand];
    buffer.state -= hold;
    // Watched, or the last reference is gone.
    if (buffer.state >= kWatched || (buffer.state & kReferences) == 0) {
        letGoSlowly(buffer, hold);
    }
}

/// What is written by one stage and read by the next: the claims and references of both go at once.
inline void CQPLEXContext::completeLink(CBuffer& buffer) {
    const int32_t link = buffer.waitHead;
    buffer.waitHead = waiters_[link].next;
    waiters_[link].next = freeWaiters_;
    freeWaiters_ = link;
    buffer.state -= kWriter + 2 * kOneReference;
    if (buffer.waitHead != -1 || buffer.notify[0] != nullptr) {
        letGoSlowly(buffer, kWriter);
        return;
    }
    buffer.state &= ~kWatched;
    if ((buffer.state & kReferences) == 0) {
        giveBack(buffer);
    }
}

}  // namespace tarv
