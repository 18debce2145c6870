#include "Audio/Graph/CAudioProcessDef.h"

#include "Audio/Graph/CAudioProcess.h"
#include "Audio/Graph/CAudioProcessBypassStateDef.h"
#include "Audio/Graph/CAudioProcessLinkDef.h"

namespace tarv {

CError* CAudioProcessDef::init() {
    TARV_TRY(CAudioProcessDefBase::init());
    isAutoLinks_ = getAttrBoolOr("is-auto-links", true);
    return nullptr;
}

CError* CAudioProcessDef::finishInit() {
    TARV_TRY(CAudioProcessDefBase::finishInit());
    // Links are resolved only now, so that a link may stand before the processes that it names.
    for (CAudioProcessLinkDef* link : links_) {
        TARV_TRY(link->resolve(*this));
    }
    return nullptr;
}

CAudioProcessBase* CAudioProcessDef::createProcess() const {
    return new CAudioProcess;
}

void CAudioProcessDef::sortChild(CObject* child, const CString& prefix) {
    if (const auto* def = dynamic_cast<const CAudioProcessDefBase*>(child)) {
        childDefs_.append(def);
        childNames_[child->name()] = def;
        if (def->isMultiband()) {
            multibandDefs_.append(def);
        }
        if (def->isPrototype()) {
            prototypeDefs_.append(def);
        }
    } else if (auto* link = dynamic_cast<CAudioProcessLinkDef*>(child)) {
        links_.append(link);
    } else if (const auto* state = dynamic_cast<const CAudioProcessBypassStateDef*>(child)) {
        bypassStates_.append(state);
    } else {
        CAudioProcessDefBase::sortChild(child, prefix);
    }
}

const CAudioProcessDefBase* CAudioProcessDef::findChildDef(const CString& name) const {
    const auto found = childNames_.find(name);
    return found == childNames_.end() ? nullptr : found->second;
}

const CAudioParamDef* CAudioProcessDef::findParamBelow(const CString& name) const {
    if (const CAudioParamDef* own = findParam(name)) {
        return own;
    }
    const int32_t dot = name.indexOf('.');
    const CAudioProcessDefBase* child = dot >= 0 ? findChildDef(name.substring(0, dot)) : nullptr;
    return child != nullptr ? child->findParamBelow(name.substring(dot + 1)) : nullptr;
}

bool CAudioProcessDef::isChained(const CAudioLinkEnd& src, const CAudioLinkEnd& dst) const {
    if (!isAutoLinks_ || src.port != 0 || dst.port != 0) {
        return false;
    }
    const CAudioProcessDefBase* previous = nullptr;
    for (const CAudioProcessDefBase* child : childDefs_) {
        if (child->isPrototype() || child->isOutOfOrder()) {
            continue;
        }
        if (src.child == previous && dst.child == child) {
            return true;
        }
        previous = child;
    }
    return src.child == previous && dst.child == nullptr;
}

const CAudioProcessBypassStateDef* CAudioProcessDef::findBypassState(int32_t id) const {
    for (const CAudioProcessBypassStateDef* state : bypassStates_) {
        if (state->id() == id) {
            return state;
        }
    }
    return nullptr;
}

}  // namespace tarv
