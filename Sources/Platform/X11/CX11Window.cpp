// A window on an X server: its life, bounds, pictures, focus and capture. CX11WindowEvents.cpp has its events.

#include "Platform/X11/CX11Window.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>

#include "Platform/Posix/PathText.h"

namespace tarv {

namespace {

uint64_t nextSerial() {
    static std::atomic<uint64_t> last{0};
    return ++last;
}

/// The window of the process that grabs the keys, by its serial number; 0 for none.
std::atomic<uint64_t> keyOwner{0};

uint32_t lengthOf(int32_t length) {
    return static_cast<uint32_t>(std::max(length, 1));
}

CIntRect unionOf(const CIntRect& a, const CIntRect& b) {
    return a.isEmpty() ? b
                       : CIntRect{std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
                                  std::max(a.bottom, b.bottom)};
}

/// Glyphs of the server's own font of pointers, in the order of CCursorShape.
constexpr uint16_t kCursorGlyphs[] = {68, 152, 60, 116, 108, 52};

}  // namespace

CX11Window::CX11Window(std::shared_ptr<CX11Session> session, const CWindowRequest& request, CWindowHandler& handler)
    : session_(std::move(session)),
      display_(session_->display()),
      x_(display_.x()),
      handler_(handler),
      serial_(nextSerial()),
      isChild_(request.isChild),
      isManaged_(!request.isChild && (request.isTaskbar || request.isLasting)),
      isActivated_(request.isActivated),
      parent_(static_cast<xcb_window_t>(request.parent)) {}

CX11Window::~CX11Window() {
    if (!id_) {
        return;
    }
    giveFocusBack();
    uint64_t own = serial_;
    keyOwner.compare_exchange_strong(own, 0);
    session_->remove(*this);
    x_.xcb_destroy_window(display_.connection(), id_);
    if (cursor_) {
        x_.xcb_free_cursor(display_.connection(), cursor_);
    }
    display_.flush();
}

CPlatformError CX11Window::create(const CWindowRequest& request) {
    bounds_ = request.bounds;
    id_ = x_.xcb_generate_id(display_.connection());
    // In the order of the bits of the mask. The border gets a colour: the parent may have another depth.
    constexpr uint32_t kMask =
        XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_BIT_GRAVITY | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP;
    const uint32_t values[] = {XCB_BACK_PIXMAP_NONE, 0, XCB_GRAVITY_NORTH_WEST, !isChild_ && !isManaged_,
                               display_.colormap()};
    const auto cookie = x_.xcb_create_window_checked(
        display_.connection(), 24, id_, isChild_ ? parent_ : display_.root(), static_cast<int16_t>(bounds_.left),
        static_cast<int16_t>(bounds_.top), static_cast<uint16_t>(lengthOf(bounds_.width())),
        static_cast<uint16_t>(lengthOf(bounds_.height())), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, display_.visual(), kMask,
        values);
    const CX11Reply<xcb_generic_error_t> error(x_.xcb_request_check(display_.connection(), cookie));
    if (error || display_.isBroken()) {
        id_ = 0;
        return error ? error->error_code : static_cast<CPlatformError>(EPIPE);
    }
    session_->add(*this);
    selectEvents(!isChild_);
    if (isChild_) {
        // For hosts that embed by this protocol: version 0, shown.
        const uint32_t info[] = {0, 1};
        const xcb_atom_t name = display_.atom(CX11Atom::XembedInfo);
        display_.setNumbers(id_, name, name, info, std::size(info));
    } else {
        describePopup(request);
    }
    setTitle(request.title);
    return 0;
}

void CX11Window::describePopup(const CWindowRequest& request) {
    if (parent_ && !session_->find(parent_)) {
        session_->watch(parent_);
    }
    hostTop_ = display_.topLevel(parent_);
    if (hostTop_) {
        display_.setNumbers(id_, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, &hostTop_, 1);
        if (!session_->find(hostTop_)) {
            session_->watch(hostTop_);
        }
    }
    const uint32_t type = display_.atom(isManaged_ ? CX11Atom::NetWmTypeDialog : CX11Atom::NetWmTypeMenu);
    display_.setNumbers(id_, display_.atom(CX11Atom::NetWmType), XCB_ATOM_ATOM, &type, 1);
    if (!request.isTaskbar) {
        const uint32_t states[] = {display_.atom(CX11Atom::NetWmStateSkipTaskbar),
                                   display_.atom(CX11Atom::NetWmStateSkipPager)};
        display_.setNumbers(id_, display_.atom(CX11Atom::NetWmState), XCB_ATOM_ATOM, states, std::size(states));
    }
    const uint32_t process = static_cast<uint32_t>(getpid());
    display_.setNumbers(id_, display_.atom(CX11Atom::NetWmPid), XCB_ATOM_CARDINAL, &process, 1);
    // Flags, functions, decorations, mode, state: no decorations.
    const uint32_t motif[] = {2, 0, 0, 0, 0};
    const xcb_atom_t motifName = display_.atom(CX11Atom::Motif);
    display_.setNumbers(id_, motifName, motifName, motif, std::size(motif));
    const uint32_t protocol = display_.atom(CX11Atom::WmDelete);
    display_.setNumbers(id_, display_.atom(CX11Atom::WmProtocols), XCB_ATOM_ATOM, &protocol, 1);
    // The user's own position and size, so that the manager keeps both.
    uint32_t hints[18] = {1 | 2};
    hints[1] = static_cast<uint32_t>(request.bounds.left);
    hints[2] = static_cast<uint32_t>(request.bounds.top);
    hints[3] = lengthOf(request.bounds.width());
    hints[4] = lengthOf(request.bounds.height());
    display_.setNumbers(id_, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, hints, std::size(hints));
}

// Keys come to a child only while it has the focus: a pointer above it would otherwise take them from the host.
void CX11Window::selectEvents(bool hasKeys) const {
    const uint32_t mask = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                          XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW |
                          XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                          (hasKeys ? XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE : 0);
    x_.xcb_change_window_attributes(display_.connection(), id_, XCB_CW_EVENT_MASK, &mask);
}

void CX11Window::markGone() {
    uint64_t own = serial_;
    keyOwner.compare_exchange_strong(own, 0);
    if (cursor_) {
        x_.xcb_free_cursor(display_.connection(), cursor_);
        cursor_ = 0;
    }
    isGrabbing_ = false;
    id_ = 0;
}

void CX11Window::configure(uint16_t mask, const uint32_t* values) const {
    x_.xcb_configure_window(display_.connection(), id_, mask, values);
}

void CX11Window::show(bool isShown) {
    if (!id_ || isShown == isShown_) {
        return;
    }
    isShown_ = isShown;
    if (!isShown) {
        giveFocusBack();
        if (session_->captured() == this) {
            session_->dropCapture();
        }
        dirty_ = exposed_ = {};
        x_.xcb_unmap_window(display_.connection(), id_);
        display_.flush();
        return;
    }
    if (isManaged_) {
        // The manager may give it the focus before this program does.
        focusBefore_ = display_.focus();
    }
    if (!isChild_) {
        const uint32_t above = XCB_STACK_MODE_ABOVE;
        configure(XCB_CONFIG_WINDOW_STACK_MODE, &above);
    }
    x_.xcb_map_window(display_.connection(), id_);
    if (!isChild_ && isActivated_) {
        if (isManaged_) {
            isFocusDue_ = true;
        } else {
            takeFocus();
        }
    }
    display_.flush();
}

void CX11Window::followHost(xcb_window_t window, bool isShown) {
    if (!id_ || !isShown_ || !window || window != hostTop_) {
        return;
    }
    if (isShown) {
        x_.xcb_map_window(display_.connection(), id_);
    } else {
        x_.xcb_unmap_window(display_.connection(), id_);
    }
}

void CX11Window::setBounds(const CIntRect& bounds) {
    if (!id_) {
        return;
    }
    bounds_ = bounds;
    const uint32_t values[] = {static_cast<uint32_t>(bounds.left), static_cast<uint32_t>(bounds.top),
                               lengthOf(bounds.width()), lengthOf(bounds.height())};
    configure(XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
    display_.flush();
}

CIntRect CX11Window::screenBounds() const {
    int32_t x = 0;
    int32_t y = 0;
    if (!id_ || !display_.translate(id_, display_.root(), x, y)) {
        return {};
    }
    return {x, y, x + bounds_.width(), y + bounds_.height()};
}

void CX11Window::setTitle(const char16_t* title) {
    if (!id_) {
        return;
    }
    const std::string text = utf16ToUtf8(title);
    display_.setText(id_, display_.atom(CX11Atom::NetWmName), display_.atom(CX11Atom::Utf8String), text);
    display_.setText(id_, XCB_ATOM_WM_NAME, display_.atom(CX11Atom::Utf8String), text);
    display_.flush();
}

void CX11Window::present(const CSurface& surface, int32_t x, int32_t y, const CIntRect& rect) {
    const auto& own = static_cast<const CX11Surface&>(surface);
    session_->painter().put(id_, own, own.picture(), x, y, rect);
}

void CX11Window::finishPresenting() {
    session_->painter().finish();
}

void CX11Window::invalidate(const CIntRect& rect) {
    if (id_ && isShown_ && !rect.isEmpty()) {
        dirty_ = unionOf(dirty_, rect);
    }
}

void CX11Window::paint() {
    if (isExposing_) {
        return;
    }
    CIntRect rect = exposed_.isEmpty() ? dirty_ : unionOf(dirty_, exposed_);
    dirty_ = exposed_ = {};
    rect = rect.intersection({0, 0, bounds_.width(), bounds_.height()});
    if (!rect.isEmpty()) {
        handler_.onPaint(rect);
    }
}

void CX11Window::setCapture() {
    if (id_) {
        session_->capture(id_);
    }
}

void CX11Window::releaseCapture() {
    if (id_ && session_->captured() == this) {
        session_->capture(0);
    }
}

void CX11Window::setCursor(CCursorShape shape) {
    if (!id_) {
        return;
    }
    const uint16_t glyph = kCursorGlyphs[static_cast<size_t>(shape)];
    xcb_connection_t* connection = display_.connection();
    const xcb_font_t font = x_.xcb_generate_id(connection);
    x_.xcb_open_font(connection, font, 6, "cursor");
    const xcb_cursor_t cursor = x_.xcb_generate_id(connection);
    // Each picture stands before its mask; black on white.
    x_.xcb_create_glyph_cursor(connection, cursor, font, font, glyph, glyph + 1, 0, 0, 0, 0xffff, 0xffff, 0xffff);
    x_.xcb_close_font(connection, font);
    x_.xcb_change_window_attributes(connection, id_, XCB_CW_CURSOR, &cursor);
    if (cursor_) {
        x_.xcb_free_cursor(connection, cursor_);
    }
    cursor_ = cursor;
    display_.flush();
}

void CX11Window::takeFocus() {
    const xcb_window_t now = id_ ? display_.focus() : 0;
    if (!id_ || now == id_) {
        return;
    }
    focusBefore_ = now;
    selectEvents(true);
    display_.setFocus(id_);
}

void CX11Window::giveFocusBack() {
    isFocusDue_ = false;
    if (id_ && display_.focus() == id_) {
        isFocusOurs_ = true;
        if (isChild_) {
            // At once: the pointer may be above.
            selectEvents(false);
        }
        display_.setFocus(focusBefore_);
    }
}

void CX11Window::grabKeys(bool isGrabbed) {
    isGrabbing_ = isGrabbed && id_;
    if (!id_ || isGrabbed == ownsKeys()) {
        return;
    }
    session_->keyboard().forgetDeadKey();
    if (isGrabbed) {
        keyOwner = serial_;
        hasKeyFocus_ = display_.focus() != id_;
        takeFocus();
        return;
    }
    keyOwner = 0;
    if (hasKeyFocus_) {
        hasKeyFocus_ = false;
        giveFocusBack();
    }
}

void CX11Window::checkKeys() {
    if (isGrabbing_ && !ownsKeys()) {
        isGrabbing_ = false;
        hasKeyFocus_ = false;
        handler_.onKeysLost();
    }
}

bool CX11Window::ownsKeys() const {
    return keyOwner == serial_;
}

}  // namespace tarv
