// Serves the windows and timers of one thread.

#include "Platform/X11/CX11Session.h"

#include "Platform/Posix/EventQueue.h"
#include "Platform/X11/CX11Window.h"

namespace tarv {

namespace {

/// Events that are delivered before the timers have their turn.
constexpr int kEventsAtOnce = 256;

/// The window that an event belongs to; 0 for events of no window.
xcb_window_t windowOf(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
        case XCB_KEY_PRESS:
        case XCB_KEY_RELEASE:
        case XCB_BUTTON_PRESS:
        case XCB_BUTTON_RELEASE:
        case XCB_MOTION_NOTIFY:
        case XCB_ENTER_NOTIFY:
        case XCB_LEAVE_NOTIFY:
            return reinterpret_cast<const xcb_key_press_event_t&>(event).event;
        case XCB_FOCUS_IN:
        case XCB_FOCUS_OUT:
        case XCB_EXPOSE:
        case XCB_CLIENT_MESSAGE:
            return reinterpret_cast<const xcb_focus_in_event_t&>(event).event;
        case XCB_CONFIGURE_NOTIFY:
        case XCB_MAP_NOTIFY:
        case XCB_UNMAP_NOTIFY:
            return reinterpret_cast<const xcb_map_notify_event_t&>(event).window;
        default:
            return 0;
    }
}

/// Whether a move is followed by another one in the same state, so that only the second counts.
bool isOverrun(const xcb_generic_event_t& event, const xcb_generic_event_t& following) {
    if ((event.response_type & 0x7f) != XCB_MOTION_NOTIFY || (following.response_type & 0x7f) != XCB_MOTION_NOTIFY) {
        return false;
    }
    const auto& first = reinterpret_cast<const xcb_motion_notify_event_t&>(event);
    const auto& second = reinterpret_cast<const xcb_motion_notify_event_t&>(following);
    return first.event == second.event && first.state == second.state;
}

}  // namespace

std::shared_ptr<CX11Session> CX11Session::open(const CX11Library& library, std::u16string& reason) {
    std::unique_ptr<CX11Display> display = CX11Display::open(library, reason);
    return display ? std::shared_ptr<CX11Session>(new CX11Session(std::move(display))) : nullptr;
}

CX11Session::CX11Session(std::unique_ptr<CX11Display> display)
    : display_(std::move(display)),
      painter_(*display_),
      keyboard_(*display_),
      selection_(*display_, [this](CX11Event event) { held_.push_back(std::move(event)); }),
      hostLoop_([this] { serve(); }) {}

CX11Session::~CX11Session() = default;

CX11Event CX11Session::next() {
    if (ahead_) {
        return std::move(ahead_);
    }
    if (!held_.empty()) {
        CX11Event event = std::move(held_.front());
        held_.pop_front();
        return event;
    }
    return CX11Event(display_->x().xcb_poll_for_event(display_->connection()));
}

bool CX11Session::dispatchNext() {
    CX11Event event = next();
    if (!event) {
        return false;
    }
    while ((event->response_type & 0x7f) == XCB_MOTION_NOTIFY) {
        ahead_ = next();
        if (!ahead_ || !isOverrun(*event, *ahead_)) {
            break;
        }
        event = std::move(ahead_);
    }
    dispatch(*event);
    return true;
}

void CX11Session::serve() {
    // A handler may destroy the last window.
    const std::shared_ptr<CX11Session> life = shared_from_this();
    for (int i = 0; i < kEventsAtOnce && dispatchNext(); ++i) {
    }
    if (display_->isBroken()) {
        loseAll();
    }
    timers_.run();
    (void)pumpEvents();
    forAll(&CX11Window::checkKeys);
    forAll(&CX11Window::paint);
    display_->flush();
}

