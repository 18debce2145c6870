#include "UI/Drawing/CLinearBitmap.h"

#include <gtest/gtest.h>

#include "Tests/UI/Drawing/BitmapHelp.h"

namespace tarv {
namespace {

constexpr int32_t kWidth = 13;
constexpr int32_t kHeight = 7;
// Inside, over each edge, over all, empty, turned round, far away.
constexpr CIntRect kRects[] = {{2, 1, 9, 5},
                               {-3, 2, 4, 6},
                               {8, -2, 40, 3},
                               {3, 4, 5, 99},
                               {-9, -9, 99, 99},
                               {4, 4, 4, 6},
                               {9, 5, 2, 1},
                               {13, 0, 20, 7},
                               {0, 7, 13, 9},
                               {-5, -5, 0, 0},
                               {0, 0, 13, 7},
                               {12, 6, 13, 7},
                               {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}};
constexpr double kOpacities[] = {0.0, 0.25, 0.5, 0.75, 0.996, 0.997, 1.0, 3.0, -1.0};

bool isIn(const CIntRect& rect, int32_t x, int32_t y) {
    return x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
}

class Bitmap : public testing::Test {
protected:
    Bitmap() {
        EXPECT_GOOD(bitmap_.resize(kWidth, kHeight));
        EXPECT_GOOD(other_.resize(kWidth, kHeight));
        fillWithNoise(bitmap_, 1);
        fillWithNoise(other_, 2);
        before_ = pixelsOf(bitmap_);
    }

    /// Pixels of the rectangle are what `change(before, other)` gives, all else is as before.
    template <class F>
    void expectChanged(const CIntRect& rect, const F& change) {
        for (int32_t y = 0; y < kHeight; ++y) {
            for (int32_t x = 0; x < kWidth; ++x) {
                const CPixel before = before_[static_cast<size_t>(y * kWidth + x)];
                EXPECT_EQ(bitmap_.row(y)[x], isIn(rect, x, y) ? change(before, other_.row(y)[x]) : before)
                    << x << ',' << y << " of " << rect.left << ',' << rect.top;
            }
        }
        std::copy(before_.begin(), before_.end(), bitmap_.row(0));
    }

    CLinearBitmap bitmap_;
    CLinearBitmap other_;
    std::vector<CPixel> before_;
};

TEST_F(Bitmap, HasItsSizeAndIsBlackWhenMade) {
    EXPECT_GOOD(bitmap_.resize(5, 3));
    EXPECT_EQ(bitmap_.width(), 5);
    EXPECT_EQ(bitmap_.height(), 3);
    EXPECT_EQ(bitmap_.rowBytes(), 20);
    EXPECT_EQ(bitmap_.row(1) - bitmap_.row(0), 5);
    EXPECT_EQ(pixelsOf(bitmap_), std::vector<CPixel>(15));
    EXPECT_GOOD(bitmap_.resize(40, 30));
    EXPECT_EQ(pixelsOf(bitmap_), std::vector<CPixel>(1200));
    EXPECT_GOOD(bitmap_.resize(0, 9));
    EXPECT_EQ(bitmap_.width(), 0);
}

TEST_F(Bitmap, IsEmptyAfterASizeThatItCanNotHave) {
    for (const auto& [width, height] : std::vector<std::pair<int32_t, int32_t>>{
             {-1, 5}, {5, -1}, {65536, 65536}, {INT32_MAX, INT32_MAX}, {8193, 8192}}) {
        EXPECT_GOOD(bitmap_.resize(4, 4));
        EXPECT_NE(messageOf(bitmap_.resize(width, height)).find("can't be made"), std::string::npos);
        EXPECT_EQ(bitmap_.width(), 0);
        EXPECT_EQ(bitmap_.height(), 0);
        bitmap_.fillRect({0, 0, 9, 9}, noiseColor(1.0), 1.0);
        bitmap_.clear();
    }
}

TEST_F(Bitmap, ClearMakesAllPixelsZero) {
    bitmap_.clear();
    EXPECT_EQ(pixelsOf(bitmap_), std::vector<CPixel>(kWidth * kHeight));
}

TEST_F(Bitmap, CopiesTheRectangleAtTheSamePlace) {
    for (const CIntRect& rect : kRects) {
        bitmap_.copyRectFrom(other_, rect);
        expectChanged(rect, [](CPixel, CPixel source) { return source; });
    }
    bitmap_.copyFrom(other_);
    expectChanged(bitmap_.bounds(), [](CPixel, CPixel source) { return source; });
}

TEST_F(Bitmap, CopiesAndBlendsNoMoreThanASmallerOneHas) {
    CLinearBitmap small;
    EXPECT_GOOD(small.resize(4, 3));
    fillWithNoise(small, 9);
    bitmap_.copyFrom(small);
    for (int32_t y = 0; y < kHeight; ++y) {
        for (int32_t x = 0; x < kWidth; ++x) {
            const bool isCopied = x < 4 && y < 3;
            EXPECT_EQ(bitmap_.row(y)[x], isCopied ? small.row(y)[x] : before_[static_cast<size_t>(y * kWidth + x)]);
        }
    }
    small.blendFrom(bitmap_, 0.5, {0, 0, kWidth, kHeight});
    EXPECT_EQ(bitmap_.width(), kWidth);
    EXPECT_EQ(small.width(), 4);
}

TEST_F(Bitmap, BlendsAnotherByTheFormula) {
    for (const double opacity : kOpacities) {
        for (const CIntRect& rect : kRects) {
            bitmap_.blendFrom(other_, opacity, rect);
            expectChanged(
                rect, [opacity](CPixel before, CPixel source) { return drawnFormula(before, source, 255, opacity); });
        }
    }
}

TEST_F(Bitmap, FillsWithTheFullBrightnessByBothOpacities) {
    for (const double own : {1.0, 0.7, 0.25}) {
        const CColor color = noiseColor(own);
        for (const double opacity : kOpacities) {
            for (const CIntRect& rect : kRects) {
                bitmap_.fillRect(rect, color, opacity);
                expectChanged(rect, [&](CPixel before, CPixel) {
                    return drawnFormula(before, color.ramp[255], 255, own * opacity);
                });
            }
        }
    }
}

TEST_F(Bitmap, InvertsTheChannels) {
    for (const CIntRect& rect : kRects) {
        bitmap_.invertRect(rect);
        expectChanged(rect, [](CPixel before, CPixel) {
            return eachChannel(before, 0, [](int64_t d, int64_t) { return 255 - d; });
        });
    }
}

TEST_F(Bitmap, HoldsBlueGreenRedInTheOrderOfTheBytes) {
    CColor color;
    color.ramp[255] = 0x112233;
    bitmap_.fillRect({0, 0, 1, 1}, color, 1.0);
    const auto* bytes = reinterpret_cast<const uint8_t*>(bitmap_.row(0));
    EXPECT_EQ(bytes[0], 0x33);
    EXPECT_EQ(bytes[1], 0x22);
    EXPECT_EQ(bytes[2], 0x11);
}

}  // namespace
}  // namespace tarv
