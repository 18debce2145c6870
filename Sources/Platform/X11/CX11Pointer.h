#pragma once

#include <xcb/xproto.h>

#include "Platform/Pointer.h"

namespace tarv {

/// Keys and buttons of a server's state.
CInputModifiers x11Modifiers(uint32_t state);
/// None for the buttons of wheels.
CPointerButton x11Button(uint8_t button);
/// Notches of a wheel's button: up is positive; 0 for other buttons, and for wheels that turn sideways.
double x11WheelDelta(uint8_t button);
/// Whether any button of the pointer is down, those of wheels left out.
bool x11IsAnyButtonDown(uint32_t state);
/// A state with a button that goes down or up: an event bears the state before it.
uint32_t x11StateWith(uint32_t state, uint8_t button, bool isDown);

/// Finds double clicks: the server has no word for them. The second press counts within 0.4 s and 4 pixels of the
/// first, of the same button in the same window; a third press begins anew.
class CX11Clicks {
public:
    bool isDouble(const xcb_button_press_event_t& press);

private:
    xcb_window_t window_ = 0;
    uint8_t button_ = 0;
    uint32_t time_ = 0;
    int32_t x_ = 0;
    int32_t y_ = 0;
};

}  // namespace tarv
