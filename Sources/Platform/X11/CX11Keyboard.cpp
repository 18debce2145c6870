// Keys by the user's layout.

#include "Platform/X11/CX11Keyboard.h"

#include "Platform/Posix/PathText.h"
#include "Platform/X11/CX11Pointer.h"
#include "Platform/X11/X11KeyCodes.h"

namespace tarv {

namespace {

/// The language of the compose table, as the C library chooses it.
const char* localeName() {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* value = std::getenv(name);
        if (value && *value) {
            return value;
        }
    }
    return "C";
}

/// Most languages share this table.
constexpr const char* kCommonLocale = "en_US.UTF-8";

void append(char16_t unit, CKeyEvent& event) {
    if (event.characterCount < CKeyEvent::kMaxCharacters) {
        event.characters[event.characterCount++] = unit;
    }
}

}  // namespace

CX11Keyboard::CX11Keyboard(const CX11Display& display) : display_(display), x_(display.x()) {
    xcb_connection_t* connection = display_.connection();
    context_ = x_.xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    if (context_ &&
        x_.xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                       XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent_, nullptr)) {
        device_ = x_.xkb_x11_get_core_keyboard_device_id(connection);
        constexpr uint16_t kEvents = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
        x_.xcb_xkb_select_events(connection, XCB_XKB_ID_USE_CORE_KBD, kEvents, 0, kEvents, 0, 0, nullptr);
        // A key that is held repeats its press alone.
        const auto cookie = x_.xcb_xkb_per_client_flags(connection, XCB_XKB_ID_USE_CORE_KBD,
                                                        XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
                                                        XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT, 0, 0, 0);
        x_.xcb_discard_reply(connection, cookie.sequence);
    }
}

CX11Keyboard::~CX11Keyboard() {
    dropLayout();
    x_.xkb_compose_state_unref(compose_);
    x_.xkb_compose_table_unref(composeTable_);
    x_.xkb_context_unref(context_);
}

bool CX11Keyboard::take(const xcb_generic_event_t& event) {
    const uint8_t type = event.response_type & 0x7f;
    const bool isOurs = (firstEvent_ && type == firstEvent_) || type == XCB_MAPPING_NOTIFY;
    if (isOurs) {
        dropLayout();
    }
    return isOurs;
}

void CX11Keyboard::dropLayout() {
    x_.xkb_state_unref(state_);
    x_.xkb_keymap_unref(keymap_);
    state_ = nullptr;
    keymap_ = nullptr;
}

void CX11Keyboard::loadLayout() {
    if (state_ || !context_) {
        return;
    }
    if (device_ >= 0) {
        keymap_ =
            x_.xkb_x11_keymap_new_from_device(context_, display_.connection(), device_, XKB_KEYMAP_COMPILE_NO_FLAGS);
    }
    if (!keymap_) {
        keymap_ = x_.xkb_keymap_new_from_names(context_, nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS);
    }
    if (keymap_) {
        state_ = x_.xkb_state_new(keymap_);
    }
    if (!compose_) {
        for (const char* locale : {localeName(), kCommonLocale}) {
            if (!composeTable_) {
                composeTable_ = x_.xkb_compose_table_new_from_locale(context_, locale, XKB_COMPOSE_COMPILE_NO_FLAGS);
            }
        }
        compose_ = composeTable_ ? x_.xkb_compose_state_new(composeTable_, XKB_COMPOSE_STATE_NO_FLAGS) : nullptr;
    }
}

void CX11Keyboard::forgetDeadKey() {
    if (compose_) {
        x_.xkb_compose_state_reset(compose_);
    }
}

CKeyEvent CX11Keyboard::translate(const xcb_key_press_event_t& key, bool isDown) {
    CKeyEvent event;
    event.isDown = isDown;
    event.modifiers = x11Modifiers(key.state);
    loadLayout();
    if (!state_) {
        return event;
    }
    // The event bears modifiers in its low byte and the layout in bits 13 and 14.
    x_.xkb_state_update_mask(state_, key.state & 0xff, 0, 0, 0, 0, key.state >> 13 & 3);
    const xkb_keysym_t symbol = x_.xkb_state_key_get_one_sym(state_, key.detail);
    event.code = codeOf(key.detail, symbol);
    if (isDown) {
        type(symbol, event);
    }
    return event;
}

int32_t CX11Keyboard::codeOf(xkb_keycode_t key, xkb_keysym_t symbol) const {
    if (const int32_t code = keyCodeOfSymbol(symbol)) {
        return code;
    }
    // Figures may need Shift, and a layout of other letters has a Latin one beside it.
    const xkb_layout_index_t count = x_.xkb_keymap_num_layouts_for_key(keymap_, key);
    const xkb_layout_index_t current = x_.xkb_state_key_get_layout(state_, key);
    for (xkb_layout_index_t i = 0; i < count; ++i) {
        for (xkb_level_index_t level = 0; level < 2; ++level) {
            const xkb_keysym_t* symbols = nullptr;
            const xkb_layout_index_t layout = current < count ? (current + i) % count : i;
            if (x_.xkb_keymap_key_get_syms_by_level(keymap_, key, layout, level, &symbols) != 1) {
                continue;
            }
            if (const int32_t code = keyCodeOfSymbol(symbols[0])) {
                return code;
            }
        }
    }
    return 0;
}

void CX11Keyboard::type(xkb_keysym_t symbol, CKeyEvent& event) {
    const auto isActive = [this](const char* name) {
        return x_.xkb_state_mod_name_is_active(state_, name, XKB_STATE_MODS_EFFECTIVE) > 0;
    };
    if (isActive(XKB_MOD_NAME_CTRL) || isActive(XKB_MOD_NAME_ALT)) {
        return;
    }
    if (compose_ && x_.xkb_compose_state_feed(compose_, symbol) == XKB_COMPOSE_FEED_ACCEPTED) {
        switch (x_.xkb_compose_state_get_status(compose_)) {
            case XKB_COMPOSE_COMPOSING:
                event.isDead = true;
                return;
            case XKB_COMPOSE_COMPOSED: {
                char text[32] = {};
                x_.xkb_compose_state_get_utf8(compose_, text, sizeof text);
                x_.xkb_compose_state_reset(compose_);
                for (const char16_t unit : pathToUtf16(text)) {
                    append(unit, event);
                }
                return;
            }
            case XKB_COMPOSE_CANCELLED:
                // The letter that no table joins with the dead key is typed by itself.
                x_.xkb_compose_state_reset(compose_);
                break;
            default:
                break;
        }
    }
    const uint32_t point = x_.xkb_keysym_to_utf32(symbol);
    if (point >= 0x10000) {
        append(static_cast<char16_t>(0xd800 + ((point - 0x10000) >> 10)), event);
        append(static_cast<char16_t>(0xdc00 + (point & 0x3ff)), event);
    } else if (point >= 0x20 && point != 0x7f) {
        append(static_cast<char16_t>(point), event);
    }
}

}  // namespace tarv
