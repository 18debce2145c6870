#include "Audio/Context/CQPLEXContext.h"

#include <algorithm>

namespace tarv {

CQPLEXContext::CQPLEXContext() : claims_(buffers_, operations_, ready_) {}

CQPLEXContext::~CQPLEXContext() = default;

void CQPLEXContext::registerChain(const int32_t (&kernelNumbers)[kChainStages], CChainFunction function) {
    for (const int32_t number : kernelNumbers) {
        if (number == -1) {
            return;
        }
    }
    if (!chain_.is(kernelNumbers, function)) {
        flush();
        chain_.set(kernelNumbers, function);
    }
}

void CQPLEXContext::addEndKernel(int32_t kernelNumber, CEndKernel kernel) {
    if (kernelNumber == -1 || endKernelCount_ == kMostEndKernels) {
        return;
    }
    kernel.function = kernels_[kernelNumber].function;
    const auto isThis = [&](const CEndKernel& known) { return known.function == kernel.function; };
    if (std::none_of(endKernels_, endKernels_ + endKernelCount_, isThis)) {
        endKernels_[endKernelCount_++] = kernel;
    }
}

CBufferHandle CQPLEXContext::takeOther(int32_t sizeClass) {
    if (calls_.isRecording()) {
        const CBufferHandle larger = buffers_.takeLarger(sizeClass);
        if (larger != kNoBuffer) {
            return larger;
        }
        // What was given back since the recording began may do.
        if (CBufferTable::isState(sizeClass)) {
            settle();
        } else {
            calls_.recording().closeCall();
            buffers_.freeSignals();
        }
    }
    CBufferHandle handle = buffers_.takeAny(sizeClass);
    if (handle == kNoBuffer) {
        ++forcedFlushes_;
        flush();
        handle = buffers_.takeAny(sizeClass);
    }
    return handle;
}

void CQPLEXContext::notifyOnWrite(CBufferHandle handle, uint8_t* first, uint8_t* second) {
    if (handle != kNoBuffer) {
        claims_.notifyOnWrite(buffers_.at(handle), first, second);
    }
}

template <int32_t N>
void CQPLEXContext::issueOperands(int32_t kernelNumber, int32_t count, double immediate, const CBufferHandle* handles) {
    // Every number that makes an operation impossible is negative.
    int32_t signs = kernelNumber | count;
    CContextBuffer* buffers[N];
    bool isRepeated = false;
#pragma GCC unroll 8
    for (int32_t j = 0; j < N; ++j) {
        signs |= handles[j];
        buffers[j] = &buffers_.at(handles[j]);
#pragma GCC unroll 8
        for (int32_t k = 0; k < j; ++k) {
            isRepeated |= buffers[k] == buffers[j];
        }
    }
    if (signs < 0 || !kernels_.takes(kernelNumber, N)) [[unlikely]] {
        ++rejected_;
        return;
    }
    if (calls_.isRecording()) {
        recordOperands<N>(kernels_[kernelNumber], count, immediate, buffers, handles);
        return;
    }
    const bool isChained = chain_.isOpen() && joinsChain<N>(kernelNumber, count, buffers, handles, isRepeated);
    if (operations_.isEmpty()) [[unlikely]] {
        ++forcedFlushes_;
        runQueued();
        leaveChain();
    }
    CQueuedOperation& operation = operations_.take();
    operation.immediate = immediate;
    operation.count = count;
    operation.pending = 0;
    operation.kernelNumber = kernelNumber;
    operation.kernel = &kernels_[kernelNumber];
    operation.holds = operation.kernel->holds;
#pragma GCC unroll 8
    for (int32_t j = 0; j < N; ++j) {
        operation.buffers[j] = buffers[j];
        operation.pointers[j] = buffers[j]->data + handleOffset(handles[j]);
    }
    ++issued_;
    calls_.dropRecording();
    if (isChained) {
        chain_.keep<N>(operation);
    } else {
        claims_.claim<N>(operation, isRepeated);
    }
}

/// Adds an operation to the recorded run: to the last call, if it is one of the same kernel and count and independent
/// of all its operations.
template <int32_t N>
inline void CQPLEXContext::recordOperands(const CKernel& kernel, int32_t count, double immediate,
                                          CContextBuffer* const* buffers, const CBufferHandle* handles) {
    CRecordedRun& run = calls_.roomyRecording();
    const uint32_t number = run.nextNumber();
    const uint32_t open = run.openNumber(kernel, count);
    const uint32_t first = CRecordedRun::operandNumber(open, 0);
    const uint32_t operandsOfCall = CRecordedRun::operandNumber(number, 0) - first;
    // As a difference, since numbers begin again at 0.
    const auto isBefore = [=](uint32_t operand) { return operand - first >= operandsOfCall; };
    bool isApart = open != number;
    uint64_t states = 0;
#pragma GCC unroll 8
    for (int32_t j = 0; j < N; ++j) {
        const CContextBuffer& buffer = *buffers[j];
        const bool isWritten = (kernel.writeMask >> j & 1) != 0;
        isApart &= isBefore(buffer.lastWrite);
        isApart &= !isWritten || isBefore(buffer.lastRead);
        states |= buffer.state;
    }
    COperation& operation = run.add(kernel, count, immediate, isApart);
#pragma GCC unroll 8
    for (int32_t j = 0; j < N; ++j) {
        CContextBuffer& buffer = *buffers[j];
        const uint32_t operand = CRecordedRun::operandNumber(number, j);
        buffer.lastRead = operand;
        buffer.lastWrite = (kernel.writeMask >> j & 1) != 0 ? operand : buffer.lastWrite;
        operation.pointers[j] = buffer.data + handleOffset(handles[j]);
    }
#pragma GCC unroll 8
    for (int32_t j = N; j < kMaxOperands; ++j) {
        operation.pointers[j] = nullptr;
    }
    ++issued_;
    if (states >= CContextBuffer::kWatched) [[unlikely]] {
        settle();
        for (int32_t j = 0; j < N; ++j) {
            if ((kernel.writeMask >> j & 1) != 0) {
                claims_.noteWrite(*buffers[j]);
            }
        }
    }
}

template void CQPLEXContext::issueOperands<1>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<2>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<3>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<4>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<5>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<6>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<7>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<8>(int32_t, int32_t, double, const CBufferHandle*);

/// Whether an operation continues the chain. If not the chain is left; the operation may still begin a new one.
template <int32_t N>
inline bool CQPLEXContext::joinsChain(int32_t kernelNumber, int32_t count, CContextBuffer* const* buffers,
                                      const CBufferHandle* handles, bool isRepeated) {
    if (chain_.isUnderWay() && !chain_.expects(kernelNumber)) {
        runQueued();
    }
    if constexpr (N > kLinkOperand) {
        const void* const source = buffers[kLinkOperand]->data + handleOffset(handles[kLinkOperand]);
        if (chain_.expects(kernelNumber) && !isRepeated && !operations_.isEmpty() &&
            chain_.accepts<N>(kernels_[kernelNumber], count, buffers, source)) {
            return true;
        }
    }
    leaveChain();
    return false;
}

/// Kept operations run as any others; a chain may begin again behind the next flush.
void CQPLEXContext::leaveChain() {
    if (chain_.isUnderWay()) {
        runQueued();
    }
    for (int32_t i = 0; i < chain_.stageCount(0); ++i) {
        ready_.add(*chain_.stage(0)[i]);
    }
    chain_.clear();
    chain_.close();
}

void CQPLEXContext::endProcess() {
    if (calls_.isRecording()) {
        calls_.recording().closeCall();
        buffers_.freeSignals();
    } else if (!chain_.endStage()) {
        runQueued();
    }
}

void CQPLEXContext::flush() {
    if (calls_.isRecording()) {
        ++flushes_;
        settle();
    } else {
        runQueued();
    }
}

void CQPLEXContext::settle() {
    calls_.settle();
    buffers_.freeHeld();
}

void CQPLEXContext::runQueued() {
    ++flushes_;
    if (!chain_.isEmpty()) {
        runChain();
    }
    CQueuedOperation* batch[kMaxBatch];
    while (const int32_t count = ready_.takeBatch(batch)) {
        runBatch(batch, count);
    }
    chain_.restart();
}

/// A chain that was begun and not ended runs stage by stage.
void CQPLEXContext::runChain() {
    if (chain_.isComplete()) {
        chain_.run(calls_, claims_, operations_);
    } else {
        chain_.takeApart();
        for (int32_t stage = 0; stage < kChainStages && chain_.stageCount(stage) > 0; ++stage) {
            runBatch(chain_.stage(stage), chain_.stageCount(stage));
        }
    }
    chain_.clear();
}

void CQPLEXContext::runBatch(CQueuedOperation* const* batch, int32_t count) {
    calls_.call(*batch[0]->kernel, batch, count);
    for (int32_t i = 0; i < count; ++i) {
        claims_.release(*batch[i]);
        operations_.giveBack(*batch[i]);
    }
}

void CQPLEXContext::startRecording(CRunInputs* inputs) {
    flush();
    calls_.startRecording(joiners_, inputs);
    buffers_.setRecording(&calls_.recording());
}

bool CQPLEXContext::endRecording() {
    const bool isKept = calls_.endRecording();
    buffers_.setRecording(nullptr);
    buffers_.freeHeld();
    return isKept;
}

CContextCounters CQPLEXContext::counters() const {
    return {.operations = issued_,
            .calls = calls_.callCount(),
            .flushes = flushes_,
            .forcedFlushes = forcedFlushes_,
            .repeats = calls_.repeatCount(),
            .rejected = rejected_,
            .storageGrowths = buffers_.storageGrowths(),
            .storageBytes = buffers_.storageBytes(),
            .buffersInUse = buffers_.inUse(),
            .operationsWaiting = operations_.inUse()};
}

}  // namespace tarv
