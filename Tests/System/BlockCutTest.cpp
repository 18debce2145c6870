// The same bits come out however the host cuts the signal, as long as each change stands at a cut.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "Tests/System/EngineRun.h"

namespace tarv::engine {
namespace {

struct CCutCase {
    std::string name;
    CCut cut;
    bool inPlace;
};

std::vector<CCutCase> allCuts() {
    std::vector<CCutCase> cuts;
    for (const int32_t frames : {1, 7, 64, 511, 512, 513, 4096}) {
        cuts.push_back({std::to_string(frames), cutInto(frames), false});
        cuts.push_back({std::to_string(frames) + ", in place", cutInto(frames), true});
    }
    cuts.push_back({"random", cutAtRandom(1500, 7), false});
    cuts.push_back({"random and short, in place", cutAtRandom(40, 8), true});
    return cuts;
}

/// Renders with every cut and compares with blocks of 4096. The whole must not stand still while it is compared.
void expectSameBits(const CSetup& setup, const CSignal& input, const std::vector<CEvent>& events) {
    const CSignal whole = render(*start(setup), input, events, cutInto(4096));
    ASSERT_GT(peak(whole), 0.01);
    const CSignal steady = render(*start(setup), input, {}, cutInto(4096));
    ASSERT_NE(firstDifference(whole, steady), CDifference());
    for (const CCutCase& c : allCuts()) {
        EXPECT_EQ(firstDifference(render(*start(setup), input, events, c.cut, c.inPlace), whole), CDifference())
            << "blocks of " << c.name << ", oversampling " << setup.sets[0].value;
    }
}

/// A fade takes 662 frames at 44.1 kHz and 661.5 at the raised rates: changes just before, at and behind its end, and
/// in its middle, in different bands; mute, solo and bypass begun, interrupted and taken back.
std::vector<CEvent> manyFades() {
    return {{0, {kGains, 0, 6, 2.0}},      {100, {kGains, 0, 0, 2.0}},   {100, {kGains, 0, 1, 2.0}},
            {100, {kGains, 0, 2, 2.0}},    {100, {kGains, 0, 3, 2.0}},   {100, {kGains, 1, 3, 0.5}},
            {400, {kGains, 0, 3, 0.5}},    {500, {kGains, 0, 3, 3.0}},   {761, {kGains, 0, 0, 0.5}},
            {762, {kGains, 0, 1, 0.5}},    {763, {kGains, 0, 2, 0.5}},   {1300, {kOutGain, 0, 0, 0.7}},
            {1310, {kOutGain, 1, 0, 1.3}}, {1500, {kMute, 0, 0, 1.0}},   {1700, {kMute, 0, 0, 0.0}},
            {2500, {kBypass, 0, 0, 1.0}},  {2900, {kBypass, 0, 0, 0.0}}, {2950, {kFreqs, 0, 4, 2500.0}},
            {2950, {kBypass, 0, 0, 1.0}},  {3161, {kMute, 1, 0, 1.0}},   {3162, {kMute, 1, 0, 0.0}},
            {3900, {kBypass, 0, 0, 0.0}},  {4200, {kSolo, 0, 0, 1.0}},   {4800, {kSolo, 0, 0, 0.0}}};
}

class BlockCut : public testing::TestWithParam<int32_t> {};

TEST_P(BlockCut, ChangesNoBitWhileFadesBeginEndAndWait) {
    const CSetup setup{44100.0, 2, straight(2, GetParam())};
    expectSameBits(setup, noise(2, 5700, 0.5), manyFades());
}

TEST_P(BlockCut, ChangesNoBitOfMidAndSide) {
    CSetup setup{48000.0, 2, straight(2, GetParam())};
    for (const CSet& set : midSide()) {
        setup.sets.push_back(set);
    }
    expectSameBits(setup, noise(2, 5700, 0.5), manyFades());
}

TEST_P(BlockCut, ChangesNoBitAroundChangesOfTheLayout) {
    const CSetup setup{44100.0, 4, straight(3, GetParam())};
    const double other = (GetParam() + 1) % 4 + 1.0;
    expectSameBits(setup, noise(4, 4000, 0.5),
                   {{10, {kGains, 0, 2, 2.0}},
                    {300, {kOversampling, 0, 0, other}},
                    {701, {kBandCount, 0, 0, 5.0}},
                    {900, {kGains, 0, 2, 0.7}},
                    {1111, {kBandCount, 0, 0, 9.0}},
                    {1313, {kPairs, 0, 0, 2.0}},
                    {1313, {kPairs, 0, 2, 2.0}},
                    {1600, {kGrouping, 0, 0, 1.0}},
                    {1700, {kGains, 1, 2, 3.0}},
                    {1999, {kInRouting, 0, 1, 4}},
                    {2001, {kInRouting, 0, 3, 1}},
                    {2500, {kOutRouting, 0, 0, 3}},
                    {2700, {kPairs, 0, 0, 0.0}},
                    {3000, {kOversampling, 0, 0, 1.0}},
                    {3300, {kInRouting, 0, 0, 0.0}}});
}

std::string stagesName(const testing::TestParamInfo<int32_t>& info) {
    return "At" + std::to_string(1 << info.param) + "x";
}

INSTANTIATE_TEST_SUITE_P(EachOversampling, BlockCut, testing::Range(0, 4), stagesName);

TEST(BlockCut, ChangesNoBitAtRatesWhereAFadeIsNoWholeNumberOfFrames) {
    for (const double rate : {8000.0, 22050.0, 96000.0 + 1.0 / 3.0}) {
        CSetup setup{rate, 2, straight(2, 3)};
        const auto fade = static_cast<int64_t>(0.015 * rate);
        const std::vector<CEvent> events = {{50, {kGains, 0, 3, 2.0}},
                                            {50, {kGains, 0, 4, 2.0}},
                                            {50 + fade, {kGains, 0, 3, 1.0}},
                                            {51 + fade, {kGains, 0, 4, 1.0}}};
        expectSameBits(setup, noise(2, static_cast<size_t>(4 * fade), 0.5), events);
    }
}

TEST(BlockCut, ChangesNoBitIn32BitFormatEither) {
    const CSignal wide = noise(2, 3000, 0.5);
    std::vector<std::vector<float>> narrow;
    for (const auto& row : wide) {
        narrow.emplace_back(row.begin(), row.end());
    }
    const auto run = [&](const CCut& cut) {
        const auto instance = start({44100.0, 2, straight(2, 1)});
        auto buffers = narrow;
        for (int32_t at = 0; at < 3000;) {
            const int32_t count = std::min(cut(), 3000 - at);
            float* const channels[] = {buffers[0].data() + at, buffers[1].data() + at};
            instance->processBlock(channels, channels, count);
            at += count;
        }
        return buffers;
    };
    const auto whole = run(cutInto(4096));
    EXPECT_NE(whole, narrow);
    for (const int32_t frames : {1, 7, 513}) {
        EXPECT_EQ(run(cutInto(frames)), whole) << frames;
    }
}

}  // namespace
}  // namespace tarv::engine
