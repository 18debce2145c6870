// The router's presses: which view takes one, its release and its cancel.

#include "Core/CObjectWatch.h"
#include "Platform/Clock.h"
#include "UI/Views/CInputTarget.h"
#include "UI/Views/CRouterCall.h"
#include "UI/Views/CTouchTarget.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

void CInputRouter::noteButton(const CPointerEvent& event) {
    const bool isDown = event.kind == CPointerKind::Press;
    if (event.button == CPointerButton::Left) {
        isLeftDown_ = isDown;
    } else if (event.button == CPointerButton::Right) {
        isRightDown_ = isDown;
    }
}

/// The other button, of which a release may have been missed beyond the window, so that the system is asked, too.
bool CInputRouter::anotherIsHeld(const CPointerEvent& event) const {
    return event.button == CPointerButton::Left ? isRightDown_ && event.modifiers.isRight
                                                : isLeftDown_ && event.modifiers.isLeft;
}

void CInputRouter::press(const CPointerEvent& event, const CHIDInfo& info) {
    last_ = info;
    isInside_ = true;
    noteButton(event);
    const bool isOwn = event.button == CPointerButton::Left || event.button == CPointerButton::Right;
    if (drag_.isActive() || isEnding_ || !isOwn || anotherIsHeld(event)) {
        return;
    }
    // A pen or a finger presses where no move has been.
    if (!hoverAt(info) || drag_.isActive() || system_.isBlocked()) {
        return;
    }
    if (!(event.button == CPointerButton::Left ? isLeftDown_ : isRightDown_)) {
        // A message loop inside a handler has brought the release.
        return;
    }
    CHIDInfo meant = info;
    CViewBaseCtlEvents* taker = pressedAt(meant);
    shiftX_ = meant.x - info.x;
    shiftY_ = meant.y - info.y;
    last_ = meant;
    drag_.begin(nullptr, event.button, meant);
    system_.capturePointer(true);
    const uint32_t serial = ++pressSerial_;
    pressing_ = taker;
    CViewBaseCtlEvents* focused = taker;
    while (focused && !focused->isFocusable()) {
        focused = focused->parentInput();
    }
    // What is edited elsewhere is committed before the press acts.
    if (!setKeyMode(false) || !changeFocus(focused) || serial != pressSerial_) {
        return;
    }
    taker = pressing_;
    pressing_ = nullptr;
    if (taker && takesInput(*taker)) {
        beginPress(*taker, event, meant);
    }
}

bool CInputRouter::beginPress(CViewBaseCtlEvents& view, const CPointerEvent& event, const CHIDInfo& info) {
    const uint32_t serial = pressSerial_;
    drag_.begin(&view, event.button, info);
    pressedAt_ = clockSeconds();
    if (view.isTakenBack()) {
        system_.wantEscape(true);
    }
    CEventParams params(pool_, CEventShape::Press, info);
    params.set("is-double-click", CAttributeValue::fromBool(event.isDouble));
    const bool isLeft = event.button == CPointerButton::Left;
    if (!send(view, isLeft ? &CViewBaseCtlEvents::mousePress : &CViewBaseCtlEvents::mousePressR, params.complete())) {
        return false;
    }
    return serial != pressSerial_ || drag_.view() != &view || setState(view, CInputState::Pushed, true);
}

bool CInputRouter::endPress(CViewBaseCtlEvents* view, CPointerButton button, bool isRelease) {
    ++pressSerial_;
    pressing_ = nullptr;
    follower_ = nullptr;
    system_.wantEscape(false);
    if (!view) {
        return true;
    }
    const CObjectWatch watch(*view);
    // The next press waits for the end of this one.
    isEnding_ = true;
    if (!setState(*view, CInputState::Pushed, false)) {
        return false;
    }
    isEnding_ = false;
    if (!watch.isAlive()) {
        return true;
    }
    if (button == CPointerButton::Left) {
        return sendPlain(*view, isRelease ? &CViewBaseCtlEvents::mouseRelease : &CViewBaseCtlEvents::mouseCancel);
    }
    return sendPlain(*view, isRelease ? &CViewBaseCtlEvents::mouseReleaseR : &CViewBaseCtlEvents::mouseCancelR);
}

void CInputRouter::release(CPointerButton button, const CHIDInfo& info) {
    last_ = shifted(info);
    if (!drag_.isActive() || button != drag_.button()) {
        return;
    }
    CViewBaseCtlEvents* view = drag_.view();
    drag_.end();
    system_.capturePointer(false);
    const bool isRelease = view && takesInput(*view) && isReleasedOn(*view, info);
    if (endPress(view, button, isRelease) && !drag_.isActive() && isInside_) {
        last_ = info;
        hoverAt(info);
    }
}

/// The view that takes a press; `info` becomes the point that it counts at.
CViewBaseCtlEvents* CInputRouter::pressedAt(CHIDInfo& info) const {
    CTouchTarget target;
    if (isTablet_) {
        target = CTouchTarget::at(window_.sectorMap(), info.x, info.y);
        info.x = target.x;
        info.y = target.y;
    } else {
        target.view = CInputTarget::hit(window_.sectorMap(), info.x, info.y, true);
    }
    return target.view && takesInput(*target.view) ? target.view : nullptr;
}

CHIDInfo CInputRouter::shifted(const CHIDInfo& info) const {
    CHIDInfo meant = info;
    if (drag_.isActive()) {
        meant.x += shiftX_;
        meant.y += shiftY_;
    }
    return meant;
}

bool CInputRouter::isReleasedOn(const CViewBaseCtlEvents& view, const CHIDInfo& info) const {
    return isTablet_ ? CTouchTarget::reaches(view, info.x, info.y) : view.visibleRect().holds(info.x, info.y);
}

/// The view loses the press. The button may still be down: then no other view gets one until its release.
bool CInputRouter::cancelPress(bool isButtonUp) {
    CViewBaseCtlEvents* view = drag_.view();
    const CPointerButton button = drag_.button();
    if (isButtonUp) {
        drag_.end();
    } else {
        drag_.dropView();
    }
    return endPress(view, button, false);
}

bool CInputRouter::takeBackPress() {
    CViewBaseCtlEvents* const view = drag_.view();
    if (!view) {
        return false;
    }
    const CCall call(*this);
    const uint32_t serial = pressSerial_;
    if (sendPlain(*view, &CViewBaseCtlEvents::mouseTakeBack) && serial == pressSerial_ && drag_.view() == view) {
        cancelPress(false);
    }
    return true;
}

void CInputRouter::captureLost() {
    if (drag_.isActive() && cancelPress(true)) {
        leave();
    }
}

void CInputRouter::autoClick(double timeout) {
    const CCall call(*this);
    CViewBaseCtlEvents* view = drag_.button() == CPointerButton::Left ? drag_.view() : nullptr;
    if (!view || clockSeconds() - pressedAt_ < timeout || takerAt(last_) != view) {
        return;
    }
    pressedAt_ = clockSeconds();
    CEventParams params(pool_, CEventShape::Plain, last_);
    params.set("actual-x", CAttributeValue::fromReal(last_.x - view->wholeRect().x));
    params.set("actual-y", CAttributeValue::fromReal(last_.y - view->wholeRect().y));
    send(*view, &CViewBaseCtlEvents::autoClick, params.complete());
}

}  // namespace tarv
