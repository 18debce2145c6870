// The text of an edit box: its lines, what of them shows, selection and cursor.

#include <algorithm>
#include <cmath>

#include "Core/CApplication.h"
#include "Core/CObjectWatch.h"
#include "UI/Text/CEditBox.h"

namespace tarv {

namespace {

constexpr const char* kColors[][2] = {{"text-color", "Text"},
                                      {"paragraph-select-color", "/Selection"},
                                      {"paragraph-select-text-color", "/SelectionText"},
                                      {"cursor-color", ""}};
constexpr int32_t kTextColor = 0;
constexpr int32_t kSelectColor = 1;
constexpr int32_t kSelectTextColor = 2;
constexpr int32_t kCursorColor = 3;

int32_t pixelAt(double position) {
    return static_cast<int32_t>(std::lround(position));
}

/// A start that shows `from`..`to` of a text in a window of that length, moved as little as can be; never behind the
/// end of the text.
int32_t scrolled(int32_t start, int32_t from, int32_t to, int32_t window, int32_t whole) {
    start = std::max(std::min(start, from), to - window);
    return std::max(std::min(start, whole - window), 0);
}

}  // namespace

CString CEditBox::classColorText(int32_t index) const {
    const CString& text = getAttrString(kColors[index][0]);
    if (text.isEmpty() && index == kCursorColor) {
        return classColorText(kTextColor);
    }
    return text.isEmpty() ? CString(kColors[index][1]) : text;
}

CError* CEditBox::onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) {
    const CObjectWatch watch(*this);
    CError* error = CView::onAreaChanged(visibleRect, wholeRect);
    if (watch.isAlive()) {
        const double left = area().value(CViewCell::InnerLeft);
        const double top = area().value(CViewCell::InnerTop);
        const CViewRect box = area().box();
        inner_ = {box.x + left, box.y + top, std::max(box.width - left - area().value(CViewCell::InnerRight), 0.0),
                  std::max(box.height - top - area().value(CViewCell::InnerBottom), 0.0)};
        setAreaRect(kTextArea, inner_);
        layOut();
    }
    return error;
}

int32_t CEditBox::caretWidth() const {
    return std::max(pixelAt(CApplication::uiScale()), 1);
}

void CEditBox::layOut() {
    source_.setPlain(edit_.text());
    CTextSettings settings;
    settings.width = std::max(pixelAt(inner_.width) - caretWidth(), 1);
    settings.isWrapped = edit_.rules().isAcceptEnter;
    settings.alignment = alignment_;
    CTextWrapper::layOut(source_, fonts_, settings, layout_);
    showCursor();
    requestRedraw();
}

/// Scrolls so that the cursor is seen.
void CEditBox::showCursor() {
    const CTextCaret caret = layout_.caretAt(edit_.cursor());
    const int32_t width = pixelAt(inner_.width);
    const int32_t right = std::max(layout_.width(), caret.x) + caretWidth();
    scrollX_ = scrolled(scrollX_, caret.x, caret.x + caretWidth(), width, right);
    scrollY_ = scrolled(scrollY_, caret.y, caret.y + caret.height, pixelAt(inner_.height), layout_.height());
}

void CEditBox::cursorMoved() {
    isCaretShown_ = true;
    showCursor();
    requestRedraw();
}

CError* CEditBox::blink() {
    if (isEditing()) {
        isCaretShown_ = !isCaretShown_;
        requestRedraw();
    }
    return nullptr;
}

CTextView::CPoint CEditBox::textOrigin() const {
    const int32_t room = pixelAt(inner_.height) - layout_.height();
    // One line stands in the middle, several begin at the top.
    const int32_t shift = layout_.lineCount() == 1 ? (room >= 0 ? room / 2 : -((1 - room) / 2)) : 0;
    return {pixelAt(inner_.x) - scrollX_, pixelAt(inner_.y) + shift - (layout_.lineCount() == 1 ? 0 : scrollY_)};
}

CTextView::CPoint CEditBox::cursorPoint() const {
    const CTextView::CPoint origin = textOrigin();
    const CTextCaret caret = layout_.caretAt(edit_.cursor());
    return {origin.x + caret.x, origin.y + caret.y};
}

CError* CEditBox::draw() {
    TARV_TRY(CView::draw());
    if (!palette() || !isEditing()) {
        return nullptr;
    }
    drawSelection();
    drawGlyphs();
    if (isCaretShown_) {
        const CTextView::CPoint point = cursorPoint();
        const int32_t height = layout_.caretAt(edit_.cursor()).height;
        fill({point.x, point.y, point.x + caretWidth(), point.y + height}, classColor(kCursorColor));
    }
    return nullptr;
}

void CEditBox::fill(const CIntRect& rect, const CColor* color) {
    const CIntRect clip = rect.moved(-target().originX, -target().originY).intersection(areaClip(kTextArea));
    if (color && !clip.isEmpty()) {
        target().bitmap->fillRect(clip, *color, 1.0);
    }
}

void CEditBox::drawSelection() {
    const CTextView::CPoint origin = textOrigin();
    for (int32_t i = 0; edit_.hasSelection() && i < layout_.lineCount(); ++i) {
        const CTextLine& line = layout_.line(i);
        const int32_t first = std::max(edit_.selectionStart(), line.first);
        const int32_t behind = std::min(edit_.selectionEnd(), line.behind());
        if (first >= behind) {
            continue;
        }
        const int32_t left = layout_.place(first).x;
        const int32_t right = behind < line.behind() ? layout_.place(behind).x : line.end;
        // A break that is selected shows as a narrow end.
        const int32_t width = std::max(right - left, caretWidth());
        const int32_t x = origin.x + line.x + left;
        fill({x, origin.y + line.y, x + width, origin.y + line.bottom()}, classColor(kSelectColor));
    }
}

void CEditBox::drawGlyphs() {
    const CTextView::CPoint origin = textOrigin();
    for (int32_t i = 0; i < layout_.lineCount(); ++i) {
        const CTextLine& line = layout_.line(i);
        for (int32_t item = line.first; item < line.behind(); ++item) {
            const CTextPlace& place = layout_.place(item);
            const bool isSelected = item >= edit_.selectionStart() && item < edit_.selectionEnd();
            const CColor* color = classColor(isSelected ? kSelectTextColor : kTextColor);
            for (int32_t k = 0; color && place.picture && k < place.picture->layerCount(); ++k) {
                drawImageLayer(place.picture->layer(k), origin.x + line.x + place.x, origin.y + line.y + place.top,
                               kTextArea, *color, 1.0, false);
            }
        }
    }
}

}  // namespace tarv
