#include "UI/Controls/Buttons/CReadOut.h"

#include <cmath>

#include "Audio/Converters/CAudioParamConverterFreq.h"
#include "Audio/Parameters/CAudioParamInfo.h"
#include "Core/CGlobalSettings.h"
#include "Core/CObjectWatch.h"
#include "UI/Binding/CControlParam.h"
#include "UI/Binding/CParamBridgeAudio.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Controls/Lists/CNumberFormat.h"
#include "UI/Text/CEditBox.h"

namespace tarv {

namespace {

constexpr const char* kNumberChars = "0123456789.-";

/// Null without a parameter whose values have come.
const CAudioParamInfo* infoOf(const CUIParam& param) {
    const auto* bridge = dynamic_cast<const CParamBridgeAudio*>(param.bridge());
    return bridge ? bridge->info() : nullptr;
}

const CAudioParamConverter* converterOf(const CUIParam& param) {
    return param.bridge() ? param.bridge()->converter() : nullptr;
}

/// A letter of ASCII in the other case; anything else as it is.
CString otherCase(const CString& character) {
    const uint16_t unit = character.at(0);
    const bool isUpper = unit >= 'A' && unit <= 'Z';
    const bool isLower = unit >= 'a' && unit <= 'z';
    CString result;
    result.appendChar(static_cast<uint16_t>(isUpper ? unit + 32 : isLower ? unit - 32 : unit));
    return isUpper || isLower ? result : character;
}

CString trimmed(const CString& text) {
    int32_t first = 0;
    int32_t behind = text.length();
    while (first < behind && text.at(first) == ' ') {
        ++first;
    }
    while (behind > first && text.at(behind - 1) == ' ') {
        --behind;
    }
    return text.substring(first, behind - first);
}

void addCharacters(CString& accepted, const CString& more) {
    for (int32_t i = 0; i < more.length(); ++i) {
        const CString character = more.substring(i, 1);
        for (const CString& added : {character, otherCase(character)}) {
            if (accepted.indexOf(added.at(0)) < 0) {
                accepted += added;
            }
        }
    }
}

}  // namespace

CReadOut::~CReadOut() {
    endInput();
}

CError* CReadOut::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CReadOut::attrElement>("element");
    descriptor.addHandler<&CReadOut::showValue>("format");
    descriptor.addHandler<&CReadOut::showValue>("format-id");
    return CTextView::initClass(descriptor);
}

CError* CReadOut::init() {
    TARV_TRY(CTextView::init());
    return CControlParam::isWanted(*this) ? CControlParam::make(*this, param_) : nullptr;
}

CError* CReadOut::finishInit() {
    TARV_TRY(CTextView::finishInit());
    const CUIParam* const param = valueParam();
    setInactive(param && !param->isActive());
    return showValue();
}

CUIParam* CReadOut::valueParam() const {
    return param_ ? param_ : dynamic_cast<CUIParam*>(findChild("ui-param"));
}

CError* CReadOut::attrElement() {
    return CControlParam::updateElement(*this, param_);
}

CError* CReadOut::onParamChanged(CUIParam&) {
    return showValue();
}

CError* CReadOut::onParamActivity(CUIParam& param) {
    if (state() == CObjectState::Finished) {
        setInactive(!param.isActive());
    }
    return nullptr;
}

void CReadOut::onParamRemoved(CUIParam& param) {
    param_ = &param == param_ ? nullptr : param_;
}

bool CReadOut::isNumber() const {
    const CUIParam* const param = valueParam();
    const CAudioParamInfo* const info = param ? infoOf(*param) : nullptr;
    return param && !(info && info->isString());
}

CString CReadOut::shownText() const {
    const CUIParam& param = *valueParam();
    const CString& format = getAttrString("format");
    if (!format.isEmpty() && isNumber()) {
        return CNumberFormat::text(format, param.getValue());
    }
    const CString& id = getAttrString("format-id");
    const bool isBrief = id == CString("brief");
    const bool isShort = isBrief || id == CString("knob-circle");
    CString text = param.getValueText(isShort ? CAudioTextMode::Short : CAudioTextMode::Full);
    static const CString kWholeThousands(".0k");
    if (isBrief && text.endsWith(kWholeThousands)) {
        text = text.substring(0, text.length() - kWholeThousands.length()) + "k";
    }
    const CString unit = id == CString("automation-string") ? param.unit() : CString();
    return unit.isEmpty() ? text : text + " " + unit;
}

CError* CReadOut::showValue() {
    const CUIParam* const param = valueParam();
    return param && param->isActive() ? setAttributePlain("title", shownText()) : nullptr;
}

CString CReadOut::editText(int32_t paragraph) const {
    const CUIParam* const param = valueParam();
    const bool isOfParam = param && param->bridge() && getAttrString("format").isEmpty();
    return isOfParam ? param->getValueText(CAudioTextMode::Full) : CTextView::editText(paragraph);
}

CTextEditRules CReadOut::editRules() const {
    CTextEditRules rules = CTextView::editRules();
    if (!isNumber()) {
        return rules;
    }
    if (rules.acceptChars.isEmpty()) {
        rules.acceptChars = kNumberChars;
    }
    addCharacters(rules.acceptChars, "+ ");
    const CUIParam& param = *valueParam();
    addCharacters(rules.acceptChars, param.unit());
    if (dynamic_cast<const CAudioParamConverterFreq*>(converterOf(param))) {
        addCharacters(rules.acceptChars, "k");
    }
    return rules;
}

CError* CReadOut::acceptText(int32_t paragraph, const CString& text, bool& isAccepted) {
    CUIParam* const param = valueParam();
    if (!param) {
        return CTextView::acceptText(paragraph, text, isAccepted);
    }
    CString typed = trimmed(text);
    if (typed.isEmpty()) {
        typed = getAttrString("default-value");
    }
    if (typed.isEmpty()) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    CError* error = param->setValueText(typed, isAccepted);
    if (error || !watch.isAlive() || !isAccepted) {
        return error;
    }
    CAttributeMap params;
    params["index"] = CAttributeValue::fromInt(0);
    params["text"] = CAttributeValue::fromPlainString(typed);
    return inputEvent("paragraph-text-changed", params);
}

CError* CReadOut::showHoverFrame(bool isShown) {
    CObject* found = findChild("hover-frame");
    found = found || !parent() ? found : parent()->findChild("hover-frame");
    auto* frame = dynamic_cast<CView*>(found);
    return frame && frame->getAttrBoolOr("is-visible", true) != isShown
               ? frame->setAttribute("is-visible", CAttributeValue::fromBool(isShown))
               : nullptr;
}

CError* CReadOut::mouseEnter(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = showHoverFrame(true);
    return error || !watch.isAlive() ? error : CTextView::mouseEnter(params);
}

CError* CReadOut::mouseExit(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = showHoverFrame(false);
    return error || !watch.isAlive() ? error : CTextView::mouseExit(params);
}

CError* CReadOut::mouseWheel(CAttributeMap& params) {
    CUIParam* const param = valueParam();
    if (!param || !param->isActive() || !param->bridge() || !isNumber() || !isEditable(-1)) {
        return CTextView::mouseWheel(params);
    }
    setHandled(params);
    if (editBox()) {
        return nullptr;
    }
    const double value = gesture_.value(*param);
    const double precision = params["is-shift"].asBool() ? globalSettings().shiftKeyPrecision.load() : 1.0;
    const double next = wheel_.turned(*param, param->getElement(), value, params["delta"].asReal(), precision);
    return next != value ? gesture_.notch(*param, next) : nullptr;
}

}  // namespace tarv
