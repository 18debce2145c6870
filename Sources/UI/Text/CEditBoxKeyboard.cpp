// The keyboard on the screen that an edit box opens where the settings want one.

#include "Platform/Keyboard.h"
#include "UI/Text/CEditBox.h"
#include "UI/Text/CVirtualKeyboard.h"

namespace tarv {

namespace {

constexpr const char* kAlphabet = "ui:virtual-keyboard-alphadigit";
constexpr const char* kDigits = "ui:virtual-keyboard-digit";
constexpr const char* kAlignment = "virtual-keyboard-alignment";
constexpr const char* kMinusChar = "virtual-keyboard-minus-char";

}  // namespace

void CEditBox::setKeyboard(CVirtualKeyboard* keyboard) {
    if (keyboard_ && keyboard_ != keyboard && keyboard) {
        keyboard_->leaveBox();
    }
    keyboard_ = keyboard;
}

bool CEditBox::wantsKeyboard() const {
    const CObject* settings = root()->findObject("ui.global-settings");
    return settings && (settings->getAttrBool("show-virtual-keyboard") || settings->getAttrBool("tablet-mode"));
}

/// Where the box stands by now, since the keyboard must not lie over it.
CError* CEditBox::openKeyboard() {
    const bool isAlphabet = owner_->getAttrBoolOr("is-virtual-keyboard-alphabet", !edit_.rules().isNumber());
    const CString& minus = owner_->getAttrString(kMinusChar);
    CAttributeMap params;
    params["is-popup-toggle-always-create"] = CAttributeValue::fromBool(true);
    params[kMinusChar] = CAttributeValue::fromString(minus.isEmpty() ? CString("-") : minus);
    if (!owner_->getAttrString(kAlignment).isEmpty()) {
        params["window-alignment"] = CAttributeValue::fromString(owner_->getAttrString(kAlignment));
    }
    return openPopup(isAlphabet ? kAlphabet : kDigits, params);
}

void CEditBox::closeKeyboard() {
    keyboardTicks_ = 0;
    if (CVirtualKeyboard* keyboard = keyboard_) {
        keyboard_ = nullptr;
        keyboard->leaveBox();
        TARV_CONSUME(keyboard->close());
    }
}

CError* CEditBox::pressVirtualKey(const CString& key) {
    bool isTaken = false;
    if (key == CString("Cancel")) {
        drop();
        return nullptr;
    }
    if (key == CString("Bkspace")) {
        return pressKey(kKeyBackspace, {}, {}, isTaken);
    }
    if (key == CString("Enter")) {
        return pressKey(kKeyEnter, {}, {}, isTaken);
    }
    return type(key == CString("Space") ? CString(" ") : key);
}

CError* CEditBox::virtualKeyPressed(CAttributeMap& params) {
    const auto found = params.find("key");
    return found == params.end() ? nullptr : pressVirtualKey(CString(found->second.asString()));
}

}  // namespace tarv
