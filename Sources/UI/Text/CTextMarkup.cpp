#include "UI/Text/CTextMarkup.h"

namespace tarv {

namespace {

/// Marks that are open, with how often; colours in the order in which they were opened.
struct COpenMarks {
    int32_t bold = 0;
    int32_t superscript = 0;
    CArray<int32_t, 4> colors;

    CTextStyle style() const {
        return superscript > 0 ? CTextStyle::Superscript : bold > 0 ? CTextStyle::Bold : CTextStyle::Regular;
    }
    int32_t color() const { return colors.isEmpty() ? 0 : colors[colors.count() - 1]; }

    bool open(const CString& mark) {
        if (mark == CString("B")) {
            ++bold;
        } else if (mark == CString("SUP")) {
            ++superscript;
        } else if (const int32_t number = colorNumber(mark)) {
            colors.append(number);
        } else {
            return false;
        }
        return true;
    }
    bool close(const CString& mark) {
        int32_t* const count = mark == CString("B") ? &bold : mark == CString("SUP") ? &superscript : nullptr;
        if (count && *count > 0) {
            --*count;
            return true;
        }
        const int32_t number = colorNumber(mark);
        for (int32_t i = colors.count() - 1; number > 0 && i >= 0; --i) {
            if (colors[i] == number) {
                colors.removeAt(i);
                return true;
            }
        }
        return false;
    }
    void closeAll() {
        bold = 0;
        superscript = 0;
        colors.clear();
    }

private:
    static int32_t colorNumber(const CString& mark) {
        return mark == CString("C1") ? 1 : mark == CString("C2") ? 2 : 0;
    }
};

/// `set#Range:Color`; false without a set.
bool appendImage(CTextSource& source, const CString& text, int32_t color) {
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
    source.appendImage(image, name >= 0 ? text.substring(name + 1) : CString(), color);
    return true;
}

/// Applies what stands between brackets; false if it is no mark.
bool applyMark(CTextSource& source, COpenMarks& marks, const CString& mark) {
    if (mark == CString("BR")) {
        source.append(CTextSource::kLineBreak, marks.style(), marks.color());
        return true;
    }
    if (mark.startsWith("IMG=")) {
        return appendImage(source, mark.substring(4), marks.color());
    }
    return mark.startsWith("/") ? marks.close(mark.substring(1)) : marks.open(mark);
}

}  // namespace

void CTextMarkup::append(CTextSource& source, const CString& text) {
    COpenMarks marks;
    for (int32_t i = 0; i < text.length(); ++i) {
        const uint16_t unit = text.at(i);
        if (unit == '[') {
            const int32_t end = text.indexOf(']', i + 1);
            // A bracket within is the beginning of another mark.
            const int32_t next = text.indexOf('[', i + 1);
            if (end > 0 && (next < 0 || next > end) && applyMark(source, marks, text.substring(i + 1, end - i - 1))) {
                i = end;
                continue;
            }
        }
        if (unit == '\n') {
            marks.closeAll();
        }
        if (unit >= ' ' || unit == '\n' || unit == '\t') {
            source.append(unit, marks.style(), marks.color());
        }
    }
}

}  // namespace tarv
