#include "UI/Controls/Buttons/CButtonAB.h"

#include "Core/CObjectWatch.h"

namespace tarv {

namespace {

constexpr const char* kAlternate = "is-alternate";
constexpr const char* kLive = "live";
constexpr const char* kBState = "b-state";

CError* setOrUnset(CViewBaseState& view, const char* state, bool isSet) {
    return isSet ? view.setState(state) : view.unsetState(state);
}

}  // namespace

CError* CButtonAB::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CButtonAB::showLive>(kAlternate);
    return CButton::initClass(descriptor);
}

CError* CButtonAB::init() {
    TARV_TRY(CButton::init());
    const CString& given = getAttrString("plugin-control");
    if (CObject* control = findObject(given.isEmpty() ? CString("ui.plugin-control") : given)) {
        control->linkObserver(*this, kAlternate, kAlternate);
        TARV_TRY(setAttribute(kAlternate, CAttributeValue::fromBool(control->getAttrBool(kAlternate))));
    }
    return nullptr;
}

CError* CButtonAB::finishInit() {
    TARV_TRY(CButton::finishInit());
    TARV_TRY(initChilds());
    return showLive();
}

CError* CButtonAB::initChilds() {
    if (!findObjectOf<CView>(".labels")) {
        TARV_FAIL("@tarvstr_CButtonAB_initChilds_NoLabels Unable to find labels.");
    }
    if (!findObjectOf<CView>(".labels.a")) {
        TARV_FAIL("@tarvstr_CButtonAB_initChilds_NoLabelA Unable to find label A.");
    }
    if (!findObjectOf<CView>(".labels.b")) {
        TARV_FAIL("@tarvstr_CButtonAB_initChilds_NoLabelB Unable to find label B.");
    }
    return nullptr;
}

CError* CButtonAB::showLive() {
    if (state() != CObjectState::Finished) {
        return nullptr;
    }
    const bool isB = getAttrBool(kAlternate);
    const CObjectWatch watch(*this);
    CError* error = setOrUnset(*this, kBState, isB);
    for (const char* path : {".labels.a", ".labels.b"}) {
        auto* label = !error && watch.isAlive() ? findObjectOf<CView>(path) : nullptr;
        if (label) {
            error = setOrUnset(*label, kLive, isB == (label->name() == CString("b")));
        }
    }
    return error;
}

CString CButtonAB::readableValue() const {
    return isStateSet(kBState) ? "B" : "A";
}

}  // namespace tarv
