#include "UI/Drawing/CColorMixes.h"

#include <limits>

#include "Core/CHeap.h"
#include "Tests/UI/Drawing/BitmapHelp.h"

namespace tarv {
namespace {

class ColorMixes : public testing::Test {
protected:
    /// Entry by entry, channel by channel, the nearest whole number to the mean.
    static void expectMix(const CColor& mixed, const CColor& from, const CColor& to, int32_t step) {
        for (int32_t i = 0; i < kRampLength; ++i) {
            const CPixel should = eachChannel(from.ramp[i], to.ramp[i], [step](int64_t f, int64_t t) {
                return std::llround(static_cast<double>(f) + static_cast<double>(t - f) * step / 64.0);
            });
            ASSERT_EQ(mixed.ramp[i], should) << i << " at step " << step;
        }
        EXPECT_DOUBLE_EQ(mixed.opacity, from.opacity + (to.opacity - from.opacity) * step / 64.0);
    }

    CColorMixes mixes;
    CColor from = noiseColor(1.0, 1);
    CColor to = noiseColor(0.25, 2);
};

TEST_F(ColorMixes, AreLinearInEachChannelAndInOpacity) {
    for (int32_t step = 1; step < 64; ++step) {
        expectMix(mixes.mix(from, to, step / 64.0), from, to, step);
        expectMix(mixes.mix(to, from, step / 64.0), to, from, step);
    }
    EXPECT_EQ(mixes.count(), 2 * 63);
}

TEST_F(ColorMixes, AtTheEndsAreTheColoursThemselves) {
    for (const double ratio : {0.0, -1.0, 0.4 / 64, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(&mixes.mix(from, to, ratio), &from) << ratio;
    }
    for (const double ratio : {1.0, 7.0, 63.6 / 64}) {
        EXPECT_EQ(&mixes.mix(from, to, ratio), &to) << ratio;
    }
    EXPECT_EQ(&mixes.mix(from, from, 0.5), &from);
    EXPECT_EQ(mixes.count(), 0);
}

TEST_F(ColorMixes, AreKeptByPairAndStep) {
    const CColor* half = &mixes.mix(from, to, 0.5);
    EXPECT_EQ(&mixes.mix(from, to, 32.4 / 64), half);
    EXPECT_NE(&mixes.mix(from, to, 32.6 / 64), half);
    EXPECT_NE(&mixes.mix(to, from, 0.5), half);
    const uint64_t before = CHeap::counters().allocations;
    EXPECT_EQ(&mixes.mix(from, to, 0.5), half);
    EXPECT_EQ(CHeap::counters().allocations, before);
    mixes.clear();
    EXPECT_EQ(mixes.count(), 0);
    expectMix(mixes.mix(from, to, 0.5), from, to, 32);
}

TEST_F(ColorMixes, BeyondTheMostReplaceTheOldest) {
    std::vector<CColor> many;
    for (uint32_t i = 0; i < 20; ++i) {
        many.push_back(noiseColor(0.5, 100 + i));
    }
    const CColor* first = &mixes.mix(from, many[0], 1 / 64.0);
    const auto make = [&](int32_t i) -> const CColor& {
        return mixes.mix(from, many[static_cast<size_t>(i / 63)], (i % 63 + 1) / 64.0);
    };
    for (int32_t i = 1; i < CColorMixes::kMaxMixes; ++i) {
        make(i);
    }
    EXPECT_EQ(mixes.count(), CColorMixes::kMaxMixes);
    expectMix(*first, from, many[0], 1);
    const uint64_t before = CHeap::counters().allocations;
    EXPECT_EQ(&make(CColorMixes::kMaxMixes), first) << "the room of the one that was made first";
    EXPECT_EQ(CHeap::counters().allocations, before);
    EXPECT_EQ(mixes.count(), CColorMixes::kMaxMixes);
    for (int32_t i = CColorMixes::kMaxMixes; i < 2 * CColorMixes::kMaxMixes; ++i) {
        expectMix(make(i), from, many[static_cast<size_t>(i / 63)], i % 63 + 1);
    }
}

}  // namespace
}  // namespace tarv
