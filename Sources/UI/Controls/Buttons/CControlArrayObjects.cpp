// What the controls of an array show.

#include <cmath>
#include <limits>

#include "Core/CObjectWatch.h"
#include "UI/Binding/CParamBridge.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Controls/Buttons/CControlArray.h"

namespace tarv {

namespace {

/// A whole number is read as one.
CAttributeValue numberOf(double value) {
    const bool isWhole = value == std::round(value) && std::fabs(value) <= std::numeric_limits<int32_t>::max();
    return isWhole ? CAttributeValue::fromInt(static_cast<int32_t>(value)) : CAttributeValue::fromReal(value);
}

}  // namespace

double CControlArray::valueOf(int32_t index) const {
    const CUIParam* const param = params_[Values];
    return param ? gesture_.value(*param, index) : 0.0;
}

/// A text of one for all, or of one each.
CString CControlArray::listed(const char* attribute, int32_t index) const {
    const CArray<CString, 4> all = getAttrString(attribute).split(separator());
    return all.isEmpty() ? CString() : all[index < all.count() ? index : all.count() - 1];
}

CValueList::CItem CControlArray::titleOf(int32_t index) const {
    if (const CValueList* const titles = list("object-title-list")) {
        return index < titles->count() ? (*titles)[index] : CValueList::CItem();
    }
    const CArray<CString, 4> all = getAttrString("object-title-list").split(separator());
    return {index < all.count() ? all[index] : CString()};
}

/// What the value of a control is called.
CValueList::CItem CControlArray::valueItemOf(int32_t index) const {
    const CUIParam* const param = params_[Values];
    if (!param || !param->isActive()) {
        return {};
    }
    if (const CValueList* const values = list("object-value-list")) {
        return values->itemOf(valueOf(index));
    }
    const CString text =
        param->bridge() ? param->bridge()->valueText(param->group(), param->getElement() + index, CAudioTextMode::Full)
                        : param->getValueText(CAudioTextMode::Full);
    return {CViewReader::withMarks(text), valueOf(index)};
}

CError* CControlArray::updateObjects() {
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < objects_.count(); ++i) {
        CError* error = updateObject(i);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

CError* CControlArray::updateObject(int32_t index) {
    const CValueList::CItem title = titleOf(index);
    const CValueList::CItem value = valueItemOf(index);
    const CUIParam* const chosen = params_[Selected];
    const bool isSelected = chosen && chosen->isActive() && chosen->getValue() == index;
    const bool isHidden = getAttrBool("is-hide-reserve") && title.title == CString(CValueList::kReserveTitle);
    CAttributeMap wanted;
    wanted["object-title"] = CAttributeValue::fromString(title.title);
    wanted["object-value"] = numberOf(valueOf(index));
    if (!params_[Values] || params_[Values]->isActive()) {
        wanted["object-value-title"] = CAttributeValue::fromString(value.title);
    }
    wanted["selected-object"] = CAttributeValue::fromBool(isSelected);
    for (const auto& [attribute, name] : {std::pair{"object-color", "color"}, {"object-text-color", "text-color"}}) {
        if (!getAttrString(attribute).isEmpty()) {
            wanted[name] = CAttributeValue::fromString(listed(attribute, index));
        }
    }
    if (isHidden || objects_[index]->hasAttr("is-visible")) {
        wanted["is-visible"] = CAttributeValue::fromBool(!isHidden);
    }
    return showObject(*objects_[index], wanted, value.isDimmed || title.isDimmed, isSelected);
}

CError* CControlArray::showObject(CView& shown, CAttributeMap& wanted, bool isDimmed, bool isSelected) {
    const CObjectWatch watch(shown);
    bool isOther = false;
    for (const auto& [name, value] : wanted) {
        const auto current = shown.attributes().find(name);
        if (current != shown.attributes().end() && current->second.asString() == value.asString()) {
            continue;
        }
        isOther = true;
        CError* error = shown.setAttribute(name, value);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    CError* error = showState(shown, "dimmed", isDimmed);
    if (!error && watch.isAlive() && params_[Selected]) {
        error = showState(shown, "active", isSelected);
    }
    if (error || !watch.isAlive() || !isOther) {
        return error;
    }
    for (const char* name : {"object-index", "object-index-incr"}) {
        wanted[name] = shown.attributes().find(name)->second;
    }
    return deliverEvent(shown, "object-update", wanted);
}

CError* CControlArray::showState(CView& shown, const char* name, bool isSet) const {
    CView* const target = statePath_.isEmpty() ? &shown : shown.findObjectOf<CView>(statePath_);
    return !target ? nullptr : isSet ? target->setState(name) : target->unsetState(name);
}

}  // namespace tarv
