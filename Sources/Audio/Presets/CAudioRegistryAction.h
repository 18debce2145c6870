#pragma once

#include "Audio/Presets/CAudioProgramAction.h"

namespace tarv {

/// One action of a registry: holds the history's lock and the session bank's while it exists, gathers the values that
/// it changes as a step of the history, and notifies when it has released the locks.
class CAudioRegistryAction {
public:
    using CAssignments = CAudioSessionBank::CAssignments;

    /// `undo`, or null, is the history. The caller holds no lock that comes behind its lock.
    CAudioRegistryAction(CAudioSessionBank& session, CAudioParamUndo* undo);
    CAudioRegistryAction(const CAudioRegistryAction&) = delete;
    CAudioRegistryAction& operator=(const CAudioRegistryAction&) = delete;
    ~CAudioRegistryAction();

    /// Opens a step with this label: what is assigned from here on becomes part of it.
    void record(const CString& label);
    /// Performs a program action as a step with this label. If it could not be performed as a whole, there is no step.
    void perform(const CString& label, std::unique_ptr<CAudioProgramAction> programs);
    /// Drops the step if neither values nor the program that was to be replaced changed.
    void dropIdleStep();
    /// Assigns values; the name shown is no part of the step.
    void assign(const CAssignments& assignments);
    /// Notes that the current preset, its name or the bank changed.
    void noteProgram() { isProgramChanged_ = true; }

private:
    CAudioSessionBank& session_;
    CAudioParamUndo* undo_;
    std::unique_ptr<CAudioParamUndoStep> step_;  ///< null: nothing is recorded
    CAudioProgramAction* programs_ = nullptr;    ///< of the step
    bool isProgramChanged_ = false;
    CAudioUndoAction::CTouched touched_;
};

}  // namespace tarv
