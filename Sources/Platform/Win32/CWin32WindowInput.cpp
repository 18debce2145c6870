// Messages of a window: pointer, wheel and keys.

#include <windowsx.h>
#include <algorithm>

#include "Platform/Win32/CKeyHook.h"
#include "Platform/Win32/CWin32Window.h"

namespace tarv {

/// What a message says of a button.
struct CWin32Window::CButtonRow {
    UINT number;
    CPointerKind kind;
    CPointerButton button;
    bool isDouble;
};

const CWin32Window::CButtonRow CWin32Window::kButtons[] = {
    {WM_LBUTTONDOWN, CPointerKind::Press, CPointerButton::Left, false},
    {WM_LBUTTONUP, CPointerKind::Release, CPointerButton::Left, false},
    {WM_LBUTTONDBLCLK, CPointerKind::Press, CPointerButton::Left, true},
    {WM_RBUTTONDOWN, CPointerKind::Press, CPointerButton::Right, false},
    {WM_RBUTTONUP, CPointerKind::Release, CPointerButton::Right, false},
    {WM_RBUTTONDBLCLK, CPointerKind::Press, CPointerButton::Right, true},
    {WM_MBUTTONDOWN, CPointerKind::Press, CPointerButton::Other, false},
    {WM_MBUTTONUP, CPointerKind::Release, CPointerButton::Other, false},
    {WM_MBUTTONDBLCLK, CPointerKind::Press, CPointerButton::Other, true},
    {WM_XBUTTONDOWN, CPointerKind::Press, CPointerButton::Other, false},
    {WM_XBUTTONUP, CPointerKind::Release, CPointerButton::Other, false},
    {WM_XBUTTONDBLCLK, CPointerKind::Press, CPointerButton::Other, true},
};

namespace {

bool isKeyDown(int key) {
    return GetKeyState(key) < 0;
}

}  // namespace

CInputModifiers currentModifiers() {
    return {isKeyDown(VK_SHIFT), isKeyDown(VK_CONTROL), isKeyDown(VK_MENU), isKeyDown(VK_LBUTTON),
            isKeyDown(VK_RBUTTON)};
}

void CWin32Window::sendPointer(CPointerKind kind, CPointerButton button, bool isDouble) {
    handler_.onPointer({kind, button, lastX_, lastY_, isDouble, currentModifiers()});
}

// Positions are the message's, not the pointer's of this moment, and signed: beyond the edges while captured, and on
// monitors left of the first one.
LRESULT CWin32Window::movePointer(const CMessage& message) {
    lastX_ = GET_X_LPARAM(message.lParam);
    lastY_ = GET_Y_LPARAM(message.lParam);
    trackLeave();
    sendPointer(CPointerKind::Move, CPointerButton::None, false);
    return 0;
}

LRESULT CWin32Window::pressButton(const CMessage& message) {
    const auto* row =
        std::find_if(std::begin(kButtons), std::end(kButtons), [&](auto& r) { return r.number == message.number; });
    lastX_ = GET_X_LPARAM(message.lParam);
    lastY_ = GET_Y_LPARAM(message.lParam);
    sendPointer(row->kind, row->button, row->isDouble);
    // What the system makes of the further buttons, such as back and forward, is not the host's either.
    return row->button == CPointerButton::Other ? TRUE : 0;
}

// While captured the system would report each move outside.
void CWin32Window::trackLeave() {
    if (handle_ && !isCaptured_ && !isTracking_) {
        TRACKMOUSEEVENT track{sizeof(track), TME_LEAVE, handle_, 0};
        isTracking_ = TrackMouseEvent(&track) != 0;
    }
}

// A leave while captured was not reported, and some systems give none for a window that the pointer is not over.
void CWin32Window::trackLeaveAfterCapture() {
    POINT place{};
    GetCursorPos(&place);
    if (isTracking_ || WindowFromPoint(place) == handle_) {
        trackLeave();
    } else {
        isTracking_ = PostMessageW(handle_, WM_MOUSELEAVE, 0, 0) != 0;
    }
}

LRESULT CWin32Window::leave(const CMessage&) {
    isTracking_ = false;
    if (!isCaptured_) {
        sendPointer(CPointerKind::Leave, CPointerButton::None, false);
    }
    return 0;
}

LRESULT CWin32Window::loseCapture(const CMessage& message) {
    if (isCaptured_ && reinterpret_cast<HWND>(message.lParam) != message.window) {
        isCaptured_ = false;
        trackLeaveAfterCapture();
        sendPointer(CPointerKind::CaptureLost, CPointerButton::None, false);
    }
    return 0;
}

// Systems before Windows 10, and some hosts, send the wheel to the window with the focus: the point on the screen
// decides.
LRESULT CWin32Window::turnWheel(const CMessage& message) {
    const POINT place{GET_X_LPARAM(message.lParam), GET_Y_LPARAM(message.lParam)};
    CWin32Window* target = find(WindowFromPoint(place));
    if (target) {
        return target->takeWheel(message, place);
    }
    return isChild_ ? passOn(GetParent(handle_), message) : 0;
}

LRESULT CWin32Window::takeWheel(const CMessage& message, POINT place) {
    if (isPassingOn_) {
        return 0;
    }
    const CLifeGuard guard(life_);
    ScreenToClient(handle_, &place);
    const double notches = static_cast<double>(GET_WHEEL_DELTA_WPARAM(message.wParam)) / WHEEL_DELTA;
    const bool isTaken = handler_.onWheel({place.x, place.y, notches, currentModifiers()});
    const bool isOver = isTaken || !guard.isAlive() || !handle_ || !isChild_;
    return isOver ? 0 : passOn(GetParent(handle_), message);
}

// A host may send what it gets to the window under the pointer or with the focus, which is this one again.
LRESULT CWin32Window::passOn(HWND to, const CMessage& message) {
    if (!to || isPassingOn_) {
        return 0;
    }
    if (GetWindowThreadProcessId(to, nullptr) != GetCurrentThreadId()) {
        // Its own loop makes the characters of a key.
        if (message.number != WM_CHAR && message.number != WM_DEADCHAR) {
            PostMessageW(to, message.number, message.wParam, message.lParam);
        }
        return 0;
    }
    const CLifeGuard guard(life_);
    isPassingOn_ = true;
    const LRESULT result = SendMessageW(to, message.number, message.wParam, message.lParam);
    if (guard.isAlive()) {
        isPassingOn_ = false;
    }
    return result;
}

CKeyEvent CWin32Window::keyOf(const CMessage& message, bool isDown) {
    constexpr int kScanCodeShift = 16;
    constexpr UINT kScanCodeMask = 0xff;
    constexpr int kKeyCount = 256;
    CKeyEvent event;
    event.code = static_cast<int32_t>(message.wParam);
    event.isDown = isDown;
    event.modifiers = currentModifiers();
    BYTE state[kKeyCount] = {};
    if (isDown && GetKeyboardState(state)) {
        const UINT scanCode = static_cast<UINT>(message.lParam >> kScanCodeShift) & kScanCodeMask;
        event.characterCount =
            characters_.translate(static_cast<UINT>(message.wParam), scanCode, state, event.characters);
        event.isDead = characters_.isWaiting(static_cast<UINT>(message.wParam));
    }
    return event;
}

LRESULT CWin32Window::takeHookedKey(const CMessage& message) {
    if (!CKeyHook::isOwner(message.window)) {
        return 0;
    }
    return handler_.onKey(keyOf(message, message.number == CKeyHook::kPressMessage)) ? 1 : 0;
}

LRESULT CWin32Window::loseKeys(const CMessage& message) {
    if (isGrabbing_ && !CKeyHook::isOwner(message.window)) {
        isGrabbing_ = false;
        handler_.onKeysLost();
    }
    return 0;
}

// No window of this thread gets the focus: the user works in another program. A popup loses the activation then, of
// which a child is not informed.
LRESULT CWin32Window::loseFocus(const CMessage& message) {
    const LRESULT result = byDefault(message);
    if (isChild_ && !message.wParam) {
        grabKeys(false);
        handler_.onKeysLost();
    }
    return result;
}

// A key that the focus brings, where no hook has asked already. Its characters, which the host's loop makes, follow it.
bool CWin32Window::takeKeyOfFocus(const CMessage& message) {
    if (isPassingOn_ || CKeyHook::asksThisThread()) {
        isKeyTaken_ = false;
        return false;
    }
    if (message.number != WM_KEYDOWN && message.number != WM_KEYUP) {
        return isKeyTaken_;
    }
    const bool isDown = message.number == WM_KEYDOWN;
    const CLifeGuard guard(life_);
    const bool isTaken = handler_.onKey(keyOf(message, isDown));
    if (!guard.isAlive()) {
        return true;
    }
    isKeyTaken_ = isDown ? isTaken : isKeyTaken_;
    return isTaken;
}

// What the focus brings and no view takes is the host's.
LRESULT CWin32Window::passKeyOn(const CMessage& message) {
    if (takePacket(message) || takeKeyOfFocus(message)) {
        return 0;
    }
    return passOn(isChild_ ? GetParent(message.window) : GetWindow(message.window, GW_OWNER), message);
}

// Characters that come without a key of the layout: from a keyboard on the screen, or from another program.
bool CWin32Window::takePacket(const CMessage& message) {
    if (!CKeyHook::isOwner(message.window)) {
        return false;
    }
    if (message.number == WM_KEYDOWN || message.number == WM_KEYUP) {
        isPacket_ = message.number == WM_KEYDOWN && message.wParam == VK_PACKET;
        return message.wParam == VK_PACKET;
    }
    if (message.number != WM_CHAR || !isPacket_) {
        return false;
    }
    isPacket_ = false;
    CKeyEvent event;
    event.code = VK_PACKET;
    event.isDown = true;
    event.modifiers = currentModifiers();
    event.characters[0] = static_cast<char16_t>(message.wParam);
    event.characterCount = 1;
    handler_.onKey(event);
    return true;
}

}  // namespace tarv
