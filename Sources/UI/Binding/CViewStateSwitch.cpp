#include "UI/Binding/CViewStateSwitch.h"

#include "UI/Binding/CUIParam.h"
#include "UI/Views/CViewBaseState.h"

namespace tarv {

CError* CViewStateSwitch::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CViewStateSwitch::attrElement>("element");
    return nullptr;
}

CError* CViewStateSwitch::init() {
    TARV_TRY(CObject::init());
    view_ = dynamic_cast<CViewBaseState*>(parent());
    if (!view_) {
        TARV_FAIL("@tarvstr_CViewStateSwitch_init_InvalidParent Parent object is not a view.");
    }
    CAttributeMap attributes;
    for (const char* name : {"bridge", "group-selector"}) {
        // A path that begins here means another object one step below.
        const CString& path = getAttrString(name);
        const CObject* object = findObject(path);
        attributes[name] = CAttributeValue::fromString(object ? object->fullName() : path);
    }
    attributes["element"] = CAttributeValue::fromInt(getAttrInt("element"));
    return createChildOf(param_, "ui:ui-param", "param", false, &attributes);
}

CError* CViewStateSwitch::attrElement() {
    return param_ ? param_->setAttribute("element", CAttributeValue::fromInt(getAttrInt("element"))) : nullptr;
}

CError* CViewStateSwitch::onParamChanged(CUIParam& param) {
    const CString& name = getAttrString("state-name");
    return param.getValue() != 0.0 ? view_->setState(name, CStateChange::AtOnce)
                                   : view_->unsetState(name, CStateChange::AtOnce);
}

void CViewStateSwitch::onParamRemoved(CUIParam&) {
    param_ = nullptr;
}

}  // namespace tarv
