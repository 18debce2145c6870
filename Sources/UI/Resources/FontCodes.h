#pragma once

#include <cstdint>

namespace tarv {

/// The characters that a font holds and the codes that their glyphs have in it. A code is that of Latin-1 for ASCII,
/// for the letters and for the signs that texts of audio use; the free codes 128 to 159 carry what Latin-1 lacks.
struct CFontCode {
    uint16_t character;  ///< Unicode
    uint8_t code;
};

constexpr int kFontGlyphCount = 188;
constexpr int kFirstFontCode = 32;

/// What has another code than its own. The last four rows are characters that share a glyph with another one.
constexpr CFontCode kFontCodes[] = {
    {0x20AC, 128},                                                // euro
    {0x2026, 133},                                                // ellipsis
    {0x2018, 145},  {0x2019, 146}, {0x201C, 147}, {0x201D, 148},  // typographic quotes
    {0x2022, 149},                                                // bullet
    {0x2013, 150},  {0x2014, 151},                                // dashes
    {0x2212, 152},                                                // true minus
    {0x221E, 153},                                                // infinity
    {0x2190, 154},  {0x2191, 155}, {0x2192, 156}, {0x2193, 157},  // arrows: left, up, right, down
    {0x00A0, 32},                                                 // no-break space
    {0x2010, 45},   {0x2011, 45},                                 // hyphens
    {0x03BC, 0xB5},                                               // Greek mu: the micro sign
};

/// Signs of Latin-1 between its two halves of letters that have a glyph.
constexpr uint8_t kFontSigns[] = {0xA1, 0xA3, 0xA9, 0xAB, 0xAE, 0xB0, 0xB1, 0xB2, 0xB3, 0xB5, 0xB7, 0xBB, 0xBD, 0xBF};

/// The code of a Unicode character, 0 when no font holds it.
constexpr uint32_t fontCodeOf(uint32_t character) {
    if ((character >= 32 && character < 127) || (character >= 0xC0 && character <= 0xFF)) {
        return character;
    }
    for (uint8_t sign : kFontSigns) {
        if (sign == character) {
            return character;
        }
    }
    for (const CFontCode& row : kFontCodes) {
        if (row.character == character) {
            return row.code;
        }
    }
    return 0;
}

/// The character whose glyph has this code, 0 when no glyph has.
constexpr uint32_t fontCharacterOf(uint32_t code) {
    if (code >= 128 && code < 160) {
        for (const CFontCode& row : kFontCodes) {
            if (row.code == code) {
                return row.character;
            }
        }
        return 0;
    }
    return fontCodeOf(code) == code ? code : 0;
}

}  // namespace tarv
