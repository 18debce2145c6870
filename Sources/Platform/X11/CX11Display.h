#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "Platform/X11/CX11Library.h"

namespace tarv {

/// What a request answers; freed with the scope.
struct CX11Free {
    void operator()(void* block) const { std::free(block); }
};
template <class T>
using CX11Reply = std::unique_ptr<T, CX11Free>;

/// Names that the server knows by numbers; CX11Display.cpp lists their texts in this order.
enum class CX11Atom : uint8_t {
    Clipboard,
    ClipboardData,
    Incr,
    Motif,
    NetCurrentDesktop,
    NetWmName,
    NetWmPid,
    NetWmState,
    NetWmStateSkipPager,
    NetWmStateSkipTaskbar,
    NetWmType,
    NetWmTypeDialog,
    NetWmTypeMenu,
    NetWorkArea,
    Targets,
    TextPlain,
    Timestamp,
    Utf8String,
    WmDelete,
    WmProtocols,
    WmState,
    XembedInfo,
    Count
};

/// A connection with a server. Its errors come as events of this connection and are dropped: nothing of the host's
/// is touched. Once the server has gone, requests do nothing and answers are null. One thread.
class CX11Display {
public:
    /// Whether the environment names a display; otherwise with a reason for the log.
    static bool isNamed(std::u16string& reason);
    /// Null with a reason for the log. `library` is loaded and outlives the display.
    static std::unique_ptr<CX11Display> open(const CX11Library& library, std::u16string& reason);
    ~CX11Display();
    CX11Display(const CX11Display&) = delete;
    CX11Display& operator=(const CX11Display&) = delete;

    const CX11Library& x() const { return x_; }
    xcb_connection_t* connection() const { return connection_; }
    const xcb_screen_t& screen() const { return *screen_; }
    xcb_window_t root() const { return screen_->root; }
    /// 24 bits of colour, blue in the lowest byte of 32.
    xcb_visualid_t visual() const { return visual_; }
    xcb_colormap_t colormap() const { return colormap_; }
    xcb_atom_t atom(CX11Atom name) const { return atoms_[static_cast<size_t>(name)]; }
    bool isBroken() const { return x_.xcb_connection_has_error(connection_) != 0; }

    /// Returns when the server has done all that was asked for.
    void sync() const;
    void flush() const { x_.xcb_flush(connection_); }
    /// The window that has the keyboard's focus, 0 for none.
    xcb_window_t focus() const;
    /// `window` 0 leaves the keyboard to the root.
    void setFocus(xcb_window_t window) const;
    /// False if there is no such window, or no longer.
    bool translate(xcb_window_t from, xcb_window_t to, int32_t& x, int32_t& y, xcb_window_t* child = nullptr) const;
    CX11Reply<xcb_query_pointer_reply_t> pointer() const;
    /// The outermost window around `window`, below the root: the one that window managers know. 0 without a window.
    xcb_window_t topLevel(xcb_window_t window) const;
    /// 32-bit items of a property; empty without one.
    std::vector<uint32_t> numbers(xcb_window_t window, CX11Atom property) const;
    void setNumbers(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const uint32_t* items,
                    uint32_t count) const;
    void setText(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const std::string& text) const;

private:
    explicit CX11Display(const CX11Library& library, xcb_connection_t* connection)
        : x_(library), connection_(connection) {}
    bool findScreen(int number);
    bool findVisual();
    void nameAtoms();

    const CX11Library& x_;
    xcb_connection_t* const connection_;
    const xcb_screen_t* screen_ = nullptr;
    xcb_visualid_t visual_ = 0;
    xcb_colormap_t colormap_ = 0;
    bool isOwnColormap_ = false;
    xcb_atom_t atoms_[static_cast<size_t>(CX11Atom::Count)] = {};
};

}  // namespace tarv
