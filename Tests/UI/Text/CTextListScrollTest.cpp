// Lists that scroll: ratios, offsets, the wheel, and the rows that are shown.

#include "Tests/UI/Text/ListTree.h"

namespace tarv {
namespace {

TEST_F(TextList, TheSelectedRowIsSeenWhenAListIsFirstDrawnAndStaysWhereItIsScrolledTo) {
    CTextView& list = openList(20, {{"is-scrollable", "true"}, {"height", "100"}, {"selected-paragraph", "12"}});
    EXPECT_EQ(list.rowRect(12).bottom(), 120.0);
    // Later on it may be scrolled out.
    set(list, "offset-y", "0");
    set(list, "inner-border", "3");
    tick();
    EXPECT_EQ(offset(list), 0.0);
}

TEST_F(TextList, TheFirstAndTheLastRowAreShownWithTheBorderBesideThem) {
    CTextView& list = openList(20, {{"is-scrollable", "true"}, {"height", "100"}, {"inner-border", "7"}});
    list.selectParagraph(19);
    flush();
    EXPECT_NEAR(list.rowRect(19).bottom(), 120 - 7, 1);
    list.selectParagraph(5);
    flush();
    EXPECT_NEAR(list.rowRect(5).y, 20, 1);
    list.selectParagraph(0);
    flush();
    EXPECT_EQ(offset(list), 0.0);
    EXPECT_EQ(list.rowRect(0).y, 27.0);
}

TEST_F(TextList, TheRatioIsTheVisiblePartOfTheText) {
    CTextView& list = openList(10, {{"is-scrollable", "true"}, {"height", "50"}});
    EXPECT_FLOAT_EQ(list.area().value(CViewCell::RatioY), 50.0f / (10 * kRow));
    EXPECT_FLOAT_EQ(list.area().value(CViewCell::RatioX), 1.0f);
    set(list, "height", "400");
    flush();
    EXPECT_FLOAT_EQ(list.area().value(CViewCell::RatioY), 1.0f);
    set(list, "height", "50");
    set(list, "inner-border", "5");
    flush();
    EXPECT_FLOAT_EQ(list.area().value(CViewCell::RatioY), 50.0f / (10 * kRow + 10));
    // Without wrapping, the width has one too.
    set(list, "is-text-wrapped", "false");
    set(list, "width", "12");
    flush();
    EXPECT_FLOAT_EQ(list.area().value(CViewCell::RatioX), 12.0f / static_cast<float>(face.advance("r1") + 10));
}

TEST_F(TextList, TheRoomOfScrollBarsIsNeitherTextNorRow) {
    CTextView& list = openList(10, {{"is-scrollable", "true"}, {"height", "70"}, {"selected-paragraph", "0"}});
    set(list, "scroller-width", "12");
    set(list, "scroller-height", "10");
    tick();
    EXPECT_FLOAT_EQ(list.area().value(CViewCell::RatioY), 60.0f / (10 * kRow));
    expectBackground();
    const CIntRect clip{10, 20, 98, 80};
    expectRect(10, 20, 88, kRow, kSelection);
    for (int32_t i = 0; i < 3; ++i) {
        expectText(face, "r" + std::to_string(i), 10, 20 + i * kRow + 3, i == 0 ? kSelectionText : kText, clip);
    }
    EXPECT_EQ(wrongPixels(), 0);
    EXPECT_EQ(list.paragraphAt(97, 79), 2);
    EXPECT_EQ(list.paragraphAt(98, 79), -1);
    EXPECT_EQ(list.paragraphAt(97, 80), -1);
}

TEST_F(TextList, TheOffsetMovesTheRowsAndIsHeldInItsRange) {
    CTextView& list = openList(10, {{"is-scrollable", "true"}, {"height", "50"}, {"selected-paragraph", "3"}});
    set(list, "offset-y", "0.25");
    tick();
    // A quarter of 200 pixels: row 2 is cut at the top.
    EXPECT_EQ(list.rowRect(2).y, 20 - 50 + 2 * kRow);
    expectBackground();
    const CIntRect clip{10, 20, 110, 70};
    expectRect(10, 30, 100, kRow, kSelection);
    for (int32_t i = 2; i < 5; ++i) {
        expectText(face, "r" + std::to_string(i), 10, 20 - 50 + i * kRow + 3, i == 3 ? kSelectionText : kText, clip);
    }
    EXPECT_EQ(wrongPixels(), 0);
    EXPECT_EQ(list.paragraphAt(15, 21), 2);
    set(list, "offset-y", "5");
    flush();
    EXPECT_FLOAT_EQ(static_cast<float>(offset(list)), 0.75f);
}

TEST_F(TextList, TheWheelScrollsThreeRowsANotch) {
    CTextView& list = openList(40, {{"is-scrollable", "true"}, {"height", "100"}});
    EXPECT_TRUE(wheel(list, -1));
    EXPECT_NEAR(offset(list) * 40 * kRow, 3 * kRow, 1e-3);
    EXPECT_EQ(list.hoveredParagraph(), 3);
    EXPECT_TRUE(wheel(list, 0.5));
    EXPECT_NEAR(offset(list) * 40 * kRow, 1.5 * kRow, 1e-3);
    EXPECT_TRUE(wheel(list, 100));
    EXPECT_EQ(offset(list), 0.0);
    // What fits leaves the wheel to its parent.
    CTextView& small = openList(3, {{"is-scrollable", "true"}, {"height", "100"}});
    EXPECT_FALSE(wheel(small, -1));
    EXPECT_FALSE(wheel(openList(40), -1));
}

}  // namespace
}  // namespace tarv
