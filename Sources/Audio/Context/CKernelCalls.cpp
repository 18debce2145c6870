#include "Audio/Context/CKernelCalls.h"

namespace tarv {

/// What has no room can't be repeated, but runs all the same.
void CKernelCalls::makeRoom() {
    settle();
    recording_.clear();
    isWhole_ = false;
}

void CKernelCalls::settle() {
    if (inputs_ != nullptr) {
        inputs_->fill();
    }
    callCount_ += static_cast<uint64_t>(recording_.settle(*joiners_));
}

void CKernelCalls::startRecording(const CRunJoiners& joiners, CRunInputs* inputs) {
    joiners_ = &joiners;
    inputs_ = inputs;
    recording_.clear();
    isRecording_ = true;
    isWhole_ = true;
    isRecorded_ = false;
}

bool CKernelCalls::endRecording() {
    settle();
    isRecording_ = false;
    isRecorded_ = isWhole_;
    return isRecorded_;
}

void CKernelCalls::repeat() {
    ++repeatCount_;
    recording_.run();
}

}  // namespace tarv
