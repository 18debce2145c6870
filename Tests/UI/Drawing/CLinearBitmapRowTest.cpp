// Pictures side by side are drawn as one by one.

#include <random>

#include "Tests/UI/Drawing/BitmapHelp.h"

namespace tarv {
namespace {

class PicturesInARow : public testing::Test {
protected:
    static constexpr int32_t kSide = 60;

    int32_t random(int32_t low, int32_t high) { return std::uniform_int_distribution<int32_t>(low, high)(generator); }

    /// Rows of one step, of many steps, with other alphas, empty, and equal to the one above.
    void makeLayer(int32_t width, int32_t height, int32_t bytes, bool isShifted) {
        CBytes pixels;
        for (int32_t y = 0; y < height; ++y) {
            const int32_t kind = random(0, 4);
            if (kind == 4 && y > 0) {
                const CBytes above(pixels.end() - width * bytes, pixels.end());
                pixels.insert(pixels.end(), above.begin(), above.end());
                continue;
            }
            const auto step = static_cast<uint8_t>(random(0, 255));
            for (int32_t x = 0; x < width; ++x) {
                for (int32_t i = 0; i + 1 < bytes; ++i) {
                    pixels.push_back(kind == 0 ? step : static_cast<uint8_t>(random(0, 255)));
                }
                // The first and the last pixel are seen, so that nothing is cut off.
                const bool isEdge = x == 0 || x == width - 1;
                pixels.push_back(kind < 2 ? 255 : static_cast<uint8_t>(isEdge ? 80 : random(0, 255)));
            }
        }
        auto* version = new CImageVersion;
        EXPECT_GOOD(version->encode(pixels.data(), width, height, bytes, isShifted ? -1 : 0, 0));
        version->setSize(width, height);
        layer = std::make_unique<CImageLayer>(bytes);
        EXPECT_GOOD(layer->addVersion(1.0, version));
    }

    std::mt19937 generator{71};
    std::unique_ptr<CImageLayer> layer;
};

TEST_F(PicturesInARow, AreThoseDrawnOneByOne) {
    CColor color;
    for (int32_t i = 0; i < kRampLength; ++i) {
        color.ramp[i] = static_cast<CPixel>(i * 65793 ^ 0x0f30);
    }
    for (int32_t round = 0; round < 600; ++round) {
        const int32_t kBytes[] = {1, 2, 4};
        const int32_t width = random(1, 20);
        makeLayer(width, random(1, 12), kBytes[round % 3], random(0, 9) == 0);
        const int32_t step = random(0, 9) == 0 ? width + random(0, 3) : width;
        const int32_t x = random(-40, 50);
        const int32_t y = random(-5, 50);
        const int32_t count = random(0, 12);
        const double opacity = random(0, 3) == 0 ? 0.6 : 1.0;
        const CIntRect clip{random(-5, 40), random(-5, 40), random(20, 70), random(20, 70)};
        CLinearBitmap atOnce;
        CLinearBitmap single;
        EXPECT_GOOD(atOnce.resize(kSide, kSide));
        EXPECT_GOOD(single.resize(kSide, kSide));
        fillWithNoise(atOnce, 5);
        fillWithNoise(single, 5);
        const int64_t pixels = atOnce.drawImageRow(*layer, color, x, y, step, count, opacity, clip);
        int64_t expected = 0;
        for (int32_t i = 0; i < count; ++i) {
            expected += single.drawImage(*layer, color, x + i * step, y, opacity, clip);
        }
        ASSERT_EQ(pixels, expected) << round;
        for (int32_t row = 0; row < kSide; ++row) {
            ASSERT_TRUE(std::equal(atOnce.row(row), atOnce.row(row) + kSide, single.row(row)))
                << "round " << round << " row " << row;
        }
    }
}

}  // namespace
}  // namespace tarv
