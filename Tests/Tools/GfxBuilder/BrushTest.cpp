#include <cmath>
#include <numbers>

#include "BrushBuilder.h"
#include "Tests/Tools/GfxBuilder/GfxTestHelp.h"

namespace tarv {
namespace {

const uint8_t* stampOf(const CStampTable& table, int x, int y) {
    return table.cover.data() + (y * 16 + x) * table.size * table.size;
}

TEST(Brush, HasADotOfTheMeanOfOnePixelAndItsWidth) {
    const double kDots[3][3] = {{0.5, 0.5, 0.5}, {1.092, 1.24, 1.425}, {1.684, 1.98, 2.35}};
    const double kWidths[] = {0, 1.48, 2.96};
    for (int brush = 0; brush < 3; ++brush) {
        for (int i = 0; i < kGfxScaleCount; ++i) {
            EXPECT_NEAR(dotWidthOf(kWidths[brush], kGfxScales[i]), kDots[brush][i], 1e-12);
        }
    }
}

TEST(Brush, CoversTheAreaOfItsDotWhereverItStands) {
    for (double dot : {0.5, 1.092, 1.24, 1.425, 1.98, 2.35, 7.0}) {
        const CStampTable table = stampsOf(dot);
        ASSERT_EQ(table.cover.size(), static_cast<size_t>(table.size * table.size * 256));
        const int pixels = table.size * table.size;
        for (int stamp = 0; stamp < 256; ++stamp) {
            double sum = 0;
            for (int i = 0; i < pixels; ++i) {
                sum += table.cover[static_cast<size_t>(stamp * pixels + i)];
            }
            // Each pixel is rounded by at most half a step.
            EXPECT_NEAR(sum, 255 * std::numbers::pi * dot * dot / 4, 0.5 * pixels + 0.1) << dot << ' ' << stamp;
        }
    }
}

TEST(Brush, LiesAroundTheTopLeftCornerOfTheMiddlePixelAndMovesRightAndDown) {
    const CStampTable table = stampsOf(1.98);
    EXPECT_EQ(table.size, 3);
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            const uint8_t* stamp = stampOf(table, x, y);
            double sum = 0, momentX = 0, momentY = 0;
            for (int i = 0; i < 9; ++i) {
                sum += stamp[i];
                momentX += stamp[i] * (i % 3 + 0.5);
                momentY += stamp[i] * (i / 3 + 0.5);
            }
            // The middle of a disc's cover isn't its centre to the last bit: pixels are all of a weight.
            EXPECT_NEAR(momentX / sum, 1 + x / 16.0, 0.1) << x << ' ' << y;
            EXPECT_NEAR(momentY / sum, 1 + y / 16.0, 0.1) << x << ' ' << y;
            for (int i = 0; i < 9; ++i) {
                EXPECT_EQ(stamp[i], stampOf(table, y, x)[i % 3 * 3 + i / 3]);
            }
        }
    }
}

struct CBadBrush {
    const char* text;
    const char* message;
};

constexpr CBadBrush kBadBrushes[] = {
    {"", "a.brush: error: 'widths' is missing"},
    {"widths = 1 x\n", "a.brush:1:1: error: a width is a number from 0 to 64 above the one in front of it, not 'x'"},
    {"widths = 2 1\n", "a.brush:1:1: error: a width is a number from 0 to 64 above the one in front of it, not '1'"},
    {"widths = -1\n", "a.brush:1:1: error: a width is a number from 0 to 64 above the one in front of it, not '-1'"},
    {"widths = 65\n", "a.brush:1:1: error: a width is a number from 0 to 64 above the one in front of it, not '65'"},
};

TEST(Brush, WithAFaultFailsWithItsPlace) {
    const CTestFolder folder;
    for (const CBadBrush& bad : kBadBrushes) {
        std::vector<double> widths;
        const auto failure = readBrushWidths(folder.file("a.brush", bad.text), widths);
        ASSERT_TRUE(failure) << bad.message;
        EXPECT_EQ(withoutFolder(failure->message()), bad.message);
    }
}

}  // namespace
}  // namespace tarv
