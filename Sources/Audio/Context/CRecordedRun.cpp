#include "Audio/Context/CRecordedRun.h"

#include <algorithm>

#include "Core/CHeap.h"

namespace tarv {

namespace {

/// The entry of a kernel, in any of its forms. One that has none can do nothing.
CEndKernel findKernel(std::span<const CEndKernel> kernels, CKernelFunction function) {
    const auto isOf = [=](const CEndKernel& k) {
        return function == k.function || function == k.ofFloats || function == k.ofDoubles;
    };
    const auto found = std::find_if(kernels.begin(), kernels.end(), isOf);
    return found != kernels.end() ? *found : CEndKernel();
}

}  // namespace

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
    firstNumber_ += static_cast<uint32_t>(operationCount_);
    operationCount_ = 0;
    callCount_ = 0;
    settledCount_ = 0;
    joinedCount_ = 0;
    isOpen_ = false;
    memory_ = {plans_, plans_ + kPlanBytes};
}

COperation& CRecordedRun::add(const CKernel& kernel, int32_t count, double immediate, bool isInOpenCall) {
    COperation& operation = operations_[operationCount_];
    operation.immediate = immediate;
    operation.count = count;
    lastReads_[operationCount_] = 0;
    if (isInOpenCall) {
        CRecordedCall& call = calls_[callCount_ - 1];
        ++call.count;
        call.batch = kernel.batch;
    } else {
        calls_[callCount_++] = {.function = kernel.function,
                                .operations = &operation,
                                .lastReads = lastReads_ + operationCount_,
                                .count = 1};
        isOpen_ = true;
    }
    ++operationCount_;
    return operation;
}

void CRecordedRun::noteLastRead(const CContextBuffer& buffer) {
    const uint32_t operands = buffer.lastRead - operandNumber(firstNumber_, 0);
    const uint32_t index = operands / kMaxOperands;
    if (index >= static_cast<uint32_t>(operationCount_)) {
        return;
    }
    const uint32_t j = operands % kMaxOperands;
    const auto* const operand = static_cast<const uint8_t*>(operations_[index].pointers[j]);
    const bool isIts = operand >= buffer.data && operand < buffer.data + buffer.capacity();
    lastReads_[index] |= static_cast<uint8_t>(isIts << j);
}

int32_t CRecordedRun::settle(const CRunJoiners& joiners) {
    int32_t kept = settledCount_;
    const auto keep = [&](const CRecordedCall& call) {
        runCall(call);
        calls_[kept++] = call;
    };
    for (int32_t next = settledCount_; next < callCount_;) {
        CRunJoiner::CFound found;
        CRunJoiner* finder = nullptr;
        for (int32_t j = 0; j < kJoinerCount && found.count == 0; ++j) {
            finder = joiners[j].get();
            found = finder != nullptr ? finder->find(calls_ + next, callCount_ - next) : CRunJoiner::CFound();
        }
        for (int32_t i = 0; i < found.ahead; ++i) {
            keep(calls_[next++]);
        }
        CRecordedCall joined;
        if (found.count > 0 && finder->plan(memory_, joined)) {
            keep(joined);
            next += found.count;
            ++joinedCount_;
        } else {
            keep(calls_[next++]);
        }
    }
    const int32_t count = kept - settledCount_;
    callCount_ = kept;
    settledCount_ = kept;
    isOpen_ = false;
    return count;
}

void CRecordedRun::runCall(const CRecordedCall& call) {
    if (call.joined != nullptr) {
        call.joined(call.plan);
        return;
    }
    if (call.batch == nullptr) {
        for (int32_t i = 0; i < call.count; ++i) {
            call.function(call.operations[i]);
        }
        return;
    }
    COperation* operations[kMaxBatch];
    for (int32_t i = 0; i < call.count; ++i) {
        operations[i] = &call.operations[i];
    }
    call.batch(operations, call.count);
}

void CRecordedRun::run() const {
    for (int32_t c = 0; c < callCount_; ++c) {
        runCall(calls_[c]);
    }
}

void CRecordedRun::findPlaces(CSignalPlaces& places, std::span<const CEndKernel> kernels) {
    for (int32_t c = 0; c < callCount_; ++c) {
        const CRecordedCall& call = calls_[c];
        places.beginCall(c);
        if (call.joined != nullptr) {
            call.findPlaces(call.plan, places);
            continue;
        }
        const CEndKernel kernel = findKernel(kernels, call.function);
        for (int32_t i = 0; i < call.count; ++i) {
            COperation& operation = call.operations[i];
            for (int32_t j = 0; j < kMaxOperands; ++j) {
                if (kernel.writes >> j & 1) {
                    places.noteFill(operation.pointers[j], operation.count);
                } else if (kernel.ofDoubles != nullptr && j == kernel.source) {
                    places.noteRead(operation.pointers[j], operation.count);
                } else {
                    places.noteFixed(operation.pointers[j]);
                }
            }
        }
    }
}

bool CRecordedRun::replaceKernel(int32_t call, std::span<const CEndKernel> kernels, int32_t operations,
                                 bool areFloats) {
    const CEndKernel kernel = findKernel(kernels, calls_[call].function);
    const CKernelFunction function = areFloats ? kernel.ofFloats : kernel.ofDoubles;
    if (calls_[call].joined != nullptr || calls_[call].count != operations || function == nullptr) {
        return false;
    }
    calls_[call].function = function;
    calls_[call].batch = nullptr;
    return true;
}

}  // namespace tarv
