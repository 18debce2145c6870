#include "Audio/Presets/CAudioUndoAction.h"

namespace tarv {

void CAudioUndoAction::CTouched::add(CAudioParam& param) {
    if (params.indexOf(&param) < 0) {
        params.append(&param);
    }
}

void CAudioUndoAction::CTouched::add(CObserver& observer) {
    if (observers.indexOf(&observer) < 0) {
        observers.append(&observer);
    }
}

void CAudioUndoAction::CTouched::notify() const {
    for (CAudioParam* param : params) {
        param->notifyAll();
    }
    for (CObserver* observer : observers) {
        observer->actionsMoved();
    }
}

}  // namespace tarv
