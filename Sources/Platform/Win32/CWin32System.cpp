// The backend of windows on Windows.

#include "Platform/Win32/CWin32System.h"

#include "Platform/Win32/CTimerWindow.h"
#include "Platform/Win32/CWin32Surface.h"
#include "Platform/Win32/CWin32Window.h"
#include "Platform/Win32/Clipboard.h"
#include "Platform/Win32/EventWindowClass.h"
#include "Platform/Win32/FileDialog.h"

namespace tarv {

CWindowSystem* systemWindows() {
    static CWin32System system;
    return &system;
}

namespace {

CModuleClass& classOf(CWindowKind kind) {
    switch (kind) {
        case CWindowKind::Posts:
            return eventWindowClass();
        case CWindowKind::Timers:
            return CTimerWindow::windowClass();
        default:
            return CWin32Window::windowClass();
    }
}

}  // namespace

CPlatformError CWin32System::acquireClass(CWindowKind kind) {
    return classOf(kind).acquire();
}

void CWin32System::releaseClass(CWindowKind kind) {
    classOf(kind).release();
}

std::unique_ptr<CSurface> CWin32System::createSurface(int32_t width, int32_t height, CSurfaceStep& step,
                                                      CPlatformError& error) {
    return CWin32Surface::create(width, height, step, error);
}

std::unique_ptr<CPlatformWindow> CWin32System::createWindow(const CWindowRequest& request, CWindowHandler& handler,
                                                            CPlatformError& error) {
    return CWin32Window::create(request, handler, error);
}

CWindowHandle CWin32System::windowAt(int32_t x, int32_t y) {
    const HWND found = WindowFromPoint({x, y});
    return isOwnWindow(found) ? reinterpret_cast<CWindowHandle>(found) : 0;
}

void CWin32System::pointerPosition(int32_t& x, int32_t& y) {
    POINT place{};
    GetCursorPos(&place);
    x = place.x;
    y = place.y;
}

double CWin32System::doubleClickSeconds() {
    return GetDoubleClickTime() / 1000.0;
}

CInputModifiers CWin32System::modifiers() {
    return currentModifiers();
}

CIntRect CWin32System::monitorArea(int32_t x, int32_t y) {
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    GetMonitorInfoW(MonitorFromPoint({x, y}, MONITOR_DEFAULTTONEAREST), &info);
    return {info.rcWork.left, info.rcWork.top, info.rcWork.right, info.rcWork.bottom};
}

CTimerId CWin32System::startTimer(CTimerHandler& handler, int32_t milliseconds, CPlatformError& error, bool& isWindow) {
    return CTimerWindow::start(handler, milliseconds, error, isWindow);
}

void CWin32System::stopTimer(CTimerId id) {
    CTimerWindow::stop(id);
}

bool CWin32System::clipboardText(std::u16string& text) {
    return readClipboard(text);
}

bool CWin32System::setClipboardText(const std::u16string& text) {
    return writeClipboard(text);
}

bool CWin32System::askForFile(const CFileDialogRequest& request, std::u16string& path, std::u16string& message) {
    return showFileDialog(request, path, message);
}

}  // namespace tarv
