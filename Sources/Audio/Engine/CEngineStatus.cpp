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

CTextList CEngineStatus::outputLabels() const {
    CLockScope scope(lock_);
    return outputLabels_;
}

bool CEngineStatus::replace(CTextList& kept, const CTextList& labels) {
    CLockScope scope(lock_);
    if (std::equal(labels.begin(), labels.end(), kept.begin(), kept.end())) {
        return false;
    }
    kept = labels;
    return true;
}

}  // namespace tarv
