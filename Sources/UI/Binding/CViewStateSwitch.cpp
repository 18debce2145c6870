#include "UI/Binding/CViewStateSwitch.h"

#include "UI/Binding/CControlParam.h"
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
    return CControlParam::make(*this, param_);
}

CError* CViewStateSwitch::attrElement() {
    return CControlParam::updateElement(*this, param_);
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
