// The keyboard hook of Windows.

#include "Platform/Win32/CKeyHook.h"

namespace tarv {

namespace {

constexpr LPARAM kReleasedFlag = LPARAM{1} << 31;

/// Whether the user types into another window of this process than that of the owner, such as a dialog of the host or
/// of the system. Where the focus lies inside of a window is the host's matter, and the keys are the owner's.
bool isTypedElsewhere(HWND owner) {
    const HWND active = GetActiveWindow();
    DWORD process = 0;
    GetWindowThreadProcessId(active, &process);
    return active && process == GetCurrentProcessId() && active != GetAncestor(owner, GA_ROOT) &&
           GetClassLongPtrW(active, GCW_ATOM) != GetClassLongPtrW(owner, GCW_ATOM);
}

}  // namespace

CLock CKeyHook::lock_;
HHOOK CKeyHook::hook_ = nullptr;
HHOOK CKeyHook::watch_ = nullptr;
HWND CKeyHook::owner_ = nullptr;

bool CKeyHook::grab(HWND window) {
    const CLockScope scope(lock_);
    if (owner_ == window) {
        return true;
    }
    takeFrom(owner_);
    hook_ = SetWindowsHookExW(WH_KEYBOARD, &procedure, nullptr, GetCurrentThreadId());
    watch_ = hook_ ? SetWindowsHookExW(WH_CALLWNDPROC, &watchProcedure, nullptr, GetCurrentThreadId()) : nullptr;
    owner_ = hook_ ? window : nullptr;
    return hook_ != nullptr;
}

void CKeyHook::release(HWND window) {
    const CLockScope scope(lock_);
    if (window && owner_ == window) {
        remove();
    }
}

void CKeyHook::takeFrom(HWND former) {
    remove();
    if (former) {
        PostMessageW(former, kLostMessage, 0, 0);
    }
}

bool CKeyHook::asksThisThread() {
    const CLockScope scope(lock_);
    return owner_ && GetWindowThreadProcessId(owner_, nullptr) == GetCurrentThreadId();
}

bool CKeyHook::isOwner(HWND window) {
    const CLockScope scope(lock_);
    return window && owner_ == window;
}

void CKeyHook::remove() {
    if (hook_) {
        UnhookWindowsHookEx(hook_);
    }
    if (watch_) {
        UnhookWindowsHookEx(watch_);
    }
    hook_ = nullptr;
    watch_ = nullptr;
    owner_ = nullptr;
}

LRESULT CALLBACK CKeyHook::procedure(int code, WPARAM wParam, LPARAM lParam) {
    HWND owner = nullptr;
    {
        const CLockScope scope(lock_);
        owner = owner_;
    }
    // A host that only looks at its queue (HC_NOREMOVE) meets the key once more. VK_PACKET carries its character where
    // a hook does not see it: the window takes it from WM_CHAR.
    const bool isOurs = code == HC_ACTION && wParam != VK_PACKET && owner &&
                        GetWindowThreadProcessId(owner, nullptr) == GetCurrentThreadId();
    if (isOurs && isTypedElsewhere(owner)) {
        const CLockScope scope(lock_);
        if (owner_ == owner) {
            takeFrom(owner);
        }
    } else if (isOurs &&
               SendMessageW(owner, lParam & kReleasedFlag ? kReleaseMessage : kPressMessage, wParam, lParam)) {
        return 1;
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

// The system sends it to the windows of this thread that have no owner, of which the host's is one.
LRESULT CALLBACK CKeyHook::watchProcedure(int code, WPARAM wParam, LPARAM lParam) {
    const auto* sent = reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (code == HC_ACTION && sent->message == WM_ACTIVATEAPP && !sent->wParam) {
        const CLockScope scope(lock_);
        if (owner_ && GetWindowThreadProcessId(owner_, nullptr) == GetCurrentThreadId()) {
            takeFrom(owner_);
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace tarv
