#include "Audio/Presets/CAudioRegistryAction.h"

#include <utility>

namespace tarv {

CAudioRegistryAction::CAudioRegistryAction(CAudioSessionBank& session, CAudioParamUndo* undo)
    : session_(session), undo_(undo) {
    if (undo_) {
        undo_->lock().enter();
    }
    session_.lock().enter();
}

CAudioRegistryAction::~CAudioRegistryAction() {
    session_.lock().leave();
    if (undo_) {
        if (step_) {
            undo_->addStep(std::move(step_), true);
        }
        undo_->lock().leave();
        undo_->notifyIfChanged();
    }
    if (isProgramChanged_) {
        touched_.add(session_.observer());
    }
    touched_.notify();
}

void CAudioRegistryAction::assign(const CAssignments& assignments) {
    for (const CAudioParamCollector::CAssignment& assignment : assignments) {
        CAudioParam& param = *assignment.param;
        const bool isOfStep = step_ && &param != session_.nameParam();
        CAudioParamData before;
        CAudioParamData after;
        if (param.collector().assign(assignment, isOfStep ? &before : nullptr, isOfStep ? &after : nullptr)) {
            touched_.add(param);
            if (isOfStep) {
                step_->add(param, before, after);
            }
        }
    }
}

void CAudioRegistryAction::record(const CString& label) {
    step_ = std::make_unique<CAudioParamUndoStep>(label);
}

void CAudioRegistryAction::perform(const CString& label, std::unique_ptr<CAudioProgramAction> programs) {
    if (programs->perform(touched_)) {
        record(label);
        programs_ = programs.get();
        step_->action = std::move(programs);
    }
}

void CAudioRegistryAction::dropIdleStep() {
    if (!programs_ || !step_->values.empty()) {
        return;
    }
    session_.captureCurrent();
    if (programs_->isIdle()) {
        programs_ = nullptr;
        step_.reset();
    }
}

}  // namespace tarv
