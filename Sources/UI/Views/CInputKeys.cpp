// The router's wheel, keys and key focus.

#include "Core/CObjectWatch.h"
#include "UI/Views/CInputTarget.h"
#include "UI/Views/CRouterCall.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

bool CInputRouter::takesInput(const CViewBaseCtlEvents& view) const {
    return !system_.isBlocked() && CInputTarget::takesInput(view);
}

bool CInputRouter::wheel(const CWheelEvent& event) {
    const CCall call(*this);
    if (drag_.isActive()) {
        return true;
    }
    const CHIDInfo info{event.x, event.y, event.modifiers};
    CViewBaseCtlEvents* view =
        CInputTarget::unintercepted(CInputTarget::hit(window_.sectorMap(), event.x, event.y, false));
    while (view) {
        CViewBaseCtlEvents* parent = view->parentInput();
        if (!takesInput(*view)) {
            view = parent;
            continue;
        }
        CEventParams params(pool_, CEventShape::Wheel, info);
        params.set("delta", CAttributeValue::fromReal(event.delta));
        params.set("is-handled", CAttributeValue::fromBool(false));
        CAttributeMap& map = params.complete();
        const CObjectWatch watch(*view);
        const bool isAlive = send(*view, &CViewBaseCtlEvents::mouseWheel, map);
        // A handler that has destroyed the view has done something with it.
        if (!isAlive || CViewBaseCtlEvents::isHandled(map) || !watch.isAlive()) {
            return true;
        }
        view = view->parentInput();
    }
    return false;
}

bool CInputRouter::key(const CKeyEvent& event) {
    const CCall call(*this);
    const bool wasTaken = event.isDown ? takenKeys_.indexOf(event.code) >= 0 : forgetKey(event.code);
    bool isTaken = !event.isDown && wasTaken;
    const uint32_t serial = focusSerial_;
    const bool isAlive = !focus_ || sendKey(*focus_, event, isTaken);
    // Who types takes the beginning of a character, too: with the host it would join what is typed there.
    if (isAlive && event.isDown && event.isDead && focus_ && focus_->grabsKeys()) {
        isTaken = true;
    }
    // A view that has given the focus on by itself has done something with the key.
    if (isAlive && event.isDown && !isTaken && serial == focusSerial_) {
        isTaken = workByKey(event, wasTaken);
    }
    if (call.isAlive() && event.isDown && isTaken) {
        holdKey(event.code);
    }
    return isTaken;
}

void CInputRouter::holdKey(int32_t code) {
    if (takenKeys_.indexOf(code) < 0) {
        takenKeys_.append(code);
    }
}

bool CInputRouter::forgetKey(int32_t code) {
    const int32_t index = takenKeys_.indexOf(code);
    if (index >= 0) {
        takenKeys_.removeAt(index);
    }
    return index >= 0;
}

bool CInputRouter::sendKey(CViewBaseCtlEvents& view, const CKeyEvent& event, bool& isTaken) {
    CEventParams params(pool_, CEventShape::Key, {last_.x, last_.y, event.modifiers});
    params.set("keycode", CAttributeValue::fromInt(event.code));
    params.set("is-tab", CAttributeValue::fromBool(event.code == kKeyTab));
    params.set("is-handled", CAttributeValue::fromBool(false));
    CString characters;
    for (int32_t i = 0; i < event.characterCount; ++i) {
        characters.appendChar(event.characters[i]);
    }
    params.set("characters", CAttributeValue::fromPlainString(characters));
    CAttributeMap& map = params.complete();
    const bool isAlive =
        send(view, event.isDown ? &CViewBaseCtlEvents::keyPress : &CViewBaseCtlEvents::keyRelease, map);
    isTaken = isTaken || CViewBaseCtlEvents::isHandled(map);
    return isAlive;
}

