// The window system of Linux: finds the session of the calling thread and passes each call to it.

#include "Platform/X11/CX11System.h"

#include <cerrno>

#include "Platform/ThreadId.h"
#include "Platform/X11/CX11Window.h"
#include "Platform/X11/X11FileDialog.h"
#include "Platform/X11/X11Monitors.h"

namespace tarv {

namespace {

/// Sides of a picture that the protocol can name.
constexpr int32_t kMostPixels = 32767;

/// A surface that keeps its session.
class CX11SessionSurface final : public CX11Surface {
public:
    explicit CX11SessionSurface(std::shared_ptr<CX11Session> session)
        : CX11Surface(session->painter()), session_(std::move(session)) {}
    ~CX11SessionSurface() override { free(); }

private:
    const std::shared_ptr<CX11Session> session_;
};

}  // namespace

CX11System::CX11System(const CX11Library::CFiles& files) : library_(files) {}

CX11System::~CX11System() = default;

std::shared_ptr<CX11Session> CX11System::present() {
    const CLockScope scope(lock_);
    std::erase_if(rows_, [](const CRow& row) { return row.session.expired(); });
    for (const CRow& row : rows_) {
        if (row.threadId == currentThreadId()) {
            return row.session.lock();
        }
    }
    return nullptr;
}

std::shared_ptr<CX11Session> CX11System::session() {
    if (std::shared_ptr<CX11Session> found = present()) {
        return found;
    }
    std::u16string reason;
    const CLockScope scope(lock_);
    // Nothing is loaded where no display is named.
    const bool isReady = CX11Display::isNamed(reason) && library_.load(reason);
    std::shared_ptr<CX11Session> made = isReady ? CX11Session::open(library_, reason) : nullptr;
    if (made) {
        rows_.push_back({currentThreadId(), made, made});
    }
    noteNoWindows(reason);
    return made;
}

void CX11System::use(const std::shared_ptr<CX11Session>& session) {
    const CLockScope scope(lock_);
    for (CRow& row : rows_) {
        if (row.unused == session) {
            row.unused = nullptr;
        }
    }
}

bool CX11System::isAvailable() {
    return session() != nullptr;
}

std::unique_ptr<CSurface> CX11System::createSurface(int32_t width, int32_t height, CSurfaceStep& step,
                                                    CPlatformError& error) {
    step = CSurfaceStep::Context;
    error = ENODEV;
    std::shared_ptr<CX11Session> session = this->session();
    if (!session) {
        return nullptr;
    }
    step = CSurfaceStep::Section;
    error = EINVAL;
    if (width <= 0 || height <= 0 || width > kMostPixels || height > kMostPixels) {
        return nullptr;
    }
    error = ENOMEM;
    auto surface = std::make_unique<CX11SessionSurface>(session);
    if (!surface->allocate(width, height)) {
        return nullptr;
    }
    use(session);
    step = CSurfaceStep::None;
    error = 0;
    return surface;
}

std::unique_ptr<CPlatformWindow> CX11System::createWindow(const CWindowRequest& request, CWindowHandler& handler,
                                                          CPlatformError& error) {
    error = ENODEV;
    std::shared_ptr<CX11Session> session = this->session();
    if (!session) {
        return nullptr;
    }
    auto window = std::make_unique<CX11Window>(session, request, handler);
    error = window->create(request);
    if (error) {
        return nullptr;
    }
    use(session);
    return window;
}

CWindowHandle CX11System::windowAt(int32_t x, int32_t y) {
    const std::shared_ptr<CX11Session> session = present();
    if (!session) {
        return 0;
    }
    const CX11Display& display = session->display();
    xcb_window_t window = display.root();
    // Down from the root, to the innermost window at the point.
    while (window && !session->find(window)) {
        int32_t innerX = x;
        int32_t innerY = y;
        xcb_window_t child = 0;
        window = display.translate(display.root(), window, innerX, innerY, &child) ? child : 0;
    }
    return window;
}

void CX11System::pointerPosition(int32_t& x, int32_t& y) {
    const std::shared_ptr<CX11Session> session = this->session();
    const auto pointer = session ? session->display().pointer() : nullptr;
    x = pointer ? pointer->root_x : 0;
    y = pointer ? pointer->root_y : 0;
}

CInputModifiers CX11System::modifiers() {
    const std::shared_ptr<CX11Session> session = this->session();
    const auto pointer = session ? session->display().pointer() : nullptr;
    return x11Modifiers(pointer ? pointer->mask : 0);
}

CIntRect CX11System::monitorArea(int32_t x, int32_t y) {
    const std::shared_ptr<CX11Session> session = this->session();
    return session ? x11MonitorArea(session->display(), x, y) : CIntRect{};
}

CTimerId CX11System::startTimer(CTimerHandler& handler, int32_t milliseconds, CPlatformError& error, bool& isWindow) {
    isWindow = true;
    error = ENODEV;
    const std::shared_ptr<CX11Session> session = this->session();
    if (!session) {
        return 0;
    }
    isWindow = false;
    error = 0;
    const CTimerId id = session->startTimer(handler, milliseconds);
    use(session);
    return id;
}

void CX11System::stopTimer(CTimerId id) {
    if (const std::shared_ptr<CX11Session> session = present()) {
        session->stopTimer(id);
    }
}

bool CX11System::clipboardText(std::u16string& text) {
    const std::shared_ptr<CX11Session> session = this->session();
    return session && session->selection().text(text);
}

bool CX11System::setClipboardText(const std::u16string& text) {
    const std::shared_ptr<CX11Session> session = this->session();
    return session && session->selection().setText(text);
}

bool CX11System::askForFile(const CFileDialogRequest& request, std::u16string& path, std::u16string& message) {
    const auto owner = static_cast<xcb_window_t>(request.owner);
    const std::shared_ptr<CX11Session> session = present();
    const bool isOurs = session && session->find(owner);
    // The dialog goes with the window that it was opened from.
    const auto serveAll = [&] {
        serve();
        return !isOurs || session->find(owner);
    };
    return askByDesktop(request, serveAll, path, message);
}

void CX11System::serve() {
    if (const std::shared_ptr<CX11Session> session = present()) {
        session->serve();
    }
}

CWindowSystem* systemWindows() {
    // Ends with the library: connections that editors left are closed then.
    static CX11System system;
    return system.isAvailable() ? &system : nullptr;
}

}  // namespace tarv
