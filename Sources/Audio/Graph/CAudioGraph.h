#pragma once

#include <cstdint>

namespace tarv {

class CAudioEnv;
class CAudioParamCollector;
class CAudioProcessBase;
class CQPLEXContext;

/// Watches a graph from outside: called behind each process that ran. Used by tools; null in a host.
class CAudioGraphObserver {
public:
    virtual ~CAudioGraphObserver() = default;
    /// The outputs of `process` are complete and may be read through the context after a flush.
    virtual void processed(CAudioProcessBase& process) = 0;
};

/// What all processes of one instance's graph share. Filled by the core; audio thread afterwards.
struct CAudioGraph {
    CQPLEXContext* context = nullptr;
    CAudioParamCollector* collector = nullptr;
    CAudioEnv* env = nullptr;
    CAudioGraphObserver* observer = nullptr;
    /// Channels inside the graph and groups that they can belong to.
    int32_t channelCount = 8;
    int32_t groupCount = 8;
    /// Channels on the host's side.
    int32_t hostInputs = 0;
    int32_t hostOutputs = 0;
    /// The host's rate in Hz.
    double hostRate = 44100.0;
    /// Time of the first sample of the current run, in host samples since the instance was made.
    double now = 0.0;
    /// Audio is running: changes are faded. While false (preparation) they are taken in place.
    bool isRunning = false;
    /// The next run of as many samples would issue the same operations as the last one. Whoever does something in a run
    /// that the next would not do again, or changes anything in between, sets it to false.
    bool isSteady = false;
    /// A process met other channels or another rate than before: room is made behind the run, so that the changes that
    /// follow find what they need.
    bool isLayoutNew = false;
    /// The delay of some place changed: the core sums the delays again.
    bool delaysChanged = false;
    /// What a preparation found: the highest rate in Hz, the modules in use, and the most channels that one process
    /// has.
    double widestRate = 0.0;
    int32_t voiceCount = 0;
    int32_t channelsUsed = 0;
};

}  // namespace tarv
