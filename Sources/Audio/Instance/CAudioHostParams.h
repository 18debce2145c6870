#pragma once

#include <atomic>

#include "Core/CApplicationData.h"

namespace tarv {

class CAudioParam;
class CAudioParamCollector;

/// The parameters that the core sets for the host: off-line state, oversampling, tempo and the mark of a new latency.
/// On the audio thread values go straight to the processes, without a lock; the values that users read follow at an
/// editor's tick. In brackets: the thread and the state in which a function may be called.
class CAudioHostParams {
public:
    CAudioHostParams();
    ~CAudioHostParams();
    CAudioHostParams(const CAudioHostParams&) = delete;
    CAudioHostParams& operator=(const CAudioHostParams&) = delete;

    /// Takes the parameters from the collector, which makes those that are not defined. [main thread, new]
    void init(CAudioParamCollector& collector);
    /// Takes the stored oversampling level, and follows the setting from then on. [main thread, new]
    void followSetting();
    /// Stops following. [main thread, any state]
    void disconnect();

    void setOffline(bool isOffline);  // [main thread, suspended]
    void setBpm(double bpm);          // [main thread, suspended]
    /// The host's present answers; a value that did not change does nothing. [audio thread, running]
    void takeOffline(bool isOffline);
    void takeBpm(double bpm);
    /// Sets `host-latency-change` until the mark is cleared. [audio thread, running]
    void markLatency();
    void clearLatencyMark();  // [main thread, suspended]

    /// The stored oversampling level: stages used while the host renders off-line, 1 for a text that is no number of
    /// kOversamplingRange. [any thread, any state]
    int32_t oversamplingLevel() const { return oversamplingLevel_.load(std::memory_order_relaxed); }

private:
    void readLevel(CCheckedObject* sender);
    int32_t stagesFor(bool isOffline) const { return isOffline ? oversamplingLevel() : 0; }

    CAudioParam* oversamplingParam_ = nullptr;
    CAudioParam* offlineParam_ = nullptr;
    CAudioParam* latencyParam_ = nullptr;
    CAudioParam* bpmParam_ = nullptr;
    bool isOffline_ = false;
    double bpm_ = 0.0;
    int32_t stages_ = 0;  ///< the value that host-oversampling-mode was set to last
    std::atomic<bool> isLatencyMarked_{false};
    std::atomic<int32_t> oversamplingLevel_{1};
    CApplicationDataBridge<CAudioHostParams> settingBridge_;
};

}  // namespace tarv
