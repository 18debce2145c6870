#include "UI/Drawing/CBrushStroke.h"

#include <limits>
#include <numbers>
#include <random>

#include "Core/CHeap.h"
#include "Tests/UI/Drawing/BitmapHelp.h"

namespace tarv {
namespace {

constexpr int32_t kSide = 96;

struct CPoint {
    double x;
    double y;
};

/// Stamps of a dot, each pixel the part of 8 by 8 places in it that the dot holds.
CBytes stampsOf(double dot, int32_t& side) {
    constexpr int32_t kPlaces = 8;
    const auto middle = static_cast<int32_t>(std::ceil(dot / 2));
    side = 2 * middle + 1;
    CBytes table;
    for (int32_t i = 0; i < 256 * side * side; ++i) {
        const int32_t stamp = i / (side * side);
        const double centreX = middle + stamp % 16 / 16.0;
        const double centreY = middle + stamp / 16 / 16.0;
        int32_t inside = 0;
        for (int32_t place = 0; place < kPlaces * kPlaces; ++place) {
            const double x = i % side + (place % kPlaces + 0.5) / kPlaces - centreX;
            const double y = i / side % side + (place / kPlaces + 0.5) / kPlaces - centreY;
            inside += x * x + y * y <= dot * dot / 4 ? 1 : 0;
        }
        table.push_back(static_cast<uint8_t>(inside * 255 / (kPlaces * kPlaces)));
    }
    return table;
}

class BrushStroke : public testing::Test {
protected:
    BrushStroke() {
        table = stampsOf(1.98, side);
        EXPECT_GOOD(brush.addVersion(1.0, side, 1.98, table.data()));
        EXPECT_GOOD(bitmap.resize(kSide, kSide));
        startAnew();
    }
    void startAnew() {
        fillWithNoise(bitmap, 3);
        expected = pixelsOf(bitmap);
    }
    /// A dot by the rule: the stamp of the sixteenths, its middle on the whole pixel.
    void expectDot(CPoint at, double opacity) {
        const auto stepX = static_cast<int32_t>(std::floor(at.x * 16 + 0.5));
        const auto stepY = static_cast<int32_t>(std::floor(at.y * 16 + 0.5));
        const uint8_t* stamp = &table[static_cast<size_t>(((stepY & 15) * 16 + (stepX & 15)) * side * side)];
        for (int32_t i = 0; i < side * side; ++i) {
            const int32_t x = (stepX >> 4) - side / 2 + i % side;
            const int32_t y = (stepY >> 4) - side / 2 + i / side;
            if (x >= 0 && y >= 0 && x < kSide && y < kSide) {
                CPixel& pixel = expected[static_cast<size_t>(y * kSide + x)];
                pixel = drawnFormula(pixel, color.full(), stamp[i], opacity);
            }
        }
    }
    /// Dots every half pixel of the way along all points.
    void expectLine(const std::vector<CPoint>& points, double opacity) {
        double passed = 0.0;
        int64_t next = 0;
        for (size_t i = 1; i < points.size(); ++i) {
            const CPoint from = points[i - 1];
            const CPoint to = points[i];
            const double length = std::sqrt((to.x - from.x) * (to.x - from.x) + (to.y - from.y) * (to.y - from.y));
            for (; static_cast<double>(next) * 0.5 <= passed + length; ++next) {
                const double part = length > 0 ? (static_cast<double>(next) * 0.5 - passed) / length : 0.0;
                expectDot({from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part}, opacity);
            }
            passed += length;
        }
    }
    void draw(const std::vector<CPoint>& points, double opacity) {
        CBrushStroke stroke(bitmap, 0, 0, bitmap.bounds(), brush, color, opacity);
        stroke.moveTo(points[0].x, points[0].y);
        for (size_t i = 1; i < points.size(); ++i) {
            stroke.lineTo(points[i].x, points[i].y);
        }
    }