/// What a key does that no view has taken; true if it did something. May destroy the router.
bool CInputRouter::workByKey(const CKeyEvent& event, bool isRepeated) {
    const bool isPlain = !event.modifiers.isCtrl && !event.modifiers.isAlt;
    if (event.code == kKeyTab && isPlain && drag_.isActive()) {
        return true;  // what is held keeps the keys
    }
    if (event.code == kKeyTab && isPlain) {
        CViewBaseCtlEvents* next = root_ ? CInputTarget::nextFocus(*root_, focus_, event.modifiers.isShift) : nullptr;
        if (next && changeFocus(next)) {
            setKeyMode(true);
        }
        return next != nullptr;
    }
    if (!isKeyMode_ || !focus_ || !isPlain) {
        return false;
    }
    if (event.code == kKeyEscape) {
        if (changeFocus(nullptr)) {
            setKeyMode(false);
        }
        return true;
    }
    if ((event.code == kKeySpace || event.code == kKeyEnter) && focus_->isInputView()) {
        if (!isRepeated) {
            clickByKey(*focus_);
        }
        return true;
    }
    return false;
}

bool CInputRouter::work(CViewBaseCtlEvents& view) {
    const CCall call(*this);
    if (drag_.isActive() || !view.isInputView() || !CInputTarget::takesInput(view)) {
        return false;
    }
    clickByKey(view);
    return true;
}

/// A press and a release in the middle of a view.
void CInputRouter::clickByKey(CViewBaseCtlEvents& view) {
    const CViewRect rect = view.visibleRect();
    const CHIDInfo info{
        static_cast<int32_t>(rect.x + rect.width / 2.0), static_cast<int32_t>(rect.y + rect.height / 2.0), {}};
    if (drag_.isActive()) {
        return;
    }
    const CObjectWatch watch(view);
    CEventParams press(pool_, CEventShape::Press, info);
    press.set("is-double-click", CAttributeValue::fromBool(false));
    if (!send(view, &CViewBaseCtlEvents::mousePress, press.complete()) || !watch.isAlive()) {
        return;
    }
    CEventParams end(pool_, CEventShape::Plain, info);
    // What its press has disabled or hidden is not released.
    const bool isRelease = CInputTarget::takesInput(view);
    send(view, isRelease ? &CViewBaseCtlEvents::mouseRelease : &CViewBaseCtlEvents::mouseCancel, end.complete());
}

/// False if this router has been destroyed.
bool CInputRouter::setKeyMode(bool isOn) {
    if (isOn == isKeyMode_) {
        return true;
    }
    isKeyMode_ = isOn;
    return !focus_ || setState(*focus_, CInputState::Focus, isOn);
}

void CInputRouter::setKeyFocus(CViewBaseCtlEvents* view) {
    const CCall call(*this);
    if (!view || takesInput(*view)) {
        changeFocus(view);
    }
}

bool CInputRouter::changeFocus(CViewBaseCtlEvents* view) {
    if (view == focus_) {
        return true;
    }
    const uint32_t serial = ++focusSerial_;
    CViewBaseCtlEvents* former = focus_;
    focus_ = nullptr;
    focusing_ = view;
    if (former && !loseFocus(*former)) {
        return false;
    }
    if (serial != focusSerial_) {
        return true;
    }
    view = focusing_;
    focusing_ = nullptr;
    focus_ = view && takesInput(*view) ? view : nullptr;
    const CCall call(*this);
    if (former || focus_) {
        system_.wantKeys(focus_ != nullptr);
    }
    if (!call.isAlive() || serial != focusSerial_ || !focus_ || !isKeyMode_) {
        return call.isAlive();
    }
    return setState(*focus_, CInputState::Focus, true);
}

bool CInputRouter::loseFocus(CViewBaseCtlEvents& view) {
    const CObjectWatch watch(view);
    if (isKeyMode_ && !setState(view, CInputState::Focus, false)) {
        return false;
    }
    return !watch.isAlive() || sendPlain(view, &CViewBaseCtlEvents::focusLost);
}

}  // namespace tarv
