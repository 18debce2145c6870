#pragma once

#include "Audio/Presets/CAudioParamUndoList.h"
#include "Audio/Presets/CAudioUndoPrograms.h"
#include "Core/CObject.h"

namespace tarv {

/// What the user did, as a list of labelled steps that can be undone (base of the engine's interface object).
/// Any thread but the audio thread; one lock, taken for every operation. Locks in their order: the history's, then a
/// registry's, then a parameter's: a caller that adds a step holds none of the later ones. Parameters outlive it.
class CAudioParamUndo : public CObject {
public:
    static constexpr const char* kStartLabel = "Undo history start";

    [[nodiscard]] CError* init() override;
    /// Longest length of the history (`undo-count-max`), the pseudo step not counted.
    int32_t undoCountMax() const { return undoCountMax_; }

    /// Takes a finished step over: an empty one is dropped, one of the gesture before it merged. Steps that could have
    /// been redone are deleted. While a record is under construction the step becomes a part of it. `isLocked`: the
    /// caller holds lock(), and calls notifyIfChanged after it has released it.
    void addStep(std::unique_ptr<CAudioParamUndoStep> step, bool isLocked = false);
    /// Opens a record: what is added until endRecord is one step, with this label. An open record is ended first.
    void beginRecord(std::unique_ptr<CAudioParamUndoStep> record);
    void endRecord();

    /// Moves the position by `count` steps, as far as there are any. A record under construction is ended first.
    void undo(int32_t count);
    void redo(int32_t count);
    /// Moves to a position in 0..stepCount; others do nothing.
    void selectStep(int32_t index);
    /// Ends the newest step by its former values if it is the gesture's of that key: the list becomes what it was
    /// before it, with the steps that could be redone. Otherwise does nothing.
    void takeBack(int32_t key);

    /// Labels from the pseudo step on, and the position among them.
    CArray<CString, 4> getStepLabels(int32_t* position = nullptr) const;
    /// Exchanges the list with another one. A record under construction is ended first. The caller holds lock(), and
    /// calls notifyIfChanged after it has released it.
    void swapList(CAudioParamUndoList& other);
    /// Calls historyChanged if something changed under a caller's lock. The caller holds no lock.
    void notifyIfChanged();
    CLock& lock() const { return lock_; }

    /// The owner of the programs, or null. Set to null before it is destroyed.
    void setPrograms(CAudioUndoPrograms* programs);
    /// Ends what the steps of this list and of another say of programs (see CAudioParamUndoList::endActions). The
    /// caller holds lock(), and calls notifyIfChanged after it has released it.
    void endActions(CAudioParamUndoList* other);
    /// Assigns the values of one program in this list to another. The caller holds lock().
    void moveValues(uint64_t fromProgram, uint64_t toProgram);

protected:
    /// Sends `undo-history-changed`: the list or the position changed. On the thread that changed it, outside all
    /// locks.
    virtual void historyChanged();

private:
    using CTouched = CAudioUndoAction::CTouched;

    bool addUnderLock(std::unique_ptr<CAudioParamUndoStep> step);
    bool closeRecord();
    void move(int32_t target, bool isRelative);
    void walkTo(int32_t index, CTouched& touched);
    void moveOver(CAudioParamUndoStep& step, CAudioUndoValues::CSide side, CTouched& touched);
    bool isForCurrent(const CAudioParamUndoStep& step) const;

    int32_t undoCountMax_ = 0;
    mutable CLock lock_;
    CAudioParamUndoList list_;
    std::unique_ptr<CAudioParamUndoStep> record_;
    CAudioUndoPrograms* programs_ = nullptr;
    bool isNotificationDue_ = false;
};

}  // namespace tarv
