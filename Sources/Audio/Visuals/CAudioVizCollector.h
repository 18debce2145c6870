#pragma once

#include <atomic>

#include "Audio/Visuals/CAudioVizSource.h"
#include "Core/CObject.h"

namespace tarv {

class CAudioEnv;
class CAudioParamCollector;

/// Gathers what an editor draws (`audio:viz-collector`): processes hand records in on the audio thread, the interface
/// takes them on the user-interface thread. Frames are begun at most `viz-fps` times a second of the environment, none
/// while that is not above 0. A source is collected while the parameter named as the source with "-enable" behind is
/// on. Neither side waits for the other: what has not been taken in time is missing, not late.
class CAudioVizCollector : public CObject {
public:
    [[nodiscard]] CError* init() override;

    CAudioEnv* env() const { return env_; }
    /// The parameter that switches collecting on.
    CAudioParam* enableParam() const { return enableParam_; }
    /// Whether collecting is on: going, and the switch is set. Any thread, without a lock.
    bool isEnabled() const { return isGoing_.load(std::memory_order_relaxed) && enable_.isOn(); }
    /// Binds the switches of sources whose parameter was defined since, and starts collecting. Not the audio thread.
    void start();
    void stop() { isGoing_ = false; }

    /// The source of a full name; a second call for a name returns the source that is there. At most `recordsPerFrame`
    /// records a frame (1 to 64), each with room for `capacity` bins or bytes (as far as the kind takes so many). Null
    /// for limits beyond those. While no audio runs.
    CAudioVizSource* addSource(const CString& name, CAudioVizKind kind, int32_t recordsPerFrame = 1,
                               int32_t capacity = 0);
    /// Name of the source that records carry as `source`; empty for a number without one. Not the audio thread.
    CString sourceName(uint32_t number) const;

    /// Hands each record that has gathered to `visit`, `CError* (const CAudioVizData&)`, in the order in which they
    /// were handed in; after the call the record belongs to the audio thread again. The first failure ends that and is
    /// returned; the records behind it stay for the next time. Any thread but the audio thread, also while nothing is
    /// collected.
    template <class Visit>
    [[nodiscard]] CError* takeRecords(Visit&& visit) {
        CLockScope scope(lock_);
        for (int32_t i = ready_.count(); i > 0; --i) {
            CAudioVizSource::CRecord* record = ready_.take();
            CError* error = visit(static_cast<const CAudioVizData&>(*record->data));
            record->source.free_.put(record);
            TARV_TRY(error);
        }
        return nullptr;
    }

    /// Sets the position of the audio thread, in seconds, at the start of a block of the host; begins a frame when one
    /// is due. Audio thread.
    void setPosition(double seconds);
    double position() const { return position_; }
    /// Number of the frame, 0 before the first. Audio thread.
    uint64_t frame() const { return frame_; }

private:
    friend class CAudioVizSource;
    void bindSwitch(CAudioVizSource& source) const;

    CAudioEnv* env_ = nullptr;
    CAudioParamCollector* collector_ = nullptr;
    CAudioParam* enableParam_ = nullptr;
    CAudioVizSwitch enable_;
    std::atomic<bool> isGoing_{false};
    double position_ = 0.0;
    double nextFrame_ = 0.0;
    uint64_t frame_ = 0;
    // Guards the sources, and lets one thread take records at a time.
    mutable CLock lock_;
    COwnedArray<CAudioVizSource, 4> sources_;
    CAudioVizRing<CAudioVizSource::CRecord> ready_;
};

}  // namespace tarv
