// The router's wheel, keys and key focus.

#include "Core/CObjectWatch.h"
#include "UI/Views/CInputTarget.h"
#include "UI/Views/CRouterCall.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

bool CInputRouter::wheel(const CWheelEvent& event) {
    const CCall call(*this);
    if (drag_.isActive()) {
        return true;
    }
    const CHIDInfo info{event.x, event.y, event.modifiers};
    CViewBaseCtlEvents* view = CInputTarget::unintercepted(CInputTarget::hit(window_.sectorMap(), event.x, event.y));
    while (view) {
        CViewBaseCtlEvents* parent = view->parentInput();
        if (!CInputTarget::takesInput(*view)) {
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
    const int32_t taken = takenKeys_.indexOf(event.code);
    if (!event.isDown && taken >= 0) {
        takenKeys_.removeAt(taken);
    }
    if (!focus_) {
        return !event.isDown && taken >= 0;
    }
    const bool isTab = event.code == kKeyTab;
    CViewBaseCtlEvents* view = focus_;
    CEventParams params(pool_, CEventShape::Key, {last_.x, last_.y, event.modifiers});
    params.set("keycode", CAttributeValue::fromInt(event.code));
    params.set("is-tab", CAttributeValue::fromBool(isTab));
    params.set("is-handled", CAttributeValue::fromBool(false));
    CString characters;
    for (int32_t i = 0; i < event.characterCount; ++i) {
        characters.appendChar(event.characters[i]);
    }
    params.set("characters", CAttributeValue::fromPlainString(characters));
    CAttributeMap& map = params.complete();
    const uint32_t serial = focusSerial_;
    const bool isAlive =
        send(*view, event.isDown ? &CViewBaseCtlEvents::keyPress : &CViewBaseCtlEvents::keyRelease, map);
    bool isTaken = CViewBaseCtlEvents::isHandled(map) || (!event.isDown && taken >= 0);
    if (!isAlive) {
        return isTaken;
    }
    // A view that has given the focus on by itself has taken the tab, too.
    if (event.isDown && isTab && !isTaken && serial == focusSerial_ && root_) {
        CViewBaseCtlEvents* next = CInputTarget::nextFocus(*root_, focus_, event.modifiers.isShift);
        if (next) {
            isTaken = true;
            if (!changeFocus(next)) {
                return true;
            }
        }
    }
    if (event.isDown && isTaken && takenKeys_.indexOf(event.code) < 0) {
        takenKeys_.append(event.code);
    }
    return isTaken;
}

void CInputRouter::setKeyFocus(CViewBaseCtlEvents* view) {
    const CCall call(*this);
    if (!view || CInputTarget::takesInput(*view)) {
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
    if (former && !sendPlain(*former, &CViewBaseCtlEvents::focusLost)) {
        return false;
    }
    if (serial != focusSerial_) {
        return true;
    }
    view = focusing_;
    focusing_ = nullptr;
    focus_ = view && CInputTarget::takesInput(*view) ? view : nullptr;
    const CCall call(*this);
    if (!former != !focus_) {
        system_.wantKeys(focus_ != nullptr);
    }
    return call.isAlive();
}

}  // namespace tarv
