#pragma once

#include <cstdint>

#include "Platform/Pointer.h"

namespace tarv {

/// Numbers of keys, those of Windows; a backend maps its own to them. Letters and figures have their capital's code.
enum CKeyCode : int32_t {
    kKeyBackspace = 8,
    kKeyTab = 9,
    kKeyEnter = 13,
    kKeyShift = 16,
    kKeyCtrl = 17,
    kKeyAlt = 18,
    kKeyEscape = 27,
    kKeySpace = 32,
    kKeyPageUp = 33,
    kKeyPageDown = 34,
    kKeyEnd = 35,
    kKeyHome = 36,
    kKeyLeft = 37,
    kKeyUp = 38,
    kKeyRight = 39,
    kKeyDown = 40,
    kKeyInsert = 45,
    kKeyDelete = 46,
    kKeyF2 = 113
};

/// A key that went down or up, with the characters that it types by the keyboard's layout, dead keys included.
struct CKeyEvent {
    static constexpr int32_t kMaxCharacters = 4;

    int32_t code = 0;
    bool isDown = false;
    CInputModifiers modifiers;
    char16_t characters[kMaxCharacters] = {};
    int32_t characterCount = 0;
    bool isDead = false;  ///< types nothing yet, but changes what the next key types
};

}  // namespace tarv
