#pragma once

#include "Audio/Parameters/CAudioParamChange.h"
#include "Audio/Parameters/CAudioParamInfo.h"
#include "Core/CCheckedObject.h"

namespace tarv {

class CAudioParamCollector;

/// A process's own copy of one parameter. A private parameter has no `param` and data from the definition; an unset
/// slot has data that is not valid. Audio thread.
struct CAudioParamSlot {
    CAudioParam* param = nullptr;
    CAudioParamData data;
    uint8_t changed = 0;
};

/// Link between a parameter and a slot of a process.
struct CAudioParamConsumer {
    CAudioParamSlot* slot;
    CAudioParamQueue* queue;
    uint8_t* changedFlag;
    int32_t group;    ///< -1 and -2: all
    int32_t element;  ///< -1: all
    CAudioParamConsumer* next;

    /// Whether a change is meant for this consumer.
    bool wants(const CAudioParamChange& change) const;
};

/// Hears of changes that were posted for a parameter, on the poster's thread and outside the parameter's lock.
class CAudioParamListener {
public:
    virtual void onParamChanged(CAudioParam& param, int32_t group, int32_t first, int32_t count) = 0;

protected:
    ~CAudioParamListener() = default;
};

/// A run-time parameter, one for each full name, owned by the collector and living as long. It has a user-side value
/// under its lock (hosts, editor, presets) and an engine-side value that only the audio side touches.
class CAudioParam : public CCheckedObject {
public:
    /// Elements that a parameter's stores have room for from the start: enough for every channel and every band.
    static constexpr int32_t kReadyElements = 16;

    CAudioParam(CAudioParamCollector& collector, const CString& fullName);

    const CString& fullName() const { return fullName_; }
    CAudioParamCollector& collector() const { return collector_; }
    /// Whether a definition was bound. Set before the graph runs.
    bool isDefined() const { return defined_.load(std::memory_order_acquire); }
    /// Valid once defined.
    const CAudioParamInfo& info() const { return info_; }
    CLock& lock() const { return lock_; }

    /// User-side reads, real units; each takes the lock. 0.0 or empty while not defined.
    double value(int32_t group, int32_t element, int32_t index = 0) const;
    CString text(int32_t group, int32_t element) const;
    /// The user-side store; hold lock() while using it.
    const CAudioParamData& userData() const { return userData_; }
    /// The user-side value as a stored record, made when it is asked for and kept until the value changes. Hold lock();
    /// only once defined.
    const CByteBuffer& storedRecord() const;
    /// That record if it was asked for since the value changed last, otherwise null. Hold lock().
    const CByteBuffer* currentRecord() const { return isRecordCurrent_ ? &record_ : nullptr; }
    /// The engine-side store (audio side); it lags one round behind the processes' queues. Of a string parameter: hold
    /// lock().
    const CAudioParamData& engineData() const { return engineData_; }

    /// User side: sets one number of one element, clamped to the range (a value that is not a number is ignored), and
    /// posts the change. `origin` is the listener that is not told.
    void setValue(int32_t group, int32_t element, double value, int32_t index = 0,
                  const CAudioParamListener* origin = nullptr);
    /// Audio side: sets one number as setValue does, straight to the processes, due at once; the user-side value stays
    /// until takeEngineValue. No lock.
    void setEngineValue(int32_t group, int32_t element, double value, int32_t index = 0);
    /// User side: takes over what setEngineValue set since the last call as the first number of group 0, unless a user
    /// has set a value behind it. True if the user-side value is another one now; nobody is notified and nothing
    /// posted. Any thread but the audio thread.
    bool takeEngineValue();
    /// User side: sets a text and posts the change. Only of a string parameter.
    void setText(int32_t group, int32_t element, const CString& text, const CAudioParamListener* origin = nullptr);

    /// Tells the listeners that values of a group, or with CAudioParamData::kAllGroups of all, were set. Outside all
    /// locks.
    void notify(int32_t group, int32_t first, int32_t count) { notifyListeners(group, first, count, nullptr); }
    /// Tells the listeners that values of every group may have changed. Outside all locks.
    void notifyAll();
    void addListener(CAudioParamListener& listener);
    void removeListener(CAudioParamListener& listener);

private:
    friend class CAudioParamCollector;

    bool takesNumber(double value, int32_t index) const;
    void fillElement(CAudioParamChange& change, double value, int32_t index) const;
    void notifyListeners(int32_t group, int32_t first, int32_t count, const CAudioParamListener* origin);

    CAudioParamCollector& collector_;
    CString fullName_;
    mutable CLock lock_;
    std::atomic<bool> defined_{false};
    CAudioParamInfo info_;
    CAudioParamData userData_;
    mutable CByteBuffer record_;
    mutable bool isRecordCurrent_ = false;
    CAudioParamData engineData_;
    // The first number that the audio side set last, how often it did, and how much of that the user side knows (under
    // the lock).
    std::atomic<double> engineNumber_{0.0};
    std::atomic<uint32_t> engineSets_{0};
    uint32_t engineSetsSeen_ = 0;
    CAudioParamConsumer* consumers_ = nullptr;
    std::atomic<int32_t> consumerCount_{0};
    CAudioParamQueue queue_;
    uint32_t generation_ = 0;
    CAudioParam* nextTouched_ = nullptr;
    CArray<CAudioParamListener*, 2> listeners_;
};

}  // namespace tarv
