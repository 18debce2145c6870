#include <cmath>
#include <set>

#include "FontBuilder.h"
#include "Tests/TestPaths.h"
#include "Tests/Tools/GfxBuilder/GfxTestHelp.h"
#include "UI/Resources/FontCodes.h"

namespace tarv {
namespace {

constexpr const char* kFonts[] = {"base",       "base_b", "micro",   "micro_b", "micro-sm",
                                  "micro-sm_b", "small",  "small_b", "title",   "title_b"};

const CDrawnFont& drawn(const std::string& name) {
    static std::map<std::string, CDrawnFont> fonts;
    const auto [found, isNew] = fonts.emplace(name, CDrawnFont());
    if (isNew) {
        CFontSource source;
        auto failure = readFontSource(kSourceFolder + std::string("/Gfx/Fonts/") + name + ".font", source);
        if (!failure) {
            failure = drawFont(source, found->second);
        }
        EXPECT_FALSE(failure) << failure->message();
    }
    return found->second;
}

TEST(FontCodes, Give188CharactersFrom32On) {
    std::set<uint32_t> codes;
    int count = 0;
    for (uint32_t code = 0; code < 256; ++code) {
        if (const uint32_t character = fontCharacterOf(code)) {
            EXPECT_EQ(fontCodeOf(character), code);
            EXPECT_GE(code, static_cast<uint32_t>(kFirstFontCode));
            ++count;
        }
    }
    EXPECT_EQ(count, kFontGlyphCount);
    for (uint32_t character = 1; character < 0x10000; ++character) {
        const uint32_t code = fontCodeOf(character);
        EXPECT_TRUE(code == 0 || fontCharacterOf(code) != 0) << character;
    }
}

TEST(FontCodes, HoldWhatAudioTextsUse) {
    for (uint32_t character :
         {0x2018u, 0x2019u, 0x201Cu, 0x201Du, 0x2013u, 0x2014u, 0x2212u, 0x2026u, 0xB0u,   0xB1u,
          0xB2u,   0xB5u,   0x3BCu,  0xD7u,   0xD8u,   0x221Eu, 0x2190u, 0x2191u, 0x2192u, 0x2193u}) {
        EXPECT_NE(fontCodeOf(character), 0u) << character;
    }
    EXPECT_EQ(fontCodeOf(0xA0), 32u);
    EXPECT_EQ(fontCodeOf(0x4E00), 0u);
    EXPECT_EQ(fontCodeOf(127), 0u);
    EXPECT_EQ(fontCodeOf(128), 0u);
}

TEST(Font, HoldsEachCharacterAtEachScaleAndNothingIsEmptyButTheSpace) {
    for (const char* name : kFonts) {
        for (const auto& glyphs : drawn(name).glyphs) {
            EXPECT_EQ(glyphs.size(), static_cast<size_t>(kFontGlyphCount)) << name;
            for (const auto& [code, glyph] : glyphs) {
                EXPECT_EQ(glyph.pixels.empty(), code == 32) << name << ' ' << code;
                EXPECT_GT(glyph.advance, 0) << name << ' ' << code;
            }
        }
    }
}

TEST(Font, GivesDigitsPlusAndMinusOneWholeAdvance) {
    const uint32_t minus = fontCodeOf(0x2212);
    for (const char* name : kFonts) {
        for (const auto& glyphs : drawn(name).glyphs) {
            EXPECT_EQ(glyphs.at('0').advance, std::floor(glyphs.at('0').advance)) << name;
            for (uint32_t code : {uint32_t('1'), uint32_t('2'), uint32_t('3'), uint32_t('4'), uint32_t('5'),
                                  uint32_t('6'), uint32_t('7'), uint32_t('8'), uint32_t('9'), uint32_t('+'), minus}) {
                EXPECT_EQ(glyphs.at(code).advance, glyphs.at('0').advance) << name << ' ' << code;
            }
            EXPECT_EQ(glyphs.at('.').advance, std::floor(glyphs.at('.').advance)) << name;
            EXPECT_EQ(glyphs.at(',').advance, glyphs.at('.').advance) << name;
            EXPECT_LT(glyphs.at('-').advance, glyphs.at(minus).advance) << name;
        }
    }
}

// The pitches of the columns are 24, 31 and 38.
TEST(Font, KeepsTheLongestGainWithinItsColumn) {
    const double kWidths[] = {22, 26, 31};
    for (int i = 0; i < kGfxScaleCount; ++i) {
        const auto& glyphs = drawn("micro").glyphs[i];
        double width = 0;
        for (uint32_t code : {fontCodeOf(0x2212), uint32_t('1'), uint32_t('2'), uint32_t('.'), uint32_t('0')}) {
            width += glyphs.at(code).advance;
        }
        EXPECT_EQ(width, kWidths[i]) << kGfxScales[i];
    }
}

// A pen that moved by whole pixels would be off by half a pixel a letter, and words would look loose or cramped.
TEST(Font, MovesThePenBySixtyFourths) {
    int fractions = 0;
    for (const char* name : kFonts) {
        for (const auto& glyphs : drawn(name).glyphs) {
            for (const auto& [code, glyph] : glyphs) {
                EXPECT_EQ(glyph.advance * 64, std::floor(glyph.advance * 64)) << name << ' ' << code;
                fractions += glyph.advance != std::floor(glyph.advance) ? 1 : 0;
            }
        }
    }
    EXPECT_GT(fractions, 4000);
}

TEST(Font, HasNoLettersBelowEightPixels) {
    const double kLeast = 8 * 0.727;  // the face's capitals
    for (const char* name : kFonts) {
        for (const auto& glyphs : drawn(name).glyphs) {
            EXPECT_GE(glyphs.at('H').drawnHeight, std::floor(kLeast)) << name;
        }
    }
    EXPECT_EQ(drawn("micro-sm").glyphs[0].at('m').advance, drawn("micro").glyphs[0].at('m').advance);
}

/// Ink of one glyph that another one does not have, of all of its ink, where both stand at their places.
double differenceOf(const CRaster& a, const CRaster& b) {
    int differing = 0, sum = 0;
    for (int y = 0; y < a.height; ++y) {
        for (int x = -2; x < a.width + 2; ++x) {
            differing += std::abs(coverAt(a, x, y) - coverAt(b, x, y));
            sum += coverAt(a, x, y) + coverAt(b, x, y);
        }
    }
    return static_cast<double>(differing) / sum;
}

// "64" read as "84": at the smallest size each figure differs from each other by more than a fifth of the ink.
TEST(Font, TellsTheSmallestFiguresApart) {
    for (const char* name : {"micro", "micro-sm"}) {
        const auto& glyphs = drawn(name).glyphs[0];
        for (uint32_t a = '0'; a <= '9'; ++a) {
            for (uint32_t b = '0'; b < a; ++b) {
                EXPECT_GT(differenceOf(glyphs.at(a), glyphs.at(b)), 0.2) << name << ' ' << char(a) << char(b);
            }
        }
    }
}

TEST(Font, PutsTheMiddleOfTheCapitalsOnTheMiddleOfTheLine) {
    for (const char* name : kFonts) {
        for (const auto& glyphs : drawn(name).glyphs) {
            for (char letter : std::string("HEITXZ")) {
                const CRaster& glyph = glyphs.at(static_cast<uint32_t>(letter));
                const int above = glyph.y, below = glyph.height - glyph.y - glyph.drawnHeight;
                EXPECT_GE(above, 1) << name;
                // Half a pixel goes below where line and letter don't share their parity.
                EXPECT_EQ(below - above, (glyph.height - glyph.drawnHeight) % 2) << name << ' ' << letter;
            }
        }
    }
}

TEST(Font, HasLinesAndSpacingsOfItsSource) {
    const CDrawnFont& base = drawn("base");
    EXPECT_EQ(base.height, 14);
    EXPECT_EQ(base.spaceAbove, 3);
    EXPECT_EQ(base.spaceBelow, 3);
    const int kHeights[] = {11, 14, 18};  // 11.2, 14, 17.5
    for (int i = 0; i < kGfxScaleCount; ++i) {
        EXPECT_EQ(base.glyphs[i].at('A').height, kHeights[i]);
    }
}

TEST(Font, IsGreyNotBlackAndWhite) {
    std::set<uint8_t> covers;
    for (uint8_t cover : drawn("base").glyphs[1].at('S').pixels) {
        covers.insert(cover);
    }
    EXPECT_GT(covers.size(), 8u);
}

// A stem that lies across two pixels looks thick and dim beside one that fills a pixel as far as it is wide.
TEST(Font, HasItsUprightStemsInOnePixel) {
    for (const char* name : kFonts) {
        for (int i = 0; i < kGfxScaleCount; ++i) {
            const CRaster& glyph = drawn(name).glyphs[i].at('l');
            int brightest = 0, sum = 0;
            for (int x = 0; x < glyph.drawnWidth; ++x) {
                const int cover = glyph.pixels[static_cast<size_t>(glyph.drawnHeight / 2 * glyph.drawnWidth + x)];
                brightest = std::max(brightest, cover);
                sum += cover;
            }
            EXPECT_GE(brightest, 0.85 * std::min(255, sum)) << name << kGfxScales[i];
        }
    }
}

TEST(Font, GrowsWithItsSize) {
    for (int i = 0; i < kGfxScaleCount; ++i) {
        int last = 0;
        for (const char* name : {"micro-sm", "micro", "small", "base", "title"}) {
            const int height = drawn(name).glyphs[i].at('H').drawnHeight;
            EXPECT_GE(height, last) << name;
            last = height;
        }
    }
    EXPECT_GT(drawn("base_b").glyphs[1].at('m').advance, drawn("base").glyphs[1].at('m').advance - 1);
}

struct CBadFont {
    const char* text;
    const char* message;
};

constexpr CBadFont kBadFonts[] = {
    {"style = Bold\nsize = 12\nline = 14\nfigures = tnum\n", "a.font: error: 'family' is missing"},
    {"family Inter\n", "a.font:1:1: error: 'key = value' is expected, with blanks around the sign"},
    {"family = Inter\nfamily = Inter\n", "a.font:2:1: error: 'family' is given twice"},
    {"colour = red\n", "a.font:1:1: error: 'colour' has no meaning here"},
    {"family = Inter\nstyle = Bold\nsize = 12px\nline = 14\nfigures = tnum\n",
     "a.font:3:1: error: 'size' is a number from 4 to 96, not '12px'"},
    {"family = Inter\nstyle = Bold\nsize = 3\nline = 14\nfigures = tnum\n",
     "a.font:3:1: error: 'size' is a number from 4 to 96, not '3'"},
    {"family = Inter\nstyle = Bold\nsize = 12\nline = 11\nfigures = tnum\n",
     "a.font:4:1: error: 'line' is a number from 12 to 192, not '11'"},
    {"family = Inter\nstyle = Bold\nsize = 12\nline = 14.5\nfigures = tnum\n",
     "a.font:4:1: error: the line's height is a whole number"},
    {"family = No Such Face\nstyle = Bold\nsize = 12\nline = 14\nfigures = tnum\n",
     "a.font: error: the face 'No Such Face' 'Bold' isn't installed"},
    {"family = Inter\nstyle = Wide\nsize = 12\nline = 14\nfigures = tnum\n",
     "a.font: error: the face 'Inter' 'Wide' isn't installed"},
};

TEST(Font, WithAFaultFailsWithItsPlace) {
    const CTestFolder folder;
    for (const CBadFont& bad : kBadFonts) {
        CFontSource source;
        CDrawnFont font;
        auto failure = readFontSource(folder.file("a.font", bad.text), source);
        if (!failure) {
            failure = drawFont(source, font);
        }
        ASSERT_TRUE(failure) << bad.message;
        EXPECT_EQ(withoutFolder(failure->message()), bad.message);
    }
}

}  // namespace
}  // namespace tarv
