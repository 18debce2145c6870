#pragma once

#include <deque>
#include <map>

#include "Platform/X11/CX11HostLoop.h"
#include "Platform/X11/CX11Keyboard.h"
#include "Platform/X11/CX11Pointer.h"
#include "Platform/X11/CX11Selection.h"
#include "Platform/X11/CX11Surface.h"
#include "Platform/X11/CX11Timers.h"

namespace tarv {

class CX11Window;

/// What one thread has open on a display: its connection, windows and timers. Lives as long as one of its windows,
/// surfaces or timers. One thread.
class CX11Session : public std::enable_shared_from_this<CX11Session> {
public:
    /// Null with a reason for the log.
    static std::shared_ptr<CX11Session> open(const CX11Library& library, std::u16string& reason);
    ~CX11Session();
    CX11Session(const CX11Session&) = delete;
    CX11Session& operator=(const CX11Session&) = delete;

    CX11Display& display() { return *display_; }
    CX11Painter& painter() { return painter_; }
    CX11Keyboard& keyboard() { return keyboard_; }
    CX11Selection& selection() { return selection_; }
    CX11Clicks& clicks() { return clicks_; }

    /// Delivers events, timers, paints and posts that wait. A handler may call it again, and may destroy anything.
    void serve();

    CTimerId startTimer(CTimerHandler& handler, int32_t milliseconds);
    bool stopTimer(CTimerId id);

    void add(CX11Window& window);
    /// Popups that the window owns go with it.
    void remove(CX11Window& window);
    CX11Window* find(xcb_window_t id) const;
    /// The window of this session that grabs the keys, or null.
    CX11Window* keyWindow() const;
    /// Follows the life of a window of the host that owns a popup.
    void watch(xcb_window_t foreign);

    /// The window that holds the pointer, or null.
    CX11Window* captured() const { return find(captured_); }
    bool hasButtonCapture() const { return isButtonCapture_; }
    /// 0 releases. The window that had it gets CaptureLost.
    void capture(xcb_window_t id);
    /// Forgets the capture, which the server has ended.
    void dropCapture();
    /// The state of the pointer and the keys by the last event.
    uint32_t state() const { return state_; }
    void setState(uint32_t state) { state_ = state; }

private:
    explicit CX11Session(std::unique_ptr<CX11Display> display);
    CX11Event next();
    bool dispatchNext();
    void dispatch(const xcb_generic_event_t& event);
    /// Calls a method of each window, which may destroy any.
    void forAll(void (CX11Window::*method)());
    /// The server has destroyed a window.
    void gone(xcb_window_t id);
    void closeOwnedBy(xcb_window_t id);
    void loseAll();

    const std::unique_ptr<CX11Display> display_;
    CX11Painter painter_;
    CX11Keyboard keyboard_;
    CX11Selection selection_;
    CX11Timers timers_;
    CX11Clicks clicks_;
    CX11HostLoop hostLoop_;
    std::map<xcb_window_t, CX11Window*> windows_;
    CX11Event ahead_;                    ///< read to see whether a move is followed by another
    std::deque<CX11Event> held_;         ///< came while the clipboard was waited for
    std::shared_ptr<CX11Session> self_;  ///< while timers run
    int timerCount_ = 0;
    xcb_window_t captured_ = 0;
    bool isButtonCapture_ = false;
    uint32_t state_ = 0;
};

}  // namespace tarv
