#include "UI/Text/CTextLayout.h"

#include <algorithm>

namespace tarv {

void CTextLayout::clear() {
    places_.clear();
    lines_.clear();
    paragraphs_.clear();
    width_ = 0;
    height_ = 0;
}

int32_t CTextLayout::firstLineBelow(int32_t y) const {
    const auto* found =
        std::partition_point(lines_.begin(), lines_.end(), [y](const CTextLine& line) { return line.bottom() <= y; });
    return static_cast<int32_t>(found - lines_.begin());
}

int32_t CTextLayout::lineOf(int32_t index) const {
    const auto* behind = std::partition_point(lines_.begin(), lines_.end(),
                                              [index](const CTextLine& line) { return line.first <= index; });
    return std::max(static_cast<int32_t>(behind - lines_.begin()) - 1, lines_.isEmpty() ? -1 : 0);
}

CTextCaret CTextLayout::caretAt(int32_t index) const {
    index = std::clamp(index, 0, itemCount());
    const int32_t number = lineOf(index);
    if (number < 0) {
        return {};
    }
    const CTextLine& line = lines_[number];
    const int32_t x = index < line.behind() ? places_[index].x : line.end;
    return {number, line.x + x, line.y, line.height};
}

int32_t CTextLayout::indexInLine(int32_t number, int32_t x) const {
    const CTextLine& line = lines_[number];
    const int32_t behind = line.behind();
    // A break, and the last item of a line that was wrapped, have the caret in front of them.
    const bool goesOn = number + 1 < lineCount();
    const int32_t end = std::max(line.first, goesOn ? behind - 1 : behind);
    int32_t index = line.first;
    for (; index < end; ++index) {
        const int32_t next = index + 1 < behind ? places_[index + 1].x : line.end;
        if (2 * (x - line.x) < places_[index].x + next) {
            break;
        }
    }
    return index;
}

int32_t CTextLayout::indexAt(int32_t x, int32_t y) const {
    if (lines_.isEmpty()) {
        return 0;
    }
    const int32_t below = std::min(firstLineBelow(y), lineCount() - 1);
    // Between two lines the nearer one.
    const bool isAbove = below > 0 && y < lines_[below].y && y - lines_[below - 1].bottom() < lines_[below].y - y;
    return indexInLine(isAbove ? below - 1 : below, x);
}

int32_t CTextLayout::itemAt(int32_t x, int32_t y) const {
    const int32_t number = firstLineBelow(y);
    if (number == lineCount() || y < lines_[number].y) {
        return -1;
    }
    const CTextLine& line = lines_[number];
    for (int32_t i = line.first; i < line.behind(); ++i) {
        const int32_t next = i + 1 < line.behind() ? places_[i + 1].x : line.end;
        if (x >= line.x + places_[i].x && x < line.x + next) {
            return i;
        }
    }
    return -1;
}

int32_t CTextLayout::rowTop(int32_t paragraph) const {
    if (paragraphs_.isEmpty()) {
        return 0;
    }
    if (paragraph == paragraphCount()) {
        const CTextParagraph& last = paragraphs_[paragraph - 1];
        return last.y + last.height + spacing_ - spacing_ / 2;
    }
    return paragraphs_[paragraph].y - spacing_ / 2;
}

int32_t CTextLayout::rowAt(int32_t y) const {
    if (paragraphs_.isEmpty() || y < rowTop(0) || y >= rowTop(paragraphCount())) {
        return -1;
    }
    const int32_t half = spacing_ / 2;
    const auto* behind = std::partition_point(paragraphs_.begin(), paragraphs_.end(),
                                              [&](const CTextParagraph& row) { return row.y - half <= y; });
    return static_cast<int32_t>(behind - paragraphs_.begin()) - 1;
}

}  // namespace tarv
