// Sets the parameters that follow the host.

#include "Audio/Instance/CAudioHostParams.h"

#include "Audio/Parameters/CAudioParam.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Core/CSettingRange.h"

namespace tarv {

namespace {

constexpr const char* kOversamplingLevel = "oversampling-level";

}  // namespace

CAudioHostParams::CAudioHostParams() : settingBridge_(this, &CAudioHostParams::readLevel) {}

CAudioHostParams::~CAudioHostParams() {
    disconnect();
}

void CAudioHostParams::init(CAudioParamCollector& collector) {
    oversamplingParam_ = collector.getParam("plugin.modMain.host-oversampling-mode");
    offlineParam_ = collector.getParam("plugin.modMain.host-offline");
    latencyParam_ = collector.getParam("plugin.modMain.host-latency-change");
    bpmParam_ = collector.getParam("plugin.modMain.host-bpm");
}

void CAudioHostParams::followSetting() {
    settingBridge_.subscribe(CGlobalData::instance(), kOversamplingLevel);
    readLevel(nullptr);
}

void CAudioHostParams::disconnect() {
    settingBridge_.disconnect();
}

// The store calls it on the thread that writes the setting; the next block takes the level.
void CAudioHostParams::readLevel(CCheckedObject*) {
    double level = 1.0;
    kOversamplingRange.read(CGlobalData::instance().readText(kOversamplingLevel, "1"), level);
    oversamplingLevel_.store(static_cast<int32_t>(level), std::memory_order_relaxed);
}

void CAudioHostParams::setOffline(bool isOffline) {
    isOffline_ = isOffline;
    stages_ = stagesFor(isOffline);
    offlineParam_->setValue(0, 0, isOffline ? 1.0 : 0.0);
    oversamplingParam_->setValue(0, 0, stages_);
}

void CAudioHostParams::takeOffline(bool isOffline) {
    if (isOffline != isOffline_) {
        isOffline_ = isOffline;
        offlineParam_->setEngineValue(0, 0, isOffline ? 1.0 : 0.0);
    }
    // The level may have changed while the off-line state did not.
    if (const int32_t stages = stagesFor(isOffline); stages != stages_) {
        stages_ = stages;
        oversamplingParam_->setEngineValue(0, 0, stages);
    }
}

void CAudioHostParams::setBpm(double bpm) {
    bpm_ = bpm;
    bpmParam_->setValue(0, 0, bpm);
}

void CAudioHostParams::takeBpm(double bpm) {
    if (bpm != bpm_) {
        bpm_ = bpm;
        bpmParam_->setEngineValue(0, 0, bpm);
    }
}

void CAudioHostParams::markLatency() {
    isLatencyMarked_.store(true, std::memory_order_relaxed);
    latencyParam_->setEngineValue(0, 0, 1.0);
}

void CAudioHostParams::clearLatencyMark() {
    if (isLatencyMarked_.exchange(false, std::memory_order_relaxed)) {
        latencyParam_->setValue(0, 0, 0.0);
    }
}

}  // namespace tarv
