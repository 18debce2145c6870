#pragma once

#include "UI/Views/CView.h"

namespace tarv {

class CEditBox;

/// The root view of a keyboard on the screen (`ui:virtual-keyboard`), the popup of an edit box. Its keys are views that
/// send it `virtual-keyboard-press` with `key`: the characters to type, or one of the names "Cancel", "Bkspace",
/// "Enter", "Space", "CAPS". The latter switches small letters to capitals and back: in the `title`s of the keys, and
/// as the state `active` of the view that `caps-button` points to. Thread: that of the window.
class CVirtualKeyboard : public CView {
public:
    ~CVirtualKeyboard() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    [[nodiscard]] CError* finishInit() override;

    bool isCaps() const { return isCaps_; }
    /// Closes at the next tick.
    [[nodiscard]] CError* close();
    /// The edit box goes, or has another keyboard.
    void leaveBox() { box_ = nullptr; }

private:
    [[nodiscard]] CError* press(CAttributeMap& params);
    [[nodiscard]] CError* switchCaps();
    [[nodiscard]] CError* setTitles(CObject& object);

    CEditBox* box_ = nullptr;
    bool isCaps_ = false;
};

}  // namespace tarv
