// The clipboard: asked for with a limit of time, offered in the forms that programs ask for.

#include "Platform/X11/CX11Selection.h"

#include <poll.h>

#include <algorithm>
#include <chrono>

#include "Platform/Posix/PathText.h"

namespace tarv {

namespace {

using CSteady = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPatience{1000};
/// More is no text for a field.
constexpr size_t kMostBytes = size_t{16} << 20;
/// 32-bit units read by one request.
constexpr uint32_t kPieceUnits = 1 << 16;
/// Bytes of a request beside its data.
constexpr size_t kRequestHead = 64;

xcb_window_t makeWindow(const CX11Display& display) {
    const xcb_window_t window = display.x().xcb_generate_id(display.connection());
    const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    (void)display.x().xcb_create_window_checked(display.connection(), 0, window, display.root(), -1, -1, 1, 1, 0,
                                                XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                                                &mask);
    return window;
}

/// Latin-1, as the old form of texts has it.
std::u16string fromLatin(const std::string& bytes) {
    std::u16string text;
    for (const char byte : bytes) {
        text += static_cast<char16_t>(static_cast<uint8_t>(byte));
    }
    return text;
}

}  // namespace

CX11Selection::CX11Selection(const CX11Display& display, std::function<void(CX11Event)> hold)
    : display_(display), x_(display.x()), hold_(std::move(hold)), window_(makeWindow(display)) {}

CX11Selection::~CX11Selection() {
    x_.xcb_destroy_window(display_.connection(), window_);
}

bool CX11Selection::take(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
        case XCB_SELECTION_REQUEST:
            answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
            return true;
        case XCB_SELECTION_CLEAR:
            isOwner_ = false;
            own_.clear();
            return true;
        case XCB_SELECTION_NOTIFY: {
            const auto& notify = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
            if (request_ && notify.requestor == request_) {
                answer_ = notify.property ? CAnswer::Given : CAnswer::Refused;
            }
            return true;
        }
        case XCB_PROPERTY_NOTIFY: {
            const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            if (request_ && notify.window == request_ && notify.state == XCB_PROPERTY_NEW_VALUE) {
                answer_ = CAnswer::Piece;
            }
            return true;
        }
        default:
            return false;
    }
}

CX11Selection::CAnswer CX11Selection::waitFor(CAnswer wanted) {
    const auto end = CSteady::now() + kPatience;
    display_.flush();
    for (;;) {
        while (CX11Event event{x_.xcb_poll_for_event(display_.connection())}) {
            if (!take(*event)) {
                hold_(std::move(event));
            } else if (answer_ == wanted || answer_ == CAnswer::Refused) {
                return answer_;
            } else {
                // The first value of a property comes before the notice that it is there.
                answer_ = CAnswer::None;
            }
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - CSteady::now()).count();
        if (left <= 0 || display_.isBroken()) {
            return CAnswer::None;
        }
        pollfd file{x_.xcb_get_file_descriptor(display_.connection()), POLLIN, 0};
        (void)poll(&file, 1, static_cast<int>(left));
    }
}

bool CX11Selection::text(std::u16string& text) {
    text.clear();
    if (isOwner_) {
        text = pathToUtf16(own_.c_str());
        return true;
    }
    const xcb_atom_t clipboard = display_.atom(CX11Atom::Clipboard);
    const CX11Reply<xcb_get_selection_owner_reply_t> owner(x_.xcb_get_selection_owner_reply(
        display_.connection(), x_.xcb_get_selection_owner(display_.connection(), clipboard), nullptr));
    if (!owner || !owner->owner) {
        return false;
    }
    std::string bytes;
    for (const xcb_atom_t target :
         {display_.atom(CX11Atom::Utf8String), display_.atom(CX11Atom::TextPlain), xcb_atom_t{XCB_ATOM_STRING}}) {
        bytes.clear();
        const bool isGiven = ask(target, bytes);
        const bool isRefused = answer_ == CAnswer::Refused;
        answer_ = CAnswer::None;
        if (isGiven) {
            text = target == XCB_ATOM_STRING ? fromLatin(bytes) : pathToUtf16(bytes.c_str());
            return true;
        }
        if (!isRefused) {
            return false;
        }
    }
    return false;
}

