#include "Audio/Context/COperationChain.h"

#include <algorithm>

#include "Audio/Context/CBufferClaims.h"
#include "Audio/Context/CKernelCalls.h"
#include "Audio/Context/COperationPool.h"

namespace tarv {

bool COperationChain::is(const int32_t (&kernelNumbers)[kChainStages], CChainFunction function) const {
    return function_ == function && std::equal(kernelNumbers, kernelNumbers + kChainStages, kernels_);
}

void COperationChain::set(const int32_t (&kernelNumbers)[kChainStages], CChainFunction function) {
    std::copy_n(kernelNumbers, kChainStages, kernels_);
    function_ = function;
    restart();
}

void COperationChain::restart() {
    stage_ = 0;
    expectedKernel_ = kernels_[0];
}

void COperationChain::clear() {
    std::fill_n(counts_, kChainStages, 0);
}

bool COperationChain::endStage() {
    if (!isOpen() || stage_ == kChainStages - 1 || counts_[stage_] == 0) {
        return false;
    }
    expectedKernel_ = kernels_[++stage_];
    return true;
}

void COperationChain::run(CKernelCalls& calls, CBufferClaims& claims, COperationPool& pool) {
    dropLinks();
    COperation* operations[kChainStages][kMaxBatch] = {};
    for (int32_t s = 0; s < kChainStages; ++s) {
        std::copy_n(kept_[s], counts_[0], operations[s]);
    }
    COperation* const* const stages[kChainStages] = {operations[0], operations[1], operations[2]};
    calls.callChain(function_, stages, counts_[0]);
    complete(claims, pool);
}

void COperationChain::takeApart() {
    for (int32_t s = 1; s < kChainStages; ++s) {
        for (int32_t i = 0; i < counts_[s]; ++i) {
            CQueuedOperation& operation = *kept_[s][i];
            std::copy_n(operation.holds, operation.kernel->operandCount, operation.ownHolds);
            operation.ownHolds[kLinkOperand] = CContextBuffer::kOneReference;
            operation.holds = operation.ownHolds;
        }
    }
}

/// Links that only the two stages refer to are not written.
void COperationChain::dropLinks() {
    constexpr uint64_t kOfBothStages = CContextBuffer::kWriter + 2 * CContextBuffer::kOneReference;
    bool areUnseen = true;
    for (int32_t s = 0; s < kChainStages - 1; ++s) {
        for (int32_t i = 0; i < counts_[0]; ++i) {
            areUnseen &= kept_[s][i]->buffers[0]->state == kOfBothStages;
        }
    }
    for (int32_t s = 0; areUnseen && s < kChainStages - 1; ++s) {
        for (int32_t i = 0; i < counts_[0]; ++i) {
            kept_[s][i]->pointers[0] = nullptr;
        }
    }
}

void COperationChain::complete(CBufferClaims& claims, COperationPool& pool) {
    const auto release = [&](const CQueuedOperation& operation, int32_t operand) {
        claims.release(*operation.buffers[operand], operation.holds[operand]);
    };
    for (int32_t i = 0; i < counts_[0]; ++i) {
        release(*kept_[0][i], kLinkOperand);
        for (int32_t s = 0; s < kChainStages; ++s) {
            CQueuedOperation& operation = *kept_[s][i];
            if (s + 1 < kChainStages) {
                // The reference that the next stage has of it goes at once with this one's.
                operation.buffers[0]->state -= CContextBuffer::kOneReference;
            }
            release(operation, 0);
            release(operation, 1);
            for (int32_t j = kLinkOperand + 1; j < operation.kernel->operandCount; ++j) {
                release(operation, j);
            }
            pool.giveBack(operation);
        }
    }
}

}  // namespace tarv
