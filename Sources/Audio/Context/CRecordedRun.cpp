#include "Audio/Context/CRecordedRun.h"

namespace tarv {

CRecordedRun::CRecordedRun()
    : operations_(static_cast<COperation*>(CHeap::alloc(kMostOperations * sizeof(COperation)))),
      calls_(static_cast<CCall*>(CHeap::alloc(kMostOperations * sizeof(CCall)))) {}

CRecordedRun::~CRecordedRun() {
    CHeap::free(operations_);
    CHeap::free(calls_);
}

void CRecordedRun::clear() {
    operationCount_ = 0;
    callCount_ = 0;
    isWhole_ = true;
}

bool CRecordedRun::takeCall(const CCall& call, int32_t operationCount) {
    isWhole_ = isWhole_ && callCount_ < kMostOperations && operationCount_ + operationCount <= kMostOperations;
    if (isWhole_) {
        calls_[callCount_++] = call;
    }
    return isWhole_;
}

void CRecordedRun::add(CKernelFunction function, CKernelBatchFunction batch, COperation* const* operations,
                       int32_t count) {
    if (takeCall({function, batch, nullptr, operationCount_, count}, count)) {
        for (int32_t i = 0; i < count; ++i) {
            append(*operations[i]);
        }
    }
}

void CRecordedRun::addChain(CChainFunction chain, COperation* const* const* stages, int32_t count) {
    if (takeCall({nullptr, nullptr, chain, operationCount_, count}, kChainStages * count)) {
        for (int32_t s = 0; s < kChainStages; ++s) {
            for (int32_t i = 0; i < count; ++i) {
                append(*stages[s][i]);
            }
        }
    }
}

void CRecordedRun::run() const {
    for (int32_t c = 0; c < callCount_; ++c) {
        const CCall& call = calls_[c];
        if (call.batch == nullptr && call.chain == nullptr) {
            for (int32_t i = 0; i < call.count; ++i) {
                call.function(operations_[call.first + i]);
            }
            continue;
        }
        COperation* operations[kChainStages * kMaxBatch];
        const int32_t total = call.chain != nullptr ? kChainStages * call.count : call.count;
        for (int32_t i = 0; i < total; ++i) {
            operations[i] = &operations_[call.first + i];
        }
        if (call.chain != nullptr) {
            COperation* const* const stages[kChainStages] = {operations, operations + call.count,
                                                             operations + 2 * call.count};
            call.chain(stages, call.count);
        } else {
            call.batch(operations, call.count);
        }
    }
}

}  // namespace tarv
