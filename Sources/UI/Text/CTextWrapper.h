#pragma once

#include "UI/Text/CTextFonts.h"
#include "UI/Text/CTextLayout.h"

namespace tarv {

/// How a text is laid out. Lengths in device pixels.
struct CTextSettings {
    int32_t width = 0;             ///< of the space that lines are filled up to and aligned in
    bool isWrapped = false;        ///< lines end at the width; otherwise at breaks alone
    int32_t alignment = -1;        ///< -1 left, 0 centred, 1 right
    int32_t paragraphSpacing = 0;  ///< between paragraphs
    bool isList = false;           ///< half a spacing above the first paragraph and below the last one, too
};

/// Lays texts out. A line ends behind the last blank or hyphen in it that fits; a word that is wider than the line ends
/// at a glyph, the first of a line always standing. Blanks at the end hang over and have no width. A hyphen that begins
/// a word is a sign and no place to break. A line is as high as the font says, or as its highest image; glyphs and
/// images stand in its middle. An empty text has one empty line, in a list none.
class CTextWrapper {
public:
    /// Without fonts the layout is empty.
    static void layOut(const CTextSource& source, const CTextFonts& fonts, const CTextSettings& settings,
                       CTextLayout& layout);
    /// Aligns the lines of a layout anew, within a width. A line that is wider begins at the left edge.
    static void align(CTextLayout& layout, int32_t alignment, int32_t width);

private:
    class CRun;
};

}  // namespace tarv
