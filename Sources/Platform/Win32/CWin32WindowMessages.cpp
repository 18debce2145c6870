// Messages of a window: painting, activation, the end.

#include "Platform/Win32/CKeyHook.h"
#include "Platform/Win32/CWin32WindowShared.h"
#include "Platform/Win32/FileDialog.h"

namespace tarv {

/// What takes a message.
struct CWin32Window::CMessageRow {
    UINT number;
    LRESULT (CWin32Window::*method)(const CMessage&);
};

const CWin32Window::CMessageRow CWin32Window::kMessages[] = {
    {WM_PAINT, &CWin32Window::paint},
    {WM_ERASEBKGND, &CWin32Window::keepBackground},
    {WM_SETCURSOR, &CWin32Window::chooseCursor},
    {WM_MOUSEACTIVATE, &CWin32Window::refuseActivation},
    {WM_CLOSE, &CWin32Window::askToClose},
    {WM_NCDESTROY, &CWin32Window::forgetHandle},
    {WM_MOUSEMOVE, &CWin32Window::movePointer},
    {WM_LBUTTONDOWN, &CWin32Window::pressButton},
    {WM_LBUTTONUP, &CWin32Window::pressButton},
    {WM_LBUTTONDBLCLK, &CWin32Window::pressButton},
    {WM_RBUTTONDOWN, &CWin32Window::pressButton},
    {WM_RBUTTONUP, &CWin32Window::pressButton},
    {WM_RBUTTONDBLCLK, &CWin32Window::pressButton},
    {WM_MBUTTONDOWN, &CWin32Window::pressButton},
    {WM_MBUTTONUP, &CWin32Window::pressButton},
    {WM_MBUTTONDBLCLK, &CWin32Window::pressButton},
    {WM_XBUTTONDOWN, &CWin32Window::pressButton},
    {WM_XBUTTONUP, &CWin32Window::pressButton},
    {WM_XBUTTONDBLCLK, &CWin32Window::pressButton},
    {WM_MOUSELEAVE, &CWin32Window::leave},
    {WM_CAPTURECHANGED, &CWin32Window::loseCapture},
    {WM_MOUSEWHEEL, &CWin32Window::turnWheel},
    {CKeyHook::kPressMessage, &CWin32Window::takeHookedKey},
    {CKeyHook::kReleaseMessage, &CWin32Window::takeHookedKey},
    {CKeyHook::kLostMessage, &CWin32Window::loseKeys},
    {WM_KILLFOCUS, &CWin32Window::loseFocus},
    {WM_KEYDOWN, &CWin32Window::passKeyOn},
    {WM_KEYUP, &CWin32Window::passKeyOn},
    {WM_CHAR, &CWin32Window::passKeyOn},
    {WM_DEADCHAR, &CWin32Window::passKeyOn},
};

LRESULT CALLBACK CWin32Window::procedure(HWND window, UINT number, WPARAM wParam, LPARAM lParam) {
    const CMessage message{window, number, wParam, lParam};
    // Concerns owners, too, also when this window is about to go.
    if (number == WM_ACTIVATE) {
        return activate(message);
    }
    auto* object = reinterpret_cast<CWin32Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (object) {
        for (const CMessageRow& row : kMessages) {
            if (row.number == number) {
                return (object->*row.method)(message);
            }
        }
    }
    return byDefault(message);
}

LRESULT CWin32Window::byDefault(const CMessage& message) {
    return DefWindowProcW(message.window, message.number, message.wParam, message.lParam);
}

bool isOwnWindow(HWND window) {
    DWORD process = 0;
    return window && GetWindowThreadProcessId(window, &process) && process == GetCurrentProcessId();
}

CWin32Window* CWin32Window::find(HWND window) {
    const bool isOurs = isOwnWindow(window) && GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId() &&
                        GetClassLongPtrW(window, GCW_ATOM) == shared_.windowClass.atom();
    return isOurs ? reinterpret_cast<CWin32Window*>(GetWindowLongPtrW(window, GWLP_USERDATA)) : nullptr;
}

LRESULT CWin32Window::paint(const CMessage& message) {
    if (!GetUpdateRect(message.window, nullptr, FALSE)) {
        return 0;
    }
    const CLifeGuard guard(life_);
    PAINTSTRUCT asked;
    const HDC context = BeginPaint(message.window, &asked);
    if (!context) {
        return 0;
    }
    SetWindowOrgEx(context, 0, 0, nullptr);
    paintContext_ = context;
    painted_ = {asked.rcPaint.left, asked.rcPaint.top, asked.rcPaint.right, asked.rcPaint.bottom};
    handler_.onPaint(painted_);
    if (guard.isAlive()) {
        paintContext_ = nullptr;
        painted_ = {};
    }
    // Of a window that has gone it does nothing: the context went with it.
    EndPaint(message.window, &asked);
    return 0;
}

LRESULT CWin32Window::keepBackground(const CMessage&) {
    return 1;
}

LRESULT CWin32Window::refuseActivation(const CMessage& message) {
    return isChild_ || isActivated_ ? byDefault(message) : MA_NOACTIVATE;
}

// A window stays active while one that it owns is; owners of windows that change are asked, too.
LRESULT CWin32Window::activate(const CMessage& message) {
    constexpr int kMostOwners = 16;
    const bool isActive = LOWORD(message.wParam) != WA_INACTIVE;
    const HWND active = isActive ? message.window : reinterpret_cast<HWND>(message.lParam);
    const LRESULT result = byDefault(message);
    // All of them first, since a handler may destroy any.
    HWND chain[kMostOwners];
    int count = 0;
    for (HWND at = message.window; at && count < kMostOwners; at = GetWindow(at, GW_OWNER)) {
        chain[count++] = at;
    }
    for (int i = 0; i < count; ++i) {
        if (CWin32Window* window = find(chain[i])) {
            window->followActivation(isActive, active);
        }
    }
    return result;
}

void CWin32Window::followActivation(bool isActive, HWND active) {
    for (HWND at = active; at && !isActive; at = GetWindow(at, GW_OWNER)) {
        isActive = at == handle_;
    }
    if (isActive != isActive_) {
        isActive_ = isActive;
        handler_.onActivation(isActive, isOwnWindow(active) ? reinterpret_cast<CWindowHandle>(active) : 0);
    }
}

LRESULT CWin32Window::askToClose(const CMessage&) {
    handler_.onCloseRequest();
    return 0;
}

// The last message of a window, which the system destroys with its parent.
LRESULT CWin32Window::forgetHandle(const CMessage& message) {
    CKeyHook::release(message.window);
    closeFileDialogs(message.window);
    SetWindowLongPtrW(message.window, GWLP_USERDATA, 0);
    const LRESULT result = byDefault(message);
    handle_ = nullptr;
    isCaptured_ = false;
    formerFocus_ = nullptr;
    handler_.onGone();
    return result;
}

}  // namespace tarv
