#include "Platform/EventWindow.h"

#include <windows.h>

#include "Platform/Lock.h"

namespace tarv {

namespace {

constexpr const char* kClassName = "TarveloBrindleXEQEventWindow";
constexpr UINT kFirstMessage = WM_APP;

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* target = reinterpret_cast<CEventWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (target && message >= kFirstMessage && message < 0xC000) {
        target->receive(message - kFirstMessage, static_cast<uintptr_t>(lParam));
        return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

HINSTANCE ownModule() {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCSTR>(&windowProcedure), &module);
    return module;
}

// The class leaves with its last window, so that the library can be loaded again at another address.
CLock classLock;
int windowCount = 0;

bool enterClass() {
    CLockScope scope(classLock);
    if (windowCount == 0) {
        WNDCLASSEXA windowClass = {};
        windowClass.cbSize = sizeof(windowClass);
        windowClass.lpfnWndProc = windowProcedure;
        windowClass.hInstance = ownModule();
        windowClass.lpszClassName = kClassName;
        if (!RegisterClassExA(&windowClass)) {
            return false;
        }
    }
    ++windowCount;
    return true;
}

void leaveClass() {
    CLockScope scope(classLock);
    if (--windowCount == 0) {
        UnregisterClassA(kClassName, ownModule());
    }
}

}  // namespace

uint64_t currentThreadId() {
    return GetCurrentThreadId();
}

uint32_t CEventWindow::open(CReceiver receiver, void* user) {
    if (!enterClass()) {
        return GetLastError();
    }
    receiver_ = receiver;
    user_ = user;
    HWND window = CreateWindowExA(0, kClassName, "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, ownModule(), nullptr);
    if (!window) {
        uint32_t code = GetLastError();
        leaveClass();
        return code;
    }
    SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    handle_ = window;
    return 0;
}

void CEventWindow::close() {
    if (handle_) {
        DestroyWindow(static_cast<HWND>(handle_));
        handle_ = nullptr;
        leaveClass();
    }
}

uint32_t CEventWindow::post(uint32_t message, uintptr_t cookie) {
    // Without a window PostMessage would go to the calling thread's own queue.
    if (!handle_) {
        return ERROR_INVALID_WINDOW_HANDLE;
    }
    bool posted = PostMessageA(static_cast<HWND>(handle_), kFirstMessage + message, 0, static_cast<LPARAM>(cookie));
    return posted ? 0 : GetLastError();
}

int dispatchPostedEvents() {
    int count = 0;
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageA(&message);
        ++count;
    }
    return count;
}

}  // namespace tarv
