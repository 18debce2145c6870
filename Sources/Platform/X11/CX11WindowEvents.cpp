// What the server reports of a window, as the handler wants it. A handler may destroy the window: its call is the last
// thing that is done with it.

#include <utility>

#include "Platform/X11/CX11Window.h"

namespace tarv {

void CX11Window::onEvent(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
        case XCB_BUTTON_PRESS:
        case XCB_BUTTON_RELEASE:
            onButton(reinterpret_cast<const xcb_button_press_event_t&>(event),
                     (event.response_type & 0x7f) == XCB_BUTTON_PRESS);
            break;
        case XCB_MOTION_NOTIFY:
            onMotion(reinterpret_cast<const xcb_motion_notify_event_t&>(event));
            break;
        case XCB_ENTER_NOTIFY:
        case XCB_LEAVE_NOTIFY:
            onCrossing(reinterpret_cast<const xcb_enter_notify_event_t&>(event),
                       (event.response_type & 0x7f) == XCB_ENTER_NOTIFY);
            break;
        case XCB_KEY_PRESS:
        case XCB_KEY_RELEASE:
            onKey(reinterpret_cast<const xcb_key_press_event_t&>(event), (event.response_type & 0x7f) == XCB_KEY_PRESS);
            break;
        case XCB_FOCUS_IN:
        case XCB_FOCUS_OUT:
            onFocus(reinterpret_cast<const xcb_focus_in_event_t&>(event), (event.response_type & 0x7f) == XCB_FOCUS_IN);
            break;
        case XCB_CLIENT_MESSAGE: {
            const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
            if (message.type == display_.atom(CX11Atom::WmProtocols) &&
                message.data.data32[0] == display_.atom(CX11Atom::WmDelete)) {
                handler_.onCloseRequest();
            }
            break;
        }
        default:
            onShape(event);
    }
}

void CX11Window::onShape(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
        case XCB_EXPOSE: {
            const auto& expose = reinterpret_cast<const xcb_expose_event_t&>(event);
            const CIntRect rect{expose.x, expose.y, expose.x + expose.width, expose.y + expose.height};
            exposed_ = exposed_.isEmpty()
                           ? rect
                           : CIntRect{std::min(exposed_.left, rect.left), std::min(exposed_.top, rect.top),
                                      std::max(exposed_.right, rect.right), std::max(exposed_.bottom, rect.bottom)};
            isExposing_ = expose.count != 0;
            break;
        }
        case XCB_CONFIGURE_NOTIFY: {
            const auto& notify = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
            bounds_.right = bounds_.left + notify.width;
            bounds_.bottom = bounds_.top + notify.height;
            break;
        }
        case XCB_MAP_NOTIFY:
            if (isFocusDue_) {
                isFocusDue_ = false;
                takeFocus();
            }
            break;
        case XCB_UNMAP_NOTIFY:
            // The server ends a grab of a window that can't be seen.
            if (session_->captured() == this) {
                loseCapture();
            }
            break;
        default:
            break;
    }
}

void CX11Window::sendPointer(CPointerKind kind, CPointerButton button, int32_t x, int32_t y, uint32_t state,
                             bool isDouble) {
    CPointerEvent event;
    event.kind = kind;
    event.button = button;
    event.x = x;
    event.y = y;
    event.isDouble = isDouble;
    event.modifiers = x11Modifiers(state);
    handler_.onPointer(event);
}

void CX11Window::onButton(const xcb_button_press_event_t& button, bool isDown) {
    const CPointerButton which = x11Button(button.detail);
    if (which == CPointerButton::None) {
        if (isDown) {
            onWheel(button);
        }
        return;
    }
    const uint32_t state = x11StateWith(button.state, button.detail, isDown);
    session_->setState(state);
    const bool isDouble = isDown && session_->clicks().isDouble(button);
    if (!isDown && session_->captured() == this && !x11IsAnyButtonDown(state)) {
        session_->capture(0);
    }
    sendPointer(isDown ? CPointerKind::Press : CPointerKind::Release, which, button.event_x, button.event_y, state,
                isDouble);
}

void CX11Window::onWheel(const xcb_button_press_event_t& button) {
    CWheelEvent event;
    event.x = button.event_x;
    event.y = button.event_y;
    event.delta = x11WheelDelta(button.detail);
    event.modifiers = x11Modifiers(button.state);
    const std::shared_ptr<CX11Session> session = session_;
    const xcb_window_t id = id_;
    if ((event.delta != 0.0 && handler_.onWheel(event)) || session->find(id) != this || !isChild_) {
        return;
    }
    // A wheel that turns sideways is none of ours either. The host sees a whole click.
    xcb_key_press_event_t click = reinterpret_cast<const xcb_key_press_event_t&>(button);
    forward(click, XCB_EVENT_MASK_BUTTON_PRESS);
    click.response_type = XCB_BUTTON_RELEASE;
    forward(click, XCB_EVENT_MASK_BUTTON_RELEASE);
}

