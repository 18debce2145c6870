#include "UI/Binding/CUIParam.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Core/CObjectWatch.h"
#include "Core/CSharedAttribute.h"
#include "UI/Binding/CParamBridge.h"
#include "UI/Binding/CParamGroupSelector.h"
#include "UI/Binding/CUIParamUpdateHandler.h"

namespace tarv {

namespace {

/// A flag that is true is 1.0, a text that is no number 0.0.
double numberOf(const CObject& object, const char* attribute) {
    return object.getAttrBool(attribute) ? 1.0 : object.getAttrReal(attribute);
}

}  // namespace

CUIParam::~CUIParam() {
    if (bridge_) {
        bridge_->removeParam(*this);
    }
    if (handler_) {
        handler_->params_.removeAt(handler_->params_.indexOf(this));
        handler_->onParamRemoved(*this);
    }
}

CError* CUIParam::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CUIParam::attrElement>("element");
    descriptor.addHandler<&CUIParam::valueChanged>("shared-attribute-value");
    descriptor.addHandler<&CUIParam::groupChanged>(CParamGroupSelector::kChangeEvent);
    return nullptr;
}

CError* CUIParam::init() {
    TARV_TRY(CObject::init());
    handler_ = dynamic_cast<CUIParamUpdateHandler*>(parent());
    if (!handler_) {
        TARV_FAIL("@tarvstr_CUIParam_init_InvalidParent Parent object does not support ui-param.");
    }
    handler_->params_.append(this);
    TARV_TRY(bindBridge());
    TARV_TRY(bindGroupSelector());
    TARV_TRY(bindSharedAttribute());
    return nullptr;
}

CError* CUIParam::bindBridge() {
    const CString& path = getAttrString("bridge");
    if (path.isEmpty()) {
        return nullptr;
    }
    bridge_ = findObjectOf<CParamBridge>(path);
    if (!bridge_) {
        TARV_FAIL("@tarvstr_CUIParam_init_NoBridge Invalid parameter bridge object '%1'.", path);
    }
    bridge_->addParam(*this);
    return nullptr;
}

CError* CUIParam::bindGroupSelector() {
    const CString& path = getAttrString("group-selector");
    if (path.isEmpty()) {
        return nullptr;
    }
    const auto* selector = findObjectOf<CParamGroupSelector>(path);
    if (!selector) {
        TARV_FAIL("@tarvstr_CUIParam_init_NoGroupSelector Invalid parameter group selector '%1'.", path);
    }
    group_ = selector->groupIndex();
    listenObject(selector->fullName(), CParamGroupSelector::kChangeEvent, CParamGroupSelector::kChangeEvent);
    return nullptr;
}

CError* CUIParam::bindSharedAttribute() {
    const CString& path = getAttrString("shared-attribute");
    if (path.isEmpty() || bridge_) {
        return nullptr;
    }
    shared_ = findObjectOf<CSharedAttribute>(path);
    if (!shared_) {
        TARV_FAIL("@tarvstr_CUIParam_init_NoSharedAttribute Invalid parameter shared attribute '%1'.", path);
    }
    if (!hasAttr("shared-attribute-value")) {
        const CString& attribute = shared_->getAttrString("attribute");
        shared_->linkObserver(*this, attribute, "shared-attribute-value");
        TARV_TRY(setAttributePlain("shared-attribute-value", shared_->getAttrString(attribute)));
    }
    return nullptr;
}

CError* CUIParam::finishInit() {
    TARV_TRY(CObject::finishInit());
    isStarted_ = true;
    return setActive(shared_ || (bridge_ && bridge_->isActive()));
}

CError* CUIParam::attrElement() {
    const int32_t element = getAttrInt("element");
    const bool isOther = element != element_;
    element_ = element;
    return moved(isOther);
}

CError* CUIParam::groupChanged(CAttributeMap& params) {
    const int32_t group = params["index"].asInt();
    const bool isOther = bridge_ && bridge_->storedGroup(group) != bridge_->storedGroup(group_);
    group_ = group;
    return moved(isOther);
}

CError* CUIParam::moved(bool isOther) {
    const CObjectWatch watch(*this);
    if (isOther && bridge_) {
        bridge_->paramMoved(*this);
    }
    return watch.isAlive() ? valueChanged() : nullptr;
}

CError* CUIParam::call(COperation operation) {
    return isStarted_ && handler_ ? (handler_->*operation)(*this) : nullptr;
}

