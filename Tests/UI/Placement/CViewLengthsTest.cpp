#include "UI/Placement/CViewLengths.h"

#include <gtest/gtest.h>

namespace tarv {
namespace {

TEST(ViewLengths, APlacementHasItsNumber) {
    const char* const names[] = {"inline",  "full",           "top",   "bottom",     "left",       "right",
                                 "overlay", "window-overlay", "match", "scroller-h", "scroller-v", "scroller-p"};
    for (int32_t i = 0; i < 12; ++i) {
        CViewPlacement placement{};
        ASSERT_TRUE(parsePlacement(names[i], placement));
        EXPECT_EQ(static_cast<int32_t>(placement), i + 1) << names[i];
    }
    CViewPlacement placement = CViewPlacement::Left;
    for (const char* text : {"", "Inline", "scroller", "top "}) {
        EXPECT_FALSE(parsePlacement(text, placement)) << text;
    }
    EXPECT_EQ(placement, CViewPlacement::Left);
}

TEST(ViewLengths, ALengthIsReadInEachForm) {
    const struct {
        const char* text;
        CViewLengthMode mode;
        double value;
    } cases[] = {{"compact", CViewLengthMode::Compact, 0.0},   {"", CViewLengthMode::Compact, 0.0},
                 {"balanced", CViewLengthMode::Balanced, 0.0}, {"full", CViewLengthMode::Percentage, 1.0},
                 {"50%", CViewLengthMode::Percentage, 0.5},    {"12,5%", CViewLengthMode::Percentage, 0.125},
                 {"150%", CViewLengthMode::Percentage, 1.0},   {"-5%", CViewLengthMode::Percentage, 0.0},
                 {"x%", CViewLengthMode::Percentage, 0.0},     {"16", CViewLengthMode::Fixed, 20.0},
                 {"1.5", CViewLengthMode::Fixed, 1.875},       {"-3", CViewLengthMode::Fixed, 0.0},
                 {"wide", CViewLengthMode::Fixed, 0.0}};
    for (const auto& c : cases) {
        EXPECT_EQ(parseLength(c.text, 1.25), (CViewLength{c.mode, c.value})) << c.text;
    }
}

TEST(ViewLengths, BordersApplyTheirItemsInOrder) {
    const struct {
        const char* text;
        CViewBorders borders;  // bottom, left, right, top
    } cases[] = {
        {"0", {0, 0, 0, 0}},       {"", {0, 0, 0, 0}},      {"3", {3, 3, 3, 3}},        {"1 *L2", {1, 3, 1, 1}},
        {"*L2", {0, 2, 0, 0}},     {"L2 t3", {0, 2, 0, 3}}, {"5 LT1 B2", {2, 1, 5, 1}}, {"4 *LT1 *RB-1", {3, 5, 3, 5}},
        {"4 *RB+1", {5, 4, 5, 4}}, {"LL*2", {0, 2, 0, 0}},  {"1,4 *0.6", {2, 2, 2, 2}}, {"7 abc", {0, 0, 0, 0}},
        {"7 xyz", {0, 0, 0, 0}},   {"7 Bx", {0, 7, 7, 7}}};
    for (const auto& c : cases) {
        EXPECT_EQ(parseBorders(c.text, 1.0, true), c.borders) << c.text;
    }
}

TEST(ViewLengths, EachItemOfABorderIsScaledAndRoundedByItself) {
    for (const double scale : {0.8, 1.0, 1.25}) {
        const CViewBorders plain = parseBorders("3", scale, true);
        const CViewBorders pushed = parseBorders("3 *LT1 *RB-1", scale, true);
        EXPECT_EQ(pushed.left, plain.left + 1) << scale;
        EXPECT_EQ(pushed.top, plain.top + 1) << scale;
        EXPECT_EQ(pushed.right, plain.right - 1) << scale;
        EXPECT_EQ(pushed.bottom, plain.bottom - 1) << scale;
    }
    EXPECT_EQ(parseBorders("3", 0.8, true), (CViewBorders{2, 2, 2, 2}));
    EXPECT_EQ(parseBorders("2", 1.25, true), (CViewBorders{3, 3, 3, 3})) << "half away from zero";
    EXPECT_EQ(parseBorders("3", 1.25, false), (CViewBorders{3.75, 3.75, 3.75, 3.75}));
}

TEST(ViewLengths, AnAlignmentIsOneOfThree) {
    int32_t alignment = 5;
    EXPECT_TRUE(parseAlignment("left", "left", "right", alignment));
    EXPECT_EQ(alignment, -1);
    EXPECT_TRUE(parseAlignment("center", "left", "right", alignment));
    EXPECT_EQ(alignment, 0);
    EXPECT_TRUE(parseAlignment("bottom", "top", "bottom", alignment));
    EXPECT_EQ(alignment, 1);
    EXPECT_FALSE(parseAlignment("bottom", "left", "right", alignment));
    EXPECT_EQ(alignment, 1);
}

}  // namespace
}  // namespace tarv
