#include "UI/Resources/CImageSet.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Tests/UI/Resources/DataSetHelp.h"

namespace tarv {
namespace {

void fill(CImageSet& set) {
    EXPECT_GOOD(set.addRange("Pushed", 3, 5));
    EXPECT_GOOD(set.addRange("", 0, 1));
    EXPECT_GOOD(set.addRange("Active", 2, 2));
    set.setImage(3, makeImage(4, 3));
    set.setImage(0, makeImage(1, 1));
    set.setImage(5, makeImage(2, 2));
}

TEST(ImageSet, FindsRangesByNameAndTheDefaultByTheEmptyOne) {
    CImageSet set;
    fill(set);
    uint32_t first = 9;
    uint32_t last = 9;
    ASSERT_TRUE(set.findRange("Pushed", first, last));
    EXPECT_EQ(first, 3u);
    EXPECT_EQ(last, 5u);
    ASSERT_TRUE(set.findRange("", first, last));
    EXPECT_EQ(last, 1u);
    EXPECT_FALSE(set.findRange("PushedX", first, last));
    EXPECT_FALSE(set.findRange("push", first, last));
    EXPECT_EQ(last, 1u);
    EXPECT_EQ(set.rangeName(0).toUtf8(), "");
    EXPECT_EQ(set.rangeName(1).toUtf8(), "Active");
}

TEST(ImageSet, GivesNothingForAnAbsentIndex) {
    CImageSet set;
    fill(set);
    int32_t width = 7;
    int32_t height = 7;
    for (const uint32_t index : {1u, 2u, 4u, 6u, 0xffffffffu}) {
        EXPECT_EQ(set.getImage(index), nullptr);
        EXPECT_FALSE(set.getSize(index, 1.0, width, height));
    }
    EXPECT_EQ(width, 7);
    EXPECT_NE(set.getImage(0), nullptr);
    ASSERT_TRUE(set.getSize(5, 1.25, width, height));
    EXPECT_EQ(width, 25);
    EXPECT_EQ(height, 10);
}

TEST(ImageSet, ReadsWhatItWroteAndWritesItAgain) {
    CImageSet set;
    fill(set);
    const CBytes bytes = written(set);
    EXPECT_EQ(set.getSize(), static_cast<int64_t>(bytes.size()));
    CImageSet again;
    ASSERT_EQ(messageOf(readSet(again, bytes)), "");
    EXPECT_EQ(written(again), bytes);
    EXPECT_EQ(again.getSize(), set.getSize());
    EXPECT_EQ(again.imageCount(), 3);
    for (const uint32_t index : {0u, 3u, 5u}) {
        const CImageLayer& layer = again.getImage(index)->layer(0);
        const CImageLayer& source = set.getImage(index)->layer(0);
        for (int32_t i = 0; i < 3; ++i) {
            EXPECT_EQ(layer.scaleAt(i), source.scaleAt(i));
            EXPECT_EQ(decoded(layer.versionAt(i), layer.bytesPerPixel()),
                      decoded(source.versionAt(i), source.bytesPerPixel()));
        }
    }
}

TEST(ImageSet, TakesTheVersionNearestToTheScaleOfTheEditor) {
    struct CCase {
        double scale;
        int32_t width;
    };
    // In the middle between two the smaller one; what is not a number as 1; beyond the ends the end.
    for (const CCase& c : {CCase{1.0, 20},
                           {0.8, 16},
                           {1.25, 25},
                           {0.9, 16},
                           {0.91, 20},
                           {1.125, 20},
                           {1.13, 25},
                           {NAN, 20},
                           {INFINITY, 25},
                           {-INFINITY, 16},
                           {0.0, 16},
                           {-3.0, 16},
                           {1e300, 25}}) {
        CImageSet made;
        made.setScale(c.scale);
        fill(made);
        EXPECT_EQ(made.getImage(0)->getWidth(), c.width) << c.scale;
        CImageSet read;
        read.setScale(c.scale);
        EXPECT_GOOD(readSet(read, written(made)));
        EXPECT_EQ(read.getImage(5)->getWidth(), c.width) << c.scale;
        int32_t width = 0;
        int32_t height = 0;
        EXPECT_TRUE(made.getSize(3, c.scale, width, height));
        EXPECT_EQ(width, c.width) << c.scale;
    }
}

TEST(ImageSet, RefusesRangesThatItCanNotStore) {
    CImageSet set;
    fill(set);
    for (const CError* error :
         {set.addRange("Active", 7, 8), set.addRange("New", 8, 7), set.addRange(u"\x3b1", 1, 1)}) {
        EXPECT_NE(messageOf(const_cast<CError*>(error)).find("can't be added"), std::string::npos);
    }
    EXPECT_EQ(set.rangeCount(), 3);
}

TEST(ImageSet, ReplacesAnImageOfTheSameIndex) {
    CImageSet set;
    fill(set);
    set.setImage(3, makeImage(1, 8));
    EXPECT_EQ(set.imageCount(), 3);
    EXPECT_EQ(set.getImage(3)->layer(0).bytesPerPixel(), 1);
}

}  // namespace
}  // namespace tarv
