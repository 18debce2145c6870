#include "FontBuilder.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "CFontFace.h"
#include "UI/Resources/FontCodes.h"

namespace tarv {

namespace {

constexpr double kSizeMin = 4, kSizeMax = 96;
constexpr double kLeastSize = 8;  // in device pixels: nobody reads less
constexpr double kSmallSize = 11;
constexpr double kPenStep = 1.0 / 64;
constexpr uint32_t kTrueMinus = 0x2212;
constexpr double kShiftStep = 1.0 / 8;  // of a pixel
constexpr double kShiftPrice = 0.3;     // of sharpness, for a pixel off the middle

/// Whether a character has the one advance of the figures.
bool isFigure(uint32_t character) {
    return (character >= '0' && character <= '9') || character == '+' || character == kTrueMinus;
}

/// Whether a character stands between figures.
bool isPoint(uint32_t character) {
    return character == '.' || character == ',';
}

/// What the designer of the face adds to each advance at a size, for small letters need more room: about a fifth of a
/// pixel at 8, nothing from 12 on.
double trackingAt(double size) {
    return size * std::max(0.185 * std::exp(-0.1745 * size) - 0.0223, 0.0);
}

/// How much a pen moves for a letter: between its advance and the nearest whole pixel, nearer to that for small
/// letters. Whole advances add up to words of another width, exact ones make gaps between the same letters differ by a
/// pixel, which is much of a small one.
double letterAdvance(uint32_t character, double exact, double size) {
    // Three quarters of a pixel more, so that a space is a space wherever the pen is rounded.
    const double advance = exact + trackingAt(size) + (character == ' ' ? 0.75 : 0.0);
    const double share = size < kSmallSize ? 0.8 : 0.5;
    return std::round(std::lerp(advance, devicePixels(advance), share) / kPenStep) * kPenStep;
}

/// How much of the ink stands in full pixels: 1 when all of it does.
double sharpnessOf(const CRaster& raster) {
    double squares = 0, sum = 0;
    for (uint8_t cover : raster.pixels) {
        squares += static_cast<double>(cover) * cover;
        sum += cover;
    }
    return sum > 0 ? squares / sum / 255 : 1;
}

/// Draws one glyph into its place in the line: in the middle of its advance, or a little beside it where its stems fill
/// whole pixels better.
CRaster drawGlyph(const CFontFace& face, uint32_t glyph, double advance, int lineHeight, int baseLine) {
    CRaster best;
    double bestScore = -1;
    for (int step : {0, 1, -1, 2, -2, 3, -3}) {
        const double shift = step * kShiftStep;
        CRaster raster = face.draw(glyph, (advance - face.advanceOf(glyph)) / 2 + shift);
        const double score = sharpnessOf(raster) - kShiftPrice * std::abs(shift);
        if (score > bestScore) {
            best = std::move(raster);
            bestScore = score;
        }
    }
    best.width = devicePixels(advance);
    best.advance = advance;
    best.height = lineHeight;
    best.y += baseLine;
    return best;
}

CDefinitionFailure drawScale(const CFontSource& source, CFontFace& face, double scale,
                             std::map<uint32_t, CRaster>& glyphs) {
    const double size = std::max(source.size * scale, kLeastSize);
    face.setSize(size);
    const int lineHeight = devicePixels(source.line * scale);
    const CRaster capital = face.draw(face.glyphOf('H', ""), 0);
    const int baseLine = (lineHeight - capital.drawnHeight) / 2 - capital.y;
    const int figureAdvance = devicePixels(face.advanceOf(face.glyphOf('0', source.figures)));
    const int pointAdvance = devicePixels(face.advanceOf(face.glyphOf('.', "")));
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
        const double exact = face.advanceOf(glyph);
        // Whole advances keep the gaps of a number the same wherever it stands.
        const double advance = isOne                ? figureAdvance
                               : isPoint(character) ? pointAdvance
                                                    : letterAdvance(character, exact, size);
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