void CX11Session::dispatch(const xcb_generic_event_t& event) {
    // Errors of requests come here, too, with type 0: what they were about is gone.
    if (keyboard_.take(event) || selection_.take(event)) {
        return;
    }
    if ((event.response_type & 0x7f) == XCB_DESTROY_NOTIFY) {
        gone(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
        return;
    }
    const xcb_window_t id = windowOf(event);
    const uint8_t type = event.response_type & 0x7f;
    if (type == XCB_MAP_NOTIFY || type == XCB_UNMAP_NOTIFY) {
        for (const auto& [own, window] : windows_) {
            window->followHost(id, type == XCB_MAP_NOTIFY);
        }
    }
    if (CX11Window* window = find(id)) {
        window->onEvent(event);
    }
}

void CX11Session::forAll(void (CX11Window::*method)()) {
    // The map may be another one behind each call.
    for (auto it = windows_.begin(); it != windows_.end();) {
        const xcb_window_t id = it->first;
        (it->second->*method)();
        it = windows_.upper_bound(id);
    }
}

CTimerId CX11Session::startTimer(CTimerHandler& handler, int32_t milliseconds) {
    ++timerCount_;
    self_ = shared_from_this();
    return timers_.start(handler, milliseconds);
}

bool CX11Session::stopTimer(CTimerId id) {
    if (!timers_.stop(id)) {
        return false;
    }
    if (--timerCount_ == 0) {
        // This object may go with it.
        const std::shared_ptr<CX11Session> last = std::move(self_);
    }
    return true;
}

void CX11Session::add(CX11Window& window) {
    windows_[window.id()] = &window;
}

void CX11Session::remove(CX11Window& window) {
    const xcb_window_t id = window.id();
    windows_.erase(id);
    if (captured_ == id) {
        dropCapture();
    }
    closeOwnedBy(id);
}

CX11Window* CX11Session::find(xcb_window_t id) const {
    const auto it = id ? windows_.find(id) : windows_.end();
    return it == windows_.end() ? nullptr : it->second;
}

CX11Window* CX11Session::keyWindow() const {
    for (const auto& [id, window] : windows_) {
        if (window->ownsKeys()) {
            return window;
        }
    }
    return nullptr;
}

void CX11Session::watch(xcb_window_t foreign) {
    const uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    display_->x().xcb_change_window_attributes(display_->connection(), foreign, XCB_CW_EVENT_MASK, &mask);
}

void CX11Session::gone(xcb_window_t id) {
    if (captured_ == id) {
        dropCapture();
    }
    CX11Window* window = find(id);
    closeOwnedBy(id);
    // A popup's handler may have destroyed the window's object meanwhile.
    if (window && find(id) == window) {
        windows_.erase(id);
        window->markGone();
        window->handler().onGone();
    }
}

void CX11Session::closeOwnedBy(xcb_window_t id) {
    for (auto it = windows_.begin(); it != windows_.end();) {
        if (it->second->owner() != id) {
            ++it;
            continue;
        }
        const xcb_window_t popup = it->first;
        display_->x().xcb_destroy_window(display_->connection(), popup);
        gone(popup);
        it = windows_.begin();
    }
}

void CX11Session::loseAll() {
    while (!windows_.empty()) {
        gone(windows_.begin()->first);
    }
}

void CX11Session::capture(xcb_window_t id) {
    const xcb_window_t former = captured_;
    if (former == id) {
        return;
    }
    captured_ = id;
    isButtonCapture_ = id && x11IsAnyButtonDown(state_);
    if (id) {
        constexpr uint16_t kEvents =
            XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION;
        const auto cookie =
            display_->x().xcb_grab_pointer(display_->connection(), 0, id, kEvents, XCB_GRAB_MODE_ASYNC,
                                           XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME);
        const CX11Reply<xcb_grab_pointer_reply_t> reply(
            display_->x().xcb_grab_pointer_reply(display_->connection(), cookie, nullptr));
    } else {
        display_->x().xcb_ungrab_pointer(display_->connection(), XCB_CURRENT_TIME);
        display_->flush();
    }
    if (CX11Window* loser = find(former); loser && id) {
        loser->loseCapture();
    }
}

void CX11Session::dropCapture() {
    captured_ = 0;
    isButtonCapture_ = false;
    display_->x().xcb_ungrab_pointer(display_->connection(), XCB_CURRENT_TIME);
}

}  // namespace tarv
