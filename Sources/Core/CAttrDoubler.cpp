#include "Core/CAttrDoubler.h"

#include "Core/CObjectWatch.h"

namespace tarv {

CError* CAttrDoubler::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CAttrDoubler::valueChanged>("value");
    return nullptr;
}

CError* CAttrDoubler::init() {
    TARV_TRY(CObject::init());
    targets_ = getAttrString("target").split(' ');
    if (targets_.isEmpty()) {
        TARV_FAIL("@tarvstr_CAttrDoubler_init_NoTargets No target objects specified.");
    }
    for (const CString& path : targets_) {
        if (!findObject(path)) {
            TARV_FAIL("@tarvstr_CAttrDoubler_init_NoTarget Target object '%1' not found.", path);
        }
    }
    return nullptr;
}

CError* CAttrDoubler::valueChanged() {
    // Targets may lead back here, by another of this class or by themselves.
    if (isCopying_) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    isCopying_ = true;
    const CAttributeValue value = attributes().at("value");
    const CString attr = getAttrString("attr");
    CError* error = nullptr;
    for (int32_t i = 0; i < targets_.count() && !error; ++i) {
        // By the path each time, since an object that stood there may have died.
        CObject* target = findObject(targets_[i]);
        error = target ? target->setAttribute(this, attr, value) : nullptr;
        if (!watch.isAlive()) {
            return error;
        }
    }
    isCopying_ = false;
    return error ? addErrorLocation(error, __FILE__, __LINE__, fullName(), CString()) : nullptr;
}

}  // namespace tarv
