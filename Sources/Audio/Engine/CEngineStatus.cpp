#include "Audio/Engine/CEngineStatus.h"

#include <algorithm>

#include "Audio/Parameters/CAudioEnv.h"

namespace tarv {

double CEngineStatus::sampleRate() const {
    return env_.sampleRate();
}

int32_t CEngineStatus::blockSize() const {
    return env_.blockSize();
}

int32_t CEngineStatus::latency() const {
    return env_.latency();
}

double CEngineStatus::vizFps() const {
    return env_.vizFps();
}

CInterfaceCounts CEngineStatus::counts() const {
    CLockScope scope(lock_);
    return counts_;
}

CTextList CEngineStatus::channelLabels() const {
    CLockScope scope(lock_);
    return channelLabels_;
}

void CEngineStatus::setChannelLabels(const CTextList& labels) {
    CLockScope scope(lock_);
    channelLabels_ = labels;
}

CTextList CEngineStatus::outputLabels() const {
    CLockScope scope(lock_);
    return outputLabels_;
}

bool CEngineStatus::setOutputLabels(const CTextList& labels) {
    CLockScope scope(lock_);
    if (std::equal(labels.begin(), labels.end(), outputLabels_.begin(), outputLabels_.end())) {
        return false;
    }
    outputLabels_ = labels;
    return true;
}

}  // namespace tarv
