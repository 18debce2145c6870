#pragma once

#include <map>
#include <memory>

#include "Audio/Parameters/CAudioParamCollector.h"
#include "Core/CObject.h"

namespace tarv {

/// What a step did apart from values of parameters.
class CAudioUndoDeed : public CHeapObject {
public:
    /// Who has to say so when deeds of its own were undone or redone; called outside all locks. Outlives the history.
    class CWitness {
    public:
        virtual void deedsChanged() = 0;

    protected:
        ~CWitness() = default;
    };

    virtual ~CAudioUndoDeed() = default;
    /// Called before the values are brought back (forth), with the history's lock held and no other.
    virtual void undo() = 0;
    virtual void redo() = 0;
    virtual CWitness& witness() = 0;
};

/// One step of a history: a label, and the values of the parameters that it touched before and after it.
class CAudioParamUndoStep : public CHeapObject {
public:
    static constexpr int32_t kNoKey = -1;

    struct CValues {
        CAudioParamData before;
        CAudioParamData after;
    };
    using CValueMap = std::map<CAudioParam*, CValues, std::less<CAudioParam*>,
                               CHeapAllocator<std::pair<CAudioParam* const, CValues>>>;

    explicit CAudioParamUndoStep(const CString& stepLabel) : label(stepLabel) {}
    /// A gesture's step: it merges with the step before it if that has the same key.
    CAudioParamUndoStep(const CString& stepLabel, int32_t key) : label(stepLabel), coalesce(1), coalesceKey(key) {}

    /// Of a parameter that is touched again the first `before` stays.
    void add(CAudioParam& param, CAudioParamData before, CAudioParamData after);
    bool isEmpty() const { return values.empty() && !deed; }

    CString label;
    uint8_t coalesce = 0;
    int32_t coalesceKey = kNoKey;
    CValueMap values;
    std::unique_ptr<CAudioUndoDeed> deed;
};

/// Steps from the oldest on, behind the pseudo step that is the start. Position 0 is the start, position i the state
/// behind step i - 1.
struct CAudioParamUndoList {
    COwnedArray<CAudioParamUndoStep> steps;
    int32_t position = 0;

    void swap(CAudioParamUndoList& other);
};

/// What the user did, as a list of labelled steps that can be taken back (base of the engine's interface object).
/// Any thread but the audio thread; one lock, taken for every operation. Locks in their order: the history's, then a
/// registry's, then a parameter's: who adds a step holds none of the later ones. Parameters and deeds outlive it.
class CAudioParamUndo : public CObject {
public:
    static constexpr const char* kStartLabel = "Undo history start";

    [[nodiscard]] CError* init() override;
    /// Longest length of the history (`undo-count-max`), the pseudo step not counted.
    int32_t undoCountMax() const { return undoCountMax_; }

    /// Takes a finished step over: an empty one is dropped, one of the gesture before it merged. Steps that could have
    /// been redone are gone. While a record is under construction the step becomes a part of it. `isLocked`: the caller
    /// holds lock(), and calls tellIfChanged when it has left it.
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
    /// calls tellIfChanged when it has left it.
    void swapList(CAudioParamUndoList& other);
    /// Tells of what was done under a caller's lock. Outside all locks.
    void tellIfChanged();
    CLock& lock() const { return lock_; }

protected:
    /// The list or the position changed. On the thread that did it, outside all locks.
    virtual void historyChanged();

private:
    bool addUnderLock(std::unique_ptr<CAudioParamUndoStep> step);
    void append(std::unique_ptr<CAudioParamUndoStep> step);
    bool mergeIntoLast(CAudioParamUndoStep& step);
    bool closeRecord();
    void move(int32_t target, bool isRelative);
    /// Who is to be told when the lock is released.
    struct CTouched {
        CArray<CAudioParam*, 16> params;
        CArray<CAudioUndoDeed::CWitness*, 1> witnesses;
        void add(CAudioUndoDeed& deed);
    };
    static void assignAll(CAudioParamUndoStep& step, CAudioParamData CAudioParamUndoStep::CValues::*which,
                          CTouched& touched);
    void walkTo(int32_t index, CTouched& touched);

    int32_t undoCountMax_ = 0;
    mutable CLock lock_;
    CAudioParamUndoList list_;
    std::unique_ptr<CAudioParamUndoStep> record_;
    bool isUntold_ = false;
};

}  // namespace tarv
