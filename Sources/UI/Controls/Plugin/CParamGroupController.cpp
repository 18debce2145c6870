#include "UI/Controls/Plugin/CParamGroupController.h"

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Core/CObjectWatch.h"
#include "UI/Binding/CParamBridge.h"
#include "UI/Binding/CParamGesture.h"
#include "UI/Binding/CParamGroupSelector.h"

namespace tarv {

CError* CParamGroupController::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CParamGroupController::copyGroup>("copy-group");
    descriptor.addHandler<&CParamGroupController::copyGroup>("popup-result");
    descriptor.addHandler<&CParamGroupController::resetGroup>("reset-group");
    descriptor.addHandler<&CParamGroupController::groupChanged>(CParamGroupSelector::kChangeEvent);
    return nullptr;
}

CError* CParamGroupController::init() {
    TARV_TRY(CObject::init());
    const CString& client = getAttrString("interface-client");
    if (!findObjectOf<CAudioInterfaceClient>(client)) {
        TARV_FAIL("@tarvstr_CParamGroupController_init_NoInterfaceClient No interfacing object '%1' found.", client);
    }
    const CString& path = getAttrString("group-selector");
    selector_ = findObjectOf<CParamGroupSelector>(path);
    if (!selector_) {
        TARV_FAIL("@tarvstr_CParamGroupController_init_NoGroupSelector No group selector object '%1' found.", path);
    }
    listenObject(selector_->fullName(), CParamGroupSelector::kChangeEvent, CParamGroupSelector::kChangeEvent);
    return nullptr;
}

CError* CParamGroupController::finishInit() {
    TARV_TRY(CObject::finishInit());
    for (const CObject* item : children()) {
        const CString& path = item->getAttrString("bridge");
        if (!item->findObjectOf<CParamBridge>(path)) {
            TARV_FAIL("@tarvstr_CParamGroupController_init_NoBridge Invalid parameter bridge object '%1'.", path);
        }
    }
    return groupChanged();
}

CError* CParamGroupController::groupChanged() {
    return setAttribute("group-index", CAttributeValue::fromInt(selector_->groupIndex()));
}

CArray<CParamBridge*, 4> CParamGroupController::bridges(CAction action) const {
    CArray<CParamBridge*, 4> found;
    for (const CObject* item : children()) {
        auto* bridge = item->findObjectOf<CParamBridge>(item->getAttrString("bridge"));
        const bool isMeant = action == CAction::Copy || !item->getAttrBool("is-reset-disabled");
        if (bridge && bridge->isActive() && isMeant) {
            found.append(bridge);
        }
    }
    return found;
}

CString CParamGroupController::groupName(int32_t group) const {
    const auto* client = findObjectOf<CAudioInterfaceClient>(getAttrString("interface-client"));
    return client ? client->groupName(group) : CString::fromInt(group + 1);
}

CError* CParamGroupController::copyGroup(CAttributeMap& params) {
    const int32_t group = selector_->groupIndex();
    const int32_t target = params["index"].asInt();
    const CArray<CParamBridge*, 4> copied = bridges(CAction::Copy);
    if (copied.isEmpty() || target == group || target < 0 || target >= copied[0]->groupCount()) {
        return nullptr;
    }
    return carryOut(CAction::Copy, target, CString("Group ") + groupName(group) + " to " + groupName(target) + " copy");
}

CError* CParamGroupController::resetGroup() {
    const int32_t group = selector_->groupIndex();
    return carryOut(CAction::Reset, group, CString("Group ") + groupName(group) + " reset");
}

CError* CParamGroupController::carryOut(CAction action, int32_t target, const CString& label) {
    const CArray<CParamBridge*, 4> changed = bridges(action);
    const int32_t group = selector_->groupIndex();
    const bool isRecorded = !getAttrBool("is-undo-disabled");
    if (changed.isEmpty()) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    CParamGesture gesture;
    if (isRecorded) {
        TARV_TRY(gesture.begin(*changed[0], label));
    }
    CError* error = nullptr;
    for (int32_t i = 0; i < changed.count() && watch.isAlive() && !error; ++i) {
        const CParamEdit edit = isRecorded ? gesture.edit(*changed[i]) : CParamEdit::unrecorded();
        error =
            action == CAction::Copy ? changed[i]->copyGroup(group, target, edit) : changed[i]->resetGroup(group, edit);
    }
    CError* atEnd = gesture.isActive() ? gesture.end() : nullptr;
    if (error) {
        TARV_CONSUME(atEnd);
        return error;
    }
    return atEnd;
}

}  // namespace tarv
