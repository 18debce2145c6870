#pragma once

#include <map>
#include <string>

#include "CRaster.h"
#include "CTextSource.h"

namespace tarv {

/// What a `.font` says: `family`, `style`, `size` and `line` (pixels at scale 1.0) and `figures` (the face's features
/// for digits and signs).
struct CFontSource {
    std::string family;
    std::string style;
    double size = 0.0;
    int line = 0;
    std::string figures;
    std::string path;
};

/// A font as it was drawn: glyphs of 1 byte per pixel by code (see UI/Resources/FontCodes.h), one for each scale.
///
/// The nominal rectangle of a glyph is its advance wide, and as high as the line at that scale. Advances are whole
/// device pixels, so that equal letters look equal wherever they stand; a glyph stands in the middle of its advance, or
/// up to 3/8 of a pixel beside it where that makes it sharper. Digits, plus, minus and hyphen take one advance. The
/// middle of the capitals is the middle of the line; a half pixel that is left goes below.
struct CDrawnFont {
    int height = 0;      ///< of a line, at scale 1.0
    int spaceAbove = 0;  ///< from the line's top to the capitals at scale 1.0, rounded
    int spaceBelow = 0;  ///< from the base line to the line's bottom at scale 1.0, rounded
    std::map<uint32_t, CRaster> glyphs[kGfxScaleCount];
};

[[nodiscard]] CDefinitionFailure readFontSource(const std::string& path, CFontSource& font);

/// Draws all glyphs. Fails when the face isn't installed, or has no glyph for a character.
[[nodiscard]] CDefinitionFailure drawFont(const CFontSource& source, CDrawnFont& font);

}  // namespace tarv
