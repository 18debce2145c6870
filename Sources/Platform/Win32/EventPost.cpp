// Posts between threads on Windows, by messages to a hidden window.

#include "Platform/EventPost.h"

#include <windows.h>

#include "Platform/ProcessHeap.h"
#include "Platform/Win32/EventWindowClass.h"
#include "Platform/Win32/Module.h"

namespace tarv {

namespace {

constexpr UINT kPostMessage = WM_APP + 1;

struct CEventReceiver {
    CEventHandler handler;
    void* user;
};

LRESULT CALLBACK eventProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == kPostMessage) {
        // A copy, since the handler may close the window.
        const auto* receiver = reinterpret_cast<const CEventReceiver*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (receiver) {
            const CEventReceiver target = *receiver;
            target.handler(target.user, static_cast<uintptr_t>(lParam));
        }
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

CModuleClass windowClass(L"TarveloEvents", &eventProc, 0);

}  // namespace

CModuleClass& eventWindowClass() {
    return windowClass;
}

CPlatformError openEventWindow(CEventHandler handler, void* user, CEventWindow& window) {
    window = 0;
    if (const CPlatformError error = windowClass.acquire()) {
        return error;
    }
    const HWND made =
        CreateWindowExW(0, windowClass.name(), L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, ownModule(), nullptr);
    if (!made) {
        const CPlatformError error = GetLastError();
        windowClass.release();
        return error;
    }
    auto* receiver = static_cast<CEventReceiver*>(processHeapAlloc(sizeof(CEventReceiver)));
    *receiver = {handler, user};
    SetWindowLongPtrW(made, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(receiver));
    window = reinterpret_cast<CEventWindow>(made);
    return 0;
}

void closeEventWindow(CEventWindow window) {
    const auto handle = reinterpret_cast<HWND>(window);
    if (!IsWindow(handle)) {
        return;
    }
    auto* receiver = reinterpret_cast<void*>(SetWindowLongPtrW(handle, GWLP_USERDATA, 0));
    DestroyWindow(handle);
    processHeapFree(receiver);
    windowClass.release();
}

CPlatformError postEvent(CEventWindow window, uintptr_t cookie) {
    const auto handle = reinterpret_cast<HWND>(window);
    // A null handle would post to the thread itself.
    if (!handle) {
        return ERROR_INVALID_WINDOW_HANDLE;
    }
    return PostMessageA(handle, kPostMessage, 0, static_cast<LPARAM>(cookie)) ? 0 : GetLastError();
}

}  // namespace tarv
