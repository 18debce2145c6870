#pragma once

#include "Audio/Presets/CAudioParamRegistry.h"
#include "Audio/Presets/CAudioProgramAction.h"

namespace tarv {

/// One action of a registry: holds the history's lock and the bank lock while it stands, gathers the values that it
/// changes as a step of the history, and notifies listeners when the locks are released.
class CAudioParamRegistry::CAction {
public:
    explicit CAction(CAudioParamRegistry& registry);
    CAction(const CAction&) = delete;
    CAction& operator=(const CAction&) = delete;
    ~CAction();

    /// What is assigned from here on is a step with this label.
    void record(const CString& label);
    /// Carries a program action out as a step with this label, or as a part of the step if there is one. If it could
    /// not be carried out as a whole, there is no step.
    void carryOut(const CString& label, std::unique_ptr<CProgramAction> programs);
    /// Drops the step if neither values nor the program that was to be replaced changed.
    void dropIdleStep();
    /// Assigns values; the name shown is no part of the step.
    void assign(const CAssignments& assignments);
    /// The current preset, its name or the bank changed.
    void noteProgram() { isProgramChanged_ = true; }
    /// Steps that speak of the programs of a bank end: a host replaced it.
    void endProgramSteps();

private:
    CAudioParamRegistry& registry_;
    std::unique_ptr<CAudioParamUndoStep> step_;  ///< null: nothing is recorded
    CProgramAction* programs_ = nullptr;         ///< of the step
    bool isProgramChanged_ = false;
    CAudioUndoAction::CTouched touched_;
};

/// The state that A/B holds beside the current one, with its program and its history.
struct CAudioParamRegistry::CAlternate : public CHeapObject {
    CAudioPreset preset;
    uint64_t programId = 0;
    CAudioParamUndoList history;
};

}  // namespace tarv
