#include "UI/Views/CInputRouter.h"

#include <cmath>

#include "Core/CGlobalSettings.h"
#include "Core/CObjectWatch.h"
#include "UI/Views/CInputTarget.h"
#include "UI/Views/CRouterCall.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

namespace {

CHIDInfo infoOf(const CPointerEvent& event) {
    return {event.x, event.y, event.modifiers};
}

}  // namespace

CInputRouter::CInputRouter(CViewWindow& window, CInputWindow& system)
    : window_(window), system_(system), pool_(std::make_shared<CEventParamPool>()) {}

CInputRouter::~CInputRouter() {
    for (CCall* call = calls_; call; call = call->outer_) {
        call->router_ = nullptr;
    }
}

bool CInputRouter::send(CViewBaseCtlEvents& view, COperation operation, CAttributeMap& params) {
    const CCall call(*this);
    return call.report((view.*operation)(params));
}

bool CInputRouter::sendPlain(CViewBaseCtlEvents& view, COperation operation) {
    CEventParams params(pool_, CEventShape::Plain, last_);
    return send(view, operation, params.complete());
}

bool CInputRouter::setState(CViewBaseCtlEvents& view, CInputState state, bool isSet) {
    const CCall call(*this);
    return call.report(view.setInputState(state, isSet));
}

void CInputRouter::pointer(const CPointerEvent& event) {
    const CCall call(*this);
    followTabletMode();
    if (!call.isAlive()) {
        return;
    }
    switch (event.kind) {
        case CPointerKind::Move:
            move(infoOf(event));
            break;
        case CPointerKind::Press:
            press(event, infoOf(event));
            break;
        case CPointerKind::Release:
            noteButton(event);
            release(event.button, infoOf(event));
            break;
        case CPointerKind::Leave:
            leave();
            break;
        case CPointerKind::CaptureLost:
            captureLost();
            break;
    }
}

void CInputRouter::move(const CHIDInfo& at) {
    const CHIDInfo info = shifted(at);
    last_ = info;
    isInside_ = true;
    if (!drag_.isActive()) {
        if (!hoverAt(info)) {
            return;
        }
    } else {
        const CCall call(*this);
        TARV_CONSUME(drag_.onHIDUpdate(info));
        if (CError* error = follower_ ? follower_->onHIDUpdate(info) : nullptr) {
            logError(error);
        }
        if (!call.isAlive()) {
            return;
        }
    }
    if (CViewBaseCtlEvents* taker = drag_.isActive() ? drag_.view() : hovered_) {
        CEventParams params(pool_, CEventShape::Move, info);
        params.set("button", CAttributeValue::fromInt(static_cast<int32_t>(drag_.button())));
        params.set("is-button-l", CAttributeValue::fromBool(info.modifiers.isLeft));
        params.set("is-button-r", CAttributeValue::fromBool(info.modifiers.isRight));
        send(*taker, &CViewBaseCtlEvents::mouseMove, params.complete());
    }
}

CViewBaseCtlEvents* CInputRouter::takerAt(const CHIDInfo& info) {
    CViewBaseCtlEvents* taker = CInputTarget::hit(window_.sectorMap(), info.x, info.y, true);
    return taker && takesInput(*taker) ? taker : nullptr;
}

bool CInputRouter::hoverAt(const CHIDInfo& info) {
    hintHit_ = CInputTarget::hit(window_.sectorMap(), info.x, info.y, false);
    return setHover(takerAt(info)) && refreshHint();
}

bool CInputRouter::setHover(CViewBaseCtlEvents* view) {
    if (isLeaving_) {
        // A message loop inside the handlers of a view that is being left: the next tick looks anew.
        entering_ = view ? entering_ : nullptr;
        return true;
    }
    if (view == hovered_) {
        return true;
    }
    const uint32_t serial = ++hoverSerial_;
    CViewBaseCtlEvents* former = hovered_;
    hovered_ = nullptr;
    entering_ = view;
    if (former && !leaveView(*former)) {
        return false;
    }
    if (serial != hoverSerial_) {
        return true;
    }
    view = entering_;
    entering_ = nullptr;
    if (!view || !takesInput(*view)) {
        return true;
    }
    hovered_ = view;
    if (!sendPlain(*view, &CViewBaseCtlEvents::mouseEnter)) {
        return false;
    }
    return serial != hoverSerial_ || hovered_ != view || isTablet_ || setState(*view, CInputState::Hover, true);
}

bool CInputRouter::leaveView(CViewBaseCtlEvents& view) {
    const CObjectWatch watch(view);
    isLeaving_ = true;
    const bool isAlive = setState(view, CInputState::Hover, false) &&
                         (!watch.isAlive() || sendPlain(view, &CViewBaseCtlEvents::mouseExit));
    if (isAlive) {
        isLeaving_ = false;
    }
    return isAlive;
}

/// A change of the setting shows at once, also under a pointer that rests.
void CInputRouter::followTabletMode() {
    if (isTablet_ == globalSettings().isTabletMode) {
        return;
    }
    isTablet_ = !isTablet_;
    if (hovered_) {
        setState(*hovered_, CInputState::Hover, !isTablet_);
    }
}

void CInputRouter::leave() {
    if (!drag_.isActive()) {
        isInside_ = false;
        hintHit_ = nullptr;
        if (setHover(nullptr)) {
            refreshHint();
        }
    }
}

void CInputRouter::cancel() {
    const CCall call(*this);
    if (drag_.isActive()) {
        system_.capturePointer(false);
        if (!cancelPress(true)) {
            return;
        }
    }
    leave();
}

void CInputRouter::update() {
    const CCall call(*this);
    followTabletMode();
    if (call.isAlive() && check() && isInside_ && !drag_.isActive()) {
        hoverAt(last_);
    }
}

/// What takes no input any more loses what it has.
bool CInputRouter::check() {
    if (drag_.view() && !takesInput(*drag_.view()) && !cancelPress(false)) {
        return false;
    }
    if (hovered_ && !takesInput(*hovered_) && !setHover(nullptr)) {
        return false;
    }
    return !focus_ || takesInput(*focus_) || changeFocus(nullptr);
}

void CInputRouter::settle() {
    while (needsCheck_) {
        needsCheck_ = false;
        if (!check()) {
            return;
        }
    }
}

void CInputRouter::viewsChanged() {
    needsCheck_ = true;
    const CCall call(*this);
}

void CInputRouter::viewGoes(CViewBaseCtlEvents& view) {
    for (CViewBaseCtlEvents** held : {&hovered_, &entering_, &pressing_, &focusing_, &hintHit_, &hintView_, &root_}) {
        if (*held == &view) {
            *held = nullptr;
        }
    }
    hintCut_.view = hintCut_.view == &view ? nullptr : hintCut_.view;
    if (drag_.view() == &view) {
        drag_.dropView();
        follower_ = nullptr;
        ++pressSerial_;
    }
    if (focus_ == &view) {
        focus_ = nullptr;
        ++focusSerial_;
        takenKeys_.clear();
        system_.keyFocusGone();
    }
    system_.viewGone(view);
}

void CInputRouter::rootViewGoes() {
    const CCall call(*this);
    root_ = nullptr;
    if (changeFocus(nullptr)) {
        cancel();
    }
}

}  // namespace tarv
