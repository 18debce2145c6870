// What a text view draws: the rows that stand out, and the lines that lie in the present tile.

#include <algorithm>
#include <cmath>

#include "Core/Log.h"
#include "UI/Text/CTextView.h"

namespace tarv {

namespace {

constexpr int32_t kListColors = 3;
// In the order of CListColor.
constexpr const char* kListAttributes[kListColors][2] = {{"paragraph-hover-color", "/HoveredParagraph"},
                                                         {"paragraph-select-color", "/Selection"},
                                                         {"paragraph-select-text-color", "/SelectionText"}};
constexpr const char* kTextAttributes[kTextColors] = {"text-color", "text-color1", "text-color2"};

constexpr const char* kText = "Text";
constexpr uint16_t kEllipsis = 0x2026;
constexpr const char* kDisabledText = "DisabledText";

}  // namespace

int32_t CTextView::classColorCount() const {
    return kTextColors + source_.colorNames().count() + (isList_ ? kListColors : 0);
}

CString CTextView::classColorText(int32_t index) const {
    const int32_t names = source_.colorNames().count();
    if (index >= kTextColors + names) {
        const auto& row = kListAttributes[index - kTextColors - names];
        const CString& text = getAttrString(row[0]);
        return text.isEmpty() ? CString(row[1]) : text;
    }
    if (isDisabled()) {
        return kDisabledText;
    }
    const CString& text =
        index < kTextColors ? getAttrString(kTextAttributes[index]) : source_.colorNames()[index - kTextColors];
    return text.isEmpty() ? CString(kText) : text;
}

const CColor* CTextView::listColor(CListColor color) const {
    return isList_ ? classColor(kTextColors + source_.colorNames().count() + static_cast<int32_t>(color)) : nullptr;
}

const CColor* CTextView::colorOf(int32_t number, int32_t paragraph) const {
    // All of it, since neither a dim text nor a coloured picture is read on the selection.
    const bool isSelected = isList_ && paragraph == selected_ && !isDisabled();
    return isSelected ? listColor(CListColor::SelectText) : classColor(number);
}

CError* CTextView::draw() {
    isDrawnOnce_ = true;
    TARV_TRY(CView::draw());
    if (!palette()) {
        if (!isPaletteMissed_) {
            logLineIn("PALETTE IS NULL", fullName());
        }
        isPaletteMissed_ = true;
        return nullptr;
    }
    isPaletteMissed_ = false;
    drawRows();
    drawLines();
    return nullptr;
}

void CTextView::drawRows() {
    if (!isList_) {
        return;
    }
    fillRow(selected_, CListColor::Select);
    if (hovered_ != selected_) {
        fillRow(hovered_, CListColor::Hover);
    }
}

void CTextView::fillRow(int32_t index, CListColor color) {
    const CColor* shown = listColor(color);
    const CViewRect rect = rowRect(index);
    if (!shown || rect.isEmpty()) {
        return;
    }
    const auto pixelAt = [](double position) { return static_cast<int32_t>(std::lround(position)); };
    const CIntRect row{pixelAt(rect.x), pixelAt(rect.y), pixelAt(rect.right()), pixelAt(rect.bottom())};
    const CIntRect clip = row.moved(-target().originX, -target().originY).intersection(areaClip(kTextArea));
    if (!clip.isEmpty()) {
        target().bitmap->fillRect(clip, *shown, 1.0);
    }
}

void CTextView::drawLines() {
    const CIntRect clip = areaClip(kTextArea);
    if (clip.isEmpty()) {
        return;
    }
    const CPoint origin = textOrigin();
    // Glyphs may overhang their line, by less than its height.
    const int32_t overhang = fonts_.lineHeight();
    const int32_t top = clip.top + target().originY - origin.y - overhang;
    const int32_t bottom = clip.bottom + target().originY - origin.y + overhang;
    for (int32_t i = layout_.firstLineBelow(top); i < layout_.lineCount() && layout_.line(i).y < bottom; ++i) {
        drawLine(layout_.line(i), origin, clip);
    }
}

void CTextView::drawLine(const CTextLine& line, const CPoint& origin, const CIntRect& clip) {
    const int32_t x = origin.x + line.x;
    const int32_t y = origin.y + line.y;
    const int32_t overhang = fonts_.lineHeight();
    const int32_t left = clip.left + target().originX - x - overhang;
    const int32_t right = clip.right + target().originX - x + overhang;
    if (line.count == 0) {
        return;
    }
    // The last item that begins left of the tile may reach into it.
    const CTextPlace* const begin = &layout_.place(0) + line.first;
    const CTextPlace* const end = begin + shownItems(line);
    const CTextPlace* place =
        std::partition_point(begin, end, [left](const CTextPlace& item) { return item.x < left; });
    place -= place > begin ? 1 : 0;
    for (; place < end && place->x < right; ++place) {
        const CColor* color = place->picture ? colorOf(place->color, line.paragraph) : nullptr;
        for (int32_t i = 0; color && i < place->picture->layerCount(); ++i) {
            drawImageLayer(place->picture->layer(i), x + place->x, y + place->top, kTextArea, *color, 1.0, false);
        }
    }
    if (end < begin + line.count) {
        const CImage* dots = fonts_.glyph(kEllipsis, CTextStyle::Regular);
        const CColor* color = dots ? colorOf(end->color, line.paragraph) : nullptr;
        for (int32_t i = 0; color && i < dots->layerCount(); ++i) {
            drawImageLayer(dots->layer(i), x + end->x, y + fonts_.topOf(CTextStyle::Regular), kTextArea, *color, 1.0,
                           false);
        }
    }
}

int32_t CTextView::shownItems(const CTextLine& line) const {
    const int32_t room = innerWidth();
    if (!isShortened_ || line.width <= room) {
        return line.count;
    }
    const CImage* dots = fonts_.glyph(kEllipsis, CTextStyle::Regular);
    const int32_t end = room - (dots ? static_cast<int32_t>(std::ceil(dots->getAdvance())) : 0);
    // An item ends where the next one begins.
    int32_t shown = 0;
    while (shown + 1 < line.count && layout_.place(line.first + shown + 1).x <= end) {
        ++shown;
    }
    return shown;
}

/// Of a list, the row under the pointer.
CTextView::CShortened CTextView::shortened() const {
    for (int32_t i = 0; isShortened_ && i < layout_.lineCount(); ++i) {
        const CTextLine& line = layout_.line(i);
        if ((!isList_ || line.paragraph == hovered_) && shownItems(line) < line.count) {
            return {line.paragraph, layoutCount_};
        }
    }
    return {};
}

}  // namespace tarv
