#include "UI/Resources/CBrushSet.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Tests/UI/Resources/DamageHelp.h"

namespace tarv {
namespace {

constexpr uint64_t kHuge = 0xffffffff;

/// Stamps in which each byte holds its place.
CBytes tableOf(int32_t side) {
    CBytes table(static_cast<size_t>(side * side * 256));
    for (size_t i = 0; i < table.size(); ++i) {
        table[i] = static_cast<uint8_t>(i * 31 + i / 256);
    }
    return table;
}

void fill(CBrushSet& set) {
    for (const double width : {0.0, 1.48, 2.96}) {
        auto* brush = new CBrush(width);
        // Entered in any order, they stand in that of the scales.
        EXPECT_GOOD(brush->addVersion(1.25, 4, width + 1.425, tableOf(4).data()));
        EXPECT_GOOD(brush->addVersion(0.8, 2, width + 1.092, tableOf(2).data()));
        EXPECT_GOOD(brush->addVersion(1.0, 3, width + 1.24, tableOf(3).data()));
        set.addBrush(brush);
    }
}

CFileBuilder goodBrushSet() {
    CFileBuilder file;
    file.mark("version").value(1).mark("brushes").value(1);
    file.mark("width").number(1.48).mark("bits").value(4);
    file.mark("scales").value(2).mark("scale 0").number(0.8).number(1.0);
    file.mark("side").value(1).mark("dot width").number(1.092).mark("table size").value(256).raw(tableOf(1));
    file.value(1).number(1.24).value(256).raw(tableOf(1));
    return file;
}

TEST(BrushSet, GivesBrushesByIndexAndNoneForOthers) {
    CBrushSet set;
    fill(set);
    ASSERT_NE(set.getBrush(2), nullptr);
    EXPECT_EQ(set.getBrush(2)->width(), 2.96);
    EXPECT_EQ(set.getBrush(3), nullptr);
    EXPECT_EQ(set.getBrush(-1), nullptr);
}

TEST(BrushSet, GivesTheStampOfEachSixteenthOfAPixel) {
    CBrushSet set;
    fill(set);
    const CBrush& brush = *set.getBrush(1);
    const CBytes table = tableOf(3);
    for (int32_t subY = 0; subY < 16; ++subY) {
        for (int32_t subX = 0; subX < 16; ++subX) {
            const auto* expected = &table[static_cast<size_t>((subY * 16 + subX) * 9)];
            EXPECT_TRUE(std::equal(expected, expected + 9, brush.stamp(subX, subY))) << subX << ',' << subY;
        }
    }
}

TEST(BrushSet, TakesTheStampsNearestToTheScaleOfTheEditor) {
    for (const auto& [scale, side] :
         std::vector<std::pair<double, int32_t>>{{0.8, 2}, {1.0, 3}, {1.25, 4}, {0.9, 2}, {1.3, 4}, {NAN, 3}}) {
        CBrushSet set;
        set.setScale(scale);
        fill(set);
        EXPECT_EQ(set.getBrush(0)->stampSide(), side) << scale;
        CBrushSet again;
        again.setScale(scale);
        EXPECT_GOOD(readSet(again, written(set)));
        EXPECT_EQ(again.getBrush(0)->stampSide(), side) << scale;
        EXPECT_EQ(again.getBrush(0)->dotWidth(), set.getBrush(0)->dotWidth());
    }
}

TEST(BrushSet, ReadsWhatItWroteAndWritesItAgain) {
    CBrushSet set;
    fill(set);
    const CBytes bytes = written(set);
    EXPECT_EQ(set.getSize(), static_cast<int64_t>(bytes.size()));
    CBrushSet again;
    ASSERT_EQ(messageOf(readSet(again, bytes)), "");
    EXPECT_EQ(written(again), bytes);
    EXPECT_EQ(again.brushCount(), 3);
}

TEST(BrushSet, RefusesStampsThatItCanNotStore) {
    const CBytes table = tableOf(2);
    CBrush brush(1.0);
    EXPECT_GOOD(brush.addVersion(1.0, 2, 1.0, table.data()));
    EXPECT_NE(messageOf(brush.addVersion(1.0, 2, 1.0, table.data())), "");
    EXPECT_NE(messageOf(brush.addVersion(0.0, 2, 1.0, table.data())), "");
    EXPECT_NE(messageOf(brush.addVersion(NAN, 2, 1.0, table.data())), "");
    EXPECT_NE(messageOf(brush.addVersion(0.8, 0, 1.0, table.data())), "");
    EXPECT_NE(messageOf(brush.addVersion(0.8, 1025, 1.0, table.data())), "");
    EXPECT_NE(messageOf(brush.addVersion(0.8, 2, -1.0, table.data())), "");
    EXPECT_NE(messageOf(CBrush(-1.0).addVersion(0.8, 2, 1.0, table.data())), "");
    EXPECT_EQ(brush.versionCount(), 1);
}

TEST(DamagedBrushSet, IsAnErrorWhereverItIsCut) {
    expectStrictReading<CBrushSet>(goodBrushSet());
}

TEST(DamagedBrushSet, NamesTheFault) {
    const auto noNumber = std::bit_cast<uint64_t>(std::nan(""));
    const auto negative = std::bit_cast<uint64_t>(-1.0);
    expectDamages<CBrushSet>(goodBrushSet(), {
                                                 {"version", 0, 4, "Unsupported data set version 0 (before byte 8)."},
                                                 {"brushes", kHuge, 4, "can't be held"},
                                                 {"brushes", 0, 4, "bytes are left"},
                                                 {"width", noNumber, 8, "is not in 0.00 to 1024.00"},
                                                 {"width", negative, 8, "is not in 0.00 to 1024.00"},
                                                 {"bits", 3, 4, "Value 3 before byte 24 is not in 4 to 4"},
                                                 {"bits", kHuge, 4, "is not in 4 to 4"},
                                                 {"scales", 0, 4, "No scale is stored"},
                                                 {"scales", kHuge, 4, "can't be held"},
                                                 {"scale 0", std::bit_cast<uint64_t>(1.0), 8, "do not ascend"},
                                                 {"side", 0, 4, "is not in 1 to 1024"},
                                                 {"side", 1025, 4, "is not in 1 to 1024"},
                                                 {"side", 2, 4, "Table of 256 bytes before byte 60 is not that"},
                                                 {"dot width", noNumber, 8, "is not in 0.00 to 1024.00"},
                                                 {"table size", 255, 4, "is not that of stamps of side 1"},
                                                 {"table size", kHuge, 4, "can't be held"},
                                                 {"table size", 0, 4, "is not that of stamps of side 1"},
                                             });
}

}  // namespace
}  // namespace tarv
