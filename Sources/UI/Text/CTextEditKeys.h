#pragma once

#include "Platform/Pointer.h"
#include "UI/Text/CTextEdit.h"

namespace tarv {

/// What a key has done with a field, or asks its owner for.
enum class CTextKeyResult : uint8_t {
    NotTaken,  ///< goes on to the host
    Taken,     ///< nothing has changed
    Moved,     ///< cursor or selection
    Changed,   ///< the text
    Enter,
    Tab,
    TabBack,
    Escape
};

/// What the keys of a field do. Home and End work on the paragraph; code that knows the lines of the text handles them,
/// and the keys up and down, before. The clipboard is that of the window system in use.
///
/// Taken are all keys that type, also where the field lets the character out, and those that move and erase. Alt and a
/// letter, Ctrl and a letter that has no meaning here, function keys and the like go on to the host. Ctrl and Alt
/// together (AltGr) type.
class CTextEditKeys {
public:
    /// `characters` is what the key types by the keyboard's layout.
    static CTextKeyResult press(CTextEdit& edit, int32_t code, const CInputModifiers& modifiers,
                                const CString& characters);
    /// To the clipboard; false if nothing is selected or the clipboard is busy. Cutting then removes nothing.
    static bool copy(const CTextEdit& edit);
    static bool cut(CTextEdit& edit);
    /// False if nothing of the clipboard may enter.
    static bool paste(CTextEdit& edit);
};

}  // namespace tarv
