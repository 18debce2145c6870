#pragma once

#include <ft2build.h>

#include "CRaster.h"
#include "CTextSource.h"
#include FT_FREETYPE_H

struct hb_font_t;

namespace tarv {

/// One face of an installed font family, to draw glyphs with. Lengths in pixels at the size set.
class CFontFace {
public:
    CFontFace() = default;
    ~CFontFace();
    CFontFace(const CFontFace&) = delete;
    CFontFace& operator=(const CFontFace&) = delete;

    /// Fails with the names when just this family and style isn't installed.
    [[nodiscard]] CDefinitionFailure open(const std::string& path, const std::string& family, const std::string& style);
    void setSize(double pixels);
    /// The glyph of a character with the face's `features` on (names between blanks); 0 when there is none.
    uint32_t glyphOf(uint32_t character, const std::string& features) const;
    /// The designed, not hinted, advance.
    double advanceOf(uint32_t glyph) const;
    /// The designed, not hinted, height of the capitals.
    double capitalHeight() const;
    /// The glyph moved right by `shift` pixels, lightly hinted. x and y are those of its rectangle from the pen on the
    /// base line, y down; width, height and advance are left at 0.
    CRaster draw(uint32_t glyph, double shift) const;

private:
    [[nodiscard]] CDefinitionFailure openFile(const std::string& path, const std::string& file, int index);

    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
    hb_font_t* shaper_ = nullptr;
    double size_ = 0.0;
};

}  // namespace tarv
