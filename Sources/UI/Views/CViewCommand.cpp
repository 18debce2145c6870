#include "UI/Views/CViewCommand.h"

#include <optional>

#include "Core/CKeptParams.h"
#include "Core/CSharedAttribute.h"
#include "Core/Log.h"
#include "UI/Views/CViewBaseState.h"

namespace tarv {

namespace {

void logMissing(const CString& path, const CObject& command) {
    logLineIn(CString("Target not found: ") + path, command.fullName());
}

/// Absent, a flag is false; only views are visible by default.
bool readFlag(const CObject& object, const CString& name) {
    return object.getAttrBoolOr(name, name == CString("is-visible"));
}

CSharedAttribute* findSharedAttribute(const CObject& view, const CString& name) {
    CSharedAttribute* found = view.findObjectOf<CSharedAttribute>(name);
    for (const char* store : {"ui.global-data.", "ui.local-data.", "global-data.", "local-data."}) {
        found = found ? found : view.findObjectOf<CSharedAttribute>(CString(store) + name);
    }
    return found;
}

}  // namespace

CError* CViewCommand::run(CViewBaseState& view, const CAttributeMap& params) {
    if (isRunning_) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    isRunning_ = true;
    CError* error = runSteps(view, params);
    if (!watch.isAlive()) {
        return error;
    }
    isRunning_ = false;
    TARV_TRY(error);
    return nullptr;
}

CObject* CViewCommand::targetOf(CViewBaseState& view, const char* attribute) {
    const CString& path = getAttrString(attribute);
    if (path.isEmpty()) {
        return &view;
    }
    CObject* target = view.findObject(path);
    if (!target) {
        logMissing(path, *this);
    }
    return target;
}

/// A target that is missing has no states.
bool CViewCommand::areConditionsMet(const CViewBaseState* target) const {
    for (const CString& name : getAttrString("condition-state-set").split(' ')) {
        if (!target || !target->isStateSet(name)) {
            return false;
        }
    }
    for (const CString& name : getAttrString("condition-state-unset").split(' ')) {
        if (target && target->isStateSet(name)) {
            return false;
        }
    }
    return true;
}

CError* CViewCommand::runSteps(CViewBaseState& view, const CAttributeMap& params) {
    auto* target = dynamic_cast<CViewBaseState*>(targetOf(view, "state-target"));
    if (!areConditionsMet(target)) {
        return nullptr;
    }
    const CObjectWatch own(*this);
    const CObjectWatch ofView(view);
    std::optional<CObjectWatch> ofTarget;
    if (target) {
        ofTarget.emplace(*target);
    }
    const auto isAlive = [&] { return own.isAlive() && ofView.isAlive(); };
    CError* error = runEvent(view, params);
    if (!error && isAlive() && ofTarget && ofTarget->isAlive()) {
        error = changeStates(*target);
    }
    if (!error && isAlive()) {
        error = toggleAttribute(view);
    }
    if (!error && isAlive()) {
        error = resetSharedAttributes(view);
    }
    return error;
}

CError* CViewCommand::runEvent(CViewBaseState& view, const CAttributeMap& params) {
    const CString name(getAttrString("run-event"));
    if (name.isEmpty()) {
        return nullptr;
    }
    CObject* receiver = targetOf(view, "run-event-target");
    if (!receiver) {
        return nullptr;
    }
    const CString& path = getAttrString("run-event-params");
    const CObject* source = findObject(path.isEmpty() ? CString(".run-event-params") : path);
    if (!source && !path.isEmpty()) {
        logMissing(path, *this);
    }
    static const CAttributeMap none;
    const CAttributeMap& forwarded = getAttrBool("run-event-forward-params") ? params : none;
    const CAttributeMap& own = source ? source->attributes() : none;
    CKeptParams sent(*this, sent_, forwarded.size() + own.size());
    CKeptParams::dropAdded(sent.params, [&](const CString& given) {
        return forwarded.find(given) != forwarded.end() || own.find(given) != own.end();
    });
    for (const auto& attribute : forwarded) {
        sent.params[attribute.first] = attribute.second;
    }
    for (const auto& attribute : own) {
        if (attribute.first != CString("name") && attribute.first != CString("full-name")) {
            sent.params[attribute.first] = attribute.second;
        }
    }
    return deliverEvent(*receiver, name, sent.params);
}

CError* CViewCommand::changeStates(CViewBaseState& target) {
    const CObjectWatch own(*this);
    const CObjectWatch ofTarget(target);
    using CChange = CError* (CViewBaseState::*)(const CString&, CStateChange);
    constexpr std::pair<const char*, CChange> kSteps[] = {{"set-state", &CViewBaseState::setState},
                                                          {"unset-state", &CViewBaseState::unsetState},
                                                          {"toggle-state", &CViewBaseState::toggleState}};
    for (const auto& [attribute, change] : kSteps) {
        const CString names(getAttrString(attribute));
        CError* error = (target.*change)(names, CStateChange::Morphed);
        if (error || !own.isAlive() || !ofTarget.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

CError* CViewCommand::toggleAttribute(CViewBaseState& view) {
    const CString name(getAttrString("toggle-attr"));
    return name.isEmpty() ? nullptr : view.setAttribute(name, CAttributeValue::fromBool(!readFlag(view, name)));
}

/// A setting notifies its observers, which may destroy the command or the view.
CError* CViewCommand::resetSharedAttributes(CViewBaseState& view) {
    const CObjectWatch own(*this);
    const CObjectWatch ofView(view);
    for (const CString& name : CString(getAttrString("reset-shared-attr")).split(' ')) {
        CSharedAttribute* shared = findSharedAttribute(view, name);
        if (!shared) {
            logMissing(name, *this);
            continue;
        }
        const CObject& source = hasAttr("def-value") ? static_cast<const CObject&>(*this) : *shared;
        const CString value(source.getAttrString("def-value"));
        TARV_TRY(shared->setAttributePlain(CString(shared->getAttrString("attribute")), value));
        if (!own.isAlive() || !ofView.isAlive()) {
            return nullptr;
        }
    }
    return nullptr;
}

}  // namespace tarv
