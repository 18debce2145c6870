#include "UI/Text/CTextLayout.h"

#include "Tests/UI/Text/TextHelp.h"

namespace tarv {
namespace {

using TextLayout = CTextTest;

TEST_F(TextLayout, TheCaretStandsInFrontOfEachItemAndAtTheEnd) {
    const std::string text = "abc";
    const CTextLayout layout = laidOut(plain(text));
    for (int32_t i = 0; i <= 3; ++i) {
        const CTextCaret caret = layout.caretAt(i);
        EXPECT_EQ(caret.x, face.advance(text.substr(0, static_cast<size_t>(i))));
        EXPECT_EQ(caret.y, 0);
        EXPECT_EQ(caret.height, 14);
    }
    EXPECT_EQ(layout.caretAt(-3).x, 0);
    EXPECT_EQ(layout.caretAt(9).x, face.advance(text));
}

TEST_F(TextLayout, APointGivesThePositionNearestToIt) {
    const std::string text = "abc";
    const CTextLayout layout = laidOut(plain(text));
    const int32_t a = face.advance("a");
    EXPECT_EQ(layout.indexAt(-100, 5), 0);
    EXPECT_EQ(layout.indexAt((a - 1) / 2, 5), 0);
    EXPECT_EQ(layout.indexAt((a + 1) / 2, 5), 1);
    EXPECT_EQ(layout.indexAt(1000, 5), 3);
    EXPECT_EQ(layout.indexAt(1000, -50), 3);
    EXPECT_EQ(layout.indexAt(1000, 500), 3);
}

TEST_F(TextLayout, EachPositionComesBackFromItsCaret) {
    const std::string text = "one two-three\n\nfour wwwwwwwww ";
    for (const int32_t width : {1, 20, 33, 400}) {
        CTextSettings settings;
        settings.width = width;
        settings.isWrapped = true;
        settings.alignment = 1;
        settings.paragraphSpacing = 4;
        const CTextLayout layout = laidOut(plain(text), settings);
        for (int32_t i = 0; i <= layout.itemCount(); ++i) {
            const CTextCaret caret = layout.caretAt(i);
            EXPECT_EQ(layout.indexAt(caret.x, caret.y), i) << i << " at " << width;
            EXPECT_EQ(layout.lineOf(i), caret.line);
        }
    }
}

TEST_F(TextLayout, BehindAWrappedLineThePositionBelongsToTheNextLine) {
    const std::string text = "ab cd";
    const CTextLayout layout = wrapped(text, face.advance("ab"));
    EXPECT_EQ(layout.caretAt(3).line, 1);
    EXPECT_EQ(layout.caretAt(3).x, 0);
    // A press behind the end of the first line stays in it, in front of the blank.
    EXPECT_EQ(layout.indexAt(500, 3), 2);
}

TEST_F(TextLayout, BetweenParagraphsTheNearerLineCounts) {
    CTextSettings settings;
    settings.paragraphSpacing = 10;
    const CTextLayout layout = laidOut(plain("a\nb"), settings);
    EXPECT_EQ(layout.indexAt(0, 16), 0);
    EXPECT_EQ(layout.indexAt(0, 22), 2);
    EXPECT_EQ(layout.firstLineBelow(13), 0);
    EXPECT_EQ(layout.firstLineBelow(14), 1);
    EXPECT_EQ(layout.firstLineBelow(100), 2);
}

TEST_F(TextLayout, AnItemIsHitInItsCellAlone) {
    const CTextLayout layout = laidOut(plain("ab\nc"));
    const int32_t a = face.advance("a");
    EXPECT_EQ(layout.itemAt(0, 0), 0);
    EXPECT_EQ(layout.itemAt(a - 1, 13), 0);
    EXPECT_EQ(layout.itemAt(a, 13), 1);
    EXPECT_EQ(layout.itemAt(-1, 0), -1);
    EXPECT_EQ(layout.itemAt(face.advance("ab"), 0), -1);
    EXPECT_EQ(layout.itemAt(0, 14), 3);
    EXPECT_EQ(layout.itemAt(0, 28), -1);
}

TEST_F(TextLayout, WithoutLinesThereIsNoPlace) {
    const CTextLayout layout{};
    EXPECT_EQ(layout.lineOf(0), -1);
    EXPECT_EQ(layout.indexAt(3, 3), 0);
    EXPECT_EQ(layout.itemAt(0, 0), -1);
    EXPECT_EQ(layout.rowAt(0), -1);
    EXPECT_EQ(layout.caretAt(0).height, 0);
}

}  // namespace
}  // namespace tarv
