#pragma once

#include "Audio/Presets/CAudioParamUndoStep.h"

namespace tarv {

/// Steps from the oldest on, behind the pseudo step that is the start, and the position among them: 0 is the start, i
/// the state behind step i - 1. The history's lock guards it.
class CAudioParamUndoList {
public:
    int32_t count() const { return steps_.count(); }
    int32_t position() const { return position_; }
    /// Step of an index in 0..count-1.
    const CAudioParamUndoStep& step(int32_t index) const { return *steps_[index]; }

    /// Puts a step behind the position, or merges it with the one there. Steps that could have been redone are deleted,
    /// and the oldest if there are more than `limit`; what a gesture deletes is kept until the next step, for
    /// dropNewest.
    void append(std::unique_ptr<CAudioParamUndoStep> step, int32_t limit);
    /// The step before the position, which moves in front of it. The position is not 0.
    CAudioParamUndoStep& stepBack() { return *steps_[--position_]; }
    /// The step behind the position, which moves behind it. The position is not count.
    CAudioParamUndoStep& stepForth() { return *steps_[position_++]; }
    /// Whether the step before the position is the last one, and of the gesture of that key.
    bool isNewestOf(int32_t key) const;
    /// Deletes the last step, which the position is in front of, and puts back what its append has deleted.
    void dropNewest();

    void swap(CAudioParamUndoList& other);
    /// Ends what the steps say of programs: actions are deleted, values belong to any program, and steps without values
    /// are deleted.
    void endActions();
    /// Assigns the values of one program to another.
    void moveValues(uint64_t fromProgram, uint64_t toProgram);

private:
    void forgetDeleted();

    COwnedArray<CAudioParamUndoStep> steps_;
    int32_t position_ = 0;
    // What the last append has deleted.
    COwnedArray<CAudioParamUndoStep> redone_;
    std::unique_ptr<CAudioParamUndoStep> oldest_;
};

}  // namespace tarv
