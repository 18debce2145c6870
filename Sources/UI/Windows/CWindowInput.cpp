// What the system reports: pointer, keys and activation.

#include <utility>

#include "UI/Windows/CWindow.h"
#include "UI/Windows/CWindowSharedData.h"

namespace tarv {

namespace {

constexpr double kDefaultAutoClickTimeout = 0.4;

void setPosition(CAttributeMap& params, const CPointerEvent& event) {
    params["actual-x"] = CAttributeValue::fromReal(event.x);
    params["actual-y"] = CAttributeValue::fromReal(event.y);
    params["is-alt"] = CAttributeValue::fromBool(event.modifiers.isAlt);
    params["is-ctrl"] = CAttributeValue::fromBool(event.modifiers.isCtrl);
    params["is-shift"] = CAttributeValue::fromBool(event.modifiers.isShift);
}

}  // namespace

void CWindow::onPointer(const CPointerEvent& event) {
    const CBusy busy(*this);
    if (shared_->isSilent()) {
        isCaptureLost_ = isCaptureLost_ || event.kind == CPointerKind::CaptureLost;
        return;
    }
    const bool isButton = event.kind == CPointerKind::Press || event.kind == CPointerKind::Release;
    shared_->setMouseWindow(event.kind == CPointerKind::Leave ? nullptr : this);
    if (isButton && isListened("mouse-button")) {
        CAttributeMap params;
        setPosition(params, event);
        params["button"] = CAttributeValue::fromInt(static_cast<int32_t>(event.button));
        params["is-button-down"] = CAttributeValue::fromBool(event.kind == CPointerKind::Press);
        params["is-drop-down-behavior-disabled"] = CAttributeValue::fromBool(flag("is-drop-down-behavior-disabled"));
        if (!sendHere("mouse-button", params)) {
            return;
        }
    }
    if (isBlocked()) {
        if (event.kind == CPointerKind::Press) {
            pressBlocked();
        }
        return;
    }
    // The embedded window takes the keyboard from its host only where that is wanted.
    if (event.kind == CPointerKind::Press && isOpen() && !flag("is-helper-window") &&
        (isPopupWindow() || !flag("is-plugin-vst") || root()->getAttrBool("IsFocusTaken"))) {
        hasFocus_ = true;
        window_->takeFocus();
        if (!busy.isAlive()) {
            return;
        }
    }
    if (event.kind == CPointerKind::Press) {
        // From here on the focus is where the user puts it.
        focusBefore_ = nullptr;
    }
    router_.pointer(event);
    if (!busy.isAlive()) {
        return;
    }
    if (event.kind == CPointerKind::Leave && isListened("mouse-top-exit")) {
        CAttributeMap params;
        setPosition(params, event);
        sendHere("mouse-top-exit", params);
    } else if (event.kind == CPointerKind::Move && isTickOverdue()) {
        // Timers of the system wait while the pointer moves.
        tick();
    }
}

/// A press while a popup stands in the way.
void CWindow::pressBlocked() {
    if (blockedBy_->isPopupWindow()) {
        // The user is back in this window, whatever the press has done to the activation.
        blockedBy_->isElsewhere_ = false;
        blockedBy_->requestClose();
        return;
    }
    CAttributeMap params;
    TARV_CONSUME(blockedBy_->view().passEvent("flash-title", params));
}

bool CWindow::onWheel(const CWheelEvent& event) {
    const CBusy busy(*this);
    return isBlocked() || router_.wheel(event);
}

bool CWindow::onHostWheel(double notches) {
    CWindowSystem* system = windowSystem();
    if (!isOpen() || !system) {
        return false;
    }
    int32_t x = 0;
    int32_t y = 0;
    system->pointerPosition(x, y);
    CWindow* target = shared_->findWindow(system->windowAt(x, y));
    if (!target) {
        return false;
    }
    const CIntRect bounds = target->screenBounds();
    return target->onWheel({x - bounds.left, y - bounds.top, notches, system->modifiers()});
}

bool CWindow::onKey(const CKeyEvent& event) {
    const CBusy busy(*this);
    if (takeBackBy(event)) {
        return true;
    }
    if (isBlocked() && event.isDown) {
        return false;
    }
    // What the press has opened has the keys by now.
    const bool wasTaken = !event.isDown && shared_->keyReleased(*this, event.code);
    // Here for the sake of a release or of an Escape only, it takes no other key from the host.
    if ((isAwaiting_ || isHolding_) && event.isDown && !isEdited_ && !hasFocus_) {
        return false;
    }
    bool isTaken = router_.key(event) || wasTaken;
    if (busy.isAlive() && isAwaiting_ && router_.heldKeys().isEmpty()) {
        isAwaiting_ = false;
        grabKeys();
    }
    if (busy.isAlive() && !isTaken && event.isDown && event.code == kKeyEscape && openerWindow_) {
        isTaken = true;
        onCloseRequest();
    }
    if (busy.isAlive() && !isTaken && event.isDown && event.code == kKeyEnter) {
        isTaken = workDefaultView();
    }
    if (busy.isAlive() && isTaken && event.isDown && !isOpen()) {
        passKeyOn(event.code);
    }
    return isTaken;
}

bool CWindow::takeBackPress() {
    const CBusy busy(*this);
    return router_.takeBackPress();
}

bool CWindow::takeBackBy(const CKeyEvent& event) {
    if (event.code != kKeyEscape || !event.isDown) {
        return false;
    }
    isEscapeSpent_ = isEscapeSpent_ && router_.heldKeys().indexOf(kKeyEscape) >= 0;
    const CObjectWatch watch(*this);
    // Its release is to come here, too.
    isAwaiting_ = isAwaiting_ || isHolding_;
    if (!isEscapeSpent_ && shared_->takeBackPress() && watch.isAlive()) {
        isEscapeSpent_ = true;
        router_.holdKey(kKeyEscape);
    }
    return !watch.isAlive() || isEscapeSpent_;
}

bool CWindow::workDefaultView() {
    const CString& path = attr("default-view");
    auto* view = path.isEmpty() ? nullptr : root_->findObjectOf<CViewBaseCtlEvents>(path);
    return view && router_.work(*view);
}

void CWindow::passKeyOn(int32_t code) {
    router_.forgetKey(code);
    CWindow* heir = openerWindow_;
    while (heir && (!heir->isOpen() || heir->isClosing_)) {
        heir = heir->openerWindow_;
    }
    if (heir) {
        heir->router_.holdKey(code);
        // The system sends the keys to the host by now.
        heir->isAwaiting_ = heir->flag("is-plugin-vst");
        heir->grabKeys();
    }
}

void CWindow::onKeysLost() {
    const CBusy busy(*this);
    isGrabbing_ = false;
    isEdited_ = false;
    isAwaiting_ = false;
    isHolding_ = false;
    // Another window of the editor passes the releases on.
    if (!shared_->keyWindow() || shared_->keyWindow() == this) {
        router_.forgetKeys();
    }
    if (shared_->isSilent()) {
        areKeysLost_ = true;
    } else {
        router_.setKeyFocus(nullptr);
    }
}

void CWindow::capturePointer(bool isCaptured) {
    if (!isOpen()) {
        return;
    }
    if (isCaptured) {
        window_->setCapture();
    } else {
        window_->releaseCapture();
    }
}

void CWindow::wantKeys(bool isWanted) {
    moveKeys(isWanted);
    if (std::exchange(hasKeyView_, isWanted) != isWanted) {
        sendHere(isWanted ? "focus" : "blur");
    }
}

void CWindow::keyFocusGone() {
    shared_->beginSilence();
    moveKeys(false);
    shared_->endSilence();
}

void CWindow::wantEscape(bool isWanted) {
    isHolding_ = isWanted;
    grabKeys();
}

void CWindow::moveKeys(bool isWanted) {
    const CViewBaseCtlEvents* focus = router_.keyFocus();
    const bool wasEdited = isEdited_;
    isEdited_ = focus && focus->grabsKeys() && isOpen();
    if (isWanted || shared_->keyWindow() == this) {
        shared_->setKeyWindow(isWanted ? this : nullptr);
    }
    if (shared_->focusReader()) {
        shared_->focusReader()->keyFocusMoved(focus);
    }
    if (!isOpen()) {
        return;
    }
    grabKeys();
    // What has been edited gives the keyboard back to the host, unless the user goes on by keys.
    const bool isEditOver = wasEdited && !isEdited_ && !router_.isKeyMode();
    if ((!isWanted || isEditOver) && hasFocus_ && flag("is-plugin-vst")) {
        window_->giveFocusBack();
        hasFocus_ = false;
    }
}

void CWindow::grabKeys() {
    const bool isWanted = isEdited_ || isAwaiting_ || isHolding_;
    if (isOpen() && std::exchange(isGrabbing_, isWanted) != isWanted) {
        window_->grabKeys(isWanted);
    }
}

bool CWindow::sendDue() {
    const CBusy busy(*this);
    if (std::exchange(areKeysLost_, false)) {
        router_.setKeyFocus(nullptr);
    }
    if (busy.isAlive() && std::exchange(isCaptureLost_, false)) {
        CPointerEvent event;
        event.kind = CPointerKind::CaptureLost;
        router_.pointer(event);
    }
    if (busy.isAlive() && std::exchange(isActivationDue_, false)) {
        sendActivation(isActivated_);
    }
    // A view with key focus was destroyed, and no other one has got it since.
    if (busy.isAlive() && hasKeyView_ && !router_.keyFocus()) {
        hasKeyView_ = false;
        sendHere("blur");
    }
    return busy.isAlive();
}

void CWindow::viewGone(const CViewBaseCtlEvents& view) {
    focusBefore_ = focusBefore_ == &view ? nullptr : focusBefore_;
    focusRing_.viewGone(view);
    popups_.openerGoes(view, true);
    CWindow* const main = shared_ ? shared_->mainWindow() : nullptr;
    if (main && main != this) {
        main->popups_.openerGoes(view, false);
    }
}

void CWindow::keepFocus() {
    // Of several popups the first one has found it.
    if (popups_.count() == 0) {
        focusBefore_ = nullptr;
        hadFocus_ = false;
    }
    focusBefore_ = router_.keyFocus() ? router_.keyFocus() : focusBefore_;
    hadFocus_ = hadFocus_ || hasFocus_;
    hasFocus_ = false;
}

void CWindow::returnFocus() {
    if (!isFocusDue_ || isBlocked() || isEnding_) {
        return;
    }
    isFocusDue_ = false;
    const CBusy busy(*this);
    if (std::exchange(hadFocus_, false) && isOpen() && flag("is-plugin-vst")) {
        hasFocus_ = true;
        window_->takeFocus();
    }
    if (busy.isAlive() && isOpen() && focusBefore_ && !router_.keyFocus()) {
        router_.setKeyFocus(std::exchange(focusBefore_, nullptr));
    }
}

void CWindow::inputFailed(CError* error) {
    logError(addErrorLocation(error, __FILE__, __LINE__, fullName(), CString()));
}

void CWindow::onActivation(bool isActive, CWindowHandle other) {
    const CBusy busy(*this);
    if (!shared_->isSilent() && !sendDue()) {
        return;
    }
    // One that has never been active can lose nothing: its own opening may report it.
    isDeactivated_ = !isActive && wasActive_ && !isOwnOrPopup(shared_->findWindow(other));
    isElsewhere_ = isDeactivated_;
    wasActive_ = wasActive_ || isActive;
    if (isElsewhere_) {
        router_.forgetKeys();
    }
    if (shared_->isSilent()) {
        isActivationDue_ = true;
        isActivated_ = isActive;
    } else {
        sendActivation(isActive);
    }
}

bool CWindow::sendActivation(bool isActive) {
    const CBusy busy(*this);
    if (isActive) {
        return sendHere("activate-window");
    }
    const bool isPressed = router_.drag().isActive();
    router_.setKeyFocus(nullptr);
    if (busy.isAlive()) {
        router_.cancel();
    }
    return busy.isAlive() && (!isPressed || sendHere("mouse-button-reset")) && sendHere("deactivate-window");
}

/// A popup that has lost the activation closes a moment later, so that a press on its opener still finds it open.
CError* CWindow::deactivateTick() {
    if (!isDeactivated_ || !isOpen() || !isPopupWindow()) {
        return nullptr;
    }
    isDeactivated_ = false;
    const CBusy busy(*this);
    CAttributeMap params;
    CError* error = root_->passEvent("popup-deactivated", params);
    if (busy.isAlive()) {
        requestClose();
    }
    return error;
}

/// Notices that the pointer has left where the system did not report it.
CError* CWindow::cursorTick() {
    CWindowSystem* system = windowSystem();
    if (!isOpen() || shared_->mouseWindow() != this || router_.drag().isActive() || !system) {
        return nullptr;
    }
    int32_t x = 0;
    int32_t y = 0;
    system->pointerPosition(x, y);
    if (system->windowAt(x, y) != handle()) {
        const CIntRect bounds = screenBounds();
        CPointerEvent event;
        event.kind = CPointerKind::Leave;
        event.x = x - bounds.left;
        event.y = y - bounds.top;
        event.modifiers = system->modifiers();
        onPointer(event);
    }
    return nullptr;
}

CError* CWindow::autoClickTick() {
    if (isOpen() && !isBlocked()) {
        const CBusy busy(*this);
        router_.autoClick(number("auto-click-timeout", kDefaultAutoClickTimeout));
    }
    return nullptr;
}

}  // namespace tarv
