#include "Audio/Context/CRecordedRun.h"

#include <algorithm>

namespace tarv {

CRecordedRun::CRecordedRun()
    : operations_(static_cast<COperation*>(CHeap::alloc(kMostOperations * sizeof(COperation)))),
      lastReads_(static_cast<uint8_t*>(CHeap::alloc(kMostOperations))),
      calls_(static_cast<CRecordedCall*>(CHeap::alloc(kMostCalls * sizeof(CRecordedCall)))),
      plans_(static_cast<uint8_t*>(CHeap::alloc(kPlanBytes))) {}

CRecordedRun::~CRecordedRun() {
    CHeap::free(operations_);
    CHeap::free(lastReads_);
    CHeap::free(calls_);
    CHeap::free(plans_);
}

void CRecordedRun::clear() {
    operationCount_ = 0;
    callCount_ = 0;
    joinedCount_ = 0;
    isWhole_ = true;
    memory_ = {plans_, plans_ + kPlanBytes};
}

bool CRecordedRun::takeCall(const CRecordedCall& call, int32_t operationCount) {
    isWhole_ = isWhole_ && callCount_ < kMostCalls && operationCount_ + operationCount <= kMostOperations;
    if (isWhole_) {
        calls_[callCount_] = call;
        calls_[callCount_].operations = operations_ + operationCount_;
        calls_[callCount_].lastReads = lastReads_ + operationCount_;
        ++callCount_;
    }
    return isWhole_;
}

/// What stands behind the operands of an operation is left from another one.
void CRecordedRun::append(const COperation& operation, int32_t operandCount, uint8_t lastReads) {
    lastReads_[operationCount_] = lastReads;
    COperation& kept = operations_[operationCount_++];
    kept = operation;
    std::fill(kept.pointers + operandCount, kept.pointers + kMaxOperands, nullptr);
}

void CRecordedRun::add(const CKernel& kernel, CKernelBatchFunction batch, COperation* const* operations,
                       const uint8_t* lastReads, int32_t count) {
    if (takeCall({.function = kernel.function, .batch = batch, .count = count}, count)) {
        for (int32_t i = 0; i < count; ++i) {
            append(*operations[i], kernel.operandCount, lastReads[i]);
        }
    }
}

void CRecordedRun::addChain(CChainFunction chain, COperation* const* const* stages,
                            const int32_t (&operandCounts)[kChainStages], const uint8_t* lastReads, int32_t count) {
    if (takeCall({.chain = chain, .count = count}, kChainStages * count)) {
        for (int32_t s = 0; s < kChainStages; ++s) {
            for (int32_t i = 0; i < count; ++i) {
                append(*stages[s][i], operandCounts[s], s == 0 ? lastReads[i] : 0);
            }
        }
    }
}

void CRecordedRun::join(CRunJoiner& joiner) {
    int32_t kept = 0;
    for (int32_t next = 0; next < callCount_; ++kept) {
        CRecordedCall call = {};
        const int32_t count = joiner.join(calls_ + next, callCount_ - next, memory_, call);
        joinedCount_ += count > 0;
        calls_[kept] = count > 0 ? call : calls_[next];
        next += std::max(count, 1);
    }
    callCount_ = kept;
}

bool CRecordedRun::touches(const double* signal, int32_t count) const {
    const auto isInside = [=](const void* operand) {
        return operand >= static_cast<const void*>(signal) && operand < static_cast<const void*>(signal + count);
    };
    return std::any_of(operations_, operations_ + operationCount_, [&](const COperation& o) {
        return std::any_of(o.pointers, o.pointers + kMaxOperands, isInside);
    });
}

void CRecordedRun::run() const {
    for (int32_t c = 0; c < callCount_; ++c) {
        const CRecordedCall& call = calls_[c];
        if (call.joined != nullptr) {
            call.joined(call.plan);
            continue;
        }
        if (call.batch == nullptr && call.chain == nullptr) {
            for (int32_t i = 0; i < call.count; ++i) {
                call.function(call.operations[i]);
            }
            continue;
        }
        COperation* operations[kChainStages * kMaxBatch];
        const int32_t total = call.chain != nullptr ? kChainStages * call.count : call.count;
        for (int32_t i = 0; i < total; ++i) {
            operations[i] = &call.operations[i];
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
