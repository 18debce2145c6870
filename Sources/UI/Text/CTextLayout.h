#pragma once

#include "Core/CArray.h"
#include "UI/Resources/CImage.h"

namespace tarv {

/// Where an item of a text stands.
struct CTextPlace {
    const CImage* picture = nullptr;  ///< glyph or image; null for what is not drawn
    int32_t x = 0;                    ///< left edge, from the left edge of its line
    int32_t top = 0;                  ///< top of the picture's nominal rectangle, from the top of its line
    int32_t color = 0;                ///< number of a colour, see kTextColors
};

/// A line of a text.
struct CTextLine {
    int32_t first = 0;  ///< first item
    int32_t count = 0;  ///< of items, with the blanks or the break that the line ends in
    int32_t paragraph = 0;
    int32_t x = 0;  ///< left edge of the first item, by the alignment
    int32_t y = 0;
    int32_t width = 0;  ///< without blanks at the end
    int32_t end = 0;    ///< x behind the last item, from the left edge of the line
    int32_t height = 0;
    bool isWrapped = false;  ///< goes on in the next line without a break in the text

    int32_t behind() const { return first + count; }
    int32_t bottom() const { return y + height; }
};

/// A paragraph of a text: one line or more.
struct CTextParagraph {
    int32_t first = 0;
    int32_t count = 0;  ///< of items, without the line feed behind it
    int32_t firstLine = 0;
    int32_t lineCount = 0;
    int32_t y = 0;
    int32_t height = 0;
};

/// Where the caret stands: on the left edge of an item, or at the end of a line.
struct CTextCaret {
    int32_t line = 0;
    int32_t x = 0;
    int32_t y = 0;
    int32_t height = 0;
};

/// A text as it is laid out: paragraphs of lines, lines of items, in whole device pixels from the text's top left. Made
/// by CTextWrapper. Knows nothing of views. A value that shares nothing but the pictures of its fonts and image sets,
/// which outlive it; one thread at a time. Reading allocates nothing.
class CTextLayout : public CHeapObject {
public:
    void clear();

    int32_t itemCount() const { return places_.count(); }
    const CTextPlace& place(int32_t item) const { return places_[item]; }
    int32_t lineCount() const { return lines_.count(); }
    const CTextLine& line(int32_t index) const { return lines_[index]; }
    int32_t paragraphCount() const { return paragraphs_.count(); }
    const CTextParagraph& paragraph(int32_t index) const { return paragraphs_[index]; }
    /// Width of the widest line.
    int32_t width() const { return width_; }
    int32_t height() const { return height_; }

    /// First line whose bottom lies below `y`; lineCount for one behind the end.
    int32_t firstLineBelow(int32_t y) const;
    /// Line of a position between items, in 0..itemCount; held in this range. Where a line is wrapped, the position in
    /// front of the next line's first item belongs to the next line. -1 without lines.
    int32_t lineOf(int32_t index) const;
    /// Caret at a position, held in 0..itemCount.
    CTextCaret caretAt(int32_t index) const;
    /// Position that is nearest to a point: in the nearest line, between the items whose middles lie around x.
    int32_t indexAt(int32_t x, int32_t y) const;
    /// The same within a line in 0..lineCount-1.
    int32_t indexInLine(int32_t line, int32_t x) const;
    /// Item in whose cell a point lies; -1 for none.
    int32_t itemAt(int32_t x, int32_t y) const;
    /// Paragraph as a row: from the middle of the space above it to the middle of that below, the first and the last
    /// one with half a space outside. -1 for none.
    int32_t rowAt(int32_t y) const;
    /// Upper edge of a paragraph's row; for paragraphCount the lower edge of the last row.
    int32_t rowTop(int32_t paragraph) const;

private:
    friend class CTextWrapper;

    CArray<CTextPlace, 1> places_;
    CArray<CTextLine, 1> lines_;
    CArray<CTextParagraph, 1> paragraphs_;
    int32_t width_ = 0;
    int32_t height_ = 0;
    int32_t spacing_ = 0;
};

}  // namespace tarv
