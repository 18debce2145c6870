#pragma once

#include "Platform/Keyboard.h"
#include "Platform/X11/CX11Display.h"

namespace tarv {

/// Turns key events of one display into numbers and typed characters by the layout that the user has, dead keys by the
/// compose table of the user's language. The layout is read when the first key comes, and again after a change.
/// One thread.
class CX11Keyboard {
public:
    explicit CX11Keyboard(const CX11Display& display);
    ~CX11Keyboard();
    CX11Keyboard(const CX11Keyboard&) = delete;
    CX11Keyboard& operator=(const CX11Keyboard&) = delete;

    /// True for an event of the keyboard extension, which is then done.
    bool take(const xcb_generic_event_t& event);
    CKeyEvent translate(const xcb_key_press_event_t& key, bool isDown);
    /// A dead key that waits for its letter is dropped.
    void forgetDeadKey();

private:
    void loadLayout();
    void dropLayout();
    int32_t codeOf(xkb_keycode_t key, xkb_keysym_t symbol) const;
    void type(xkb_keysym_t symbol, CKeyEvent& event);

    const CX11Display& display_;
    const CX11Library& x_;
    int32_t device_ = -1;     ///< -1: the server lacks the extension
    uint8_t firstEvent_ = 0;  ///< 0 without the extension
    xkb_context* context_ = nullptr;
    xkb_keymap* keymap_ = nullptr;
    xkb_state* state_ = nullptr;
    xkb_compose_table* composeTable_ = nullptr;
    xkb_compose_state* compose_ = nullptr;
};

}  // namespace tarv
