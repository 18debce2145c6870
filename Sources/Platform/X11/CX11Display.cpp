// A connection with an X server, and the questions that all parts of the backend ask it.

#include "Platform/X11/CX11Display.h"

#include <cstring>

#include "Platform/Posix/PathText.h"

namespace tarv {

namespace {

constexpr const char* kAtomNames[] = {"CLIPBOARD",
                                      "TARV_CLIPBOARD",
                                      "INCR",
                                      "_MOTIF_WM_HINTS",
                                      "_NET_CURRENT_DESKTOP",
                                      "_NET_WM_NAME",
                                      "_NET_WM_PID",
                                      "_NET_WM_STATE",
                                      "_NET_WM_STATE_SKIP_PAGER",
                                      "_NET_WM_STATE_SKIP_TASKBAR",
                                      "_NET_WM_WINDOW_TYPE",
                                      "_NET_WM_WINDOW_TYPE_DIALOG",
                                      "_NET_WM_WINDOW_TYPE_POPUP_MENU",
                                      "_NET_WORKAREA",
                                      "TARGETS",
                                      "text/plain;charset=utf-8",
                                      "TIMESTAMP",
                                      "UTF8_STRING",
                                      "WM_DELETE_WINDOW",
                                      "WM_PROTOCOLS",
                                      "WM_STATE",
                                      "_XEMBED_INFO"};
static_assert(std::size(kAtomNames) == static_cast<size_t>(CX11Atom::Count));

/// Items of a property that are read at most.
constexpr uint32_t kMaxNumbers = 1024;
constexpr uint8_t kDepth = 24;

}  // namespace

bool CX11Display::isNamed(std::u16string& reason) {
    const char* name = std::getenv("DISPLAY");
    if (!name || !*name) {
        reason = u"There is no display: the variable DISPLAY is not set.";
        return false;
    }
    return true;
}

std::unique_ptr<CX11Display> CX11Display::open(const CX11Library& library, std::u16string& reason) {
    int number = 0;
    std::unique_ptr<CX11Display> display(new CX11Display(library, library.xcb_connect(nullptr, &number)));
    if (display->isBroken()) {
        const std::string error = std::to_string(library.xcb_connection_has_error(display->connection_));
        reason = u"The display can't be opened (error " + pathToUtf16(error.c_str()) + u").";
        return nullptr;
    }
    if (!display->findScreen(number) || !display->findVisual()) {
        reason = u"The display shows no colours of 24 bits.";
        return nullptr;
    }
    display->nameAtoms();
    return display;
}

CX11Display::~CX11Display() {
    if (isOwnColormap_) {
        x_.xcb_free_colormap(connection_, colormap_);
    }
    // A server may drop what it has not read of a connection that is closed, a focus that was given back for one.
    if (screen_) {
        sync();
    }
    x_.xcb_disconnect(connection_);
}

bool CX11Display::findScreen(int number) {
    for (auto it = x_.xcb_setup_roots_iterator(x_.xcb_get_setup(connection_)); it.rem; x_.xcb_screen_next(&it)) {
        if (number-- == 0) {
            screen_ = it.data;
        }
    }
    return screen_ != nullptr;
}

bool CX11Display::findVisual() {
    const xcb_setup_t* setup = x_.xcb_get_setup(connection_);
    bool isWide = false;
    for (auto it = x_.xcb_setup_pixmap_formats_iterator(setup); it.rem; x_.xcb_format_next(&it)) {
        isWide |= it.data->depth == kDepth && it.data->bits_per_pixel == 32;
    }
    if (!isWide || setup->image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST) {
        return false;
    }
    for (auto depth = x_.xcb_screen_allowed_depths_iterator(screen_); depth.rem; x_.xcb_depth_next(&depth)) {
        for (auto it = x_.xcb_depth_visuals_iterator(depth.data); it.rem; x_.xcb_visualtype_next(&it)) {
            const bool isGood = depth.data->depth == kDepth && it.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR &&
                                it.data->red_mask == 0xff0000 && it.data->blue_mask == 0xff;
            if (isGood && (!visual_ || it.data->visual_id == screen_->root_visual)) {
                visual_ = it.data->visual_id;
            }
        }
    }
    colormap_ = screen_->default_colormap;
    if (visual_ && visual_ != screen_->root_visual) {
        colormap_ = x_.xcb_generate_id(connection_);
        x_.xcb_create_colormap(connection_, XCB_COLORMAP_ALLOC_NONE, colormap_, root(), visual_);
        isOwnColormap_ = true;
    }
    return visual_ != 0;
}

void CX11Display::nameAtoms() {
    xcb_intern_atom_cookie_t cookies[std::size(kAtomNames)];
    for (size_t i = 0; i < std::size(kAtomNames); ++i) {
        cookies[i] =
            x_.xcb_intern_atom(connection_, 0, static_cast<uint16_t>(std::strlen(kAtomNames[i])), kAtomNames[i]);
    }
    for (size_t i = 0; i < std::size(kAtomNames); ++i) {
        const CX11Reply<xcb_intern_atom_reply_t> reply(x_.xcb_intern_atom_reply(connection_, cookies[i], nullptr));
        atoms_[i] = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }
}

void CX11Display::sync() const {
    (void)focus();
}

xcb_window_t CX11Display::focus() const {
    const CX11Reply<xcb_get_input_focus_reply_t> reply(
        x_.xcb_get_input_focus_reply(connection_, x_.xcb_get_input_focus(connection_), nullptr));
    // 1 is the window under the pointer.
    return reply && reply->focus > XCB_INPUT_FOCUS_POINTER_ROOT ? reply->focus : 0;
}

void CX11Display::setFocus(xcb_window_t window) const {
    x_.xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_PARENT,
                           window ? window : xcb_window_t{XCB_INPUT_FOCUS_POINTER_ROOT}, XCB_CURRENT_TIME);
    flush();
}

