// Windows of Windows: life, place, pixels, capture and focus.

#include "Platform/Win32/CWin32Window.h"

#include "Platform/Win32/CKeyHook.h"
#include "Platform/Win32/CWin32Surface.h"
#include "Platform/Win32/CWin32WindowShared.h"
#include "Platform/Win32/FileDialog.h"
#include "Platform/Win32/Module.h"
#include "Platform/Win32/WideText.h"

namespace tarv {

namespace {

HWND asWindow(CWindowHandle handle) {
    return reinterpret_cast<HWND>(handle);
}

DWORD extendedStyleOf(const CWindowRequest& request) {
    if (request.isChild) {
        return 0;
    }
    // An owned window has no button; one without an owner would get it unasked.
    const DWORD taskbar = request.isTaskbar ? WS_EX_APPWINDOW : (request.parent ? 0 : WS_EX_TOOLWINDOW);
    return taskbar | (request.isActivated ? 0 : WS_EX_NOACTIVATE);
}

// In the order of CCursorShape.
constexpr WORD kCursors[] = {32512, 32513, 32649, 32645, 32644, 32646};

bool contains(const CIntRect& outer, const CIntRect& inner) {
    return outer.intersection(inner) == inner;
}

}  // namespace

CWin32Window::CShared CWin32Window::shared_;

std::unique_ptr<CWin32Window> CWin32Window::create(const CWindowRequest& request, CWindowHandler& handler,
                                                   CPlatformError& error) {
    error = shared_.windowClass.acquire();
    if (error) {
        return nullptr;
    }
    std::unique_ptr<CWin32Window> window(new CWin32Window(request, handler));
    error = window->make(request);
    if (error) {
        window.reset();
    }
    return window;
}

CModuleClass& CWin32Window::windowClass() {
    return shared_.windowClass;
}

CWin32Window::CWin32Window(const CWindowRequest& request, CWindowHandler& handler)
    : handler_(handler), isChild_(request.isChild), isActivated_(request.isActivated) {}

CPlatformError CWin32Window::make(const CWindowRequest& request) {
    const DWORD style = (request.isChild ? WS_CHILD : WS_POPUP) | WS_CLIPSIBLINGS;
    const CIntRect& bounds = request.bounds;
    handle_ = CreateWindowExW(extendedStyleOf(request), shared_.windowClass.name(), asWide(request.title), style,
                              bounds.left, bounds.top, bounds.width(), bounds.height(), asWindow(request.parent),
                              nullptr, ownModule(), nullptr);
    if (!handle_) {
        return GetLastError();
    }
    // A host that is written from the right mirrors its children, their coordinates and their pixels.
    const LONG_PTR extendedStyle = GetWindowLongPtrW(handle_, GWL_EXSTYLE);
    if (extendedStyle & WS_EX_LAYOUTRTL) {
        SetWindowLongPtrW(handle_, GWL_EXSTYLE, extendedStyle & ~LONG_PTR{WS_EX_LAYOUTRTL});
    }
    SetWindowLongPtrW(handle_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    return 0;
}

CWin32Window::~CWin32Window() {
    if (const HWND window = handle_) {
        CKeyHook::release(window);
        closeFileDialogs(window);
        releaseCapture();
        // From here on no message finds the object.
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        giveFocusBack();
        handle_ = nullptr;
        // Fails on another thread than the window's, which then does it by default.
        if (!DestroyWindow(window)) {
            PostMessageW(window, WM_CLOSE, 0, 0);
        }
    }
    shared_.windowClass.release();
}

void CWin32Window::show(bool isShown) {
    if (!isShown) {
        ShowWindow(handle_, SW_HIDE);
    } else if (isChild_) {
        ShowWindow(handle_, SW_SHOWNA);
    } else if (isActivated_) {
        // An activated window takes the focus with it.
        rememberFocus();
        ShowWindow(handle_, SW_SHOW);
    } else {
        SetWindowPos(handle_, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    }
}

void CWin32Window::setBounds(const CIntRect& bounds) {
    SetWindowPos(handle_, nullptr, bounds.left, bounds.top, bounds.width(), bounds.height(),
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

CIntRect CWin32Window::screenBounds() const {
    RECT bounds{};
    GetWindowRect(handle_, &bounds);
    return {bounds.left, bounds.top, bounds.right, bounds.bottom};
}

void CWin32Window::setTitle(const char16_t* title) {
    SetWindowTextW(handle_, asWide(title));
}

void CWin32Window::present(const CSurface& surface, int32_t x, int32_t y, const CIntRect& rect) {
    if (!handle_ || rect.isEmpty()) {
        return;
    }
    // The system clips what is drawn by its own context to what it asked for.
    const bool isOfPaint = paintContext_ && contains(painted_, rect);
    const HDC target = isOfPaint ? paintContext_ : GetDC(handle_);
    BitBlt(target, rect.left, rect.top, rect.width(), rect.height(),
           static_cast<const CWin32Surface&>(surface).context(), rect.left - x, rect.top - y, SRCCOPY);
    if (!isOfPaint) {
        ReleaseDC(handle_, target);
    }
}

void CWin32Window::finishPresenting() {
    GdiFlush();
}

void CWin32Window::invalidate(const CIntRect& rect) {
    // A handle of 0 would be the whole screen.
    if (handle_) {
        const RECT dirty{rect.left, rect.top, rect.right, rect.bottom};
        InvalidateRect(handle_, &dirty, FALSE);
    }
}

void CWin32Window::setCapture() {
    if (handle_) {
        SetCapture(handle_);
        isCaptured_ = true;
    }
}

void CWin32Window::releaseCapture() {
    if (!isCaptured_) {
        return;
    }
    isCaptured_ = false;
    if (GetCapture() == handle_) {
        ReleaseCapture();
    }
    trackLeaveAfterCapture();
}

void CWin32Window::setCursor(CCursorShape shape) {
    if (shape == cursor_) {
        return;
    }
    cursor_ = shape;
    POINT place{};
    GetCursorPos(&place);
    if (handle_ && (isCaptured_ || WindowFromPoint(place) == handle_)) {
        chooseCursor({handle_, WM_SETCURSOR, reinterpret_cast<WPARAM>(handle_), HTCLIENT});
    }
}

LRESULT CWin32Window::chooseCursor(const CMessage& message) {
    if (LOWORD(message.lParam) != HTCLIENT) {
        return byDefault(message);
    }
    const WORD number = kCursors[static_cast<size_t>(cursor_)];
    SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(number)));
    return TRUE;
}

void CWin32Window::rememberFocus() {
    const HWND focused = GetFocus();
    if (focused != handle_) {
        formerFocus_ = focused;
    }
}

void CWin32Window::takeFocus() {
    if (handle_) {
        rememberFocus();
        SetFocus(handle_);
    }
}

void CWin32Window::giveFocusBack() {
    const HWND former = formerFocus_;
    formerFocus_ = nullptr;
    if (handle_ && GetFocus() == handle_ && IsWindow(former)) {
        SetFocus(former);
    }
}

void CWin32Window::grabKeys(bool isGrabbed) {
    characters_.reset();
    isPacket_ = false;
    isGrabbing_ = isGrabbed;
    if (!isGrabbed) {
        CKeyHook::release(handle_);
    } else if (handle_) {
        CKeyHook::grab(handle_);
    }
}

}  // namespace tarv
