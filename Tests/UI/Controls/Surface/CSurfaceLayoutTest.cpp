#include "UI/Controls/Surface/CSurfaceLayout.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace tarv {
namespace {

std::string text(const CIntRect& rect) {
    return std::to_string(rect.left) + "," + std::to_string(rect.top) + " " + std::to_string(rect.width()) + "x" +
           std::to_string(rect.height());
}

CSurfaceLayout bands(int32_t width, int32_t height, int32_t count, double scale = 1.0) {
    return {{0, 0, width, height}, true, count, false, scale};
}

TEST(CSurfaceLayout, ColumnsAreEqualWholePixelsAndTheRestIsSplit) {
    const CSurfaceLayout layout({10, 20, 10 + 223, 220}, true, 7, false, 1.0);
    EXPECT_EQ(layout.pitch(), 31);
    EXPECT_EQ(text(layout.column(0)), "13,20 31x200");
    EXPECT_EQ(text(layout.column(6)), "199,20 31x200");
    EXPECT_EQ(text(layout.pit(0)), "17,20 23x200");
    EXPECT_EQ(text(layout.bar(0, 120, 45)), "19,45 19x75");
}

TEST(CSurfaceLayout, TheRangeIsAMultipleOfEightPixelsInTheMiddle) {
    // 3 dB of 24 are 20, 25 and 31 pixels at the three scales.
    for (const auto& [height, eighth] : {std::pair{163, 20}, {200, 25}, {207, 25}, {248, 31}}) {
        const CSurfaceLayout layout = bands(217, height, 7);
        EXPECT_EQ(layout.rangeLength(), 8 * eighth);
        EXPECT_EQ(layout.rangeStart() - layout.rangeLength(), (height - 8 * eighth) / 2);
        for (int step = 0; step <= 8; ++step) {
            EXPECT_EQ(layout.pixel(step / 8.0), layout.rangeStart() - step * eighth);
            EXPECT_EQ(layout.position(layout.pixel(step / 8.0)), step / 8.0);
        }
    }
}

TEST(CSurfaceLayout, ABarWithoutLengthShowsTwoPixelsAroundItsLine) {
    const CSurfaceLayout layout = bands(217, 200, 7);
    EXPECT_EQ(text(layout.bar(1, 100, 100)), "37,99 19x2");
    EXPECT_EQ(text(layout.bar(1, 100, 99)), "37,99 19x2");
    EXPECT_EQ(text(layout.bar(1, 100, 101)), "37,99 19x2");
    EXPECT_EQ(text(layout.bar(1, 100, 97)), "37,97 19x3");
    EXPECT_EQ(text(layout.bar(1, 200, 200)), "37,198 19x2") << "at the end of the range";
    EXPECT_EQ(text(layout.bar(1, 0, 0)), "37,0 19x2");
}

TEST(CSurfaceLayout, AHorizontalOneGrowsToTheRightAndMayFillItsHeight) {
    const CSurfaceLayout layout({4, 6, 104, 20}, false, 1, true, 1.0);
    EXPECT_EQ(text(layout.pit(0)), "4,6 100x14");
    EXPECT_EQ(layout.pixel(0.25), 29);
    EXPECT_EQ(layout.position(29), 0.25);
    EXPECT_EQ(text(layout.bar(0, 4, 29)), "4,8 25x10");
    EXPECT_EQ(text(CSurfaceLayout({0, 0, 100, 16}, false, 1, false, 1.0).pit(0)), "0,2 100x12");
}

TEST(CSurfaceLayout, APointBelongsToItsColumnAndBeyondToNone) {
    const CSurfaceLayout layout = bands(223, 200, 7);
    EXPECT_EQ(layout.columnAt(2, 50), -1);
    EXPECT_EQ(layout.columnAt(3, 50), 0);
    EXPECT_EQ(layout.columnAt(3 + 31, 0), 1);
    EXPECT_EQ(layout.columnAt(3 + 7 * 31 - 1, 199), 6);
    EXPECT_EQ(layout.columnAt(3 + 7 * 31, 50), -1);
    EXPECT_EQ(layout.columnAt(50, 200), -1);
    EXPECT_EQ(layout.nearestColumn(-500, 0), 0);
    EXPECT_EQ(layout.nearestColumn(5000, 900), 6);
}

TEST(CSurfaceLayout, WithoutRoomOrColumnsThereIsNothing) {
    EXPECT_EQ(bands(5, 200, 7).pitch(), 0);
    EXPECT_EQ(bands(5, 200, 7).columnAt(1, 1), -1);
    EXPECT_EQ(bands(200, 200, 0).nearestColumn(1, 1), -1);
    EXPECT_TRUE(bands(5, 200, 7).pit(3).isEmpty());
    EXPECT_EQ(bands(200, 5, 7).position(3), 0.0);
    EXPECT_EQ(CSurfaceLayout().columnAt(0, 0), -1);
}

TEST(CSurfaceLayout, ColumnsNeverTouchEachOtherOrLeaveTheBox) {
    std::mt19937 random(7);
    for (int i = 0; i < 2000; ++i) {
        const bool isVertical = random() % 2 == 0;
        const CIntRect box{-20, 7, -20 + static_cast<int32_t>(random() % 400),
                           7 + static_cast<int32_t>(random() % 400)};
        const auto count = static_cast<int32_t>(random() % 12 + 1);
        const CSurfaceLayout layout(box, isVertical, count, random() % 2 == 0, 0.8);
        if (layout.pitch() == 0) {
            continue;
        }
        for (int32_t k = 0; k < count; ++k) {
            const CIntRect column = layout.column(k);
            EXPECT_EQ(column.intersection(box), column);
            EXPECT_EQ(layout.pit(k).intersection(column), layout.pit(k));
            EXPECT_EQ(layout.columnAt(column.left, column.top), column.isEmpty() ? -1 : k);
            if (k > 0) {
                EXPECT_TRUE(column.intersection(layout.column(k - 1)).isEmpty());
            }
        }
    }
}

}  // namespace
}  // namespace tarv
