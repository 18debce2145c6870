#include "CEditorWindow.h"

#include <algorithm>
#include <cstdio>

namespace tarv::host {

namespace {

constexpr const char* kClass = "TarvEditorHost";
constexpr UINT_PTR kIdleTimer = 1;
constexpr UINT_PTR kEndTimer = 2;
constexpr UINT kIdleMs = 30;
constexpr int32_t kColumns = 6;
constexpr int kLineHeight = 16;
constexpr int kMargin = 6;

SIZE wantedSize(CVstHost& host) {
    vst::Rect* rect = nullptr;
    host.dispatch(vst::kEffectEditGetRect, 0, 0, &rect);
    return rect ? SIZE{rect->right - rect->left, rect->bottom - rect->top} : SIZE{0, 0};
}

}  // namespace

CEditorWindow::CEditorWindow(CVstHost& host, const std::string& title) : host_(host) {
    WNDCLASSEXA made{};
    made.cbSize = sizeof made;
    made.lpfnWndProc = &procedure;
    made.hInstance = GetModuleHandleA(nullptr);
    made.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    made.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    made.lpszClassName = kClass;
    RegisterClassExA(&made);
    constexpr DWORD kStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
    window_ = CreateWindowExA(0, kClass, title.c_str(), kStyle, CW_USEDEFAULT, CW_USEDEFAULT, 400, 300, nullptr,
                              nullptr, made.hInstance, this);
    parent_ = CreateWindowExA(0, "STATIC", "", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, 10, 10, window_, nullptr,
                              made.hInstance, nullptr);
}

CEditorWindow::~CEditorWindow() {
    host_.dispatch(vst::kEffectEditClose);
    if (window_) {
        DestroyWindow(window_);
    }
}

bool CEditorWindow::open() {
    fit();
    readValues();
    if (host_.dispatch(vst::kEffectEditOpen, 0, 0, parent_) != 1) {
        return false;
    }
    fit();
    ShowWindow(window_, SW_SHOW);
    SetTimer(window_, kIdleTimer, kIdleMs, nullptr);
    return true;
}

void CEditorWindow::run(double seconds) {
    if (seconds > 0.0) {
        SetTimer(window_, kEndTimer, static_cast<UINT>(seconds * 1000.0), nullptr);
    }
    MSG message;
    while (window_ && GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

LRESULT CALLBACK CEditorWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        const auto* made = reinterpret_cast<const CREATESTRUCTA*>(lParam);
        SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made->lpCreateParams));
    }
    auto* self = reinterpret_cast<CEditorWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    return self && self->window_ ? self->answer(message, wParam, lParam)
                                 : DefWindowProcA(window, message, wParam, lParam);
}

LRESULT CEditorWindow::answer(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_TIMER && wParam == kIdleTimer) {
        host_.dispatch(vst::kEffectEditIdle);
        host_.automated.clear();
        fit();
        readValues();
        return 0;
    }
    if (message == WM_CLOSE || (message == WM_TIMER && wParam == kEndTimer)) {
        // The editor goes before its window does.
        host_.dispatch(vst::kEffectEditClose);
        DestroyWindow(std::exchange(window_, nullptr));
        PostMessageA(nullptr, WM_NULL, 0, 0);
        return 0;
    }
    if (message == WM_PAINT) {
        paintValues();
        return 0;
    }
    return DefWindowProcA(window_, message, wParam, lParam);
}

void CEditorWindow::fit() {
    const SIZE size = wantedSize(host_);
    if (size.cx == size_.cx && size.cy == size_.cy) {
        return;
    }
    size_ = size;
    const int lines = (host_.effect()->numParams + kColumns - 1) / kColumns + 1;
    RECT bounds{0, 0, size.cx, size.cy + lines * kLineHeight + 2 * kMargin};
    AdjustWindowRectEx(&bounds, static_cast<DWORD>(GetWindowLongPtrA(window_, GWL_STYLE)), FALSE, 0);
    SetWindowPos(window_, nullptr, 0, 0, bounds.right - bounds.left, bounds.bottom - bounds.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    SetWindowPos(parent_, nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
}

void CEditorWindow::readValues() {
    std::string values;
    for (int32_t i = 0; i < host_.effect()->numParams; ++i) {
        const std::string name = host_.text(vst::kEffectGetParamName, i);
        const std::string text =
            host_.text(vst::kEffectGetParamDisplay, i) + ' ' + host_.text(vst::kEffectGetParamLabel, i);
        char cell[32];
        std::snprintf(cell, sizeof cell, "%-8.8s %-8.8s", name.c_str(), text.c_str());
        values += cell;
        values += (i + 1) % kColumns == 0 ? '\n' : ' ';
    }
    if (values != values_) {
        values_ = values;
        RECT below{0, size_.cy, 1 << 15, 1 << 15};
        InvalidateRect(window_, &below, TRUE);
    }
}

void CEditorWindow::paintValues() {
    PAINTSTRUCT paint;
    const HDC context = BeginPaint(window_, &paint);
    SelectObject(context, GetStockObject(ANSI_FIXED_FONT));
    SetBkMode(context, TRANSPARENT);
    const std::string text = values_ + note_;
    int y = size_.cy + kMargin;
    for (size_t at = 0; at < text.size(); y += kLineHeight) {
        const size_t end = std::min(text.find('\n', at), text.size());
        TextOutA(context, kMargin, y, text.data() + at, static_cast<int>(end - at));
        at = end + 1;
    }
    EndPaint(window_, &paint);
}

}  // namespace tarv::host
