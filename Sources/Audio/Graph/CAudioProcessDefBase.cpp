#include "Audio/Graph/CAudioProcessDefBase.h"

#include <algorithm>

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

bool CAudioProcessDefBase::mayRemap(const CString& end) const {
    return std::any_of(remaps_.begin(), remaps_.end(),
                       [&](const CAudioParamRemapDef* remap) { return remap->origName().endsWith(end); });
}

const CAudioParamRemapDef* CAudioProcessDefBase::findRemap(const CString& orig) const {
    for (const CAudioParamRemapDef* remap : remaps_) {
        if (remap->origName() == orig) {
            return remap;
        }
    }
    return nullptr;
}

}  // namespace tarv
