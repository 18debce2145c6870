#pragma once

#include <string>
#include <vector>

#include "Platform/Window.h"

namespace tarv {

class CDesktopByHand;
class CWindowByHand;

/// Pointer and keyboard of a user. Points are pixels of the screen, or of a window where a handle is given. An event
/// goes where the system would send it: to the window with the capture, otherwise to the topmost one at the pointer; a
/// press makes that one active first. Handlers may destroy any window. Thread: that of the test.
class CInputByHand {
public:
    /// Two presses at most that far apart in time and place are a double click.
    static constexpr double kDoubleClickSeconds = 0.5;
    static constexpr int32_t kDoubleClickPixels = 4;

    explicit CInputByHand(CDesktopByHand& desktop) : desktop_(desktop) {}

    void move(int32_t x, int32_t y);
    void moveIn(CWindowHandle window, int32_t x, int32_t y);
    /// The pointer stands somewhere else without having moved, as a pen or a touch does; the next event shows it.
    void jump(int32_t x, int32_t y);
    void press(CPointerButton button = CPointerButton::Left);
    void release(CPointerButton button = CPointerButton::Left);
    void click(CPointerButton button = CPointerButton::Left);
    /// Turns the wheel by notches, up is positive. False if no window took it: the host has it then.
    bool wheel(double notches);
    /// From now on these keys are held.
    void holdKeys(bool isShift, bool isCtrl, bool isAlt);
    /// A key goes down or up, and types at most four characters. False if the host gets it.
    bool key(int32_t code, bool isDown, const std::u16string& characters = {}, bool isDead = false);
    /// Down and up; gives what the first gave.
    bool tap(int32_t code, const std::u16string& characters = {});
    /// Taps the key of each character; gives how many the host did not get. Letters, figures and the blank have their
    /// key's code, others 0.
    int32_t type(const std::u16string& text);

    int32_t x() const { return x_; }
    int32_t y() const { return y_; }
    const CInputModifiers& modifiers() const { return modifiers_; }
    /// What the host got, from the start on.
    const std::vector<CKeyEvent>& hostKeys() const { return hostKeys_; }
    double hostWheel() const { return hostWheel_; }
    int32_t hostPresses() const { return hostPresses_; }
    /// Sends what follows where windows have changed under the pointer: Leave and Move. Gives how many events.
    int32_t settle();

private:
    struct CLastPress {
        CPointerButton button = CPointerButton::None;
        CWindowHandle window = 0;
        double seconds = 0.0;
        int32_t x = 0;
        int32_t y = 0;
    };
    CWindowHandle target() const;
    void send(CWindowHandle window, CPointerKind kind, CPointerButton button, bool isDouble);
    void setHeld(CPointerButton button, bool isHeld);
    bool isDouble(CPointerButton button, CWindowHandle window);

    CDesktopByHand& desktop_;
    int32_t x_ = -10000;
    int32_t y_ = -10000;
    CInputModifiers modifiers_;
    CWindowHandle hovered_ = 0;
    CLastPress lastPress_;
    std::vector<CKeyEvent> hostKeys_;
    double hostWheel_ = 0.0;
    int32_t hostPresses_ = 0;
};

}  // namespace tarv
