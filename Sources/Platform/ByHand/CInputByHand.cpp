// Pointer and keyboard of a user, as a test moves them.

#include "Platform/ByHand/CInputByHand.h"

#include <algorithm>
#include <cstdlib>

#include "Platform/ByHand/CDesktopByHand.h"
#include "Platform/ByHand/CWindowByHand.h"
#include "Platform/Clock.h"

namespace tarv {

CWindowHandle CInputByHand::target() const {
    if (desktop_.capture() != 0) {
        return desktop_.capture();
    }
    const CWindowByHand* window = desktop_.windowAt(x_, y_);
    return window ? window->handle() : 0;
}

void CInputByHand::send(CWindowHandle window, CPointerKind kind, CPointerButton button, bool isDouble) {
    CWindowByHand* found = desktop_.find(window);
    if (!found || !found->handler()) {
        return;
    }
    const CIntRect bounds = found->screenBounds();
    CPointerEvent event;
    event.kind = kind;
    event.button = button;
    event.x = x_ - bounds.left;
    event.y = y_ - bounds.top;
    event.isDouble = isDouble;
    event.modifiers = modifiers_;
    found->handler()->onPointer(event);
}

int32_t CInputByHand::settle() {
    const CWindowHandle over = target();
    if (desktop_.capture() != 0 || over == hovered_) {
        return 0;
    }
    const CWindowHandle left = hovered_;
    hovered_ = over;
    send(left, CPointerKind::Leave, CPointerButton::None, false);
    if (hovered_ == over) {
        send(over, CPointerKind::Move, CPointerButton::None, false);
    }
    return 1;
}

void CInputByHand::move(int32_t x, int32_t y) {
    jump(x, y);
    if (settle() == 0) {
        send(target(), CPointerKind::Move, CPointerButton::None, false);
    }
}

void CInputByHand::moveIn(CWindowHandle window, int32_t x, int32_t y) {
    if (const CWindowByHand* found = desktop_.find(window)) {
        const CIntRect bounds = found->screenBounds();
        move(bounds.left + x, bounds.top + y);
    }
}

void CInputByHand::jump(int32_t x, int32_t y) {
    x_ = x;
    y_ = y;
}

void CInputByHand::setHeld(CPointerButton button, bool isHeld) {
    modifiers_.isLeft = button == CPointerButton::Left ? isHeld : modifiers_.isLeft;
    modifiers_.isRight = button == CPointerButton::Right ? isHeld : modifiers_.isRight;
}

/// Of a press; a third one in a row is a first one again.
bool CInputByHand::isDouble(CPointerButton button, CWindowHandle window) {
    const CLastPress last = lastPress_;
    const double now = clockSeconds();
    const bool isSecond = last.button == button && last.window == window && now - last.seconds <= kDoubleClickSeconds &&
                          std::abs(last.x - x_) <= kDoubleClickPixels && std::abs(last.y - y_) <= kDoubleClickPixels;
    lastPress_ = isSecond ? CLastPress() : CLastPress{button, window, now, x_, y_};
    return isSecond;
}

void CInputByHand::press(CPointerButton button) {
    setHeld(button, true);
    const CWindowByHand* pressed = desktop_.find(target());
    if (desktop_.capture() == 0 && !(pressed && pressed->staysInactive())) {
        desktop_.activate(target());
    }
    // What lost the activation may have closed.
    const CWindowHandle window = target();
    const CWindowByHand* found = desktop_.find(window);
    hostPresses_ += found && found->isHost() ? 1 : 0;
    send(window, CPointerKind::Press, button, isDouble(button, window));
}

void CInputByHand::release(CPointerButton button) {
    setHeld(button, false);
    send(target(), CPointerKind::Release, button, false);
    settle();
}

void CInputByHand::click(CPointerButton button) {
    press(button);
    release(button);
}

bool CInputByHand::wheel(double notches) {
    CWindowByHand* window = desktop_.windowAt(x_, y_);
    if (window && window->handler()) {
        const CIntRect bounds = window->screenBounds();
        CWheelEvent event;
        event.x = x_ - bounds.left;
        event.y = y_ - bounds.top;
        event.delta = notches;
        event.modifiers = modifiers_;
        if (window->handler()->onWheel(event)) {
            return true;
        }
    }
    hostWheel_ += notches;
    return false;
}

void CInputByHand::holdKeys(bool isShift, bool isCtrl, bool isAlt) {
    modifiers_.isShift = isShift;
    modifiers_.isCtrl = isCtrl;
    modifiers_.isAlt = isAlt;
}

bool CInputByHand::key(int32_t code, bool isDown, const std::u16string& characters, bool isDead) {
    CKeyEvent event;
    event.code = code;
    event.isDown = isDown;
    event.isDead = isDead;
    event.modifiers = modifiers_;
    event.characterCount = std::min(static_cast<int32_t>(characters.size()), CKeyEvent::kMaxCharacters);
    std::copy_n(characters.begin(), event.characterCount, event.characters);
    CWindowByHand* window = desktop_.find(desktop_.keyGrabber() != 0 ? desktop_.keyGrabber() : desktop_.focus());
    if (window && window->handler() && window->handler()->onKey(event)) {
        return true;
    }
    hostKeys_.push_back(event);
    return false;
}

bool CInputByHand::tap(int32_t code, const std::u16string& characters) {
    const bool isTaken = key(code, true, characters);
    key(code, false);
    return isTaken;
}

int32_t CInputByHand::type(const std::u16string& text) {
    int32_t taken = 0;
    for (const char16_t unit : text) {
        const bool isSmall = unit >= u'a' && unit <= u'z';
        const bool isPlain = (unit >= u'A' && unit <= u'Z') || (unit >= u'0' && unit <= u'9') || unit == u' ';
        const int32_t code = isSmall ? unit - u'a' + u'A' : isPlain ? unit : 0;
        taken += tap(code, std::u16string(1, unit)) ? 1 : 0;
    }
    return taken;
}

}  // namespace tarv
