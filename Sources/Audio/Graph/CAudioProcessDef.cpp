#include "Audio/Graph/CAudioProcessDef.h"

#include "Audio/Graph/CAudioProcess.h"
#include "Audio/Graph/CAudioProcessLinkDef.h"
#include "Audio/Graph/CAudioProcessMB.h"
#include "Audio/Graph/CAudioProcessStack.h"
#include "Audio/Parameters/CAudioParamDef.h"

namespace tarv {

CError* CAudioProcessDefBase::init() {
    TARV_TRY(CObject::init());
    multibandFreqParam_ = getAttrString("multiband-freq-param");
    multibandCountParam_ = getAttrString("multiband-count-param");
    stackParam_ = getAttrString("stack-param");
    isStacked_ = getAttrBool("is-stacked");
    isSmoothUpdate_ = getAttrBool("is-smooth-update");
    stackIndexShift_ = getAttrInt("stack-index-shift");
    if (stackIndexShift_ < 0) {
        TARV_FAIL(
            "@tarvstr_CAudioProcessDefBase_init_InvalidStackIndexShift Invalid stack index shift value '%1' specified.",
            getAttrString("stack-index-shift"));
    }
    isMultiband_ = getAttrBool("is-multiband");
    isWhole_ = getAttrBool("is-whole");
    isTerminalWhole_ = getAttrBool("is-terminal-whole");
    isGrouped_ = getAttrBool("is-grouped");
    isPrototype_ = getAttrBool("is-prototype");
    isOutOfOrder_ = getAttrBool("is-outoforder");
    isGroup0_ = getAttrBool("is-group0");
    isElement0_ = getAttrBool("is-element0");
    bypassStateId_ = getAttrIntOr("bypass-state-id", -1);
    useTimeShift_ = getAttrBoolOr("use-time-shift", true);
    isWeightedInput_ = getAttrBool("is-weighted-input");
    return nullptr;
}

CError* CAudioProcessDefBase::finishInit() {
    TARV_TRY(CObject::finishInit());
    sortChildren(*this, CString());
    return nullptr;
}

void CAudioProcessDefBase::sortChildren(const CObject& owner, const CString& prefix) {
    for (CObject* child : owner.children()) {
        sortChild(child, prefix);
    }
}

void CAudioProcessDefBase::sortChild(CObject* child, const CString& prefix) {
    if (const auto* param = dynamic_cast<const CAudioParamDef*>(child)) {
        params_.append({prefix + child->name(), param});
    } else if (const auto* alloc = dynamic_cast<const CAudioParamAllocDef*>(child)) {
        allocs_.append(alloc);
    } else if (const auto* remap = dynamic_cast<const CAudioParamRemapDef*>(child)) {
        remaps_.append(remap);
    } else if (child->tag() == "core:object") {
        sortChildren(*child, prefix + child->name() + ".");
    }
}

CAudioProcessBase* CAudioProcessDefBase::instantiate() const {
    if (isMultiband_) {
        return new CAudioProcessMB;
    }
    if (isStacked_) {
        return new CAudioProcessStack;
    }
    return createProcess();
}

const CAudioParamAllocDef* CAudioProcessDefBase::allocAt(int32_t index) const {
    for (const CAudioParamAllocDef* alloc : allocs_) {
        if (alloc->index() == index) {
            return alloc;
        }
    }
    return nullptr;
}

const CAudioParamDef* CAudioProcessDefBase::findParam(const CString& localName) const {
    for (const CParam& param : params_) {
        if (param.name == localName) {
            return param.def;
        }
    }
    return nullptr;
}

const CAudioParamRemapDef* CAudioProcessDefBase::findRemap(const CString& orig) const {
    for (const CAudioParamRemapDef* remap : remaps_) {
        if (remap->origName() == orig) {
            return remap;
        }
    }
    return nullptr;
}

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
