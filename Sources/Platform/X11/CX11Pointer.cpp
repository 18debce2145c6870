#include "Platform/X11/CX11Pointer.h"

#include <cstdlib>

namespace tarv {

namespace {

constexpr uint32_t kDoubleMilliseconds = 400;
constexpr int32_t kDoublePixels = 4;

uint32_t maskOf(uint8_t button) {
    return button >= 1 && button <= 5 ? uint32_t{XCB_BUTTON_MASK_1} << (button - 1) : 0;
}

}  // namespace

CInputModifiers x11Modifiers(uint32_t state) {
    CInputModifiers modifiers;
    modifiers.isShift = (state & XCB_MOD_MASK_SHIFT) != 0;
    modifiers.isCtrl = (state & XCB_MOD_MASK_CONTROL) != 0;
    modifiers.isAlt = (state & XCB_MOD_MASK_1) != 0;
    modifiers.isLeft = (state & XCB_BUTTON_MASK_1) != 0;
    modifiers.isRight = (state & XCB_BUTTON_MASK_3) != 0;
    return modifiers;
}

CPointerButton x11Button(uint8_t button) {
    switch (button) {
        case 1:
            return CPointerButton::Left;
        case 3:
            return CPointerButton::Right;
        case 4:
        case 5:
        case 6:
        case 7:
            return CPointerButton::None;
        default:
            return CPointerButton::Other;
    }
}

double x11WheelDelta(uint8_t button) {
    return button == 4 ? 1.0 : button == 5 ? -1.0 : 0.0;
}

bool x11IsAnyButtonDown(uint32_t state) {
    return (state & (XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3)) != 0;
}

uint32_t x11StateWith(uint32_t state, uint8_t button, bool isDown) {
    return isDown ? state | maskOf(button) : state & ~maskOf(button);
}

bool CX11Clicks::isDouble(const xcb_button_press_event_t& press) {
    // Times are 32 bits of milliseconds and wrap: their difference does not.
    const bool isSecond = window_ == press.event && button_ == press.detail &&
                          press.time - time_ <= kDoubleMilliseconds && std::abs(press.root_x - x_) <= kDoublePixels &&
                          std::abs(press.root_y - y_) <= kDoublePixels;
    window_ = isSecond ? 0 : press.event;
    button_ = press.detail;
    time_ = press.time;
    x_ = press.root_x;
    y_ = press.root_y;
    return isSecond;
}

}  // namespace tarv
