#pragma once

#include "Platform/Window.h"
#include "Platform/X11/CX11Session.h"

namespace tarv {

/// One window of a session. A popup that stays while the user works elsewhere, or has a button in the taskbar, is left
/// to the window manager, which keeps it above the host's window and below others that are raised. All other popups are
/// beyond it, so that they stand above all and take the focus at once.
class CX11Window final : public CPlatformWindow {
public:
    CX11Window(std::shared_ptr<CX11Session> session, const CWindowRequest& request, CWindowHandler& handler);
    ~CX11Window() override;
    /// The server's number of the failure, 0 for none.
    CPlatformError create(const CWindowRequest& request);

    CWindowHandle handle() const override { return id_; }
    void show(bool isShown) override;
    void setBounds(const CIntRect& bounds) override;
    CIntRect screenBounds() const override;
    void setTitle(const char16_t* title) override;
    void present(const CSurface& surface, int32_t x, int32_t y, const CIntRect& rect) override;
    void finishPresenting() override;
    void invalidate(const CIntRect& rect) override;
    void setCapture() override;
    void releaseCapture() override;
    void setCursor(CCursorShape shape) override;
    void takeFocus() override;
    void giveFocusBack() override;
    void grabKeys(bool isGrabbed) override;

    xcb_window_t id() const { return id_; }
    /// The window that a popup goes with; 0 for a child.
    xcb_window_t owner() const { return isChild_ ? 0 : parent_; }
    CWindowHandler& handler() { return handler_; }
    /// Whether the keys of the thread come to this window.
    bool ownsKeys() const;
    void onEvent(const xcb_generic_event_t& event);
    /// Has the handler paint what is due.
    void paint();
    /// Reports keys that another window has grabbed.
    void checkKeys();
    /// Another window has taken the capture.
    void loseCapture();
    /// A window of the host has been shown or hidden: its popups go with it, and come again.
    void followHost(xcb_window_t window, bool isShown);
    /// The server has destroyed the window.
    void markGone();

private:
    void onButton(const xcb_button_press_event_t& button, bool isDown);
    void onWheel(const xcb_button_press_event_t& button);
    void onMotion(const xcb_motion_notify_event_t& motion);
    void onCrossing(const xcb_enter_notify_event_t& crossing, bool isEnter);
    void onFocus(const xcb_focus_in_event_t& focus, bool isIn);
    void onKey(const xcb_key_press_event_t& key, bool isDown);
    void onShape(const xcb_generic_event_t& event);
    void sendPointer(CPointerKind kind, CPointerButton button, int32_t x, int32_t y, uint32_t state, bool isDouble);
    /// Gives an event on to the host.
    void forward(xcb_key_press_event_t event, uint32_t mask) const;
    xcb_window_t hostWindow() const;
    void selectEvents(bool hasKeys) const;
    void describePopup(const CWindowRequest& request);
    void configure(uint16_t mask, const uint32_t* values) const;

    const std::shared_ptr<CX11Session> session_;
    CX11Display& display_;
    const CX11Library& x_;
    CWindowHandler& handler_;
    const uint64_t serial_;  ///< never used again, unlike the server's number
    const bool isChild_;
    const bool isManaged_;
    const bool isActivated_;
    const xcb_window_t parent_;
    xcb_window_t hostTop_ = 0;  ///< of a popup: the manager's window that it belongs to
    xcb_window_t id_ = 0;
    CIntRect bounds_;
    CIntRect dirty_;    ///< asked for by the program
    CIntRect exposed_;  ///< asked for by the server
    bool isExposing_ = false;
    bool isShown_ = false;
    bool isFocusDue_ = false;  ///< takes the focus when the manager has shown it
    bool isActive_ = false;
    bool isGrabbing_ = false;   ///< until the grab ends, or is lost
    bool hasKeyFocus_ = false;  ///< taken by grabKeys, which gives it back
    bool isFocusOurs_ = false;  ///< the focus leaves by a call of this program
    xcb_window_t focusBefore_ = 0;
    xcb_cursor_t cursor_ = 0;
};

}  // namespace tarv