void CX11Window::onMotion(const xcb_motion_notify_event_t& motion) {
    session_->setState(motion.state);
    // The server, or a program that locks the screen, has ended the drag without a word.
    if (session_->captured() == this && session_->hasButtonCapture() && !x11IsAnyButtonDown(motion.state)) {
        loseCapture();
        return;
    }
    sendPointer(CPointerKind::Move, CPointerButton::None, motion.event_x, motion.event_y, motion.state, false);
}

void CX11Window::onCrossing(const xcb_enter_notify_event_t& crossing, bool isEnter) {
    // While a grab is on, the pointer enters and leaves by its beginning and its end only.
    if (crossing.detail == XCB_NOTIFY_DETAIL_INFERIOR || crossing.mode == XCB_NOTIFY_MODE_GRAB ||
        session_->captured()) {
        return;
    }
    session_->setState(crossing.state);
    sendPointer(isEnter ? CPointerKind::Move : CPointerKind::Leave, CPointerButton::None, crossing.event_x,
                crossing.event_y, crossing.state, false);
}

void CX11Window::loseCapture() {
    if (session_->captured() == this) {
        session_->dropCapture();
    }
    const CX11Reply<xcb_query_pointer_reply_t> pointer = display_.pointer();
    sendPointer(CPointerKind::CaptureLost, CPointerButton::None, 0, 0, pointer ? pointer->mask : 0, false);
}

void CX11Window::onFocus(const xcb_focus_in_event_t& focus, bool isIn) {
    // Grabs of the keyboard come and go; so does the pointer above a window while the focus is elsewhere.
    if (focus.mode == XCB_NOTIFY_MODE_GRAB || focus.mode == XCB_NOTIFY_MODE_UNGRAB ||
        focus.detail == XCB_NOTIFY_DETAIL_INFERIOR || focus.detail > XCB_NOTIFY_DETAIL_NONLINEAR_VIRTUAL) {
        return;
    }
    if (isChild_) {
        selectEvents(isIn);
    }
    const bool isGivenBack = std::exchange(isFocusOurs_, false) && !isIn;
    // What has given the focus back is as before: a child stands in the active window, and a dialog to which no window
    // manager has given the focus keeps the press that ended an edit.
    if (isIn == isActive_ || isGivenBack) {
        return;
    }
    isActive_ = isIn;
    const CX11Window* other = isIn ? nullptr : session_->find(display_.focus());
    const std::shared_ptr<CX11Session> session = session_;
    const xcb_window_t id = id_;
    const CWindowHandle active = other ? other->handle() : 0;
    if (!isIn && !other && session_->captured() == this) {
        loseCapture();
        if (session->find(id) != this) {
            return;
        }
    }
    handler_.onActivation(isIn, active);
}

void CX11Window::onKey(const xcb_key_press_event_t& key, bool isDown) {
    session_->setState(key.state);
    const CKeyEvent event = session_->keyboard().translate(key, isDown);
    const std::shared_ptr<CX11Session> session = session_;
    const xcb_window_t id = id_;
    // First the window that grabs, then the one that has the focus.
    CX11Window* grabber = session->keyWindow();
    if (grabber && grabber != this && (grabber->handler_.onKey(event) || session->find(id) != this)) {
        return;
    }
    if (handler_.onKey(event) || session->find(id) != this) {
        return;
    }
    forward(key, isDown ? XCB_EVENT_MASK_KEY_PRESS : XCB_EVENT_MASK_KEY_RELEASE);
}

xcb_window_t CX11Window::hostWindow() const {
    const CX11Window* window = this;
    // From popup to opener, up to the first window that is not of this session.
    for (int i = 0; i < 8; ++i) {
        const xcb_window_t next =
            window->focusBefore_ && !session_->find(window->focusBefore_) ? window->focusBefore_ : window->parent_;
        const CX11Window* own = session_->find(next);
        if (!own) {
            return next;
        }
        window = own;
    }
    return 0;
}

void CX11Window::forward(xcb_key_press_event_t event, uint32_t mask) const {
    // What a program has sent here may be the host's own way to share it: given back, it would come again for ever.
    if (event.response_type & 0x80) {
        return;
    }
    const bool isKey = (mask & (XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE)) != 0;
    const xcb_window_t target = isKey ? hostWindow() : parent_;
    int32_t x = event.event_x;
    int32_t y = event.event_y;
    if (!target || !display_.translate(id_, target, x, y)) {
        return;
    }
    event.event = target;
    event.child = XCB_WINDOW_NONE;
    event.event_x = static_cast<int16_t>(x);
    event.event_y = static_cast<int16_t>(y);
    static_assert(sizeof event == 32);
    x_.xcb_send_event(display_.connection(), 1, target, mask, reinterpret_cast<const char*>(&event));
}

}  // namespace tarv
