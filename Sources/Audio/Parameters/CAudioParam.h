#pragma once

#include "Audio/Parameters/CAudioParamInfo.h"
#include "Audio/Parameters/CAudioParamListener.h"
#include "Audio/Parameters/CAudioParamRoute.h"
#include "Core/CCheckedObject.h"

namespace tarv {

class CAudioParamCollector;

/// A run-time parameter, one for each full name; the collector owns it and destroys it with itself. It holds a
/// user-side value under its lock (hosts, editor, presets), the stored record of that value, and an engine-side value
/// that only the audio side touches. Changes go through the collector, which applies them here.
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
    /// The user-side value as a stored record, made by the first call and kept until the value changes. Hold lock();
    /// only once defined.
    const CByteBuffer& storedRecord() const;
    /// That record if storedRecord was called since the value changed last, otherwise null. Hold lock().
    const CByteBuffer* currentRecord() const { return isRecordCurrent_ ? &record_ : nullptr; }
    /// The engine-side store (audio side); it lags one round behind the processes' queues. Of a string parameter: hold
    /// lock().
    const CAudioParamData& engineData() const { return engineData_; }

    /// User side: sets one number of one element, clamped to the range, and posts the change. A value that is not a
    /// number is ignored. `origin` is the one listener that is not notified. [any thread, outside a block]
    void setValue(int32_t group, int32_t element, double value, int32_t index = 0,
                  const CAudioParamListener* origin = nullptr);
    /// User side: sets a text and posts the change. Only of a string parameter. [any thread, outside a block]
    void setText(int32_t group, int32_t element, const CString& text, const CAudioParamListener* origin = nullptr);
    /// Audio side: sets one number as setValue does, straight to the processes, due at once; the user-side value stays
    /// until takeEngineValue. No lock. [audio thread]
    void setEngineValue(int32_t group, int32_t element, double value, int32_t index = 0);
    /// User side: takes over what setEngineValue set since the last call as the first number of group 0, unless a user
    /// set a value after it. Returns whether the user-side value changed; nobody is notified and nothing posted.
    /// [any thread but the audio thread]
    bool takeEngineValue();

    /// Notifies the listeners but `origin` that values of a group, or with CAudioParamData::kAllGroups of all, were
    /// set. The caller holds no lock.
    void notify(int32_t group, int32_t first, int32_t count, const CAudioParamListener* origin = nullptr);
    /// Notifies the listeners that values of every group may have changed. The caller holds no lock.
    void notifyAll();
    void addListener(CAudioParamListener& listener);
    void removeListener(CAudioParamListener& listener);

    // What the collector calls to define the parameter and to carry a posted change out. Nothing else calls these: a
    // value that is set without a post would never reach the processes.

    /// Takes the definition's information and sets both values to its defaults; false if a definition was bound before.
    /// [while the graph is built, or audio thread]
    bool bind(const CAudioParamInfo& info);
    /// Whether number `index` of an element can be set to `value`.
    bool takesNumber(double value, int32_t index) const;
    /// Applies a change to the user-side value, and that of a text to the engine-side value, too, since no process
    /// reads texts. False if its shape does not fit. Hold lock().
    bool applyUserChange(const CAudioParamChange& change);
    /// Whether applyEngineChange would apply the change. [audio thread]
    bool takesEngineChange(const CAudioParamChange& change) const;
    /// Applies a change of numbers to the engine-side value. [audio thread]
    void applyEngineChange(const CAudioParamChange& change) { engineData_.apply(change); }
    /// Keeps the first number of group 0 for takeEngineValue. [audio thread]
    void noteEngineNumber(double number);
    /// Where changes of this parameter go.
    CAudioParamRoute& route() { return route_; }

private:
    CAudioParamCollector& collector_;
    CString fullName_;
    mutable CLock lock_;
    std::atomic<bool> defined_{false};
    CAudioParamInfo info_;
    CAudioParamData userData_;
    mutable CByteBuffer record_;
    mutable bool isRecordCurrent_ = false;
    CAudioParamData engineData_;
    // The first number that the audio side set last, how often it set one, and the count that the user side has taken
    // over (under the lock).
    std::atomic<double> engineNumber_{0.0};
    std::atomic<uint32_t> engineSets_{0};
    uint32_t engineSetsSeen_ = 0;
    CAudioParamRoute route_;
    CArray<CAudioParamListener*, 2> listeners_;
};

}  // namespace tarv
