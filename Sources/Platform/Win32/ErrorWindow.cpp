// The error window of Windows.

#include "Platform/ErrorWindow.h"

#include <string>

#include "Platform/Win32/Module.h"
#include "Platform/Win32/WideText.h"

namespace tarv {

namespace {

constexpr char kClassName[] = "ErrorWindowClass";
constexpr DWORD kExtendedStyle = 9;
constexpr DWORD kStyle = 0x80cf0000;
constexpr int kMargin = 10;
constexpr int kFontHeight = -12;

LRESULT CALLBACK errorProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_DESTROY) {
        PostQuitMessage(0);
        return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

/// A third of the work area in each direction, in its middle.
RECT centredThird() {
    RECT area{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
    const LONG width = (area.right - area.left) / 3;
    const LONG height = (area.bottom - area.top) / 3;
    const LONG left = (area.left + area.right - width) / 2;
    const LONG top = (area.top + area.bottom - height) / 2;
    return {left, top, left + width, top + height};
}

void addText(HWND parent, const wchar_t* controlClass, const wchar_t* text, DWORD style, const RECT& place,
             HFONT font) {
    const HWND control =
        CreateWindowExW(0, controlClass, text, WS_CHILD | WS_VISIBLE | style, place.left, place.top,
                        place.right - place.left, place.bottom - place.top, parent, nullptr, ownModule(), nullptr);
    SendMessageA(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

void addControls(HWND window, const char16_t* details, HFONT font) {
    const std::string explanation(kErrorExplanation);
    const std::wstring wideExplanation(explanation.begin(), explanation.end());
    RECT client{};
    GetClientRect(window, &client);
    const LONG third = client.bottom / 3;
    addText(window, L"STATIC", wideExplanation.c_str(), SS_LEFT | SS_NOPREFIX,
            {kMargin, kMargin, client.right - kMargin, third}, font);
    addText(window, L"EDIT", asWide(details),
            WS_BORDER | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOHSCROLL | ES_AUTOVSCROLL,
            {kMargin, third + kMargin, client.right - kMargin, client.bottom - kMargin}, font);
}

void runUntilClosed() {
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

}  // namespace

void showErrorWindow(const char16_t* details) {
    WNDCLASSEXA windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.lpfnWndProc = &errorProc;
    windowClass.hInstance = ownModule();
    windowClass.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = kClassName;
    RegisterClassExA(&windowClass);
    const RECT place = centredThird();
    const HWND window =
        CreateWindowExA(kExtendedStyle, kClassName, kErrorTitle, kStyle, place.left, place.top,
                        place.right - place.left, place.bottom - place.top, nullptr, nullptr, ownModule(), nullptr);
    // Without a desktop no user can dismiss a window: the log has the lines.
    if (window) {
        const HFONT font =
            CreateFontA(kFontHeight, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                        CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, "Verdana");
        addControls(window, details, font);
        ShowWindow(window, SW_SHOW);
        SetForegroundWindow(window);
        runUntilClosed();
        // A quit that was meant for the host's own loop ends ours, too: the window goes with it and posts the quit
        // anew.
        DestroyWindow(window);
        DeleteObject(font);
    }
    UnregisterClassA(kClassName, ownModule());
}

}  // namespace tarv
