#pragma once

#include "UI/Text/CTextEditRules.h"

namespace tarv {

/// The text of a field with cursor, selection and what can be taken back; knows nothing of views and keys. Characters
/// have 16 bits, paragraphs end with line feeds. Positions lie between characters: 0..length. The selection reaches
/// from the anchor to the cursor, in either order. Thread: that of the window.
class CTextEdit : public CHeapObject {
public:
    /// Steps that can be taken back; the oldest are forgotten.
    static constexpr int32_t kMaxSteps = 100;

    void setRules(const CTextEditRules& rules) { rules_ = rules; }
    const CTextEditRules& rules() const { return rules_; }
    /// Begins an edit: all is selected, and nothing can be taken back. The rules do not apply to this text.
    void setText(const CString& text);

    const CString& text() const { return text_; }
    int32_t length() const { return text_.length(); }
    int32_t cursor() const { return cursor_; }
    int32_t anchor() const { return anchor_; }
    int32_t selectionStart() const { return cursor_ < anchor_ ? cursor_ : anchor_; }
    int32_t selectionEnd() const { return cursor_ < anchor_ ? anchor_ : cursor_; }
    bool hasSelection() const { return cursor_ != anchor_; }
    CString selectedText() const { return text_.substring(selectionStart(), selectionEnd() - selectionStart()); }

    /// Positions are held in 0..length. `isSelecting` leaves the anchor where it is.
    void moveTo(int32_t position, bool isSelecting);
    /// By a character or a word. Without `isSelecting` a selection ends at that side of it.
    void moveBack(bool isWord, bool isSelecting);
    void moveForward(bool isWord, bool isSelecting);
    void selectAll();
    /// The word, or the run of blanks or of signs, at a position.
    void selectWord(int32_t position);
    /// Beginning of the word before a position, and of the one behind it; a line feed is a word, and blanks belong to
    /// the word before them.
    int32_t wordBefore(int32_t position) const;
    int32_t wordBehind(int32_t position) const;
    /// Of the paragraph that a position belongs to.
    int32_t paragraphStart(int32_t position) const;
    int32_t paragraphEnd(int32_t position) const;

    // The following give false if nothing has changed.
    /// What the rules let in of the text, up to the room that the paragraph has, in place of the selection. If nothing
    /// may enter, the selection stays. Consecutive typing is one step; a paste is one.
    bool type(const CString& text) { return enter(text, CKind::Typed); }
    bool paste(const CString& text) { return enter(text, CKind::Other); }
    /// The selection, otherwise what lies between the cursor and the character or word before (behind) it.
    bool eraseBack(bool isWord);
    bool eraseForward(bool isWord);
    bool undo();
    bool redo();

private:
    enum class CKind : uint8_t { Other, Typed, ErasedBack };
    /// `removed` stood at `start` and `inserted` stands there now.
    struct CStep {
        int32_t start = 0;
        CString removed;
        CString inserted;
        int32_t cursor = 0;  ///< before it
        int32_t anchor = 0;
        CKind kind = CKind::Other;
    };

    bool enter(const CString& text, CKind kind);
    CString fitted(const CString& text) const;
    void replace(int32_t start, int32_t end, const CString& inserted, CKind kind);
    bool joinLast(int32_t start, const CString& removed, const CString& inserted, CKind kind);
    void write(int32_t start, int32_t count, const CString& inserted);

    CTextEditRules rules_;
    CString text_;
    int32_t cursor_ = 0;
    int32_t anchor_ = 0;
    CArray<CStep, 1> steps_;
    int32_t done_ = 0;     ///< steps that stand in the text; those behind them were taken back
    bool isOpen_ = false;  ///< the last step may still grow
};

}  // namespace tarv
