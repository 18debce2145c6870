#pragma once

#include <map>
#include <memory>

#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Presets/CAudioUndoValues.h"
#include "Core/CObject.h"

namespace tarv {

class CAudioParamUndoStep;

/// What a step did apart from values of parameters.
class CAudioUndoAction : public CHeapObject {
public:
    /// Notified when its actions were undone or redone; called outside all locks. Outlives the history.
    class CObserver {
    public:
        virtual void actionsMoved() = 0;

    protected:
        ~CObserver() = default;
    };
    /// Parameters and observers to notify when the locks are released.
    struct CTouched {
        CArray<CAudioParam*, 16> params;
        CArray<CObserver*, 1> observers;
        void add(CAudioParam& param);
        void add(CObserver& observer);
    };

    virtual ~CAudioUndoAction() = default;
    /// Called before the values are taken back (brought forth), with the history's lock held and no other. What no
    /// longer applies is left out.
    virtual void undo(CTouched& touched) = 0;
    virtual void redo(CTouched& touched) = 0;
    /// Takes a later action of the same gesture in; returns whether it could.
    virtual bool merge(CAudioUndoAction& later) = 0;
};

/// The owner of the programs whose values the history's steps change: a master registry. Its operations are called with
/// the history's lock held and may take the locks behind it.
class CAudioUndoPrograms {
public:
    /// The identity of the current program, never 0.
    virtual uint64_t currentProgramId() const = 0;
    /// A step comes into the history: values that belong to programs become an action of it.
    virtual void adoptStep(CAudioParamUndoStep& step) = 0;

protected:
    ~CAudioUndoPrograms() = default;
};

/// One step of a history: a label, and what it changed of the parameters that it touched.
class CAudioParamUndoStep : public CHeapObject {
public:
    static constexpr int32_t kNoKey = -1;

    using CValueMap = std::map<CAudioParam*, CAudioUndoValues, std::less<CAudioParam*>,
                               CHeapAllocator<std::pair<CAudioParam* const, CAudioUndoValues>>>;

    explicit CAudioParamUndoStep(const CString& stepLabel) : label(stepLabel) {}
    /// A gesture's step: it merges with the step before it if that has the same key.
    CAudioParamUndoStep(const CString& stepLabel, int32_t key) : label(stepLabel), coalesce(1), coalesceKey(key) {}

    /// Adds what differs between two values; of an element that is touched again the first value before stays.
    void add(CAudioParam& param, const CAudioParamData& before, const CAudioParamData& after);
    void add(CAudioParam& param, CAudioUndoValues&& difference);
    bool isEmpty() const { return values.empty() && !action; }

    CString label;
    uint8_t coalesce = 0;
    int32_t coalesceKey = kNoKey;
    CValueMap values;
    std::unique_ptr<CAudioUndoAction> action;
    /// The program whose values the step changed; they are moved only while it is current. 0: whichever is.
    uint64_t programId = 0;
};

/// Steps from the oldest on, behind the pseudo step that is the start. Position 0 is the start, position i the state
/// behind step i - 1.
struct CAudioParamUndoList {
    COwnedArray<CAudioParamUndoStep> steps;
    int32_t position = 0;

    void swap(CAudioParamUndoList& other);
    /// Actions go; values belong to whichever program is current; steps without values go.
    void endActions();
};

/// What the user did, as a list of labelled steps that can be taken back (base of the engine's interface object).
/// Any thread but the audio thread; one lock, taken for every operation. Locks in their order: the history's, then a
/// registry's, then a parameter's: who adds a step holds none of the later ones. Parameters outlive it.
class CAudioParamUndo : public CObject {
public:
    static constexpr const char* kStartLabel = "Undo history start";

    [[nodiscard]] CError* init() override;
    /// Longest length of the history (`undo-count-max`), the pseudo step not counted.
    int32_t undoCountMax() const { return undoCountMax_; }

    /// Takes a finished step over: an empty one is dropped, one of the gesture before it merged. Steps that could have
    /// been redone are gone. While a record is under construction the step becomes a part of it. `isLocked`: the caller
    /// holds lock(), and calls notifyIfChanged when it has left it.
    void addStep(std::unique_ptr<CAudioParamUndoStep> step, bool isLocked = false);
    /// Opens a record: what is added until endRecord is one step, with this label. A record that is open is ended.
    void beginRecord(std::unique_ptr<CAudioParamUndoStep> record);
    void endRecord();

    /// Moves the position by `count` steps, as far as there are any. A record under construction is ended first.
    void undo(int32_t count);
    void redo(int32_t count);
    /// Moves to a position in 0..stepCount; others do nothing.
    void selectStep(int32_t index);

    /// Labels from the pseudo step on, and the position among them.
    CArray<CString, 4> getStepLabels(int32_t* position = nullptr) const;
    /// Exchanges the list with another one. A record under construction is ended first. The caller holds lock(), and
    /// calls notifyIfChanged when it has left it.
    void swapList(CAudioParamUndoList& other);
    /// Tells of what was done under a caller's lock. Outside all locks.
    void notifyIfChanged();
    CLock& lock() const { return lock_; }

    /// The owner of the programs, or null; it outlives the history or leaves it.
    void setPrograms(CAudioUndoPrograms* programs);
    /// Ends what the steps of this list and of another say of programs: their actions go, their values belong to
    /// whichever program is current, and steps without values go. The caller holds lock(), and calls notifyIfChanged.
    void endActions(CAudioParamUndoList* other);
    /// Values of one program in this list belong to another from here on. The caller holds lock().
    void moveValues(uint64_t fromProgram, uint64_t toProgram);

protected:
    /// The list or the position changed. On the thread that did it, outside all locks.
    virtual void historyChanged();

private:
    bool addUnderLock(std::unique_ptr<CAudioParamUndoStep> step);
    void append(std::unique_ptr<CAudioParamUndoStep> step);
    bool mergeIntoLast(CAudioParamUndoStep& step);
    bool closeRecord();
    void move(int32_t target, bool isRelative);
    using CTouched = CAudioUndoAction::CTouched;
    bool isForCurrent(const CAudioParamUndoStep& step) const;
    void moveOver(CAudioParamUndoStep& step, CAudioUndoValues::CSide side, CTouched& touched);
    bool addToRecord(CAudioParamUndoStep& step);
    void walkTo(int32_t index, CTouched& touched);

    int32_t undoCountMax_ = 0;
    mutable CLock lock_;
    CAudioParamUndoList list_;
    std::unique_ptr<CAudioParamUndoStep> record_;
    CAudioUndoPrograms* programs_ = nullptr;
    bool isUntold_ = false;
};

}  // namespace tarv
