#include "UI/Drawing/CFramePieces.h"

#include <random>

#include "Core/CHeap.h"
#include "Tests/UI/Drawing/BitmapHelp.h"

namespace tarv {
namespace {

// Of the three columns and the three rows of a frame; all around it overhangs by kOverhang.
constexpr int32_t kWidths[3] = {4, 3, 6};
constexpr int32_t kHeights[3] = {5, 4, 2};
constexpr int32_t kOverhang = 2;
constexpr int32_t kSide = 40;

/// A picture as it was made: pixels of ramp index and alpha.
struct CPicture {
    int32_t x;
    int32_t y;
    int32_t width;
    int32_t height;
    CBytes pixels;

    /// Null outside. Positions are relative to the nominal top left.
    const uint8_t* at(int32_t px, int32_t py) const {
        const bool isIn = px >= x && py >= y && px < x + width && py < y + height;
        return isIn ? &pixels[static_cast<size_t>(2 * ((py - y) * width + px - x))] : nullptr;
    }
};

class FramePieces : public testing::Test {
protected:
    FramePieces() {
        for (uint32_t i = 0; i < 18; ++i) {
            const auto column = static_cast<int32_t>(i % 3);
            const auto row = static_cast<int32_t>(i / 3 % 3);
            addPicture(i, column == 0 ? -kOverhang : 0, row == 0 ? -kOverhang : 0,
                       kWidths[column] + (column == 1 ? 0 : kOverhang), kHeights[row] + (row == 1 ? 0 : kOverhang),
                       kWidths[column], kHeights[row]);
        }
        addPicture(20, 0, 0, 5, 7, 5, 7);
        addPicture(21, 0, 0, 5, 7, 5, 7);
        EXPECT_GOOD(bitmap.resize(kSide, kSide));
    }
    void addPicture(uint32_t index, int32_t x, int32_t y, int32_t width, int32_t height, int32_t nominalWidth,
                    int32_t nominalHeight) {
        CPicture picture{x, y, width, height, {}};
        for (int32_t i = 0; i < width * height; ++i) {
            picture.pixels.push_back(static_cast<uint8_t>(random(0, 255)));
            // The corners of the stored rectangle are never transparent, so that nothing is cut off.
            constexpr int32_t kAlphas[] = {0, 255, 255, 100, 37, 200};
            picture.pixels.push_back(
                static_cast<uint8_t>(i == 0 || i == width * height - 1 ? 90 : kAlphas[random(0, 5)]));
        }
        auto* version = new CImageVersion;
        EXPECT_GOOD(version->encode(picture.pixels.data(), width, height, 2, x, y));
        version->setSize(nominalWidth, nominalHeight);
        auto* layer = new CImageLayer(2);
        EXPECT_GOOD(layer->addVersion(1.0, version));
        auto* image = new CImage;
        image->addLayer(layer);
        images.setImage(index, image);
        pictures[index] = std::move(picture);
    }
    int32_t random(int32_t low, int32_t high) { return std::uniform_int_distribution<int32_t>(low, high)(generator); }

    /// Which of three pieces lies at a position along one axis, and which pixel of it.
    static std::pair<int32_t, int32_t> pieceAt(int32_t at, int32_t from, int32_t to, const int32_t (&lengths)[3]) {
        int32_t near = lengths[0];
        int32_t far = lengths[2];
        const int32_t room = to - from;
        if (near + far > room) {
            if (2 * std::min(near, far) > room) {
                near = room / 2;
                far = room - near;
            } else if (near > far) {
                near = room - far;
            } else {
                far = room - near;
            }
        }
        if (at < from + near) {
            return {0, at - from};
        }
        return at < to - far ? std::pair{1, (at - from - near) % lengths[1]} : std::pair{2, at - (to - lengths[2])};
    }
    /// The pixel that a frame draws, or null.
    const uint8_t* framePixel(int32_t x, int32_t y, const CIntRect& box, uint32_t first) const {
        const auto [column, px] = pieceAt(x, box.left, box.right, kWidths);
        const auto [row, py] = pieceAt(y, box.top, box.bottom, kHeights);
        return box.isEmpty() ? nullptr : pictures.at(first + static_cast<uint32_t>(row * 3 + column)).at(px, py);
    }
    const uint8_t* texturePixel(int32_t x, int32_t y, const CIntRect& box, uint32_t index) const {
        const bool isIn = x >= box.left && y >= box.top && x < box.right && y < box.bottom;
        return isIn ? pictures.at(index).at((x - box.left) % 5, (y - box.top) % 7) : nullptr;
    }
    template <class F>
    void expectPixels(const F& pixelAt, double opacity, const std::string& what) {
        for (int32_t y = 0; y < kSide; ++y) {
            for (int32_t x = 0; x < kSide; ++x) {
                const CPixel before = noise[static_cast<size_t>(y * kSide + x)];
                const uint8_t* pixel = pixelAt(x, y);
                const CPixel should = pixel ? drawnFormula(before, color.ramp[pixel[0]], pixel[1], opacity) : before;
                ASSERT_EQ(bitmap.row(y)[x], should) << x << ',' << y << ' ' << what;
            }
        }
    }
    void startAnew() {
        fillWithNoise(bitmap, 7);
        noise = pixelsOf(bitmap);
    }

