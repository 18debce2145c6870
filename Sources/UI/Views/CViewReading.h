#pragma once

#include "Core/CString.h"
#include "UI/Placement/CViewRect.h"

namespace tarv {

class CViewBaseCtlEvents;

/// What a view is to somebody who can't see it.
enum class CViewRole : uint8_t { None, Button, CheckBox, Edit, Group, List, Slider, Text, Window };

/// What a reader for the blind says of a view. A copy as of the moment it was made.
struct CViewReading {
    CString name;   ///< what it is called; without marks
    CString value;  ///< what it holds: the text of a field, the row of a list; empty for a view without one
    CString help;   ///< its hint, or that of an ancestor
    CViewRole role = CViewRole::None;
    CViewRect rect;  ///< pixels of its window
    bool isFocused = false;
    bool isDisabled = false;
};

/// Follows the key focus of all windows of an editor, for a reader for the blind.
class CFocusReader {
public:
    /// Null where no view has the key focus. The view may be destroyed afterwards: keep no pointer to it.
    virtual void keyFocusMoved(const CViewBaseCtlEvents* view) = 0;

protected:
    ~CFocusReader() = default;
};

/// Views as a reader for the blind finds them. Thread: that of the window.
class CViewReader {
public:
    static CViewReading read(const CViewBaseCtlEvents& view);
    /// The focusable views below a root view, in the order of the tab key, hidden ones left out.
    static CArray<CViewBaseCtlEvents*, 8> focusableViews(CViewBaseCtlEvents& root);
    /// A text as it is said: marks left out, [BR] as a blank.
    static CString withoutMarks(const CString& text);
    /// A text that a user has typed, to be part of one with marks: it shows as it was typed. What would be a mark, an
    /// expression, or `separator` (0: none), becomes the mark of its character; control characters are left out.
    static CString withMarks(const CString& typed, uint16_t separator = 0);
    /// The character that a mark of the form `U+7B` (without its brackets) stands for; 0 for another mark.
    static uint16_t characterOfMark(const CString& mark);
    /// `button`, `check-box`, `edit`, `group`, `list`, `slider`, `text`, `window`; None for any other name.
    static CViewRole roleNamed(const CString& name);
};

}  // namespace tarv
