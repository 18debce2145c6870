#include "Audio/Context/CKernelCalls.h"

#include "Audio/Context/CContextBuffer.h"

namespace tarv {

void CKernelCalls::record(const CKernel& kernel, CKernelBatchFunction together, CQueuedOperation* const* batch,
                          int32_t count) {
    COperation* operations[kMaxBatch] = {};
    uint8_t lastReads[kMaxBatch] = {};
    for (int32_t i = 0; i < count; ++i) {
        operations[i] = batch[i];
        for (int32_t j = 0; j < kernel.operandCount; ++j) {
            const bool isOwn = batch[i]->buffers[j]->state == batch[i]->holds[j];
            lastReads[i] |= static_cast<uint8_t>(isOwn << j);
        }
    }
    recording_.add(kernel, together, operations, lastReads, count);
}

void CKernelCalls::callChain(CChainFunction chain, COperation* const* const* stages,
                             const int32_t (&operandCounts)[kChainStages], const uint8_t* lastReads, int32_t count) {
    if (isRecording_) {
        recording_.addChain(chain, stages, operandCounts, lastReads, count);
    }
    chain(stages, count);
    ++callCount_;
}

void CKernelCalls::startRecording() {
    recording_.clear();
    isRecording_ = true;
    isRecorded_ = false;
}

bool CKernelCalls::endRecording(const std::unique_ptr<CRunJoiner> (&joiners)[kJoinerCount]) {
    isRecording_ = false;
    isRecorded_ = recording_.isWhole();
    for (const std::unique_ptr<CRunJoiner>& joiner : joiners) {
        if (isRecorded_ && joiner) {
            recording_.join(*joiner);
        }
    }
    return isRecorded_;
}

void CKernelCalls::repeat() {
    ++repeatCount_;
    recording_.run();
}

}  // namespace tarv
