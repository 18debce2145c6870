#include "UI/Text/CTextSource.h"

#include <algorithm>

namespace tarv {

void CTextSource::clear() {
    items_.clear();
    spans_.clear();
    images_.clear();
    colorNames_.clear();
}

void CTextSource::setPlain(const CString& text) {
    clear();
    for (int32_t i = 0; i < text.length(); ++i) {
        items_.append(text.at(i));
    }
    if (!text.isEmpty()) {
        spans_.append({0, text.length()});
    }
}

/// Of one item, the last one.
void CTextSource::appendSpan(const CTextSpan& span) {
    if (!spans_.isEmpty() && spans_.last().isLike(span)) {
        ++spans_.last().count;
    } else {
        spans_.append(span);
    }
}

void CTextSource::append(uint16_t item, CTextStyle style, int32_t color) {
    items_.append(item);
    appendSpan({items_.count() - 1, 1, style, color, -1});
}

void CTextSource::appendImage(const CTextImage& image, const CString& colorName, int32_t color) {
    if (!colorName.isEmpty()) {
        int32_t name = colorNames_.indexOf(colorName);
        if (name < 0) {
            name = colorNames_.count();
            colorNames_.append(colorName);
        }
        color = kTextColors + name;
    }
    items_.append(kImage);
    images_.append(image);
    appendSpan({items_.count() - 1, 1, CTextStyle::Regular, color, images_.count() - 1});
}

int32_t CTextSource::spanOf(int32_t index) const {
    const auto* behind = std::upper_bound(spans_.begin(), spans_.end(), index,
                                          [](int32_t item, const CTextSpan& span) { return item < span.first; });
    return static_cast<int32_t>(behind - spans_.begin()) - 1;
}

CString CTextSource::plainText(int32_t first, int32_t count) const {
    CString text;
    const int32_t end = std::min(first + count, this->count());
    for (int32_t i = std::max(first, 0); i < end; ++i) {
        if (spans_[spanOf(i)].image < 0) {
            const uint16_t item = items_[i] == kLineBreak ? ' ' : items_[i];
            if (item > 255 && !text.isWide()) {
                text.widen();
            }
            text.appendChar(item);
        }
    }
    return text;
}

}  // namespace tarv
