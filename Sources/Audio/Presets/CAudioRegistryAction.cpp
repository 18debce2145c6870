#include "Audio/Presets/CAudioRegistryAction.h"

#include <utility>

namespace tarv {

CAudioParamRegistry::CAction::CAction(CAudioParamRegistry& registry) : registry_(registry) {
    if (registry_.undo_) {
        registry_.undo_->lock().enter();
    }
    registry_.bankLock_.enter();
}

CAudioParamRegistry::CAction::~CAction() {
    registry_.bankLock_.leave();
    if (registry_.undo_) {
        if (step_) {
            registry_.undo_->addStep(std::move(step_), true);
        }
        registry_.undo_->lock().leave();
        registry_.undo_->notifyIfChanged();
    }
    for (CAudioParam* param : touched_.params) {
        param->notifyAll();
    }
    if (isProgramChanged_ || !touched_.observers.isEmpty()) {
        registry_.notifyBridges(kProgramUpdate);
    }
}

void CAudioParamRegistry::CAction::assign(const CAssignments& assignments) {
    for (const CAssignment& assignment : assignments) {
        const bool isOfStep = step_ && assignment.param != registry_.nameParam_;
        CAudioParamData before;
        CAudioParamData after;
        if (registry_.collector_->assign(assignment, isOfStep ? &before : nullptr, isOfStep ? &after : nullptr)) {
            touched_.add(*assignment.param);
            if (isOfStep) {
                step_->add(*assignment.param, before, after);
            }
        }
    }
}

void CAudioParamRegistry::CAction::record(const CString& label) {
    step_ = std::make_unique<CAudioParamUndoStep>(label);
}

void CAudioParamRegistry::CAction::carryOut(const CString& label, std::unique_ptr<CProgramAction> programs) {
    if (programs->carryOut(touched_)) {
        record(label);
        programs_ = programs.get();
        step_->action = std::move(programs);
    }
}

void CAudioParamRegistry::CAction::dropIdleStep() {
    registry_.captureCurrent();
    if (programs_ && step_->values.empty() && programs_->isIdle()) {
        programs_ = nullptr;
        step_.reset();
    }
}

void CAudioParamRegistry::CAction::endProgramSteps() {
    if (registry_.undo_) {
        registry_.undo_->endActions(registry_.alternate_ ? &registry_.alternate_->history : nullptr);
    }
}

}  // namespace tarv
