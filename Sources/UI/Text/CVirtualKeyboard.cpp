#include "UI/Text/CVirtualKeyboard.h"

#include "Core/CObjectWatch.h"
#include "UI/Text/CEditBox.h"

namespace tarv {

namespace {

constexpr uint16_t kCapitalShift = 'a' - 'A';

/// A small letter of the keyboard as a capital, or the other way round; any other text as it is.
CString withCaps(const CString& text, bool isCaps) {
    if (text.length() != 1) {
        return text;
    }
    const uint16_t unit = text.at(0);
    CString result;
    if (isCaps && unit >= 'a' && unit <= 'z') {
        result.appendChar(static_cast<uint16_t>(unit - kCapitalShift));
    } else if (!isCaps && unit >= 'A' && unit <= 'Z') {
        result.appendChar(static_cast<uint16_t>(unit + kCapitalShift));
    } else {
        return text;
    }
    return result;
}

}  // namespace

CVirtualKeyboard::~CVirtualKeyboard() {
    if (box_) {
        box_->setKeyboard(nullptr);
    }
    endInput();
}

CError* CVirtualKeyboard::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CVirtualKeyboard::press>("virtual-keyboard-press");
    return CView::initClass(descriptor);
}

CError* CVirtualKeyboard::finishInit() {
    TARV_TRY(CView::finishInit());
    box_ = findObjectOf<CEditBox>(getAttrString("opener"));
    if (box_) {
        box_->setKeyboard(this);
    }
    return nullptr;
}

CError* CVirtualKeyboard::close() {
    CAttributeMap params;
    return passEvent("close-window", params);
}

CError* CVirtualKeyboard::press(CAttributeMap& params) {
    const auto found = params.find("key");
    const CString key = found == params.end() ? CString() : found->second.asString();
    if (key == CString("CAPS")) {
        return switchCaps();
    }
    // A letter of a field without small ones goes as it stands on the key.
    return box_ ? box_->pressVirtualKey(isCaps_ ? withCaps(key, true) : key) : nullptr;
}

CError* CVirtualKeyboard::switchCaps() {
    isCaps_ = !isCaps_;
    const CObjectWatch watch(*this);
    if (auto* button = findObjectOf<CViewBaseState>(getAttrString("caps-button"))) {
        TARV_TRY(isCaps_ ? button->setState("active") : button->unsetState("active"));
    }
    return watch.isAlive() ? setTitles(*this) : nullptr;
}

CError* CVirtualKeyboard::setTitles(CObject& object) {
    for (CObject* child : object.children()) {
        if (child->hasAttr("key")) {
            const CString& title = child->getAttrString("title");
            const CString wanted = withCaps(title, isCaps_);
            if (!(wanted == title)) {
                TARV_TRY(child->setAttribute("title", wanted));
            }
        }
        TARV_TRY(setTitles(*child));
    }
    return nullptr;
}

}  // namespace tarv
