#include <gtest/gtest.h>

#include "Core/CHeap.h"
#include "Tests/UI/Drawing/BitmapHelp.h"

namespace tarv {
namespace {

constexpr CIntRect kAll{-1000, -1000, 1000, 1000};

/// A picture as its author had it, and where its top-left lies from the nominal one.
struct CPicture {
    CBytes pixels;
    int32_t width;
    int32_t bytesPerPixel;
    int32_t x = 0;
    int32_t y = 0;

    int32_t height() const { return static_cast<int32_t>(pixels.size()) / bytesPerPixel / width; }
    std::unique_ptr<CImageLayer> layer() const { return layerOf(pixels, width, bytesPerPixel, x, y); }
};

/// What drawing has to give, pixel by pixel, from the picture as it was before it was coded.
std::vector<CPixel> drawnByFormula(const CLinearBitmap& before, const CPicture& picture, const CColor& color, int32_t x,
                                   int32_t y, double opacity, const CIntRect& clip) {
    std::vector<CPixel> result = pixelsOf(before);
    for (int32_t v = 0; v < picture.height(); ++v) {
        for (int32_t u = 0; u < picture.width; ++u) {
            const int32_t atX = x + picture.x + u;
            const int32_t atY = y + picture.y + v;
            const bool isSeen = atX >= std::max(clip.left, 0) && atX < std::min(clip.right, before.width()) &&
                                atY >= std::max(clip.top, 0) && atY < std::min(clip.bottom, before.height());
            if (isSeen) {
                const uint8_t* pixel =
                    &picture.pixels[static_cast<size_t>((v * picture.width + u) * picture.bytesPerPixel)];
                CPixel& target = result[static_cast<size_t>(atY * before.width() + atX)];
                target = drawnFormula(target, sourceFormula(pixel, picture.bytesPerPixel, color),
                                      pixel[picture.bytesPerPixel - 1], color.opacity * opacity);
            }
        }
    }
    return result;
}

void expectDrawn(const CPicture& picture, const CColor& color, int32_t x, int32_t y, double opacity,
                 const CIntRect& clip) {
    CLinearBitmap bitmap;
    EXPECT_GOOD(bitmap.resize(64, 24));
    fillWithNoise(bitmap, 7);
    const auto expected = drawnByFormula(bitmap, picture, color, x, y, opacity, clip);
    bitmap.drawImage(*picture.layer(), color, x, y, opacity, clip);
    EXPECT_EQ(pixelsOf(bitmap) == expected, true)
        << picture.bytesPerPixel << " bytes at " << x << ',' << y << " opacity " << opacity << '*' << color.opacity
        << " clip " << clip.left << ".." << clip.right;
}

TEST(BitmapImage, IsTheFormulasForAllKindsOfPixelsRampsAndOpacities) {
    for (const int32_t bytes : {1, 2, 4}) {
        for (uint32_t seed = 0; seed < 12; ++seed) {
            const CPicture picture{randomPixels(50, 20, bytes, seed), 50, bytes, 1, 2};
            for (const double own : {1.0, 0.75, 0.25}) {
                for (const double opacity : {0.0, 0.1, 0.5, 0.996, 0.997, 1.0, 1.5, -1.0}) {
                    expectDrawn(picture, noiseColor(own, seed), 3, 1, opacity, kAll);
                }
            }
        }
    }
}

TEST(BitmapImage, IsTheFormulasForEachAlphaAndEachRampEntry) {
    for (const int32_t bytes : {1, 2, 4}) {
        CBytes pixels(static_cast<size_t>(64 * 20 * bytes));
        for (size_t i = 0; i < pixels.size(); ++i) {
            pixels[i] = static_cast<uint8_t>(i / static_cast<size_t>(bytes) * (i % static_cast<size_t>(bytes) ? 1 : 7));
        }
        for (const double opacity : {0.3, 1.0}) {
            expectDrawn({pixels, 64, bytes}, noiseColor(1.0), 0, 2, opacity, kAll);
        }
    }
}

TEST(BitmapImage, IsCutAtEveryPixelOfEveryKindOfRun) {
    for (const int32_t bytes : {1, 2, 4}) {
        // Each kind beside each other, and long headers: 3 of each, then 40 of each.
        CBytes pixels;
        for (const int32_t length : {3, 3, 3, 40}) {
            for (const int32_t alpha : {255, 90, 0}) {
                for (int32_t i = 0; i < length; ++i) {
                    pixels.insert(pixels.end(), static_cast<size_t>(bytes) - 1, static_cast<uint8_t>(i * 5 + alpha));
                    pixels.push_back(static_cast<uint8_t>(alpha));
                }
            }
        }
        const auto width = static_cast<int32_t>(pixels.size()) / bytes;
        const CPicture picture{pixels, width, bytes};
        for (int32_t left = 0; left < 64; left += left < 32 ? 1 : 5) {
            for (int32_t right = left; right <= 64; right += right < 34 ? 1 : 5) {
                expectDrawn(picture, noiseColor(1.0), -2, 5, left % 2 ? 1.0 : 0.4, {left, 0, right, 24});
            }
        }
        for (int32_t x = -width - 1; x < 66; x += 3) {
            expectDrawn(picture, noiseColor(1.0), x, 23, 1.0, kAll);
        }
    }
}

TEST(BitmapImage, OverTheEdgesAndFarAwayTouchesNothingElse) {
    const CPicture picture{randomPixels(30, 12, 2, 4), 30, 2, -3, -2};
    for (const int32_t x : {INT32_MIN, -1000, -33, -28, -1, 0, 40, 63, 67, 70, 1000, INT32_MAX}) {
        for (const int32_t y : {INT32_MIN, -1000, -14, -9, 0, 20, 25, 1000, INT32_MAX}) {
            if (x > INT32_MIN && x < INT32_MAX && y > INT32_MIN && y < INT32_MAX) {
                expectDrawn(picture, noiseColor(1.0), x, y, 1.0, kAll);
                expectDrawn(picture, noiseColor(1.0), x, y, 0.4, {5, 3, 30, 14});
                continue;
            }
            CLinearBitmap bitmap;
            EXPECT_GOOD(bitmap.resize(64, 24));
            EXPECT_EQ(bitmap.drawImage(*picture.layer(), noiseColor(1.0), x, y, 1.0, kAll), 0);
        }
    }
}

TEST(BitmapImage, CountsThePixelsThatTheClipLeaves) {
    CLinearBitmap bitmap;
    EXPECT_GOOD(bitmap.resize(64, 24));
    const auto layer = layerOf(CBytes(10 * 6, 200), 10, 1, -1, -1);
    const CColor color = noiseColor(1.0);
    EXPECT_EQ(bitmap.drawImage(*layer, color, 5, 5, 1.0, kAll), 60);
    EXPECT_EQ(bitmap.drawImage(*layer, color, 0, 0, 1.0, kAll), 9 * 5);
    EXPECT_EQ(bitmap.drawImage(*layer, color, 5, 5, 1.0, {6, 6, 8, 100}), 2 * 4);
    EXPECT_EQ(bitmap.drawImage(*layer, color, 5, 5, 1.0, {9, 9, 9, 9}), 0);
    EXPECT_EQ(bitmap.drawImage(CImageLayer(1), color, 5, 5, 1.0, kAll), 0);
}

// WindowBlocker and its like.
TEST(BitmapImage, OfAColorThatCoversInPartIsNeverStoredDirectly) {
    const CColor color = noiseColor(0.25);
    const CPicture opaque{CBytes(20 * 4, 255), 20, 1};
    CLinearBitmap bitmap;
    EXPECT_GOOD(bitmap.resize(20, 4));
    bitmap.drawImage(*opaque.layer(), color, 0, 0, 1.0, kAll);
    const CPixel expected =
        eachChannel(0, color.ramp[255], [](int64_t d, int64_t s) { return effectiveFormula(d, s, 8192); });
    EXPECT_EQ(pixelsOf(bitmap), std::vector<CPixel>(80, expected));
    EXPECT_NE(expected, color.ramp[255]);
}

TEST(BitmapImage, AtAnOpacityOf0997CountsAsOpaque) {
    const CPicture opaque{CBytes(20 * 4, 255), 20, 1};
    CLinearBitmap bitmap;
    EXPECT_GOOD(bitmap.resize(20, 4));
    const CColor color = noiseColor(1.0);
    bitmap.drawImage(*opaque.layer(), color, 0, 0, 0.997, kAll);
    EXPECT_EQ(pixelsOf(bitmap), std::vector<CPixel>(80, color.ramp[255]));
    bitmap.clear();
    bitmap.drawImage(*opaque.layer(), color, 0, 0, 0.996, kAll);
    EXPECT_NE(pixelsOf(bitmap), std::vector<CPixel>(80, color.ramp[255]));
}

/// A layer of one row, in a file that the test writes.
std::unique_ptr<CImageSet> setOfBlock(int32_t bytesPerPixel, uint32_t width, uint32_t height, const CBytes& block) {
    CFileBuilder file;
    file.value(1).value(0).value(1).value(0).value(1).value(0).value(static_cast<uint32_t>(bytesPerPixel));
    file.value(1).number(1.0).value(width).value(height).number(0.0).value(0).value(0).value(width).value(height);
    file.value(static_cast<uint32_t>(block.size())).raw(block);
    auto set = std::make_unique<CImageSet>();
    EXPECT_EQ(messageOf(readSet(*set, file.file())), "");
    return set;
}

TEST(BitmapImage, DrawsNothingInARowWhoseTableEntryIsZero) {
    // Of three rows the one in the middle is empty.
    const auto set = setOfBlock(1, 2, 3, {3, 0, 14, 0, 0, 0, 0, 0, 0, 0, 14, 0, 0, 0, 2 << 3 | 2});
    CLinearBitmap bitmap;
    EXPECT_GOOD(bitmap.resize(2, 3));
    fillWithNoise(bitmap, 3);
    const auto before = pixelsOf(bitmap);
    const CColor color = noiseColor(1.0);
    bitmap.drawImage(set->getImage(0)->layer(0), color, 0, 0, 1.0, kAll);
    const CPixel full = color.ramp[255];
    EXPECT_EQ(pixelsOf(bitmap), (std::vector<CPixel>{full, full, before[2], before[3], full, full}));
}

TEST(BitmapImage, ALongHeaderHasItsLengthInTheUpperThirteenBits) {
    // 0x0806: opaque, long, 256 pixels; 0xfffe: 8191 pixels.
    for (const auto& [low, high, width] :
         std::vector<std::array<int32_t, 3>>{{0x06, 0x08, 256}, {0xfe, 0xff, 8191}, {0x0e, 0x00, 1}}) {
        const auto set = setOfBlock(1, static_cast<uint32_t>(width), 1,
                                    {1, 0, 6, 0, 0, 0, static_cast<uint8_t>(low), static_cast<uint8_t>(high)});
        CLinearBitmap bitmap;
        EXPECT_GOOD(bitmap.resize(width + 1, 1));
        const CColor color = noiseColor(1.0);
        bitmap.drawImage(set->getImage(0)->layer(0), color, 0, 0, 1.0, bitmap.bounds());
        std::vector<CPixel> expected(static_cast<size_t>(width), color.ramp[255]);
        expected.push_back(0);
        EXPECT_EQ(pixelsOf(bitmap), expected);
    }
}

// Another builder may put full and no alpha into a run of alphas: the formula holds there too.
TEST(BitmapImage, ARunOfAlphasTakesFullAndNoAlphaByTheFormula) {
    const auto set = setOfBlock(1, 2, 1, {1, 0, 6, 0, 0, 0, 2 << 3 | 1, 255, 0});
    CLinearBitmap bitmap;
    EXPECT_GOOD(bitmap.resize(2, 1));
    bitmap.row(0)[0] = 0x102030;
    bitmap.row(0)[1] = 0x102030;
    const CColor color = noiseColor(1.0);
    bitmap.drawImage(set->getImage(0)->layer(0), color, 0, 0, 1.0, kAll);
    EXPECT_EQ(bitmap.row(0)[0],
              eachChannel(0x102030, color.ramp[255], [](int64_t d, int64_t s) { return ownFormula(d, s, 255); }));
    EXPECT_EQ(bitmap.row(0)[1], 0x102030u);
}

TEST(BitmapImage, AnIndexOutsideTheSetIsNoImage) {
    const auto set = setOfBlock(1, 1, 1, {1, 0, 6, 0, 0, 0, 1 << 3 | 2});
    EXPECT_EQ(set->getImage(1), nullptr);
}

TEST(BitmapImage, DrawsTheVersionInEffect) {
    const std::unique_ptr<CImage> image(makeImage(1, 6));
    CLinearBitmap bitmap;
    EXPECT_GOOD(bitmap.resize(64, 64));
    for (const double scale : {0.8, 1.0, 1.25}) {
        image->chooseScale(scale);
        const CImageVersion& version = image->layer(0).version();
        EXPECT_EQ(bitmap.drawImage(image->layer(0), noiseColor(1.0), 20, 20, 1.0, kAll),
                  version.storedWidth() * version.storedHeight());
        EXPECT_EQ(version.width(), static_cast<int32_t>(20 * scale));
    }
}

/// A scene of every operation, its origin moved by -originX, -originY.
void drawScene(CLinearBitmap& target, const CLinearBitmap& backdrop, int32_t originX, int32_t originY) {
    auto rect = [=](int32_t x, int32_t y, int32_t w, int32_t h) {
        return CIntRect{x - originX, y - originY, x - originX + w, y - originY + h};
    };
    target.clear();
    target.fillRect(rect(10, 20, 250, 200), noiseColor(1.0, 3), 1.0);
    target.fillRect(rect(100, 90, 190, 60), noiseColor(0.5, 4), 0.9);
    for (uint32_t i = 0; i < 60; ++i) {
        const int32_t bytes = 1 << i % 3;
        const CPicture picture{randomPixels(70, 40, bytes, i), 70, bytes, -3, -4};
        const auto x = static_cast<int32_t>(i * 97 % 330) - 30;
        const auto y = static_cast<int32_t>(i * 61 % 330) - 30;
        target.drawImage(*picture.layer(), noiseColor(i % 4 ? 1.0 : 0.5, i), x - originX, y - originY,
                         i % 5 ? 1.0 : 0.6, rect(5, 7, 280, 270));
    }
    target.invertRect(rect(120, 120, 20, 20));
    CLinearBitmap part;
    EXPECT_GOOD(part.resize(target.width(), target.height()));
    for (int32_t y = 0; y < part.height(); ++y) {
        for (int32_t x = 0; x < part.width(); ++x) {
            part.row(y)[x] = y + originY < backdrop.height() && x + originX < backdrop.width()
                                 ? backdrop.row(y + originY)[x + originX]
                                 : 0;
        }
    }
    target.blendFrom(part, 0.4, rect(40, 60, 150, 150));
}

TEST(BitmapImage, DrawnThroughTilesEqualsDrawnInOnePiece) {
    constexpr int32_t kSize = 300;
    constexpr int32_t kTile = 128;
    CLinearBitmap backdrop;
    CLinearBitmap whole;
    EXPECT_GOOD(backdrop.resize(kSize, kSize));
    fillWithNoise(backdrop, 12);
    EXPECT_GOOD(whole.resize(kSize, kSize));
    drawScene(whole, backdrop, 0, 0);
    CLinearBitmap tile;
    EXPECT_GOOD(tile.resize(kTile, kTile));
    for (int32_t originY = 0; originY < kSize; originY += kTile) {
        for (int32_t originX = 0; originX < kSize; originX += kTile) {
            drawScene(tile, backdrop, originX, originY);
            for (int32_t y = 0; y < std::min(kTile, kSize - originY); ++y) {
                const CPixel* expected = whole.row(originY + y) + originX;
                EXPECT_TRUE(std::equal(expected, expected + std::min(kTile, kSize - originX), tile.row(y)))
                    << originX << ',' << originY + y;
            }
        }
    }
}

TEST(BitmapImage, TakesNoMemory) {
    CLinearBitmap bitmap;
    EXPECT_GOOD(bitmap.resize(64, 24));
    const auto layer = layerOf(randomPixels(50, 20, 2, 1), 50, 2);
    const CColor color = noiseColor(0.5);
    const uint64_t before = CHeap::counters().allocations;
    bitmap.fillRect({0, 0, 64, 24}, color, 0.5);
    bitmap.drawImage(*layer, color, 3, 3, 1.0, kAll);
    bitmap.blendFrom(bitmap, 0.5, {0, 0, 64, 24});
    bitmap.copyFrom(bitmap);
    bitmap.invertRect({0, 0, 64, 24});
    bitmap.clear();
    EXPECT_EQ(CHeap::counters().allocations, before);
}

}  // namespace
}  // namespace tarv
