#include "UI/Text/CTextMarkup.h"

#include "UI/Views/CViewReading.h"

namespace tarv {

CTextStyle CTextMarkup::style() const {
    return superscript_ > 0 ? CTextStyle::Superscript : bold_ > 0 ? CTextStyle::Bold : CTextStyle::Regular;
}

/// Number of the colour that a mark means; 0 for another mark.
int32_t CTextMarkup::colorOf(const CString& mark) {
    return mark == CString("C1") ? 1 : mark == CString("C2") ? 2 : 0;
}

bool CTextMarkup::open(const CString& mark) {
    if (mark == CString("B")) {
        ++bold_;
    } else if (mark == CString("SUP")) {
        ++superscript_;
    } else if (const int32_t number = colorOf(mark)) {
        colors_.append(number);
    } else {
        return false;
    }
    return true;
}

bool CTextMarkup::close(const CString& mark) {
    int32_t* const count = mark == CString("B") ? &bold_ : mark == CString("SUP") ? &superscript_ : nullptr;
    if (count && *count > 0) {
        --*count;
        return true;
    }
    const int32_t number = colorOf(mark);
    for (int32_t i = colors_.count() - 1; number > 0 && i >= 0; --i) {
        if (colors_[i] == number) {
            colors_.removeAt(i);
            return true;
        }
    }
    return false;
}

/// `set#Range:Color`; false without a set.
bool CTextMarkup::addImage(const CString& text) {
    const int32_t range = text.indexOf('#');
    const int32_t name = text.indexOf(':', range < 0 ? 0 : range);
    const int32_t setEnd = range >= 0 ? range : name >= 0 ? name : text.length();
    CTextImage image;
    image.set = text.substring(0, setEnd);
    if (image.set.isEmpty()) {
        return false;
    }
    if (range >= 0) {
        image.range = text.substring(range + 1, (name >= 0 ? name : text.length()) - range - 1);
    }
    source_.appendImage(image, name >= 0 ? text.substring(name + 1) : CString(), color());
    return true;
}

/// Applies what stands between brackets; false if it is no mark.
bool CTextMarkup::applyMark(const CString& mark) {
    if (mark == CString("BR")) {
        addLineBreak();
        return true;
    }
    if (mark.startsWith("IMG=")) {
        return addImage(mark.substring(4));
    }
    if (const uint16_t character = CViewReader::characterOfMark(mark)) {
        addUnit(character);
        return true;
    }
    return mark.startsWith("/") ? close(mark.substring(1)) : open(mark);
}

void CTextMarkup::addLineBreak() {
    source_.append(CTextSource::kLineBreak, style(), color());
}

void CTextMarkup::endParagraph() {
    bold_ = 0;
    superscript_ = 0;
    colors_.clear();
    source_.append(CTextSource::kParagraphEnd);
}

void CTextMarkup::addUnit(uint16_t unit) {
    if (unit == CTextSource::kParagraphEnd) {
        endParagraph();
    } else if (unit >= ' ' || unit == '\t') {
        source_.append(unit, style(), color());
    }
}

void CTextMarkup::addPlain(const CString& text) {
    for (int32_t i = 0; i < text.length(); ++i) {
        addUnit(text.at(i));
    }
}

void CTextMarkup::add(const CString& text) {
    for (int32_t i = 0; i < text.length(); ++i) {
        if (text.at(i) == '[') {
            const int32_t end = text.indexOf(']', i + 1);
            // A bracket within is the beginning of another mark.
            const int32_t next = text.indexOf('[', i + 1);
            if (end > 0 && (next < 0 || next > end) && applyMark(text.substring(i + 1, end - i - 1))) {
                i = end;
                continue;
            }
        }
        addUnit(text.at(i));
    }
}

}  // namespace tarv