CError* CUIParam::setActive(bool isActive) {
    if (!isStarted_ || isActive == isActive_) {
        return nullptr;
    }
    isActive_ = isActive;
    const CObjectWatch watch(*this);
    CError* error = setAttribute("is-active", CAttributeValue::fromBool(isActive));
    for (const COperation operation :
         {&CUIParamUpdateHandler::onParamActivity, &CUIParamUpdateHandler::onParamRangeChanged,
          &CUIParamUpdateHandler::onParamChanged}) {
        if (error || !watch.isAlive()) {
            return error;
        }
        const bool isMeant = isActive_ || operation == &CUIParamUpdateHandler::onParamActivity;
        error = isMeant ? call(operation) : nullptr;
    }
    return error;
}

CError* CUIParam::rangeChanged() {
    return isActive_ ? call(&CUIParamUpdateHandler::onParamRangeChanged) : nullptr;
}

CError* CUIParam::valueChanged() {
    return isActive_ ? call(&CUIParamUpdateHandler::onParamChanged) : nullptr;
}

void CUIParam::bridgeGone() {
    bridge_ = nullptr;
    TARV_CONSUME(setActive(false));
}

int32_t CUIParam::getElement() const {
    return element_;
}

CString CUIParam::getValueText(CAudioTextMode mode) const {
    if (bridge_) {
        return bridge_->valueText(group(), getElement(), mode);
    }
    return shared_ ? getAttrString("shared-attribute-value") : CString();
}

double CUIParam::getValue() const {
    if (bridge_) {
        return bridge_->value(group(), getElement());
    }
    return shared_ ? numberOf(*this, "shared-attribute-value") : 0.0;
}

bool CUIParam::defaultValue(int32_t offset, double& value) const {
    if (bridge_) {
        value = isActive_ ? bridge_->defaultValue(element_ + offset) : 0.0;
        return isActive_;
    }
    bool isNumber = false;
    value = shared_ ? CString::toDouble(shared_->getAttrString("def-value"), &isNumber) : 0.0;
    return isActive_ && isNumber && offset == 0;
}

int32_t CUIParam::followedElements() const {
    return handler_ ? handler_->followedElements(*this) : 1;
}

CError* CUIParam::setValue(double value, const CParamEdit& edit) {
    if (!isActive_) {
        return nullptr;
    }
    if (bridge_) {
        return bridge_->setValues(group(), getElement(), &value, 1, false, edit);
    }
    if (!shared_->range().isEmpty()) {
        value = std::clamp(value, minimum(), maximum());
    }
    // A flag reads whole numbers alone.
    const bool isWhole = value == std::round(value) && std::fabs(value) <= std::numeric_limits<int32_t>::max();
    return shared_->setAttribute(
        shared_->getAttrString("attribute"),
        isWhole ? CAttributeValue::fromInt(static_cast<int32_t>(value)) : CAttributeValue::fromReal(value));
}

CError* CUIParam::setValueText(const CString& text, bool& isTaken, const CParamEdit& edit) {
    isTaken = false;
    if (!isActive_) {
        return nullptr;
    }
    if (bridge_) {
        return bridge_->setText(group(), getElement(), text, isTaken, edit);
    }
    const CString number = CAudioParamConverter::typedNumber(text, {});
    const double value = CString::toDouble(number, &isTaken);
    isTaken = isTaken && !number.isEmpty();
    return isTaken ? setValue(value) : nullptr;
}

CError* CUIParam::reset(const CParamEdit& edit) {
    if (shared_ && isActive_) {
        return shared_->setAttributePlain(shared_->getAttrString("attribute"), shared_->getAttrString("def-value"));
    }
    return setValue(defaultValue(), edit);
}

double CUIParam::defaultValue() const {
    if (bridge_) {
        return bridge_->defaultValue(getElement());
    }
    return shared_ ? numberOf(*shared_, "def-value") : 0.0;
}

CString CUIParam::unit() const {
    return bridge_ ? bridge_->unit() : CString();
}

double CUIParam::minimum() const {
    return bridge_ ? bridge_->minimum() : shared_ ? shared_->range().minimum : 0.0;
}

double CUIParam::maximum() const {
    return bridge_ ? bridge_->maximum() : shared_ ? shared_->range().maximum : 0.0;
}

}  // namespace tarv
