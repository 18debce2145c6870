// From keys to characters by the layout.

#include "Platform/Win32/CKeyCharacters.h"

#include <algorithm>

namespace tarv {

namespace {

constexpr BYTE kIsDown = 0x80;
constexpr int kRoom = 16;

bool isDown(const BYTE* state, int key) {
    return (state[key] & kIsDown) != 0;
}

bool isModifier(UINT key) {
    return (key >= VK_SHIFT && key <= VK_MENU) || (key >= VK_LSHIFT && key <= VK_RMENU) || key == VK_CAPITAL ||
           key == VK_NUMLOCK || key == VK_SCROLL || key == VK_LWIN || key == VK_RWIN;
}

bool isPrinted(wchar_t unit) {
    return unit >= L' ' && unit != 0x7f;
}

}  // namespace

int32_t CKeyCharacters::translate(UINT key, UINT scanCode, const BYTE* state, char16_t* units) {
    // Alt alone is the menu's; with Ctrl it is AltGr.
    if (isModifier(key) || (isDown(state, VK_MENU) && !isDown(state, VK_CONTROL))) {
        return 0;
    }
    wchar_t found[kRoom] = {};
    if (deadKey_) {
        ask(deadKey_, deadScanCode_, deadState_, found);
    }
    const int count = ask(key, scanCode, state, found);
    const bool isComposing = deadKey_ != 0;
    deadKey_ = 0;
    if (count < 0) {
        clearLayout();
        if (!isComposing) {
            deadKey_ = key;
            deadScanCode_ = scanCode;
            std::copy_n(state, kKeyCount, deadState_);
            return 0;
        }
    }
    int32_t written = 0;
    for (int i = 0; i < std::abs(count) && written < CKeyEvent::kMaxCharacters; ++i) {
        if (isPrinted(found[i])) {
            units[written++] = static_cast<char16_t>(found[i]);
        }
    }
    return written;
}

int CKeyCharacters::ask(UINT key, UINT scanCode, const BYTE* state, wchar_t* units) {
    return layout_(key, scanCode, state, units, kRoom, 0);
}

// A blank takes a dead key that waits; where none waits it changes nothing.
void CKeyCharacters::clearLayout() {
    const BYTE nothingDown[kKeyCount] = {};
    wchar_t dropped[kRoom] = {};
    for (int tries = 0; tries < 2 && ask(VK_SPACE, 0, nothingDown, dropped) < 0; ++tries) {
    }
}

}  // namespace tarv