    int32_t side = 0;
    CBytes table;
    CBrush brush{2.96};
    CColor color = noiseColor(1.0);
    CLinearBitmap bitmap;
    std::vector<CPixel> expected;
};

TEST_F(BrushStroke, StampsADotEveryHalfPixel) {
    const std::vector<CPoint> kLines[] = {{{10, 20}, {13, 20}},
                                          {{10.25, 20.5}, {10.25, 40}},
                                          {{5, 5}, {50, 38.3}, {12.7, 60.1}, {90, 61}},
                                          {{-20, 50}, {150, 47}},
                                          {{30, 130}, {60, -20}}};
    for (const auto& line : kLines) {
        for (const double opacity : {1.0, 0.6, 0.997}) {
            startAnew();
            draw(line, opacity);
            expectLine(line, opacity);
            EXPECT_EQ(pixelsOf(bitmap), expected) << line[0].x << ' ' << opacity;
        }
    }
}

TEST_F(BrushStroke, GoesOnAcrossPointsWithoutASecondDot) {
    std::vector<CPoint> many;
    for (int32_t i = 0; i <= 40; ++i) {
        many.push_back({10 + i * 0.25, 30.0});
    }
    draw(many, 0.5);
    expectLine({{10, 30}, {20, 30}}, 0.5);
    EXPECT_EQ(pixelsOf(bitmap), expected);
}

TEST_F(BrushStroke, FromAPointToItselfIsOneDot) {
    draw({{10.3, 20.7}, {10.3, 20.7}}, 1.0);
    expectDot({10.3, 20.7}, 1.0);
    EXPECT_EQ(pixelsOf(bitmap), expected);
    startAnew();
    draw({{10.3, 20.7}}, 1.0);
    EXPECT_EQ(pixelsOf(bitmap), expected) << "a beginning draws nothing";
    CBrushStroke stroke(bitmap, 0, 0, bitmap.bounds(), brush, color, 1.0);
    stroke.lineTo(40, 40);
    EXPECT_EQ(pixelsOf(bitmap), expected) << "nor does a line without one";
}

TEST_F(BrushStroke, FitsTogetherFromTheTilesOfAWindow) {
    std::mt19937 generator(11);
    std::uniform_real_distribution<double> place(-40.0, kSide + 40.0);
    for (int32_t round = 0; round < 40; ++round) {
        std::vector<CPoint> points;
        for (int32_t i = 0; i < 6; ++i) {
            points.push_back({place(generator), place(generator)});
        }
        startAnew();
        for (int32_t y = 0; y < kSide; y += 32) {
            for (int32_t x = 0; x < kSide; x += 16) {
                CLinearBitmap tile;
                ASSERT_EQ(tile.resize(16, 32), nullptr);
                for (int32_t row = 0; row < 32; ++row) {
                    std::copy_n(bitmap.row(y + row) + x, 16, tile.row(row));
                }
                CBrushStroke stroke(tile, x, y, tile.bounds(), brush, color, 0.8);
                stroke.moveTo(points[0].x, points[0].y);
                for (size_t i = 1; i < points.size(); ++i) {
                    stroke.lineTo(points[i].x, points[i].y);
                }
                for (int32_t row = 0; row < 32; ++row) {
                    std::copy_n(tile.row(row), 16, bitmap.row(y + row) + x);
                }
            }
        }
        expectLine(points, 0.8);
        ASSERT_EQ(pixelsOf(bitmap), expected) << round;
    }
}

TEST_F(BrushStroke, StaysWithinItsClip) {
    const CIntRect clip{20, 20, 40, 35};
    CBrushStroke stroke(bitmap, 0, 0, clip, brush, color, 1.0);
    stroke.moveTo(10, 10);
    stroke.lineTo(60, 50);
    std::vector<CPixel> before = expected;
    expectLine({{10, 10}, {60, 50}}, 1.0);
    for (int32_t i = 0; i < kSide * kSide; ++i) {
        const int32_t x = i % kSide;
        const int32_t y = i / kSide;
        const bool isIn = x >= clip.left && x < clip.right && y >= clip.top && y < clip.bottom;
        ASSERT_EQ(bitmap.row(y)[x], (isIn ? expected : before)[static_cast<size_t>(i)]) << x << ',' << y;
    }
}

TEST_F(BrushStroke, PointsThatCanNotBeEndTheLine) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    for (const CPoint& bad : {CPoint{nan, 5}, CPoint{5, nan}, CPoint{infinite, 5}, CPoint{5, -1e300}}) {
        startAnew();
        draw({{10, 10}, {20, 10}, bad, {30, 30}, {40, 30}}, 1.0);
        expectLine({{10, 10}, {20, 10}}, 1.0);
        expectLine({{30, 30}, {40, 30}}, 1.0);
        EXPECT_EQ(pixelsOf(bitmap), expected);
    }
    startAnew();
    draw({{-1e6, 10}, {1e6, 10}}, 0.0);
    draw({{-1e6, 1000}, {1e6, 999}}, 1.0);
    EXPECT_EQ(pixelsOf(bitmap), expected) << "beside the bitmap, or of no opacity";
}

// The dot of a width of 1.48 is 1.24 across. Where it stands on the pixels changes what a line covers, by its
// direction.
TEST_F(BrushStroke, CoversAboutItsWidthInEachDirection) {
    int32_t dotSide = 0;
    const CBytes stamps = stampsOf(1.24, dotSide);
    CBrush line(1.48);
    EXPECT_GOOD(line.addVersion(1.0, dotSide, 1.24, stamps.data()));
    CColor white;
    white.ramp[255] = 0x00ffffff;
    double sum = 0.0;
    constexpr int32_t kDirections = 90;
    constexpr double kLength = 60.0;
    for (int32_t i = 0; i < kDirections; ++i) {
        bitmap.clear();
        const double angle = i * std::numbers::pi / 2 / kDirections;
        CBrushStroke stroke(bitmap, 0, 0, bitmap.bounds(), line, white, 1.0);
        stroke.moveTo(10 + i * 0.011, 10 + i * 0.007);
        stroke.lineTo(10 + i * 0.011 + kLength * std::cos(angle), 10 + i * 0.007 + kLength * std::sin(angle));
        double cover = 0.0;
        for (const CPixel pixel : pixelsOf(bitmap)) {
            cover += static_cast<double>(pixel & 255) / 255.0;
        }
        EXPECT_GT(cover / kLength, 1.2) << i;
        EXPECT_LT(cover / kLength, 1.7) << i;
        sum += cover / kLength;
    }
    EXPECT_NEAR(sum / kDirections, 1.48, 0.1);
}

TEST_F(BrushStroke, AllocatesNothing) {
    const uint64_t before = CHeap::counters().allocations;
    CBrushStroke stroke(bitmap, 0, 0, bitmap.bounds(), brush, color, 1.0);
    stroke.moveTo(0, 0);
    stroke.lineTo(90, 90);
    EXPECT_EQ(CHeap::counters().allocations, before);
}

}  // namespace
}  // namespace tarv
