#pragma once

#include <atomic>

#include "Core/CObject.h"

namespace tarv {

class CAudioEnv;
class CAudioParam;

/// Gathers what an editor draws (`audio:viz-collector`). There: its attributes, the switch "audio.param-enable-viz",
/// and start and stop. Not there yet: records; no source delivers any.
class CAudioVizCollector : public CObject {
public:
    [[nodiscard]] CError* init() override;

    CAudioEnv* env() const { return env_; }
    /// The parameter that switches collecting on.
    CAudioParam* enableParam() const { return enableParam_; }
    /// Whether collecting is on: going, and the switch is set. Takes the switch's lock.
    bool isEnabled() const;
    void start() { isGoing_ = true; }
    void stop() { isGoing_ = false; }
    /// Where the audio thread stands, in seconds. Audio thread.
    void setPosition(double seconds) { position_ = seconds; }
    double position() const { return position_; }

private:
    CAudioEnv* env_ = nullptr;
    CAudioParam* enableParam_ = nullptr;
    std::atomic<bool> isGoing_{false};
    double position_ = 0.0;
};

}  // namespace tarv
