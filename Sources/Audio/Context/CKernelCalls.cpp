#include "Audio/Context/CKernelCalls.h"

namespace tarv {

void CKernelCalls::callChain(CChainFunction chain, COperation* const* const* stages, int32_t count) {
    if (isRecording_) {
        recording_.addChain(chain, stages, count);
    }
    chain(stages, count);
    ++callCount_;
}

void CKernelCalls::startRecording() {
    recording_.clear();
    isRecording_ = true;
    isRecorded_ = false;
}

bool CKernelCalls::endRecording() {
    isRecording_ = false;
    isRecorded_ = recording_.isWhole();
    return isRecorded_;
}

void CKernelCalls::repeat() {
    ++repeatCount_;
    recording_.run();
}

}  // namespace tarv
