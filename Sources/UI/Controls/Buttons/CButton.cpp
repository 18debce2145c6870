#include "UI/Controls/Buttons/CButton.h"

#include "Core/CKeptParams.h"
#include "UI/Binding/CControlParam.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Views/CDragInfo.h"
#include "UI/Views/CInputListener.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

namespace {

constexpr const char* kActive = "active";
// How long a press by a key shows.
constexpr double kKeyPressSeconds = 0.15;
constexpr size_t kDragParams = 4;

}  // namespace

CButton::~CButton() {
    endInput();
}

CError* CButton::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CButton::attrElement>("element");
    descriptor.addHandler<&CButton::attrInverse>("is-inverse");
    descriptor.addHandler<&CButton::attrShownColor>("shown-color");
    return CFrame::initClass(descriptor);
}

CError* CButton::init() {
    TARV_TRY(CFrame::init());
    hasLabelColor_ = hasAttr("label-color");
    linkObserver(*this, "color", "shown-color");
    TARV_TRY(attrShownColor());
    return CControlParam::isWanted(*this) ? CControlParam::make(*this, param_) : nullptr;
}

CError* CButton::finishInit() {
    TARV_TRY(CFrame::finishInit());
    updateActivity();
    return nullptr;
}

CError* CButton::attrElement() {
    return CControlParam::updateElement(*this, param_);
}

CError* CButton::attrInverse() {
    return showValue();
}

/// The text's colour goes with the button's.
CError* CButton::attrShownColor() {
    return hasLabelColor_ ? nullptr : setAttribute("label-color", getAttrString("color") + "Text");
}

CError* CButton::showValue() {
    if (!param_ || !param_->isActive()) {
        return nullptr;
    }
    const bool isOn = (param_->getValue() != 0.0) != getAttrBool("is-inverse");
    return isOn ? setState(kActive) : unsetState(kActive);
}

CError* CButton::onParamChanged(CUIParam& param) {
    return &param == param_ ? showValue() : nullptr;
}

CError* CButton::onParamActivity(CUIParam&) {
    if (state() == CObjectState::Finished) {
        updateActivity();
    }
    return nullptr;
}

void CButton::onParamRemoved(CUIParam& param) {
    param_ = &param == param_ ? nullptr : param_;
}

void CButton::updateActivity() {
    const auto isMissing = [](const CUIParam* param) { return param && !param->isActive(); };
    setInactive(isMissing(param_) || isMissing(dynamic_cast<const CUIParam*>(findChild("ui-param-activity"))));
}

CViewRole CButton::role() const {
    const CViewRole named = CViewReader::roleNamed(getAttrString("role"));
    if (named != CViewRole::None) {
        return named;
    }
    return param_ ? CViewRole::CheckBox : CViewRole::Button;
}

CString CButton::readableValue() const {
    return !param_ ? CString() : isStateSet(kActive) ? CString("on") : CString("off");
}

CError* CButton::released() {
    if (!param_) {
        return nullptr;
    }
    const CParamEdit edit = getAttrBool("is-undo-disabled") ? CParamEdit::unrecorded() : CParamEdit();
    return param_->setValue(param_->getValue() != 0.0 ? 0.0 : 1.0, edit);
}

/// The event of the button behind the view's own operation, which may have destroyed it.
CError* CButton::goOn(CError* error, const CObjectWatch& watch, const char* event, CAttributeMap& params) {
    return error || !watch.isAlive() ? error : inputEvent(event, params);
}

CError* CButton::mouseEnter(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    return goOn(CFrame::mouseEnter(params), watch, "button-enter", params);
}

CError* CButton::mouseExit(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    return goOn(CFrame::mouseExit(params), watch, "button-exit", params);
}

CError* CButton::mouseMove(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = CFrame::mouseMove(params);
    if (error || !watch.isAlive() || !isPressed_) {
        return error;
    }
    CKeptParams drag(*this, dragParams_, kDragParams);
    for (const char* modifier : {"is-alt", "is-ctrl", "is-shift"}) {
        drag.params[modifier] = params[modifier];
    }
    const double pixels = params["actual-x"].asReal() - pressX_ + pressY_ - params["actual-y"].asReal();
    drag.params["scale"] = CAttributeValue::fromReal(pixels);
    return inputEvent("button-drag", drag.params);
}

/// False for a press by a key.
bool CButton::isHeldByPointer() const {
    CInputListener* input = window() ? window()->input() : nullptr;
    return input && input->drag().view() == this;
}

CError* CButton::mousePress(CAttributeMap& params) {
    pressX_ = params["actual-x"].asReal();
    pressY_ = params["actual-y"].asReal();
    isPressed_ = true;
    const CObjectWatch watch(*this);
    CError* error = isHeldByPointer() ? nullptr : setStateTimed("temp-pushed", kKeyPressSeconds);
    return error || !watch.isAlive() ? error : CFrame::mousePress(params);
}

CError* CButton::mousePressR(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    return goOn(CFrame::mousePressR(params), watch, "button-pressed-r", params);
}

CError* CButton::mouseRelease(CAttributeMap& params) {
    isPressed_ = false;
    const CObjectWatch watch(*this);
    CError* error = released();
    if (!error && watch.isAlive()) {
        error = CFrame::mouseRelease(params);
    }
    return goOn(error, watch, "button-released", params);
}

CError* CButton::mouseReleaseR(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    return goOn(CFrame::mouseReleaseR(params), watch, "button-released-r", params);
}

CError* CButton::mouseCancel(CAttributeMap& params) {
    isPressed_ = false;
    return CFrame::mouseCancel(params);
}

CError* CButton::mouseCancelR(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    return goOn(CFrame::mouseCancelR(params), watch, "button-cancelled-r", params);
}

}  // namespace tarv
