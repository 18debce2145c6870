// Timers of Windows, by one hidden window for each thread.

#include "Platform/Win32/CTimerWindow.h"

#include <algorithm>
#include <memory>

#include "Platform/Lock.h"
#include "Platform/Win32/Module.h"

namespace tarv {

/// Found by the thread: no storage of a thread's own, which the system would have to clear after an unloaded library.
struct CTimerWindow::CAllWindows {
    CModuleClass windowClass{L"TarveloTimers", &CTimerWindow::procedure, 0};
    CLock lock;
    std::vector<std::unique_ptr<CTimerWindow>> windows;
};

CTimerWindow::CAllWindows CTimerWindow::all_;

CModuleClass& CTimerWindow::windowClass() {
    return all_.windowClass;
}

LRESULT CALLBACK CTimerWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_TIMER) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    const auto* timers = reinterpret_cast<const CTimerWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    CTimerHandler* handler = timers ? timers->handlerOf(static_cast<CTimerId>(wParam)) : nullptr;
    if (handler) {
        // The last touch: the handler may stop all timers, and the window goes with them.
        handler->onTimer();
    }
    return 0;
}

CTimerHandler* CTimerWindow::handlerOf(CTimerId id) const {
    const auto row = std::find_if(rows_.begin(), rows_.end(), [id](const CRow& r) { return r.id == id; });
    return row == rows_.end() ? nullptr : row->handler;
}

CTimerWindow* CTimerWindow::ofThisThread() {
    const CLockScope scope(all_.lock);
    auto& windows = all_.windows;
    // A thread that ended with running timers took its window along, and its number may be another's now.
    const auto lost = std::erase_if(
        windows, [](const auto& w) { return GetWindowThreadProcessId(w->window_, nullptr) != w->thread_; });
    for (size_t i = 0; i < lost; ++i) {
        all_.windowClass.release();
    }
    const DWORD thread = GetCurrentThreadId();
    const auto found = std::find_if(windows.begin(), windows.end(), [&](auto& w) { return w->thread_ == thread; });
    return found == windows.end() ? nullptr : found->get();
}

CTimerWindow* CTimerWindow::open(CPlatformError& error) {
    error = all_.windowClass.acquire();
    if (error) {
        return nullptr;
    }
    auto made = std::make_unique<CTimerWindow>();
    made->thread_ = GetCurrentThreadId();
    made->window_ = CreateWindowExW(WS_EX_TOOLWINDOW, all_.windowClass.name(), L"", WS_POPUP, 0, 0, 0, 0, HWND_MESSAGE,
                                    nullptr, ownModule(), nullptr);
    if (!made->window_) {
        error = GetLastError();
        all_.windowClass.release();
        return nullptr;
    }
    SetWindowLongPtrW(made->window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made.get()));
    const CLockScope scope(all_.lock);
    all_.windows.push_back(std::move(made));
    return all_.windows.back().get();
}

void CTimerWindow::close() {
    SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
    DestroyWindow(window_);
    all_.windowClass.release();
    const CLockScope scope(all_.lock);
    std::erase_if(all_.windows, [this](const auto& w) { return w.get() == this; });
}

CTimerId CTimerWindow::start(CTimerHandler& handler, int32_t milliseconds, CPlatformError& error, bool& isWindow) {
    error = 0;
    isWindow = false;
    CTimerWindow* own = ofThisThread();
    if (!own) {
        own = open(error);
    }
    if (!own) {
        isWindow = true;
        return 0;
    }
    const CTimerId id = ++own->lastId_;
    if (!SetTimer(own->window_, id, static_cast<UINT>(std::max(milliseconds, 0)), nullptr)) {
        error = GetLastError();
        if (own->rows_.empty()) {
            own->close();
        }
        return 0;
    }
    own->rows_.push_back({id, &handler});
    return id;
}

void CTimerWindow::stop(CTimerId id) {
    CTimerWindow* own = ofThisThread();
    if (!own || !own->handlerOf(id)) {
        return;
    }
    KillTimer(own->window_, id);
    std::erase_if(own->rows_, [id](const CRow& row) { return row.id == id; });
    if (own->rows_.empty()) {
        own->close();
    }
}

}  // namespace tarv
