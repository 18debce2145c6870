#pragma once

#include "Core/CString.h"
#include "UI/Resources/CImage.h"

namespace tarv {

/// Styles that text is drawn in.
enum class CTextStyle : uint8_t { Regular, Bold, Superscript };
inline constexpr int32_t kTextStyles = 3;

/// Colours of a text by number: that of the text, of [C1], of [C2]; then the colours that its images name.
inline constexpr int32_t kTextColors = 3;

/// An inline image as the markup names it, and the picture that was found for it.
struct CTextImage {
    CString set;    ///< path below the shared tree
    CString range;  ///< empty: the default range
    const CImage* picture = nullptr;
};

/// Consecutive items of one look.
struct CTextSpan {
    int32_t first = 0;
    int32_t count = 0;
    CTextStyle style = CTextStyle::Regular;
    int32_t color = 0;   ///< number of a colour
    int32_t image = -1;  ///< number of the image that the span's one item is, or -1

    bool isLike(const CTextSpan& other) const {
        return style == other.style && color == other.color && image < 0 && other.image < 0;
    }
};

/// What a text consists of before it is laid out: items, and the looks of spans of items. An item is a character of 16
/// bits, an image, or a break. Item i of a plain text is its character i. A value; one thread at a time.
class CTextSource : public CHeapObject {
public:
    /// Ends a paragraph.
    static constexpr uint16_t kParagraphEnd = '\n';
    /// Breaks a line within a paragraph (U+2028).
    static constexpr uint16_t kLineBreak = 0x2028;
    /// Stands for an image (U+FFFC).
    static constexpr uint16_t kImage = 0xFFFC;

    void clear();
    /// Characters without markup, in the regular style and the text's colour; each line feed ends a paragraph.
    void setPlain(const CString& text);
    void append(uint16_t item, CTextStyle style = CTextStyle::Regular, int32_t color = 0);
    /// `colorName` empty: drawn in `color`, otherwise in the named colour.
    void appendImage(const CTextImage& image, const CString& colorName, int32_t color = 0);
    void setPicture(int32_t image, const CImage* picture) { images_[image].picture = picture; }

    int32_t count() const { return items_.count(); }
    bool isEmpty() const { return items_.isEmpty(); }
    uint16_t at(int32_t index) const { return items_[index]; }
    /// Spans without gaps, in the order of the items.
    const CArray<CTextSpan, 1>& spans() const { return spans_; }
    /// Number of the span that an item in 0..count-1 belongs to.
    int32_t spanOf(int32_t index) const;
    const CArray<CTextImage, 1>& images() const { return images_; }
    /// Names of the colours from kTextColors on.
    const CArray<CString, 1>& colorNames() const { return colorNames_; }
    /// Characters of some items without the looks: images are left out, line breaks are blanks.
    CString plainText(int32_t first, int32_t count) const;

private:
    void appendSpan(const CTextSpan& span);

    CArray<uint16_t, 1> items_;
    CArray<CTextSpan, 1> spans_;
    CArray<CTextImage, 1> images_;
    CArray<CString, 1> colorNames_;
};

}  // namespace tarv
