// What the user does with an edit box: keys, the pointer, and the focus.

#include <algorithm>
#include <cmath>

#include "Core/CObjectWatch.h"
#include "Platform/Keyboard.h"
#include "UI/Text/CEditBox.h"
#include "UI/Views/CDragInfo.h"
#include "UI/Views/CInputListener.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

namespace {

bool flag(const CAttributeMap& params, const char* name) {
    const auto found = params.find(name);
    return found != params.end() && found->second.asBool();
}

int32_t number(const CAttributeMap& params, const char* name) {
    const auto found = params.find(name);
    return found == params.end() ? 0 : static_cast<int32_t>(std::floor(found->second.asReal()));
}

}  // namespace

CError* CEditBox::keyPress(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    TARV_TRY(CView::keyPress(params));
    if (!watch.isAlive() || isHandled(params) || !isEditing()) {
        return nullptr;
    }
    CInputModifiers modifiers;
    modifiers.isShift = flag(params, "is-shift");
    modifiers.isCtrl = flag(params, "is-ctrl");
    modifiers.isAlt = flag(params, "is-alt");
    const auto found = params.find("characters");
    const CString characters = found == params.end() ? CString() : found->second.asString();
    const auto code = params.find("keycode");
    bool isTaken = false;
    CError* error = pressKey(code == params.end() ? 0 : code->second.asInt(), modifiers, characters, isTaken);
    if (isTaken) {
        setHandled(params);
    }
    return error;
}

CError* CEditBox::pressKey(int32_t code, const CInputModifiers& modifiers, const CString& characters, bool& isTaken) {
    isTaken = isEditing();
    if (!isTaken) {
        return nullptr;
    }
    if (!modifiers.isAlt && moveByLine(code, modifiers.isShift, modifiers.isCtrl)) {
        cursorMoved();
        return nullptr;
    }
    const CTextKeyResult result = CTextEditKeys::press(edit_, code, modifiers, characters);
    isTaken = result != CTextKeyResult::NotTaken;
    return act(result);
}

CError* CEditBox::type(const CString& characters) {
    return isEditing() && edit_.type(characters) ? textChanged() : nullptr;
}

CError* CEditBox::act(CTextKeyResult result) {
    switch (result) {
        case CTextKeyResult::Moved:
            cursorMoved();
            return nullptr;
        case CTextKeyResult::Changed:
            return textChanged();
        case CTextKeyResult::Enter:
            return commit();
        case CTextKeyResult::Tab:
        case CTextKeyResult::TabBack:
            return goOn(result == CTextKeyResult::TabBack);
        case CTextKeyResult::Escape:
            drop();
            return nullptr;
        case CTextKeyResult::NotTaken:
        case CTextKeyResult::Taken:
            break;
    }
    return nullptr;
}

CError* CEditBox::textChanged() {
    layOut();
    cursorMoved();
    return owner_->editTextChanged(edit_.text());
}

CError* CEditBox::focusLost(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = leave();
    return error || !watch.isAlive() ? error : CView::focusLost(params);
}

/// Lines are known here alone. False for a key that has nothing to do with them.
bool CEditBox::moveByLine(int32_t code, bool isShift, bool isCtrl) {
    const bool isEdge = (code == kKeyHome || code == kKeyEnd) && !isCtrl;
    const bool isVertical = code == kKeyUp || code == kKeyDown;
    const int32_t line = layout_.lineOf(edit_.cursor());
    if (line < 0 || layout_.lineCount() == 1 || !(isEdge || isVertical)) {
        return false;
    }
    const CTextLine& own = layout_.line(line);
    if (isEdge) {
        // In front of the blank or the break that the line ends in.
        const bool isLast = line == layout_.lineCount() - 1;
        edit_.moveTo(code == kKeyHome ? own.first : isLast ? own.behind() : own.behind() - 1, isShift);
        return true;
    }
    const int32_t to = line + (code == kKeyUp ? -1 : 1);
    const int32_t end = to < 0 ? 0 : edit_.length();
    const bool isInside = to >= 0 && to < layout_.lineCount();
    edit_.moveTo(isInside ? layout_.indexInLine(to, layout_.caretAt(edit_.cursor()).x) : end, isShift);
    return true;
}

int32_t CEditBox::positionAt(const CAttributeMap& params) const {
    const CTextView::CPoint origin = textOrigin();
    return layout_.indexAt(number(params, "actual-x") - origin.x, number(params, "actual-y") - origin.y);
}

CError* CEditBox::mouseEnter(CAttributeMap& params) {
    if (window()) {
        window()->setCursor(CCursorShape::Text);
    }
    return CView::mouseEnter(params);
}

CError* CEditBox::mouseExit(CAttributeMap& params) {
    if (window()) {
        window()->setCursor(CCursorShape::Arrow);
    }
    return CView::mouseExit(params);
}

CError* CEditBox::mousePress(CAttributeMap& params) {
    if (isEditing()) {
        isSelecting_ = !flag(params, "is-double-click");
        if (isSelecting_) {
            edit_.moveTo(positionAt(params), flag(params, "is-shift"));
        } else {
            edit_.selectWord(positionAt(params));
        }
        cursorMoved();
    }
    return CView::mousePress(params);
}

CError* CEditBox::mouseMove(CAttributeMap& params) {
    if (isEditing() && isSelecting_) {
        const int32_t position = positionAt(params);
        if (position != edit_.cursor()) {
            edit_.moveTo(position, true);
            cursorMoved();
        }
    }
    return CView::mouseMove(params);
}

CError* CEditBox::mouseRelease(CAttributeMap& params) {
    isSelecting_ = false;
    return CView::mouseRelease(params);
}

CError* CEditBox::mouseCancel(CAttributeMap& params) {
    isSelecting_ = false;
    return CView::mouseCancel(params);
}

}  // namespace tarv
