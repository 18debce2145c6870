#include "UI/Text/CTextEditKeys.h"

#include <string>

#include "Platform/Keyboard.h"
#include "Platform/WindowSystem.h"

namespace tarv {

namespace {

CTextKeyResult changedIf(bool isChanged) {
    return isChanged ? CTextKeyResult::Changed : CTextKeyResult::Taken;
}

/// Ctrl and a letter or a key of the clipboard.
CTextKeyResult shortcut(CTextEdit& edit, int32_t code, bool isShift) {
    switch (code) {
        case 'A':
            edit.selectAll();
            return CTextKeyResult::Moved;
        case 'C':
        case kKeyInsert:
            CTextEditKeys::copy(edit);
            return CTextKeyResult::Taken;
        case 'X':
            return changedIf(CTextEditKeys::cut(edit));
        case 'V':
            return changedIf(CTextEditKeys::paste(edit));
        case 'Z':
            return changedIf(isShift ? edit.redo() : edit.undo());
        case 'Y':
            return changedIf(edit.redo());
        default:
            return CTextKeyResult::NotTaken;
    }
}

CTextKeyResult move(CTextEdit& edit, int32_t code, bool isCtrl, bool isShift) {
    switch (code) {
        case kKeyLeft:
            edit.moveBack(isCtrl, isShift);
            return CTextKeyResult::Moved;
        case kKeyRight:
            edit.moveForward(isCtrl, isShift);
            return CTextKeyResult::Moved;
        case kKeyHome:
            edit.moveTo(isCtrl ? 0 : edit.paragraphStart(edit.cursor()), isShift);
            return CTextKeyResult::Moved;
        case kKeyEnd:
            edit.moveTo(isCtrl ? edit.length() : edit.paragraphEnd(edit.cursor()), isShift);
            return CTextKeyResult::Moved;
        case kKeyUp:
        case kKeyDown:
        case kKeyPageUp:
        case kKeyPageDown:
            return CTextKeyResult::Taken;
        default:
            return CTextKeyResult::NotTaken;
    }
}

CTextKeyResult erase(CTextEdit& edit, int32_t code, bool isCtrl, bool isShift) {
    if (code == kKeyBackspace) {
        return changedIf(edit.eraseBack(isCtrl));
    }
    if (code == kKeyDelete) {
        return changedIf(isShift && !isCtrl ? CTextEditKeys::cut(edit) : edit.eraseForward(isCtrl));
    }
    return code == kKeyInsert && isShift && !isCtrl ? changedIf(CTextEditKeys::paste(edit)) : CTextKeyResult::NotTaken;
}

}  // namespace

CTextKeyResult CTextEditKeys::press(CTextEdit& edit, int32_t code, const CInputModifiers& modifiers,
                                    const CString& characters) {
    const bool isShift = modifiers.isShift;
    const bool isTyping = modifiers.isCtrl == modifiers.isAlt;
    const bool isCtrl = modifiers.isCtrl && !modifiers.isAlt;
    if (modifiers.isAlt && !modifiers.isCtrl) {
        return CTextKeyResult::NotTaken;
    }
    if (code == kKeyEscape) {
        return CTextKeyResult::Escape;
    }
    if (code == kKeyEnter || (code == kKeyTab && !isCtrl)) {
        const bool isEnter = code == kKeyEnter;
        const bool isCharacter = isEnter ? edit.rules().isAcceptEnter : edit.rules().isAcceptTab && !isShift;
        // Ctrl and Enter end an edit of several paragraphs.
        if (isCharacter && !isCtrl) {
            return changedIf(edit.type(isEnter ? "\n" : "\t"));
        }
        return isEnter ? CTextKeyResult::Enter : isShift ? CTextKeyResult::TabBack : CTextKeyResult::Tab;
    }
    CTextKeyResult result = erase(edit, code, isCtrl, isShift);
    if (result == CTextKeyResult::NotTaken) {
        result = move(edit, code, isCtrl, isShift);
    }
    if (result == CTextKeyResult::NotTaken && isCtrl) {
        result = shortcut(edit, code, isShift);
    }
    if (result == CTextKeyResult::NotTaken && isTyping && !characters.isEmpty()) {
        result = changedIf(edit.type(characters));
    }
    return result;
}

bool CTextEditKeys::copy(const CTextEdit& edit) {
    CWindowSystem* system = windowSystem();
    if (!system || !edit.hasSelection()) {
        return false;
    }
    CString text = edit.selectedText();
    text.widen();
    return system->setClipboardText(std::u16string(text.wideData(), static_cast<size_t>(text.length())));
}

bool CTextEditKeys::cut(CTextEdit& edit) {
    return copy(edit) && edit.eraseBack(false);
}

bool CTextEditKeys::paste(CTextEdit& edit) {
    CWindowSystem* system = windowSystem();
    std::u16string text;
    return system && system->clipboardText(text) && edit.paste(text.c_str());
}

}  // namespace tarv
