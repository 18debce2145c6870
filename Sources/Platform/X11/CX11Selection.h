#pragma once

#include <deque>
#include <functional>
#include <string>

#include "Platform/X11/CX11Display.h"

namespace tarv {

using CX11Event = CX11Reply<xcb_generic_event_t>;

/// The clipboard of one display. Text that was put there lives as long as this object: no other program holds it.
/// One thread.
class CX11Selection {
public:
    /// Events that are not of the clipboard, while an answer is waited for, go to `hold`.
    CX11Selection(const CX11Display& display, std::function<void(CX11Event)> hold);
    ~CX11Selection();
    CX11Selection(const CX11Selection&) = delete;
    CX11Selection& operator=(const CX11Selection&) = delete;

    /// True for an event of the clipboard, which is then done.
    bool take(const xcb_generic_event_t& event);
    /// Waits for an owner that answers at most a second, and as long for each piece of a long text. False without text.
    bool text(std::u16string& text);
    /// False if the server refuses.
    bool setText(const std::u16string& text);

private:
    enum class CAnswer : uint8_t { None, Refused, Given, Piece };

    bool ask(xcb_atom_t target, std::string& bytes);
    bool readProperty(std::string& bytes, bool& isLong);
    bool readPieces(std::string& bytes);
    CAnswer waitFor(CAnswer wanted);
    void answer(const xcb_selection_request_event_t& request);
    bool store(const xcb_selection_request_event_t& request, xcb_atom_t property) const;

    const CX11Display& display_;
    const CX11Library& x_;
    const std::function<void(CX11Event)> hold_;
    xcb_window_t window_ = 0;   ///< owns the clipboard
    xcb_window_t request_ = 0;  ///< asks for one text; a new one each time, so that a late answer finds nothing
    CAnswer answer_ = CAnswer::None;
    std::string own_;  ///< UTF-8
    bool isOwner_ = false;
};

}  // namespace tarv
