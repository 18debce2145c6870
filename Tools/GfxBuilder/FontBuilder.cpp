#include "FontBuilder.h"

#include <cmath>
#include <cstdio>
#include <utility>

#include "CFontFace.h"
#include "UI/Resources/FontCodes.h"

namespace tarv {

namespace {

constexpr double kSizeMin = 4, kSizeMax = 96;
constexpr uint32_t kTrueMinus = 0x2212;

/// Whether a character stands in columns of numbers.
bool isFigure(uint32_t character) {
    return (character >= '0' && character <= '9') || character == '+' || character == '-' || character == kTrueMinus;
}

/// Draws one glyph into its place in the line.
CRaster drawGlyph(const CFontFace& face, uint32_t glyph, int advance, int lineHeight, int baseLine) {
    CRaster raster = face.draw(glyph, (advance - face.advanceOf(glyph)) / 2);
    raster.width = advance;
    raster.advance = advance;
    raster.height = lineHeight;
    raster.y += baseLine;
    return raster;
}

CDefinitionFailure drawScale(const CFontSource& source, CFontFace& face, double scale,
                             std::map<uint32_t, CRaster>& glyphs) {
    face.setSize(source.size * scale);
    const int lineHeight = devicePixels(source.line * scale);
    const CRaster capital = face.draw(face.glyphOf('H', ""), 0);
    const int baseLine = (lineHeight - capital.drawnHeight) / 2 - capital.y;
    const int figureAdvance = devicePixels(face.advanceOf(face.glyphOf('0', source.figures)));
    for (uint32_t code = kFirstFontCode; code < 256; ++code) {
        const uint32_t character = fontCharacterOf(code);
        if (!character) {
            continue;
        }
        const bool isOne = isFigure(character);
        const uint32_t glyph = face.glyphOf(character, isOne ? source.figures : "");
        if (!glyph) {
            char name[16];
            std::snprintf(name, sizeof(name), "U+%04X", character);
            return CDefinitionError{{source.path}, std::string("the face has no glyph for ") + name};
        }
        const int advance = isOne ? figureAdvance : devicePixels(face.advanceOf(glyph));
        glyphs[code] = drawGlyph(face, glyph, advance, lineHeight, baseLine);
    }
    return std::nullopt;
}

}  // namespace

CDefinitionFailure readFontSource(const std::string& path, CFontSource& font) {
    CTextSource source;
    if (auto failure = source.load(path)) {
        return failure;
    }
    CKeySource keys;
    if (auto failure = keys.take(source, {"family", "style", "size", "line", "figures"})) {
        return failure;
    }
    double line = 0;
    font.path = path;
    for (const auto& [key, text] : {std::pair<const char*, std::string*>{"family", &font.family},
                                    {"style", &font.style},
                                    {"figures", &font.figures}}) {
        if (auto failure = keys.getText(key, *text)) {
            return failure;
        }
    }
    if (auto failure = keys.getNumber("size", kSizeMin, kSizeMax, font.size)) {
        return failure;
    }
    if (auto failure = keys.getNumber("line", std::ceil(font.size), 2 * kSizeMax, line)) {
        return failure;
    }
    if (line != std::floor(line)) {
        return CDefinitionError{keys.find("line")->place, "the line's height is a whole number"};
    }
    font.line = static_cast<int>(line);
    return std::nullopt;
}

CDefinitionFailure drawFont(const CFontSource& source, CDrawnFont& font) {
    CFontFace face;
    if (auto failure = face.open(source.path, source.family, source.style)) {
        return failure;
    }
    face.setSize(source.size);
    const double space = (source.line - face.capitalHeight()) / 2;
    font.height = source.line;
    font.spaceAbove = font.spaceBelow = devicePixels(space);
    for (int i = 0; i < kGfxScaleCount; ++i) {
        if (auto failure = drawScale(source, face, kGfxScales[i], font.glyphs[i])) {
            return failure;
        }
    }
    return std::nullopt;
}

}  // namespace tarv
