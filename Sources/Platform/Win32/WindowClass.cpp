// Window classes of Windows.

#include "Platform/WindowClass.h"

#include "Platform/Win32/Module.h"
#include "Platform/Win32/WideText.h"

namespace tarv {

CPlatformError registerWindowClass(const char16_t* name) {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.lpfnWndProc = &DefWindowProcW;
    windowClass.hInstance = ownModule();
    windowClass.lpszClassName = asWide(name);
    return RegisterClassExW(&windowClass) ? 0 : GetLastError();
}

CPlatformError unregisterWindowClass(const char16_t* name) {
    return UnregisterClassW(asWide(name), ownModule()) ? 0 : GetLastError();
}

}  // namespace tarv