bool CX11Display::translate(xcb_window_t from, xcb_window_t to, int32_t& x, int32_t& y, xcb_window_t* child) const {
    const auto cookie =
        x_.xcb_translate_coordinates(connection_, from, to, static_cast<int16_t>(x), static_cast<int16_t>(y));
    const CX11Reply<xcb_translate_coordinates_reply_t> reply(
        x_.xcb_translate_coordinates_reply(connection_, cookie, nullptr));
    if (!reply) {
        return false;
    }
    x = reply->dst_x;
    y = reply->dst_y;
    if (child) {
        *child = reply->child;
    }
    return true;
}

CX11Reply<xcb_query_pointer_reply_t> CX11Display::pointer() const {
    return CX11Reply<xcb_query_pointer_reply_t>(
        x_.xcb_query_pointer_reply(connection_, x_.xcb_query_pointer(connection_, root()), nullptr));
}

xcb_window_t CX11Display::topLevel(xcb_window_t window) const {
    // What a manager shows bears its state; without a manager it is the last one below the root.
    while (window && window != root() && numbers(window, CX11Atom::WmState).empty()) {
        const CX11Reply<xcb_query_tree_reply_t> reply(
            x_.xcb_query_tree_reply(connection_, x_.xcb_query_tree(connection_, window), nullptr));
        if (!reply) {
            return 0;
        }
        if (reply->parent == root()) {
            break;
        }
        window = reply->parent;
    }
    return window;
}

std::vector<uint32_t> CX11Display::numbers(xcb_window_t window, CX11Atom property) const {
    const auto cookie =
        x_.xcb_get_property(connection_, 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, kMaxNumbers);
    const CX11Reply<xcb_get_property_reply_t> reply(x_.xcb_get_property_reply(connection_, cookie, nullptr));
    std::vector<uint32_t> items;
    if (reply && reply->format == 32) {
        items.resize(static_cast<size_t>(x_.xcb_get_property_value_length(reply.get())) / sizeof(uint32_t));
        std::memcpy(items.data(), x_.xcb_get_property_value(reply.get()), items.size() * sizeof(uint32_t));
    }
    return items;
}

void CX11Display::setNumbers(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const uint32_t* items,
                             uint32_t count) const {
    x_.xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, type, 32, count, items);
}

void CX11Display::setText(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const std::string& text) const {
    x_.xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                           static_cast<uint32_t>(text.size()), text.data());
}

}  // namespace tarv
