#include "UI/Drawing/Blend.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "Tests/UI/Drawing/BitmapHelp.h"

namespace tarv {
namespace {

// The greatest sums that the formulas can meet: they fit into 31 bits, in any order of their products.
static_assert(int64_t{255} << 23 <= INT32_MAX);
static_assert(int64_t{255} * 255 * (kOpaqueAlpha - 1) <= INT32_MAX);
static_assert(int64_t{255} * (kOpaqueAlpha - 1) < 1 << 23);

constexpr int32_t kLevels[] = {0, 1, 2, 3, 63, 64, 126, 127, 128, 129, 191, 200, 252, 253, 254, 255};

/// Three channels at once, each at another level, so that none may leak into its neighbour.
CPixel pixelOf(int32_t level) {
    return static_cast<CPixel>(level) << 16 | static_cast<CPixel>(255 - level) << 8 |
           static_cast<CPixel>((level * 7 + 3) & 255);
}

TEST(Blend, ByOwnAlphaIsTheFormulaForAllLevelsAndAlphas) {
    for (int32_t d = 0; d < 256; ++d) {
        for (int32_t s = 0; s < 256; ++s) {
            for (uint32_t a = 0; a < 256; ++a) {
                const CPixel expected =
                    eachChannel(pixelOf(d), pixelOf(s), [a](int64_t x, int64_t y) { return ownFormula(x, y, a); });
                ASSERT_EQ(blendOwn(pixelOf(d), pixelOf(s), a), expected) << d << ' ' << s << ' ' << a;
            }
        }
    }
}

TEST(Blend, ByEffectiveAlphaIsTheFormulaForAllEffectiveAlphas) {
    for (uint32_t effective = 0; effective <= kFullAlpha; ++effective) {
        for (const int32_t d : kLevels) {
            for (const int32_t s : kLevels) {
                const CPixel expected = eachChannel(pixelOf(d), pixelOf(s), [effective](int64_t x, int64_t y) {
                    return effectiveFormula(x, y, effective);
                });
                ASSERT_EQ(blendEffective(pixelOf(d), pixelOf(s), effective), expected) << d << ' ' << s;
            }
        }
    }
}

void expectBoth(int32_t d, int32_t s, uint32_t a, uint32_t effective) {
    const CPixel expected = eachChannel(
        pixelOf(d), pixelOf(s), [a, effective](int64_t x, int64_t y) { return bothFormula(x, y, a, effective); });
    ASSERT_EQ(blendBoth(pixelOf(d), pixelOf(s), a, effective), expected) << d << ' ' << s << ' ' << a;
}

TEST(Blend, ByBothAlphasIsTheFormulaForAllPairsOfAlphas) {
    for (uint32_t effective = 0; effective < kOpaqueAlpha; ++effective) {
        for (uint32_t a = effective % 3; a < 256; a += 3) {
            expectBoth(static_cast<int32_t>(effective * 5 % 256), static_cast<int32_t>(a * 11 % 256), a, effective);
        }
    }
    for (const uint32_t effective : {0u, 1u, 127u, 8192u, 16384u, 24575u, 32638u, kOpaqueAlpha - 1}) {
        for (uint32_t a = 0; a < 256; ++a) {
            for (const int32_t d : kLevels) {
                for (const int32_t s : kLevels) {
                    expectBoth(d, s, a, effective);
                }
            }
        }
    }
}

TEST(Blend, FourPixelsAtOnceGiveTheBitsOfEach) {
    std::mt19937 random(1);
    const auto pixel = [&] { return static_cast<CPixel>(random()) & kChannels; };
    for (uint32_t effective = 1; effective < kOpaqueAlpha; ++effective) {
        CPixel target[11];
        CPixel source[11];
        std::generate(std::begin(target), std::end(target), pixel);
        std::generate(std::begin(source), std::end(source), pixel);
        // The ends of both ranges.
        target[0] = source[1] = 0;
        target[1] = source[0] = kChannels;
        CPixel expected[11];
        for (int32_t i = 0; i < 11; ++i) {
            expected[i] = i < 8 ? blendEffective(target[i], source[i], effective) : target[i];
        }
        const int32_t done = blendFours(
            target, 11, [&](int32_t i) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + i)); },
            effective);
        ASSERT_EQ(done, 8);
        ASSERT_TRUE(std::equal(std::begin(target), std::end(target), std::begin(expected))) << effective;
    }
}

TEST(Blend, LeavesTheUnusedByteZero) {
    EXPECT_EQ(blendOwn(0xff000000, 0xff000000, 100), 0u);
    EXPECT_EQ(blendBoth(0xff000000, 0xff000000, 100, 1000), 0u);
    EXPECT_EQ(blendEffective(0xff000000, 0xff000000, 1000), 0u);
}

TEST(Blend, EffectiveAlphaIsRoundedAndHeldInItsRange) {
    for (const auto& [opacity, alpha] : std::vector<std::pair<double, uint32_t>>{{0.0, 0},
                                                                                 {1.0, 32768},
                                                                                 {0.5, 16384},
                                                                                 {0.25, 8192},
                                                                                 {0.997, 32670},
                                                                                 {0.996, 32637},
                                                                                 {2.0, 32768},
                                                                                 {-1.0, 0},
                                                                                 {NAN, 0},
                                                                                 {INFINITY, 32768},
                                                                                 {0.5 / 32768, 1},
                                                                                 {0.49 / 32768, 0},
                                                                                 {1.5 / 32768, 2},
                                                                                 {32639.5 / 32768, 32640}}) {
        EXPECT_EQ(effectiveAlpha(opacity), alpha) << opacity;
    }
}

}  // namespace
}  // namespace tarv
