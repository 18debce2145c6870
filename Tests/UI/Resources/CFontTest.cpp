#include "UI/Resources/CFont.h"

#include <gtest/gtest.h>

#include "Tests/UI/Resources/DamageHelp.h"

namespace tarv {
namespace {

constexpr uint64_t kHuge = 0xffffffff;

void fill(CFont& font) {
    font.setMetrics(14, 3, 2);
    for (uint32_t code = 32; code < 40; ++code) {
        font.setImage(code, makeImage(1, code, 7.5));
    }
}

/// One glyph of one scale, of one opaque pixel.
CFileBuilder goodFont() {
    CFileBuilder file;
    file.mark("version").value(1).mark("inner version").value(1).mark("ranges").value(0).mark("images").value(1);
    file.value(65).value(1).value(0).value(1).value(1).mark("scale").number(1.0);
    file.value(8).value(14).number(8.25).value(1).value(2).value(1).value(1);
    file.mark("data size").value(7).raw({1, 0, 6, 0, 0, 0, 1 << 3 | 2});
    file.mark("height").value(14).mark("metric 2").value(3).mark("metric 3").value(4);
    return file;
}

TEST(Font, GivesGlyphsByCodeAndNoneForOthers) {
    CFont font;
    fill(font);
    ASSERT_NE(font.getGlyph(39), nullptr);
    EXPECT_EQ(font.getGlyph(39)->getAdvance(), 7.5);
    EXPECT_EQ(font.getGlyph(31), nullptr);
    EXPECT_EQ(font.getGlyph(40), nullptr);
    EXPECT_EQ(font.getGlyph(0x263a), nullptr);
}

TEST(Font, ReadsTheFieldsOfItsFile) {
    CFont font;
    ASSERT_EQ(messageOf(readSet(font, goodFont().file())), "");
    EXPECT_EQ(font.imageCount(), 1);
    EXPECT_EQ(font.nominalHeight(), 14);
    EXPECT_EQ(font.metric2(), 3);
    EXPECT_EQ(font.metric3(), 4);
    EXPECT_EQ(font.getGlyph(65)->getAdvance(), 8.25);
    EXPECT_EQ(font.getGlyph(65)->getHeight(), 14);
}

TEST(Font, ReadsWhatItWroteAndWritesItAgain) {
    CFont font;
    fill(font);
    const CBytes bytes = written(font);
    EXPECT_EQ(font.getSize(), static_cast<int64_t>(bytes.size()));
    CFont again;
    ASSERT_EQ(messageOf(readSet(again, bytes)), "");
    EXPECT_EQ(written(again), bytes);
    EXPECT_EQ(again.metric3(), 2);
}

TEST(Font, LineHeightIsThatOfTheStoredScaleInEffect) {
    for (const auto& [scale, height] :
         std::vector<std::pair<double, int32_t>>{{0.8, 11}, {1.0, 14}, {1.25, 18}, {1.1, 14}, {2.0, 18}, {0.0, 11}}) {
        CFont font;
        font.setScale(scale);
        fill(font);
        EXPECT_EQ(font.getHeight(), height) << scale;
        EXPECT_EQ(font.nominalHeight(), 14);
    }
    EXPECT_EQ(CFont().getHeight(), 0);
}

TEST(Font, TheSpacesAboveCapitalsAndBelowTheBaseLineFollowTheStoredScale) {
    for (const auto& [scale, above, below] :
         std::vector<std::tuple<double, int32_t, int32_t>>{{0.8, 2, 4}, {1.0, 3, 5}, {1.25, 4, 6}}) {
        CFont font;
        font.setScale(scale);
        fill(font);
        font.setMetrics(14, 3, 5);
        EXPECT_EQ(font.getSpaceAbove(), above) << scale;
        EXPECT_EQ(font.getSpaceBelow(), below) << scale;
    }
}

TEST(DamagedFont, IsAnErrorWhereverItIsCut) {
    expectStrictReading<CFont>(goodFont());
}

TEST(DamagedFont, NamesTheFault) {
    expectDamages<CFont>(goodFont(), {
                                         {"version", 2, 4, "Unsupported data set version 2 (before byte 8)."},
                                         {"inner version", 2, 4, "Unsupported data set version 2 (before byte 12)."},
                                         {"ranges", kHuge, 4, "can't be held"},
                                         {"images", kHuge, 4, "can't be held"},
                                         {"images", 0, 4, "bytes are left"},
                                         {"data size", 8, 4, "Value 50331648 before byte 96 is not in 0 to 65535"},
                                         {"height", 65536, 4, "is not in 0 to 65535"},
                                         {"metric 2", kHuge, 4, "is not in 0 to 65535"},
                                         {"metric 3", 65536, 4, "is not in 0 to 65535"},
                                     });
}

}  // namespace
}  // namespace tarv
