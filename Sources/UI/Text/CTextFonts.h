#pragma once

#include "UI/Resources/CFont.h"
#include "UI/Text/CTextSource.h"

namespace tarv {

class CFontObject;
class CObject;

/// The fonts of a text, one a style. A font without a bold style draws it regular; one without a superscript, too.
/// The fonts outlive it. Thread: that of the window.
class CTextFonts {
public:
    /// Null takes all fonts away.
    void setFont(const CFontObject* font);
    /// The font that an object is, or whose style it is: such a style is what the text has for its regular one, but for
    /// italics, which are drawn upright. False for another object.
    bool setFontOf(const CObject* object);
    /// For texts without a tree: fonts by style, of which the first may be the only one.
    void setFonts(const CFont* regular, const CFont* bold = nullptr, const CFont* superscript = nullptr);

    /// Without a font there is nothing to lay out.
    bool isValid() const { return fonts_[0] != nullptr; }
    /// Height of a line in device pixels: that of the regular font.
    int32_t lineHeight() const { return fonts_[0] ? fonts_[0]->getHeight() : 0; }
    /// Glyph of a character. A tab has that of a blank, a character that no font holds that of "?"; null for other
    /// control characters and where the font lacks the glyph.
    const CImage* glyph(uint16_t character, CTextStyle style) const;
    /// From the top of a line to that of the glyphs of a style, in device pixels: bold stands on the base line of the
    /// regular font; the capitals of a superscript begin where its own begin, or higher, so that the base line lies a
    /// quarter of a capital above.
    int32_t topOf(CTextStyle style) const { return tops_[static_cast<int32_t>(style)]; }

private:
    const CFont* fonts_[kTextStyles] = {};
    int32_t tops_[kTextStyles] = {};
};

}  // namespace tarv
