#pragma once

#include "UI/Text/CTextSource.h"

namespace tarv {

/// Reads the markup of texts: [B] bold, [SUP] superscript, [C1] and [C2] the colours of these numbers, each up to its
/// [/B], [/SUP], [/C1], [/C2]; [BR] breaks a line; [IMG=set#Range:Color] is an image, `#Range` and `:Color` may be left
/// out; [U+7B] is the character of that code, four digits at most. Marks nest in any order; within several colours the
/// innermost counts, and superscript counts more than bold. A mark that is left open ends with its paragraph. What is
/// no mark, or closes nothing, is text.
class CTextMarkup {
public:
    /// Adds to that source, which outlives this.
    explicit CTextMarkup(CTextSource& source) : source_(source) {}
    /// Adds the items of a text behind those of the source. A line feed ends a paragraph; other control characters but
    /// the tab are left out. Marks that the former texts left open go on.
    void add(const CString& text);
    /// The same for a text in which nothing is a mark, such as what a user has typed.
    void addPlain(const CString& text);
    void addLineBreak();
    void endParagraph();
    /// A text by itself.
    static void append(CTextSource& source, const CString& text) { CTextMarkup(source).add(text); }

private:
    CTextStyle style() const;
    int32_t color() const { return colors_.isEmpty() ? 0 : colors_[colors_.count() - 1]; }
    void addUnit(uint16_t unit);
    bool applyMark(const CString& mark);
    bool addImage(const CString& text);
    bool open(const CString& mark);
    bool close(const CString& mark);
    static int32_t colorOf(const CString& mark);

    CTextSource& source_;
    int32_t bold_ = 0;  ///< how often it was opened
    int32_t superscript_ = 0;
    CArray<int32_t, 4> colors_;  ///< in the order in which they were opened
};

}  // namespace tarv
