#include "UI/Text/CTextEdit.h"

#include <algorithm>

namespace tarv {

namespace {

constexpr uint16_t kNoBreakSpace = 0xA0;

enum class CClass : uint8_t { Blank, Word, Sign, End };

CClass classOf(uint16_t unit) {
    if (unit == '\n') {
        return CClass::End;
    }
    if (unit == ' ' || unit == '\t' || unit == kNoBreakSpace) {
        return CClass::Blank;
    }
    const bool isWord = (unit >= '0' && unit <= '9') || (unit >= 'A' && unit <= 'Z') || (unit >= 'a' && unit <= 'z') ||
                        unit == '_' || unit >= 0xC0;
    return isWord ? CClass::Word : CClass::Sign;
}

}  // namespace

void CTextEdit::setText(const CString& text) {
    text_ = text;
    text_.widen();
    anchor_ = 0;
    cursor_ = text_.length();
    steps_.clear();
    done_ = 0;
    isOpen_ = false;
}

void CTextEdit::moveTo(int32_t position, bool isSelecting) {
    cursor_ = std::clamp(position, 0, text_.length());
    if (!isSelecting) {
        anchor_ = cursor_;
    }
    isOpen_ = false;
}

void CTextEdit::moveBack(bool isWord, bool isSelecting) {
    if (hasSelection() && !isSelecting && !isWord) {
        moveTo(selectionStart(), false);
    } else {
        moveTo(isWord ? wordBefore(cursor_) : cursor_ - 1, isSelecting);
    }
}

void CTextEdit::moveForward(bool isWord, bool isSelecting) {
    if (hasSelection() && !isSelecting && !isWord) {
        moveTo(selectionEnd(), false);
    } else {
        moveTo(isWord ? wordBehind(cursor_) : cursor_ + 1, isSelecting);
    }
}

void CTextEdit::selectAll() {
    moveTo(0, false);
    moveTo(text_.length(), true);
}

void CTextEdit::selectWord(int32_t position) {
    position = std::clamp(position, 0, text_.length());
    // At the end of a paragraph it is the word before.
    const bool isAtEnd = position == paragraphEnd(position) && position > paragraphStart(position);
    int32_t start = isAtEnd ? position - 1 : position;
    int32_t end = start;
    const CClass wanted = start < text_.length() ? classOf(text_.at(start)) : CClass::End;
    while (wanted != CClass::End && end < text_.length() && classOf(text_.at(end)) == wanted) {
        ++end;
    }
    while (wanted != CClass::End && start > 0 && classOf(text_.at(start - 1)) == wanted) {
        --start;
    }
    moveTo(start, false);
    moveTo(end, true);
}

int32_t CTextEdit::wordBefore(int32_t position) const {
    int32_t start = std::clamp(position, 0, text_.length());
    while (start > 0 && classOf(text_.at(start - 1)) == CClass::Blank) {
        --start;
    }
    if (start == 0) {
        return 0;
    }
    const CClass wanted = classOf(text_.at(start - 1));
    if (wanted == CClass::End) {
        // Blanks at the beginning of a paragraph go by themselves.
        return start == position ? start - 1 : start;
    }
    while (start > 0 && classOf(text_.at(start - 1)) == wanted) {
        --start;
    }
    return start;
}

int32_t CTextEdit::wordBehind(int32_t position) const {
    int32_t end = std::clamp(position, 0, text_.length());
    if (end == text_.length()) {
        return end;
    }
    const CClass wanted = classOf(text_.at(end));
    if (wanted == CClass::End) {
        return end + 1;
    }
    while (end < text_.length() && classOf(text_.at(end)) == wanted) {
        ++end;
    }
    while (end < text_.length() && classOf(text_.at(end)) == CClass::Blank) {
        ++end;
    }
    return end;
}

int32_t CTextEdit::paragraphStart(int32_t position) const {
    while (position > 0 && text_.at(position - 1) != '\n') {
        --position;
    }
    return position;
}

int32_t CTextEdit::paragraphEnd(int32_t position) const {
    while (position < text_.length() && text_.at(position) != '\n') {
        ++position;
    }
    return position;
}

/// The beginning of a text for which the paragraphs have room in place of the selection.
CString CTextEdit::fitted(const CString& text) const {
    if (rules_.maxLength <= 0) {
        return text;
    }
    // The text after the selection moves to the end of the last inserted paragraph.
    const int32_t lastEnd = text.lastIndexOf('\n');
    const int32_t behind = paragraphEnd(selectionEnd()) - selectionEnd();
    int32_t before = selectionStart() - paragraphStart(selectionStart());
    CString result;
    result.widen();
    for (int32_t i = 0; i < text.length(); ++i) {
        const int32_t room = rules_.maxLength - before - (i > lastEnd ? behind : 0);
        if (text.at(i) == '\n') {
            before = 0;
        } else if (room <= 0) {
            continue;
        } else {
            ++before;
        }
        result.appendChar(text.at(i));
    }
    return result;
}

bool CTextEdit::enter(const CString& text, CKind kind) {
    const CString inserted = fitted(rules_.filter(text));
    if (inserted.isEmpty()) {
        return false;
    }
    replace(selectionStart(), selectionEnd(), inserted, kind);
    return true;
}

bool CTextEdit::eraseBack(bool isWord) {
    if (hasSelection()) {
        replace(selectionStart(), selectionEnd(), {}, CKind::Other);
        return true;
    }
    if (cursor_ == 0) {
        return false;
    }
    replace(isWord ? wordBefore(cursor_) : cursor_ - 1, cursor_, {}, isWord ? CKind::Other : CKind::ErasedBack);
    return true;
}

bool CTextEdit::eraseForward(bool isWord) {
    if (!hasSelection() && cursor_ == text_.length()) {
        return false;
    }
    const int32_t end = hasSelection() ? selectionEnd() : isWord ? wordBehind(cursor_) : cursor_ + 1;
    replace(selectionStart(), end, {}, CKind::Other);
    return true;
}

void CTextEdit::write(int32_t start, int32_t count, const CString& inserted) {
    const int32_t shift = inserted.length() - count;
    const int32_t length = text_.length();
    if (shift > 0) {
        text_.setLength(length + shift, true);
        for (int32_t i = length - 1; i >= start + count; --i) {
            text_.set(i + shift, text_.at(i));
        }
    } else if (shift < 0) {
        for (int32_t i = start + count; i < length; ++i) {
            text_.set(i + shift, text_.at(i));
        }
        text_.setLength(length + shift, true);
    }
    for (int32_t i = 0; i < inserted.length(); ++i) {
        text_.set(start + i, inserted.at(i));
    }
}

void CTextEdit::replace(int32_t start, int32_t end, const CString& inserted, CKind kind) {
    const CString removed = text_.substring(start, end - start);
    steps_.resize(done_);
    if (!joinLast(start, removed, inserted, kind)) {
        if (steps_.count() == kMaxSteps) {
            steps_.removeAt(0);
        }
        steps_.append({start, removed, inserted, cursor_, anchor_, kind});
    }
    done_ = steps_.count();
    write(start, end - start, inserted);
    cursor_ = start + inserted.length();
    anchor_ = cursor_;
    isOpen_ = kind != CKind::Other;
}

/// Typing, or erasing back, that goes on where the last step has ended.
bool CTextEdit::joinLast(int32_t start, const CString& removed, const CString& inserted, CKind kind) {
    if (!isOpen_ || steps_.isEmpty() || steps_.last().kind != kind) {
        return false;
    }
    CStep& last = steps_.last();
    if (kind == CKind::Typed && removed.isEmpty() && start == last.start + last.inserted.length()) {
        last.inserted.append(inserted);
        return true;
    }
    if (kind == CKind::ErasedBack && start + removed.length() == last.start) {
        last.start = start;
        last.removed = removed + last.removed;
        return true;
    }
    return false;
}

bool CTextEdit::undo() {
    if (done_ == 0) {
        return false;
    }
    const CStep& step = steps_[--done_];
    write(step.start, step.inserted.length(), step.removed);
    cursor_ = step.cursor;
    anchor_ = step.anchor;
    isOpen_ = false;
    return true;
}

bool CTextEdit::redo() {
    if (done_ == steps_.count()) {
        return false;
    }
    const CStep& step = steps_[done_++];
    write(step.start, step.removed.length(), step.inserted);
    cursor_ = step.start + step.inserted.length();
    anchor_ = cursor_;
    isOpen_ = false;
    return true;
}

}  // namespace tarv
