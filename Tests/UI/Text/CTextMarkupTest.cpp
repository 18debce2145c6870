#include "UI/Text/CTextMarkup.h"

#include "Tests/UI/Text/TextHelp.h"
#include "UI/Views/CViewReading.h"

namespace tarv {
namespace {

/// Spans as texts: `B` bold, `S` superscript, the colour's number, then the items; images as <set#range>.
std::string spansOf(const std::string& text) {
    CTextSource source;
    CTextMarkup::append(source, CString::fromUtf8(text.data(), text.size()));
    std::string result;
    for (const CTextSpan& span : source.spans()) {
        result += result.empty() ? "" : " ";
        result += span.style == CTextStyle::Bold ? "B" : span.style == CTextStyle::Superscript ? "S" : "";
        result += span.color > 0 ? std::to_string(span.color) : "";
        result += "'";
        for (int32_t i = span.first; i < span.first + span.count; ++i) {
            const uint16_t item = source.at(i);
            if (span.image >= 0) {
                const CTextImage& image = source.images()[span.image];
                result += "<" + image.set.toUtf8() + "#" + image.range.toUtf8() + ">";
            } else {
                result += item == CTextSource::kLineBreak ? '/' : item == '\n' ? '|' : static_cast<char>(item);
            }
        }
        result += "'";
    }
    return result;
}

TEST(TextMarkup, MarksBeginAndEndLooks) {
    EXPECT_EQ(spansOf("a[B]b[/B]c"), "'a' B'b' 'c'");
    EXPECT_EQ(spansOf("a[C2]b[/C2]c"), "'a' 2'b' 'c'");
    EXPECT_EQ(spansOf("a[C1]b[/C1]c"), "'a' 1'b' 'c'");
    EXPECT_EQ(spansOf("a[SUP]b[/SUP]c"), "'a' S'b' 'c'");
    EXPECT_EQ(spansOf("a[BR]b"), "'a/b'");
    EXPECT_EQ(spansOf(""), "");
}

TEST(TextMarkup, MarksNestInAnyOrder) {
    EXPECT_EQ(spansOf("[B]a[C2]b[/B]c[/C2]d"), "B'a' B2'b' 2'c' 'd'");
    EXPECT_EQ(spansOf("[B]a[SUP]b[/SUP]c[/B]"), "B'a' S'b' B'c'");
    EXPECT_EQ(spansOf("[B]a[B]b[/B]c[/B]d"), "B'abc' 'd'");
    EXPECT_EQ(spansOf("[C1]a[C2]b[/C1]c[/C2]d"), "1'a' 2'bc' 'd'");
}

TEST(TextMarkup, ALookThatIsLeftOpenEndsWithItsParagraph) {
    EXPECT_EQ(spansOf("[B]a[C2]b\nc"), "B'a' B2'b' '|c'");
    // A line break ends none.
    EXPECT_EQ(spansOf("[B]a[BR]b"), "B'a/b'");
}

TEST(TextMarkup, WhatIsNoMarkIsText) {
    for (const char* text : {"[", "]", "[]", "[b]", "[/B]", "[/SUP]x", "[/C2]", "[C3]", "[IMG]", "[IMG=]", "[IMG=#Box]",
                             "[B", "a [1] b", "[/BR]"}) {
        EXPECT_EQ(spansOf(text), "'" + std::string(text) + "'");
    }
    EXPECT_EQ(spansOf("[x[B]a"), "'[x' B'a'");
    // Closed once, the second is alone.
    EXPECT_EQ(spansOf("[B]a[/B][/B]"), "B'a' '[/B]'");
}

TEST(TextMarkup, ACharacterIsNamedByItsCode) {
    EXPECT_EQ(spansOf("[U+5B]B]a[SUP][U+7B]x}[/SUP]"), "'[B]a' S'{x}'");
    for (const char* text : {"[U+]", "[U+1]", "[U+-5]", "[U+12345]", "[U+5G]"}) {
        EXPECT_EQ(spansOf(text), "'" + std::string(text) + "'");
    }
    CTextSource source;
    CTextMarkup::append(source, "[U+20AC]");
    ASSERT_EQ(source.count(), 1);
    EXPECT_EQ(source.at(0), 0x20ac);
}

TEST(TextMarkup, ATypedTextWithinMarksShowsAsItWasTyped) {
    const CString typed("[B]{/ui.x title};a[U+41]");
    const CString marked = CViewReader::withMarks(typed, ';');
    EXPECT_EQ(marked.indexOf('{'), -1);
    EXPECT_EQ(marked.indexOf(';'), -1);
    EXPECT_EQ(spansOf("[SUP]" + marked.toUtf8() + "[/SUP]"), "S'" + typed.toUtf8() + "'");
    EXPECT_EQ(CViewReader::withoutMarks(marked), typed);
    EXPECT_EQ(CViewReader::withMarks("a\nb"), CString("ab"));
    const CString wide(u"[\u0416");
    EXPECT_EQ(CViewReader::withoutMarks(CViewReader::withMarks(wide)), wide);
}

TEST(TextMarkup, AnImageNamesItsSetRangeAndColour) {
    CTextSource source;
    CTextMarkup::append(source, "a[IMG=is.button#Arrow:Action][IMG=is.x:Alarm][C2][IMG=is.y#R][/C2][IMG=is.z:Action]");
    ASSERT_EQ(source.images().count(), 4);
    EXPECT_EQ(source.images()[0].set, CString("is.button"));
    EXPECT_EQ(source.images()[0].range, CString("Arrow"));
    EXPECT_EQ(source.images()[1].set, CString("is.x"));
    EXPECT_EQ(source.images()[1].range, CString(""));
    ASSERT_EQ(source.colorNames().count(), 2);
    EXPECT_EQ(source.colorNames()[0], CString("Action"));
    EXPECT_EQ(source.colorNames()[1], CString("Alarm"));
    // Each image is a span; without a colour it has that of the text around it.
    ASSERT_EQ(source.spans().count(), 5);
    EXPECT_EQ(source.spans()[1].color, kTextColors);
    EXPECT_EQ(source.spans()[2].color, kTextColors + 1);
    EXPECT_EQ(source.spans()[3].color, 2);
    EXPECT_EQ(source.spans()[4].color, kTextColors);
}

TEST(TextMarkup, TextsThatAreAddedShareTheirMarks) {
    CTextSource source;
    CTextMarkup markup(source);
    markup.add("[B]a");
    markup.addLineBreak();
    markup.addPlain("[C2]b");
    markup.endParagraph();
    markup.add("c");
    ASSERT_EQ(source.spans().count(), 2);
    EXPECT_EQ(source.plainText(0, source.count()), CString("a [C2]b\nc"));
    EXPECT_EQ(source.spans()[0].style, CTextStyle::Bold);
    EXPECT_EQ(source.spans()[0].count, 7);
}

TEST(TextMarkup, SpansCoverAllItemsOfWhateverIsWritten) {
    uint32_t state = 3;
    const auto next = [&state] { return (state = state * 1664525u + 1013904223u) >> 16; };
    static constexpr const char* kPieces[] = {"[",     "]",    "[B]", "[/B]", "[SUP]", "[/SUP]", "[C2]",
                                              "[/C2]", "IMG",  "=",   "#",    ":",     "[IMG=",  "a",
                                              "\n",    "[BR]", "/",   "C1",   "[C1]",  "[/C1]"};
    for (int32_t round = 0; round < 2000; ++round) {
        std::string text;
        for (uint32_t i = next() % 30; i > 0; --i) {
            text += kPieces[next() % std::size(kPieces)];
        }
        CTextSource source;
        CTextMarkup::append(source, text.c_str());
        int32_t at = 0;
        int32_t images = 0;
        for (const CTextSpan& span : source.spans()) {
            EXPECT_EQ(span.first, at) << text;
            EXPECT_GT(span.count, 0) << text;
            EXPECT_LT(span.color, kTextColors + source.colorNames().count()) << text;
            if (span.image >= 0) {
                EXPECT_EQ(span.image, images++) << text;
                EXPECT_EQ(span.count, 1) << text;
            }
            at += span.count;
        }
        EXPECT_EQ(at, source.count()) << text;
        EXPECT_EQ(images, source.images().count()) << text;
    }
}

TEST(TextMarkup, ControlCharactersAreLeftOut) {
    EXPECT_EQ(spansOf("a\r\nb\x01\tc"), "'a|b\tc'");
}

TEST(TextSource, APlainTextHasAnItemForEachCharacter) {
    CTextSource source;
    source.setPlain("[B]a\nb");
    EXPECT_EQ(source.count(), 6);
    ASSERT_EQ(source.spans().count(), 1);
    EXPECT_EQ(source.spans()[0].count, 6);
    EXPECT_EQ(source.plainText(0, 6), CString("[B]a\nb"));
    source.setPlain(u"\u20ac");
    EXPECT_EQ(source.plainText(0, 1), CString(u"\u20ac"));
    source.setPlain("");
    EXPECT_TRUE(source.isEmpty());
    EXPECT_EQ(source.spans().count(), 0);
}

TEST(TextSource, ItsTextIsWithoutLooksAndImages) {
    const CTextSource source = CTextTest::marked("[B]a[/B][IMG=is.x]b[BR]c\nd");
    EXPECT_EQ(source.plainText(0, source.count()), CString("ab c\nd"));
    EXPECT_EQ(source.plainText(-5, 6), CString("a"));
    EXPECT_EQ(source.plainText(20, 3), CString(""));
    EXPECT_EQ(source.spanOf(0), 0);
    EXPECT_EQ(source.spanOf(1), 1);
    EXPECT_EQ(source.spanOf(source.count() - 1), 2);
}

using TextFonts = CTextTest;

TEST_F(TextFonts, CharactersOfSeveralCodesShareGlyphs) {
    EXPECT_EQ(fonts.glyph('a', CTextStyle::Regular), regular.getGlyph('a'));
    EXPECT_EQ(fonts.glyph('\t', CTextStyle::Regular), regular.getGlyph(' '));
    EXPECT_EQ(fonts.glyph(0xa0, CTextStyle::Regular), regular.getGlyph(' '));
    EXPECT_EQ(fonts.glyph(0x2010, CTextStyle::Bold), bold.getGlyph('-'));
    // No font holds it.
    EXPECT_EQ(fonts.glyph(0x4e00, CTextStyle::Superscript), small.getGlyph('?'));
    EXPECT_EQ(fonts.glyph('\r', CTextStyle::Regular), nullptr);
    // The test's fonts lack it.
    EXPECT_EQ(fonts.glyph(0xc4, CTextStyle::Regular), nullptr);
}

TEST_F(TextFonts, AMissingStyleIsDrawnRegularOnItsLine) {
    fonts.setFonts(&regular);
    EXPECT_EQ(fonts.glyph('a', CTextStyle::Bold), regular.getGlyph('a'));
    EXPECT_EQ(fonts.glyph('a', CTextStyle::Superscript), regular.getGlyph('a'));
    EXPECT_EQ(fonts.topOf(CTextStyle::Superscript), 0);
    EXPECT_EQ(fonts.lineHeight(), 14);
}

TEST_F(TextFonts, BoldStandsOnTheBaseLineOfTheRegularFont) {
    bold.setMetrics(16, 3, 3);
    fonts.setFonts(&regular, &bold, &small);
    EXPECT_EQ(fonts.topOf(CTextStyle::Bold), 11 - 13);
    EXPECT_EQ(fonts.topOf(CTextStyle::Superscript), 3 - 1);
}

TEST_F(TextFonts, ASuperscriptIsLiftedByAQuarterOfACapitalAtLeast) {
    // Capitals of 8 pixels: those of 7 are lifted by 1 where both begin at the same height, and 2 are due.
    small.setMetrics(11, 2, 2);
    fonts.setFonts(&regular, &bold, &small);
    EXPECT_EQ(fonts.topOf(CTextStyle::Superscript), 3 - 2 - 1);
    // A font that is its own superscript is lifted by all of it, up to the line's top.
    fonts.setFonts(&regular, &bold, &regular);
    EXPECT_EQ(fonts.topOf(CTextStyle::Superscript), -2);
    small.setMetrics(14, 1, 5);
    fonts.setFonts(&small, &small, &small);
    EXPECT_EQ(fonts.topOf(CTextStyle::Superscript), -1);
}

}  // namespace
}  // namespace tarv