    std::mt19937 generator{5};
    std::map<uint32_t, CPicture> pictures;
    CImageSet images;
    CColor color = noiseColor(1.0);
    CLinearBitmap bitmap;
    std::vector<CPixel> noise;
};

TEST_F(FramePieces, OfNineAreDrawnAroundABoxOfAnySize) {
    const CFramePieces frame(images, 0, 8);
    EXPECT_EQ(frame.frameCount(), 1u);
    for (int32_t width = 0; width <= 24; ++width) {
        for (int32_t height = 0; height <= 20; ++height) {
            const CIntRect box{7, 6, 7 + width, 6 + height};
            const double opacity = (width + height) % 3 == 0 ? 0.5 : 1.0;
            startAnew();
            frame.draw(bitmap, box, color, opacity, bitmap.bounds());
            expectPixels([&](int32_t x, int32_t y) { return framePixel(x, y, box, 0); }, opacity,
                         std::to_string(width) + " by " + std::to_string(height));
        }
    }
}

TEST_F(FramePieces, OfMoreNinesAreAnAnimation) {
    const CFramePieces frame(images, 0, 17);
    EXPECT_EQ(frame.frameCount(), 2u);
    const CIntRect box{5, 5, 30, 28};
    for (uint32_t i = 0; i < 5; ++i) {
        startAnew();
        frame.draw(bitmap, box, color, 1.0, bitmap.bounds(), i);
        expectPixels([&](int32_t x, int32_t y) { return framePixel(x, y, box, i % 2 * 9); }, 1.0, std::to_string(i));
    }
}

TEST_F(FramePieces, OfOnePictureAreATexture) {
    const CFramePieces texture(images, 20, 21);
    EXPECT_EQ(texture.frameCount(), 2u);
    for (const CIntRect& box : {CIntRect{3, 4, 33, 38}, CIntRect{10, 10, 12, 11}, CIntRect{-8, -3, 60, 70}}) {
        for (uint32_t i = 0; i < 3; ++i) {
            startAnew();
            texture.draw(bitmap, box, color, 1.0, bitmap.bounds(), i);
            expectPixels([&](int32_t x, int32_t y) { return texturePixel(x, y, box, 20 + i % 2); }, 1.0, "texture");
        }
    }
}

TEST_F(FramePieces, FitTogetherFromTheTilesOfAWindow) {
    const CFramePieces frame(images, 0, 8);
    const CFramePieces texture(images, 20, 20);
    for (int32_t round = 0; round < 50; ++round) {
        const CIntRect box{random(-20, 30), random(-20, 30), random(0, 60), random(0, 60)};
        startAnew();
        for (int32_t y = 0; y < kSide; y += 8) {
            for (int32_t x = 0; x < kSide; x += 5) {
                // As a separate bitmap with another top left corner.
                CLinearBitmap tile;
                ASSERT_EQ(tile.resize(5, 8), nullptr);
                for (int32_t row = 0; row < 8; ++row) {
                    std::copy_n(bitmap.row(y + row) + x, 5, tile.row(row));
                }
                (round % 2 == 0 ? frame : texture).draw(tile, box.moved(-x, -y), color, 1.0, tile.bounds());
                for (int32_t row = 0; row < 8; ++row) {
                    std::copy_n(tile.row(row), 5, bitmap.row(y + row) + x);
                }
            }
        }
        expectPixels([&](int32_t x,
                         int32_t y) { return round % 2 == 0 ? framePixel(x, y, box, 0) : texturePixel(x, y, box, 20); },
                     1.0, std::to_string(round));
    }
}

TEST_F(FramePieces, DrawNothingOutsideTheClipAndCountWhatTheyDraw) {
    const CIntRect box{5, 5, 30, 33};
    const CIntRect clip{8, 9, 21, 22};
    startAnew();
    CDrawnImages drawn = CFramePieces(images, 20, 20).draw(bitmap, box, color, 1.0, clip);
    EXPECT_EQ(drawn.pixels, 13 * 13) << "each pixel once";
    expectPixels(
        [&](int32_t x, int32_t y) {
            const bool isIn = x >= clip.left && y >= clip.top && x < clip.right && y < clip.bottom;
            return isIn ? texturePixel(x, y, box, 20) : nullptr;
        },
        1.0, "clip");
    drawn = CFramePieces(images, 20, 20).draw(bitmap, {0, 0, 10, 7}, color, 1.0, bitmap.bounds());
    EXPECT_EQ(drawn.count, 2);
    EXPECT_EQ(drawn.pixels, 70);
    drawn = CFramePieces(images, 0, 8).draw(bitmap, {100, 100, 200, 200}, color, 1.0, bitmap.bounds());
    EXPECT_EQ(drawn.count, 0) << "beside the bitmap";
    const CIntRect all{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX};
    EXPECT_GT(CFramePieces(images, 0, 8).draw(bitmap, {-2000000, 0, 2000000, 9}, color, 1.0, all).count, 0);
}

TEST_F(FramePieces, LeaveOutPicturesThatTheSetLacks) {
    startAnew();
    EXPECT_EQ(CFramePieces(images, 30, 38).draw(bitmap, {5, 5, 20, 20}, color, 1.0, bitmap.bounds()).count, 0);
    EXPECT_EQ(CFramePieces(images, 30, 30).draw(bitmap, {5, 5, 20, 20}, color, 1.0, bitmap.bounds()).count, 0);
    EXPECT_EQ(pixelsOf(bitmap), noise);
    EXPECT_GT(CFramePieces(images, 13, 21).draw(bitmap, {5, 5, 20, 20}, color, 1.0, bitmap.bounds()).count, 0);
}

TEST_F(FramePieces, AllocateNothing) {
    const uint64_t before = CHeap::counters().allocations;
    CFramePieces(images, 0, 8).draw(bitmap, {5, 5, 30, 30}, color, 0.5, bitmap.bounds());
    EXPECT_EQ(CHeap::counters().allocations, before);
}

}  // namespace
}  // namespace tarv
