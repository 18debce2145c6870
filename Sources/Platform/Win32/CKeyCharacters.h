#pragma once

#include <windows.h>

#include "Platform/Keyboard.h"

namespace tarv {

/// The characters that keys type by the layout of the keyboard. The layout remembers a dead key for all windows of a
/// thread; here each call leaves it as it was without one, and the dead key is remembered by this object, so that the
/// host's own typing is not disturbed. One thread.
class CKeyCharacters {
public:
    /// The form of the system's ToUnicode.
    using CLayout = int(WINAPI*)(UINT key, UINT scanCode, const BYTE* state, LPWSTR units, int count, UINT flags);

    explicit CKeyCharacters(CLayout layout = &ToUnicode) : layout_(layout) {}

    /// A press with the state of all 256 keys. Gives at most CKeyEvent::kMaxCharacters units that can be printed, and
    /// their number; 0 for a dead key, which waits for the next one.
    int32_t translate(UINT key, UINT scanCode, const BYTE* state, char16_t* units);
    /// The dead key that waits is this one.
    bool isWaiting(UINT key) const { return deadKey_ != 0 && deadKey_ == key; }
    /// Forgets a dead key that waits.
    void reset() { deadKey_ = 0; }

private:
    static constexpr int kKeyCount = 256;

    int ask(UINT key, UINT scanCode, const BYTE* state, wchar_t* units);
    void clearLayout();

    CLayout layout_;
    UINT deadKey_ = 0;
    UINT deadScanCode_ = 0;
    BYTE deadState_[kKeyCount] = {};
};

}  // namespace tarv
