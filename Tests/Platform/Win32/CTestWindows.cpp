#include "Tests/Platform/Win32/CTestWindows.h"

#include <sstream>

namespace tarv {

void pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

bool pumpUntil(const std::function<bool()>& condition, DWORD mostMs) {
    const DWORD start = GetTickCount();
    for (pump(); !condition(); pump()) {
        if (GetTickCount() - start > mostMs) {
            return false;
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
    return true;
}

namespace {

constexpr wchar_t kHostClass[] = L"TestHost";

std::string buttonName(CPointerButton button) {
    constexpr const char* kNames[] = {"", "L", "R", "O"};
    return kNames[static_cast<size_t>(button)];
}

std::string modifierNames(const CInputModifiers& modifiers) {
    std::string names;
    names += modifiers.isShift ? " shift" : "";
    names += modifiers.isCtrl ? " ctrl" : "";
    names += modifiers.isAlt ? " alt" : "";
    names += modifiers.isLeft ? " +L" : "";
    names += modifiers.isRight ? " +R" : "";
    return names;
}

}  // namespace

CHostWindow::CHostWindow(DWORD extendedStyle, int width, int height) {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.lpfnWndProc = &procedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = kHostClass;
    RegisterClassExW(&windowClass);
    window_ = CreateWindowExW(extendedStyle, kHostClass, L"Host", WS_POPUP | WS_CLIPCHILDREN, 100, 100, width, height,
                              nullptr, nullptr, GetModuleHandleW(nullptr), this);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    ShowWindow(window_, SW_SHOW);
    SetForegroundWindow(window_);
    SetFocus(window_);
    pump();
    heard_.clear();
}

CHostWindow::~CHostWindow() {
    destroy();
}

void CHostWindow::destroy() {
    if (window_) {
        SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
        DestroyWindow(window_);
        window_ = nullptr;
    }
}

LRESULT CALLBACK CHostWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* host = reinterpret_cast<CHostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (host) {
        host->note(message, wParam);
        if (host->onMessage) {
            host->onMessage(message, wParam, lParam);
        }
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void CHostWindow::note(UINT message, WPARAM wParam) {
    const std::string number = std::to_string(LOWORD(wParam));
    switch (message) {
        case WM_MOUSEWHEEL:
            heard_.push_back("wheel " + std::to_string(GET_WHEEL_DELTA_WPARAM(wParam)));
            break;
        case WM_KEYDOWN:
            heard_.push_back("down " + number);
            break;
        case WM_KEYUP:
            heard_.push_back("up " + number);
            break;
        case WM_CHAR:
            heard_.push_back("char " + number);
            break;
        default:
            break;
    }
}

void CNotes::note(const std::string& line) {
    lines_.push_back(line);
    if (react) {
        // A copy, since what is called may destroy the window, and the test its notes.
        const auto call = react;
        call(line);
    }
}

CLines CNotes::take() {
    CLines lines;
    lines.swap(lines_);
    return lines;
}

void CNotes::onPaint(const CIntRect& dirty) {
    draw(dirty);
    std::ostringstream line;
    line << "paint " << dirty.left << ',' << dirty.top << ' ' << dirty.width() << 'x' << dirty.height();
    note(line.str());
}

void CNotes::onPointer(const CPointerEvent& event) {
    constexpr const char* kNames[] = {"move", "press", "release", "leave", "lost"};
    std::ostringstream line;
    line << kNames[static_cast<size_t>(event.kind)] << ' ' << buttonName(event.button)
         << (event.button == CPointerButton::None ? "" : " ") << event.x << ',' << event.y
         << (event.isDouble ? " double" : "") << modifierNames(event.modifiers);
    note(line.str());
}

bool CNotes::onWheel(const CWheelEvent& event) {
    const bool isTaken = takesWheel;
    wheelSum += event.delta;
    std::ostringstream line;
    line << "wheel " << event.x << ',' << event.y << ' ' << event.delta << modifierNames(event.modifiers);
    note(line.str());
    return isTaken;
}

bool CNotes::onKey(const CKeyEvent& event) {
    const bool isTaken = takesKeys;
    typed.append(event.characters, static_cast<size_t>(event.characterCount));
    note("key " + std::to_string(event.code) + (event.isDown ? " down" : " up") + modifierNames(event.modifiers));
    return isTaken;
}

void CNotes::onActivation(bool isActive, CWindowHandle other) {
    lastActive = other;
    note(isActive ? "active" : "inactive");
}

CRealInput::CRealInput() : turn_(CreateMutexW(nullptr, FALSE, L"TarvRealInput")) {
    WaitForSingleObject(turn_, INFINITE);
}

CRealInput::~CRealInput() {
    ReleaseMutex(turn_);
    CloseHandle(turn_);
}

void CRealInput::moveTo(int x, int y) {
    const int width = GetSystemMetrics(SM_CXSCREEN);
    const int height = GetSystemMetrics(SM_CYSCREEN);
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dx = (x * 65536 + width - 1) / width;
    input.mi.dy = (y * 65536 + height - 1) / height;
    input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    EXPECT_EQ(SendInput(1, &input, sizeof(input)), 1u);
    pump();
}

void CRealInput::button(DWORD flags) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    EXPECT_EQ(SendInput(1, &input, sizeof(input)), 1u);
    pump();
}

void CRealInput::wheel(int delta) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = MOUSEEVENTF_WHEEL;
    input.mi.mouseData = static_cast<DWORD>(delta);
    EXPECT_EQ(SendInput(1, &input, sizeof(input)), 1u);
    pump();
}

void CRealInput::key(WORD code, bool isDown) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = code;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(code, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = isDown ? 0 : KEYEVENTF_KEYUP;
    EXPECT_EQ(SendInput(1, &input, sizeof(input)), 1u);
    pump();
}

void CRealInput::press(WORD code) {
    key(code, true);
    key(code, false);
}

void CRealInput::packet(char16_t unit) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wScan = unit;
    input.ki.dwFlags = KEYEVENTF_UNICODE;
    EXPECT_EQ(SendInput(1, &input, sizeof(input)), 1u);
    input.ki.dwFlags |= KEYEVENTF_KEYUP;
    EXPECT_EQ(SendInput(1, &input, sizeof(input)), 1u);
    pump();
}

std::unique_ptr<CPlatformWindow> openChild(const CHostWindow& host, CWindowHandler& handler) {
    CWindowRequest request;
    request.isChild = true;
    request.parent = host.handle();
    request.bounds = {50, 50, 250, 150};
    CPlatformError error = 0;
    auto window = windowSystem()->createWindow(request, handler, error);
    EXPECT_EQ(error, 0u);
    if (window) {
        window->show(true);
        pump();
    }
    return window;
}

std::unique_ptr<CPlatformWindow> openPopup(CWindowHandle owner, CWindowHandler& handler, const CIntRect& bounds,
                                           bool isActivated) {
    CWindowRequest request;
    request.parent = owner;
    request.bounds = bounds;
    request.title = u"Popup";
    request.isActivated = isActivated;
    CPlatformError error = 0;
    auto window = windowSystem()->createWindow(request, handler, error);
    EXPECT_EQ(error, 0u);
    if (window) {
        window->show(true);
        pump();
    }
    return window;
}

}  // namespace tarv