bool CX11Selection::ask(xcb_atom_t target, std::string& bytes) {
    request_ = makeWindow(display_);
    answer_ = CAnswer::None;
    x_.xcb_convert_selection(display_.connection(), request_, display_.atom(CX11Atom::Clipboard), target,
                             display_.atom(CX11Atom::ClipboardData), XCB_CURRENT_TIME);
    bool isLong = false;
    const bool isGiven =
        waitFor(CAnswer::Given) == CAnswer::Given && readProperty(bytes, isLong) && (!isLong || readPieces(bytes));
    x_.xcb_destroy_window(display_.connection(), request_);
    display_.flush();
    request_ = 0;
    return isGiven;
}

// Reading deletes the property, which is the sign for the owner to write the next piece.
bool CX11Selection::readProperty(std::string& bytes, bool& isLong) {
    uint32_t offset = 0;
    for (;;) {
        const auto cookie =
            x_.xcb_get_property(display_.connection(), 1, request_, display_.atom(CX11Atom::ClipboardData),
                                XCB_GET_PROPERTY_TYPE_ANY, offset, kPieceUnits);
        const CX11Reply<xcb_get_property_reply_t> reply(
            x_.xcb_get_property_reply(display_.connection(), cookie, nullptr));
        if (!reply || (reply->format != 8 && reply->type != display_.atom(CX11Atom::Incr))) {
            return false;
        }
        if (reply->type == display_.atom(CX11Atom::Incr)) {
            isLong = true;
            return true;
        }
        const auto count = static_cast<size_t>(x_.xcb_get_property_value_length(reply.get()));
        bytes.append(static_cast<const char*>(x_.xcb_get_property_value(reply.get())), count);
        offset += kPieceUnits;
        if (reply->bytes_after == 0 || bytes.size() > kMostBytes) {
            return bytes.size() <= kMostBytes;
        }
    }
}

bool CX11Selection::readPieces(std::string& bytes) {
    bytes.clear();
    for (;;) {
        answer_ = CAnswer::None;
        if (waitFor(CAnswer::Piece) != CAnswer::Piece) {
            return false;
        }
        const size_t before = bytes.size();
        bool isLong = false;
        if (!readProperty(bytes, isLong) || isLong) {
            return false;
        }
        // An empty piece is the end.
        if (bytes.size() == before) {
            return true;
        }
    }
}

bool CX11Selection::setText(const std::u16string& text) {
    const xcb_atom_t clipboard = display_.atom(CX11Atom::Clipboard);
    own_ = utf16ToUtf8(text.c_str());
    x_.xcb_set_selection_owner(display_.connection(), window_, clipboard, XCB_CURRENT_TIME);
    const CX11Reply<xcb_get_selection_owner_reply_t> owner(x_.xcb_get_selection_owner_reply(
        display_.connection(), x_.xcb_get_selection_owner(display_.connection(), clipboard), nullptr));
    isOwner_ = owner && owner->owner == window_;
    return isOwner_;
}

void CX11Selection::answer(const xcb_selection_request_event_t& request) {
    // Programs of the first days name no property.
    const xcb_atom_t property = request.property ? request.property : request.target;
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = isOwner_ && store(request, property) ? property : xcb_atom_t{XCB_ATOM_NONE};
    // The server reads 32 bytes.
    char bytes[32] = {};
    static_assert(sizeof notify <= sizeof bytes);
    std::copy_n(reinterpret_cast<const char*>(&notify), sizeof notify, bytes);
    x_.xcb_send_event(display_.connection(), 0, request.requestor, 0, bytes);
    display_.flush();
}

bool CX11Selection::store(const xcb_selection_request_event_t& request, xcb_atom_t property) const {
    const xcb_atom_t utf8 = display_.atom(CX11Atom::Utf8String);
    const xcb_atom_t plain = display_.atom(CX11Atom::TextPlain);
    if (request.target == display_.atom(CX11Atom::Targets)) {
        const uint32_t targets[] = {request.target, utf8, plain};
        display_.setNumbers(request.requestor, property, XCB_ATOM_ATOM, targets, std::size(targets));
        return true;
    }
    const size_t most = size_t{x_.xcb_get_maximum_request_length(display_.connection())} * 4;
    if ((request.target != utf8 && request.target != plain) || own_.size() + kRequestHead > most) {
        return false;
    }
    display_.setText(request.requestor, property, request.target, own_);
    return true;
}

}  // namespace tarv
