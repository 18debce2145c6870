#pragma once

#include "UI/Text/CTextEditKeys.h"
#include "UI/Text/CTextView.h"

namespace tarv {

class CVirtualKeyboard;

/// The edit box of a window (`ui:editbox`): a child of the root view, made from the template `ui:editbox-popup` and
/// named `temp-editbox`, which lies over the text view that is edited and takes the keys. One edit at a time: all of
/// the text is selected; Enter and Tab commit it, Tab goes on to the next view of the owner's `tab-group` (Shift: to
/// the former one), Escape drops it, and the loss of the key focus (a press elsewhere, another window) commits it. A
/// text that the owner refuses stays in the box with the state `error` for half a second; where the focus is lost the
/// owner shows that state. The key focus returns to the view that had it. An edit box that is over is destroyed at a
/// later render tick, or takes the next edit. Thread: that of the window.
///
/// Attributes: `text-color`, `cursor-color` (by default that of the text), `paragraph-select-color`,
/// `paragraph-select-text-color`; and what its owner gives it:
/// `temp-editbox-owner` (full name), `placement` and `placement-match`, or the place of a row; `inner-border`. Its
/// child `editbox-timer` makes the cursor blink.
///
/// With `show-virtual-keyboard` of the global settings a keyboard on the screen opens beside the box, and closes with
/// the edit: `ui:virtual-keyboard-alphadigit`, or `ui:virtual-keyboard-digit` where the owner's
/// `is-virtual-keyboard-alphabet` is false (by default: for a field of numbers). It gets the owner's
/// `virtual-keyboard-minus-char` ("-"), and stands by `virtual-keyboard-alignment` (by default that of its template).
/// Its keys arrive as `virtual-keyboard-press` with `key`, see CVirtualKeyboard.
class CEditBox : public CView {
public:
    static constexpr const char* kName = "temp-editbox";
    static constexpr int32_t kTextArea = CView::kOwnAreas;

    /// Begins an edit in the window of the owner. Without a window nothing happens; fails without the template.
    [[nodiscard]] static CError* open(CTextView& owner, int32_t paragraph);

    ~CEditBox() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    [[nodiscard]] CError* finishInit() override;

    /// From the beginning of an edit to its end.
    bool isEditing() const { return owner_ != nullptr; }
    CTextView* owner() const { return owner_; }
    /// Row of a list that is edited, -1 for a whole text.
    int32_t paragraph() const { return paragraph_; }
    const CTextEdit& edit() const { return edit_; }
    /// Pixel of the window at the cursor's top left corner.
    CTextView::CPoint cursorPoint() const;

    // What follows may end the edit and destroy this object.
    /// As if the characters had been typed.
    [[nodiscard]] CError* type(const CString& characters);
    /// As if the key had been pressed.
    [[nodiscard]] CError* pressKey(int32_t code, const CInputModifiers& modifiers, const CString& characters,
                                   bool& isTaken);
    /// As Enter does; a refused text stays in the box.
    [[nodiscard]] CError* commit();
    void drop();
    /// A key of the keyboard on the screen.
    [[nodiscard]] CError* pressVirtualKey(const CString& key);
    /// As the loss of the focus does.
    [[nodiscard]] CError* leave();
    /// The owner is being destroyed: nothing is committed.
    void ownerGoes();

    /// Null while there is no keyboard on the screen.
    CVirtualKeyboard* keyboard() const { return keyboard_; }
    void setKeyboard(CVirtualKeyboard* keyboard);

    CViewRole role() const override { return CViewRole::Edit; }
    CString readableName() const override { return owner_ ? owner_->readableName() : CString(); }
    CString readableValue() const override { return edit_.text(); }
    bool isInputView() const override { return true; }
    bool grabsKeys() const override { return true; }
    /// The cursor shows it.
    CViewBaseCtlEvents* focusView() override { return nullptr; }
    [[nodiscard]] CError* keyPress(CAttributeMap& params) override;
    [[nodiscard]] CError* focusLost(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseEnter(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseExit(CAttributeMap& params) override;
    [[nodiscard]] CError* mousePress(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseMove(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseRelease(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseCancel(CAttributeMap& params) override;
    [[nodiscard]] CError* onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) override;

protected:
    [[nodiscard]] CError* draw() override;
    [[nodiscard]] bool animate(double now) override;
    int32_t classColorCount() const override { return 4; }
    CString classColorText(int32_t index) const override;

private:
    enum class CAnswer : uint8_t { Gone, Refused, Accepted };

    [[nodiscard]] CError* begin(CTextView& owner, int32_t paragraph);
    [[nodiscard]] CError* place();
    [[nodiscard]] CError* placeOverRow();
    [[nodiscard]] CError* blink();
    [[nodiscard]] CError* act(CTextKeyResult result);
    [[nodiscard]] CError* textChanged();
    void cursorMoved();
    /// Gone: the edit is over, or is another one, or this object is destroyed.
    [[nodiscard]] CError* offer(CAnswer& answer);
    [[nodiscard]] CError* goOn(bool isBackwards);
    void end(bool isFocusReturned);
    void endRefused();
    void close(bool isFocusReturned);
    bool isOverRow() const;
    CTextView* neighbour(bool isBackwards) const;

    bool wantsKeyboard() const;
    [[nodiscard]] CError* openKeyboard();
    void closeKeyboard();
    [[nodiscard]] CError* virtualKeyPressed(CAttributeMap& params);

    void layOut();
    void showCursor();
    bool moveByLine(int32_t code, bool isShift, bool isCtrl);
    int32_t positionAt(const CAttributeMap& params) const;
    CTextView::CPoint textOrigin() const;
    int32_t caretWidth() const;
    void fill(const CIntRect& rect, const CColor* color);
    void drawSelection();
    void drawGlyphs();

    CTextView* owner_ = nullptr;
    int32_t paragraph_ = -1;
    CString original_;
    CString formerFocus_;
    uint32_t serial_ = 0;
    int32_t busy_ = 0;
    bool isOffering_ = false;
    bool isSelecting_ = false;  ///< a press of the pointer is held

    CTextEdit edit_;
    CTextFonts fonts_;
    CTextSource source_;  ///< kept for its memory
    CTextLayout layout_;
    int32_t alignment_ = -1;
    CVirtualKeyboard* keyboard_ = nullptr;
    int32_t keyboardTicks_ = 0;  ///< until the keyboard opens; 0: it does not
    CViewRect row_;
    CViewRect inner_;
    int32_t scrollX_ = 0;
    int32_t scrollY_ = 0;
    bool isCaretShown_ = false;
};

}  // namespace tarv
