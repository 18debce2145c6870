#pragma once

#include <cstdint>

namespace tarv {

/// Keys held, and the buttons of the pointer, as the system reports them with an event.
struct CInputModifiers {
    bool isShift = false;
    bool isCtrl = false;
    bool isAlt = false;
    bool isLeft = false;   ///< left button down
    bool isRight = false;  ///< right button down
};

enum class CPointerKind : uint8_t {
    Move,
    Press,
    Release,
    Leave,       ///< the pointer left the window
    CaptureLost  ///< another window took the capture, or the system did
};
enum class CPointerButton : uint8_t { None, Left, Right, Other };

/// What the pointer did. Positions are pixels of the window and signed, also beyond its edges while captured.
struct CPointerEvent {
    CPointerKind kind = CPointerKind::Move;
    CPointerButton button = CPointerButton::None;
    int32_t x = 0;
    int32_t y = 0;
    bool isDouble = false;  ///< of a press: the system counts it as the second of a double click
    CInputModifiers modifiers;
};

/// A turn of the wheel over a window, in notches; fractions are kept, up is positive.
struct CWheelEvent {
    int32_t x = 0;
    int32_t y = 0;
    double delta = 0.0;
    CInputModifiers modifiers;
};

/// Shapes of the pointer.
enum class CCursorShape : uint8_t { Arrow, Text, Hand, SizeVertical, SizeHorizontal, Move };

}  // namespace tarv
