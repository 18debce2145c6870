#include "UI/Drawing/CLinearBitmapDC.h"

#include "Platform/ByHand/CWindowSystemByHand.h"
#include "Tests/UI/Drawing/BitmapHelp.h"
#include "UI/Drawing/CTileBitmap.h"

namespace tarv {
namespace {

class BitmapDC : public testing::Test {
protected:
    CWindowSystemByHand system;
    CLinearBitmapDC bitmap;
};

TEST_F(BitmapDC, DrawsIntoTheSurfaceThatWindowsShow) {
    EXPECT_GOOD(bitmap.resize(20, 10));
    EXPECT_EQ(bitmap.width(), 20);
    EXPECT_EQ(bitmap.height(), 10);
    EXPECT_EQ(pixelsOf(bitmap), std::vector<CPixel>(200));
    const CColor color = noiseColor(1.0);
    bitmap.fillRect({3, 4, 5, 6}, color, 1.0);
    ASSERT_NE(bitmap.surface(), nullptr);
    EXPECT_EQ(const_cast<CSurface*>(bitmap.surface())->pixels(), bitmap.row(0));
    EXPECT_EQ(bitmap.surface()->width(), 20);
    EXPECT_EQ(bitmap.surface()->height(), 10);
    EXPECT_EQ(bitmap.row(4)[3], color.full());
}

TEST_F(BitmapDC, FreesTheFormerSurfaceFirst) {
    EXPECT_GOOD(bitmap.resize(20, 10));
    EXPECT_GOOD(bitmap.resize(30, 10));
    EXPECT_EQ(system.desktop().surfaceCount(), 1);
    EXPECT_GOOD(bitmap.resize(0, 10));
    EXPECT_EQ(system.desktop().surfaceCount(), 0);
    EXPECT_EQ(bitmap.surface(), nullptr);
    EXPECT_EQ(bitmap.width(), 0);
    {
        CLinearBitmapDC other;
        EXPECT_GOOD(other.resize(3, 3));
    }
    EXPECT_TRUE(system.isClean());
}

TEST_F(BitmapDC, SaysWhichStepTheSystemRefusedAndIsEmpty) {
    const struct {
        CSurfaceStep step;
        const char* text;
    } kRows[] = {{CSurfaceStep::Context, "CreateCompatibleDC() execution error 8."},
                 {CSurfaceStep::Section, "CreateDIBSection() error 8 (width=128, height=640)."},
                 {CSurfaceStep::Selection, "SelectObject() error 8."}};
    for (const auto& row : kRows) {
        EXPECT_GOOD(bitmap.resize(20, 10));
        system.failSurface(row.step, 8);
        EXPECT_EQ(messageOf(bitmap.resize(128, 640)), row.text);
        EXPECT_EQ(bitmap.width(), 0);
        EXPECT_EQ(bitmap.height(), 0);
        EXPECT_EQ(bitmap.surface(), nullptr);
        EXPECT_EQ(system.desktop().surfaceCount(), 0);
        bitmap.fillRect({0, 0, 9, 9}, noiseColor(1.0), 1.0);
    }
    EXPECT_GOOD(bitmap.resize(128, 640));
}

TEST_F(BitmapDC, RefusesSizesBeforeTheSystemDoes) {
    for (const auto& [width, height] : std::vector<std::pair<int32_t, int32_t>>{{-1, 5}, {5, -1}, {65536, 65536}}) {
        EXPECT_GOOD(bitmap.resize(4, 4));
        EXPECT_NE(messageOf(bitmap.resize(width, height)).find("can't be made"), std::string::npos);
        EXPECT_EQ(bitmap.width(), 0);
        EXPECT_EQ(system.desktop().surfaceCount(), 0);
    }
}

TEST_F(BitmapDC, NeedsAWindowSystem) {
    setWindowSystem(nullptr);
    if (!systemWindows()) {
        EXPECT_EQ(messageOf(bitmap.resize(4, 4)), "No window system to show a bitmap on.");
        EXPECT_GOOD(bitmap.resize(0, 0));
    }
    setWindowSystem(&system);
}

TEST_F(BitmapDC, TilesAreRowsOfIt) {
    EXPECT_GOOD(bitmap.resize(8, 30));
    CTileBitmap tile;
    tile.layOver(bitmap, 10, 5);
    EXPECT_EQ(tile.width(), 8);
    EXPECT_EQ(tile.height(), 5);
    const CColor color = noiseColor(1.0);
    tile.fillRect({-5, -5, 99, 99}, color, 1.0);
    for (int32_t y = 0; y < 30; ++y) {
        EXPECT_EQ(bitmap.row(y)[7], y >= 10 && y < 15 ? color.full() : 0u) << y;
    }
}

}  // namespace
}  // namespace tarv
