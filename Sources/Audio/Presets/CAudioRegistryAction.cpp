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
        registry_.undo_->tellIfChanged();
    }
    for (CAudioParam* param : touched_) {
        param->tellAll();
    }
    if (isProgramChanged_) {
        registry_.notifyBridges(kProgramUpdate);
    }
}

void CAudioParamRegistry::CAction::assign(const CAssignments& assignments) {
    for (const CAssignment& assignment : assignments) {
        CAudioParamData before;
        CAudioParamData after;
        if (registry_.collector_->assign(assignment, step_ ? &before : nullptr, step_ ? &after : nullptr)) {
            touched_.append(assignment.param);
            if (step_) {
                step_->add(*assignment.param, std::move(before), std::move(after));
            }
        }
    }
}

void CAudioParamRegistry::CAction::record(const CString& label, std::unique_ptr<CAudioUndoDeed> deed) {
    step_ = std::make_unique<CAudioParamUndoStep>(label);
    step_->deed = std::move(deed);
}

}  // namespace tarv
