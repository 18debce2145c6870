#include "UI/Text/CTextWrapper.h"

#include "Tests/UI/Text/TextHelp.h"
#include "UI/Resources/FontCodes.h"

namespace tarv {
namespace {

using TextWrapper = CTextTest;

TEST_F(TextWrapper, ALineIsAsWideAsItsAdvancesAndAsHighAsItsFont) {
    const std::string text = "Gain 12";
    const CTextLayout layout = laidOut(plain(text));
    ASSERT_EQ(layout.lineCount(), 1);
    EXPECT_EQ(layout.width(), face.advance(text));
    EXPECT_EQ(layout.height(), 14);
    for (int32_t i = 0; i < layout.itemCount(); ++i) {
        EXPECT_EQ(layout.place(i).x, face.advance(text.substr(0, static_cast<size_t>(i)))) << i;
        EXPECT_EQ(layout.place(i).picture, regular.getGlyph(static_cast<uint32_t>(text[static_cast<size_t>(i)])));
    }
}

TEST_F(TextWrapper, LinesEndBehindTheLastBlankThatFits) {
    const std::string text = "one two three";
    // A line is full when its last word ends at the width: the blank behind it hangs over.
    const int32_t two = face.advance("one two");
    EXPECT_EQ(linesOf(wrapped(text, two), text), "one two |three");
    EXPECT_EQ(linesOf(wrapped(text, two - 1), text), "one |two |three");
    EXPECT_EQ(linesOf(wrapped(text, face.advance(text)), text), text);
    EXPECT_EQ(wrapped(text, two).line(0).width, two);
    EXPECT_EQ(wrapped(text, two).line(0).end, face.advance("one two "));
}

TEST_F(TextWrapper, LinesEndBehindAHyphenWithinAWordButNotBehindASign) {
    const std::string text = "pre-post -12";
    EXPECT_EQ(linesOf(wrapped(text, face.advance("pre-")), text), "pre-|post |-12");
    const std::string sign = "a -12";
    // The sign would fit, but belongs to its number.
    EXPECT_EQ(linesOf(wrapped(sign, face.advance("a -1")), sign), "a |-12");
    const std::string first = "-12";
    EXPECT_EQ(linesOf(wrapped(first, face.advance("-1")), first), "-1|2");
}

TEST_F(TextWrapper, TheSignOfANumberIsAMinusAndAnyOtherHyphenIsNone) {
    CFont withMinus;
    face.fill(withMinus);
    constexpr uint16_t kMinus = 0x2212;
    const uint32_t minusCode = fontCodeOf(kMinus);
    {
        auto* version = new CImageVersion;
        version->setSize(9, 14);
        version->setAdvance(9);
        const CBytes pixels(9, 255);
        EXPECT_GOOD(version->encode(pixels.data(), 9, 1, 1, 0, 7));
        auto* layer = new CImageLayer(1);
        EXPECT_GOOD(layer->addVersion(1.0, version));
        auto* image = new CImage;
        image->addLayer(layer);
        withMinus.setImage(minusCode, image);
    }
    fonts.setFonts(&withMinus);
    const auto shown = [&](const std::string& text) {
        const CTextLayout layout = laidOut(plain(text));
        std::string signs;
        for (int32_t i = 0; i < layout.itemCount(); ++i) {
            const bool isMinus = layout.place(i).picture == withMinus.getGlyph(minusCode);
            signs += isMinus ? 'm' : text[static_cast<size_t>(i)] == '-' ? 'h' : '.';
        }
        return signs;
    };
    EXPECT_EQ(shown("-12.0"), "m....");
    EXPECT_EQ(shown("-.5"), "m..");
    EXPECT_EQ(shown("a -3 dB (-4)"), "..m......m..");
    EXPECT_EQ(shown("+2/-3"), "...m.");
    EXPECT_EQ(shown("\n-1"), ".m.");
    // In a word, in a range, in the number of a part, and while nothing follows.
    EXPECT_EQ(shown("pre-post"), "...h....");
    EXPECT_EQ(shown("1-2"), ".h.");
    EXPECT_EQ(shown("A-1"), ".h.");
    EXPECT_EQ(shown("--1"), "hh.");
    EXPECT_EQ(shown("-"), "h");
    EXPECT_EQ(shown("-."), "h.");
    EXPECT_EQ(shown("- 1"), "h..");
    EXPECT_EQ(laidOut(plain("-1")).width(), 9 + face.advance("1"));
}

TEST_F(TextWrapper, AFontWithoutAMinusShowsTheHyphen) {
    EXPECT_EQ(laidOut(plain("-1")).place(0).picture, regular.getGlyph('-'));
}

TEST_F(TextWrapper, AWordThatIsTooWideBreaksAtAGlyph) {
    const std::string text = "a wwwwww b";
    EXPECT_EQ(linesOf(wrapped(text, face.advance("ww")), text), "a |ww|ww|ww |b");
    EXPECT_TRUE(wrapped(text, face.advance("ww")).line(1).isWrapped);
}

TEST_F(TextWrapper, EachLineHasAGlyphHoweverNarrowItIs) {
    const std::string text = "ab c";
    for (const int32_t width : {-5, 0, 1, 2}) {
        EXPECT_EQ(linesOf(wrapped(text, width), text), "a|b |c") << width;
    }
}

TEST_F(TextWrapper, ALineFeedBeginsAParagraphAndALineBreakALine) {
    CTextSettings settings;
    settings.paragraphSpacing = 10;
    const CTextSource source = marked("a[BR]b\nc");
    const CTextLayout layout = laidOut(source, settings);
    ASSERT_EQ(layout.paragraphCount(), 2);
    EXPECT_EQ(layout.paragraph(0).lineCount, 2);
    EXPECT_EQ(layout.paragraph(0).count, 3);
    EXPECT_EQ(layout.paragraph(0).height, 28);
    EXPECT_EQ(layout.paragraph(1).first, 4);
    EXPECT_EQ(layout.paragraph(1).y, 38);
    EXPECT_EQ(layout.height(), 52);
    EXPECT_FALSE(layout.line(0).isWrapped);
}

TEST_F(TextWrapper, EmptyTextsAndParagraphsHaveALineEach) {
    EXPECT_EQ(laidOut(plain("")).lineCount(), 1);
    EXPECT_EQ(laidOut(plain("")).height(), 14);
    EXPECT_EQ(laidOut(plain("a\n\nb\n")).paragraphCount(), 4);
    CTextSettings list;
    list.isList = true;
    EXPECT_EQ(laidOut(plain(""), list).paragraphCount(), 0);
    EXPECT_EQ(laidOut(plain(""), list).height(), 0);
    fonts.setFonts(nullptr);
    EXPECT_EQ(laidOut(plain("a")).lineCount(), 0);
}

TEST_F(TextWrapper, RowsOfAListHaveHalfASpaceAboveAndBelow) {
    CTextSettings settings;
    settings.isList = true;
    settings.paragraphSpacing = 7;
    const CTextLayout layout = laidOut(plain("a\nb"), settings);
    EXPECT_EQ(layout.paragraph(0).y, 3);
    EXPECT_EQ(layout.paragraph(1).y, 3 + 14 + 7);
    EXPECT_EQ(layout.height(), 2 * (14 + 7));
    EXPECT_EQ(layout.rowTop(0), 0);
    EXPECT_EQ(layout.rowTop(1), 21);
    EXPECT_EQ(layout.rowTop(2), 42);
    EXPECT_EQ(layout.rowAt(-1), -1);
    EXPECT_EQ(layout.rowAt(0), 0);
    EXPECT_EQ(layout.rowAt(20), 0);
    EXPECT_EQ(layout.rowAt(21), 1);
    EXPECT_EQ(layout.rowAt(41), 1);
    EXPECT_EQ(layout.rowAt(42), -1);
}

TEST_F(TextWrapper, LinesStandLeftCentredOrRight) {
    const int32_t a = face.advance("a");
    for (const int32_t alignment : {-1, 0, 1}) {
        CTextSettings settings;
        settings.width = 50;
        settings.alignment = alignment;
        const CTextLayout layout = laidOut(plain("a  \nwide enough to begin left"), settings);
        // Blanks at the end don't count.
        EXPECT_EQ(layout.line(0).x, alignment < 0 ? 0 : alignment > 0 ? 50 - a : (50 - a) / 2);
        EXPECT_EQ(layout.line(1).x, 0);
    }
}

TEST_F(TextWrapper, BoldAndSuperscriptTakeTheirOwnAdvancesAndPlaces) {
    const CTextLayout layout = laidOut(marked("a[B]a[/B][SUP]a[/SUP]a"));
    EXPECT_EQ(layout.place(1).x, face.advance("a"));
    EXPECT_EQ(layout.place(2).x, face.advance("a") + boldFace.advance("a"));
    EXPECT_EQ(layout.place(3).x, face.advance("a") + boldFace.advance("a") + smallFace.advance("a"));
    EXPECT_EQ(layout.place(1).picture, bold.getGlyph('a'));
    EXPECT_EQ(layout.place(2).picture, small.getGlyph('a'));
    EXPECT_EQ(layout.place(1).top, 0);
    // Capitals of both begin at the same height.
    EXPECT_EQ(layout.place(2).top, 3 - 1);
    EXPECT_EQ(layout.height(), 14);
}

TEST_F(TextWrapper, AnImageHigherThanTheFontMakesItsLineHigher) {
    CImage* image = makeImage(2, 1);
    CTextSource source = marked("a[IMG=x]b[BR]c");
    source.setPicture(0, image);
    image->chooseScale(1.25);
    const CTextLayout low = laidOut(source);
    // 25 x 10 pixels: lower than the line, in its middle.
    EXPECT_EQ(low.place(1).top, 2);
    EXPECT_EQ(low.place(2).x, face.advance("a") + 25);
    EXPECT_EQ(low.line(0).height, 14);
    delete image;
    image = new CImage;
    auto* layer = new CImageLayer(1);
    auto* version = new CImageVersion;
    version->setSize(4, 21);
    EXPECT_GOOD(layer->addVersion(1.0, version));
    image->addLayer(layer);
    source.setPicture(0, image);
    const CTextLayout high = laidOut(source);
    EXPECT_EQ(high.line(0).height, 21);
    EXPECT_EQ(high.place(0).top, 3);
    EXPECT_EQ(high.place(1).top, 0);
    EXPECT_EQ(high.line(1).y, 21);
    EXPECT_EQ(high.height(), 35);
    delete image;
}

TEST_F(TextWrapper, ARandomTextWrapsAsTheRulesSay) {
    // A slow reference: the longest beginning that fits, cut back to the last place to break.
    uint32_t state = 7;
    const auto next = [&state] { return (state = state * 1664525u + 1013904223u) >> 16; };
    for (int32_t round = 0; round < 300; ++round) {
        std::string text;
        for (uint32_t i = next() % 40; i > 0; --i) {
            text += "ab-w i"[next() % 6];
        }
        const auto width = static_cast<int32_t>(1 + next() % 60);
        std::string expected;
        for (size_t at = 0; at < text.size();) {
            const auto widthTo = [&](size_t end) {
                while (end > at && text[end - 1] == ' ') {
                    --end;
                }
                return face.advance(text.substr(at, end - at));
            };
            size_t end = at + 1;
            size_t chance = 0;
            const auto canBreak = [&](size_t i) {
                return text[i] == ' ' || (text[i] == '-' && i > at && text[i - 1] != ' ');
            };
            chance = canBreak(at) ? end : 0;
            while (end < text.size() && (text[end] == ' ' || widthTo(end + 1) <= width)) {
                chance = canBreak(end) ? end + 1 : chance;
                ++end;
            }
            end = end == text.size() || chance == 0 ? end : chance;
            expected += (at > 0 ? "|" : "") + text.substr(at, end - at);
            at = end;
        }
        EXPECT_EQ(linesOf(wrapped(text, width), text), expected) << text << ' ' << width;
    }
}

}  // namespace
}  // namespace tarv
