// What a wave may stand for and what not, in operations that are written out one by one.

#include "Audio/Kernels/Wave/CWaveJoiner.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

#include "Audio/Kernels/CTubeBlock.h"
#include "Audio/Kernels/CrossfadeKernels.h"
#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/TubeKernels.h"
#include "Audio/Kernels/Wave/CWaveThreads.h"
#include "Tests/Audio/Kernels/StepRun.h"
#include "Tests/Audio/Kernels/TestedSets.h"

namespace tarv {
namespace {

constexpr int32_t kCount = 70;

/// State blocks of each kernel, more than any test needs.
constexpr int32_t kEach = 20;
constexpr int32_t filterBlock(int32_t n) {
    return blockOperand(n);
}
constexpr int32_t highPassBlock(int32_t n) {
    return blockOperand(kEach + n);
}
constexpr int32_t tubeBlock(int32_t n) {
    return blockOperand(2 * kEach + n);
}
constexpr int32_t rampBlock(int32_t n) {
    return blockOperand(3 * kEach + n);
}

CBlocks makeBlocks() {
    CBlocks blocks;
    for (int32_t n = 0; n < kEach; ++n) {
        // The last one has the constants of the first.
        blocks.push_back({0.3 + 0.01 * (n % (kEach - 1)), -0.4, 1.2, -0.6, 0.01, -0.02});
    }
    for (int32_t n = 0; n < kEach; ++n) {
        blocks.push_back({0.01 + 0.001 * n, 0.01, 0.0, 0.0, 0.0});
    }
    for (int32_t n = 0; n < kEach; ++n) {
        std::vector<double> block(sizeof(CTubeBlock) / sizeof(double));
        auto& tube = *reinterpret_cast<CTubeBlock*>(block.data());
        tube.ratioA = 0.5;
        tube.ratioB = 0.2 + 0.01 * n;
        tube.kneeA = tube.kneeB = 2.0;
        tube.gainI = tube.autoGainPoint = 1.0;
        tube.gainV = 0.2;
        tube.feedFrequency = 50.0;
        COperation init = {{block.data()}, 48000.0, 1};
        kernelMetaTubeInit(init);
        blocks.push_back(block);
    }
    for (int32_t n = 0; n < kEach; ++n) {
        std::vector<double> ramp(3);
        COperation init = {{ramp.data()}, 0.0, 400 + n};
        kernelXfadeInit(init);
        blocks.push_back(ramp);
    }
    return blocks;
}

void addFilter(CSteps& steps, int32_t in, int32_t to, int32_t block) {
    steps.push_back({KernelName::kBiquadCommonGain, {to, filterBlock(block), in}, 0.9, kCount});
}
void addHighPass(CSteps& steps, int32_t in, int32_t to, int32_t block) {
    steps.push_back({KernelName::kHighPass1Gain, {to, highPassBlock(block), in}, 0.95, kCount});
}
void addTube(CSteps& steps, int32_t in, int32_t feed, int32_t to, int32_t block) {
    steps.push_back({KernelName::kMetaTube, {to, tubeBlock(block), in, feed}, 0.0, kCount});
}
void addGain(CSteps& steps, int32_t in, int32_t to) {
    steps.push_back({KernelName::kMulc, {to, in}, 0.8, kCount});
}
/// A band from signal `in` to signal `to`.
void addBand(CSteps& steps, int32_t in, int32_t to, int32_t block) {
    addFilter(steps, in, to - 2, block);
    addHighPass(steps, to - 2, to - 1, block);
    addTube(steps, to - 1, in, to, block);
}
/// The same, while its filter is faded.
void addFadedBand(CSteps& steps, int32_t in, int32_t to, int32_t block, int32_t oldBlock, int32_t ramp) {
    addFilter(steps, in, to - 4, block);
    addFilter(steps, in, to - 3, oldBlock);
    steps.push_back({KernelName::kXfade, {to - 2, rampBlock(ramp), to - 4, to - 3}, 0.0, kCount});
    addHighPass(steps, to - 2, to - 1, block);
    addTube(steps, to - 1, in, to, block);
}
/// The filters behind the bands and the gain.
void addEnd(CSteps& steps, int32_t in, int32_t to, int32_t block) {
    addFilter(steps, in, to - 2, block);
    addHighPass(steps, to - 2, to - 1, block);
    addGain(steps, to - 1, to);
}

/// The same in every set.
int32_t wavesOf(const CSteps& steps, const CBlocks& blocks = makeBlocks()) {
    int32_t joined = -1;
    for (const CInstructionSet set : testedSets()) {
        const int32_t now = joinedOf(steps, blocks, CJoinedKernels::Bands, [=](const CQPLEXContext& context) {
            return std::make_unique<CWaveJoiner>(context, set);
        });
        EXPECT_TRUE(joined == -1 || joined == now) << nameOf(set);
        joined = now;
    }
    return joined;
}

TEST(WaveJoiner, TakesBandsWithTheFiltersAroundThem) {
    CSteps steps;
    addFilter(steps, 0, 9, 9);
    addBand(steps, 9, 12, 0);
    addBand(steps, 12, 15, 1);
    addEnd(steps, 15, 18, 2);
    EXPECT_EQ(wavesOf(steps), 1);
}

TEST(WaveJoiner, BeginsAnotherWaveBehindTheMostBands) {
    CSteps steps;
    addBand(steps, 0, 12, 0);
    for (int32_t b = 1; b < kMostWaveBands + 2; ++b) {
        addBand(steps, 9 + 3 * b, 12 + 3 * b, b);
    }
    EXPECT_EQ(wavesOf(steps), 2);
}

TEST(WaveJoiner, BeginsAnotherWaveBehindTheMostChannels) {
    CSteps steps;
    constexpr int32_t kChannels = CWaveThreads::kMostChannels + 1;
    for (int32_t c = 0; c < kChannels; ++c) {
        addGain(steps, 0, 10 + c);
    }
    for (int32_t c = 0; c < kChannels; ++c) {
        addBand(steps, 10 + c, 100 + 10 * c, c);
    }
    EXPECT_EQ(wavesOf(steps), 2);
}

TEST(WaveJoiner, BeginsAnotherWaveWithAFilterBetweenBands) {
    CSteps steps;
    addBand(steps, 0, 12, 0);
    addFilter(steps, 12, 20, 5);
    addBand(steps, 20, 23, 1);
    EXPECT_EQ(wavesOf(steps), 2);
}

TEST(WaveJoiner, TakesOneFilterInFrontOfTheBands) {
    CSteps steps;
    addFilter(steps, 0, 8, 5);
    addFilter(steps, 8, 9, 6);
    addFilter(steps, 9, 10, 7);
    addBand(steps, 10, 13, 0);
    EXPECT_EQ(wavesOf(steps), 1);
}

TEST(WaveJoiner, BeginsAnotherWaveBehindAGainWhereverThatWrites) {
    CSteps steps;
    addBand(steps, 0, 12, 0);
    // By then the signal behind the band was given back, and the gain's may stand in its place.
    addEnd(steps, 12, 16, 1);
    addBand(steps, 16, 19, 2);
    EXPECT_EQ(wavesOf(steps), 2);
}

TEST(WaveJoiner, LeavesABandAloneWhoseFilterFeedsAnotherOne) {
    CSteps steps;
    addBand(steps, 0, 12, 0);
    addFilter(steps, 12, 14, 1);
    // The high-pass is the last reader of the filter, but not the only one.
    addBand(steps, 14, 32, 2);
    addHighPass(steps, 14, 15, 1);
    addTube(steps, 15, 12, 16, 1);
    EXPECT_EQ(wavesOf(steps), 2);
}

TEST(WaveJoiner, GivesChannelsOfDifferentShapesWavesOfTheirOwn) {
    for (int32_t shape = 0; shape < 3; ++shape) {
        CSteps steps;
        const bool hasBefore = shape == 0;
        if (hasBefore) {
            addFilter(steps, 0, 9, 11);
        }
        addBand(steps, hasBefore ? 9 : 0, 12, 0);
        if (shape == 1) {
            addBand(steps, 12, 15, 1);
        } else if (shape == 2) {
            addEnd(steps, 12, 15, 1);
        }
        addBand(steps, 1, 52, 10);
        EXPECT_EQ(wavesOf(steps), 1) << shape;
    }
}

TEST(WaveJoiner, TakesNoOperationOfAnotherCount) {
    for (size_t first = 1; first < 4; ++first) {
        CSteps steps;
        addBand(steps, 0, 12, 0);
        addBand(steps, 12, 15, 1);
        for (size_t i = first; i < steps.size(); ++i) {
            steps[i].count -= 3;
        }
        wavesOf(steps);
    }
}

TEST(WaveJoiner, GivesEachLaneABlockOfItsOwn) {
    // Two bands of a channel of which two operations have one block.
    for (size_t shared = 0; shared < 3; ++shared) {
        CSteps steps;
        addBand(steps, 0, 12, 0);
        addBand(steps, 12, 15, 1);
        steps[3 + shared].operands[1] = steps[shared].operands[1];
        wavesOf(steps);
    }
    CSteps steps;
    addFadedBand(steps, 0, 12, 0, 1, 0);
    addFadedBand(steps, 12, 22, 2, 3, 1);
    EXPECT_EQ(wavesOf(steps), 1);
    for (size_t shared = 0; shared < 3; ++shared) {
        CSteps other = steps;
        other[5 + shared].operands[1] = steps[shared].operands[1];
        wavesOf(other);
    }
}

TEST(WaveJoiner, TakesTheSameCurveAsTheKernelsAtTheKnees) {
    // A band that hands its input on to the curves as it is: numbers at the knees, and their neighbours.
    CBlocks blocks = makeBlocks();
    blocks[static_cast<size_t>(~filterBlock(0))].assign(6, 0.0);
    blocks[static_cast<size_t>(~highPassBlock(0))].assign(5, 0.0);
    std::vector<double>& block = blocks[static_cast<size_t>(~tubeBlock(0))];
    auto& tube = *reinterpret_cast<CTubeBlock*>(block.data());
    tube.kneeA = 2.4;
    tube.kneeB = 2.68;
    COperation init = {{block.data()}, 48000.0, 1};
    kernelMetaTubeInit(init);
    ASSERT_NE(tube.curveA.kneeEnd, tube.curveB.kneeEnd);
    std::vector<double> signal;
    for (const CTubeCurve& curve : {tube.curveA, tube.curveB}) {
        // The arc begins and ends beside the lines by a rounding: which one it is can be seen.
        const auto arc = [&](double x) {
            const double d = x - curve.kneeStart;
            return std::sqrt(curve.radiusSquared - d * d) + x + curve.centreOffset;
        };
        ASSERT_NE(arc(curve.kneeStart), curve.kneeStart);
        ASSERT_NE(arc(curve.kneeEnd), curve.slope * curve.kneeEnd);
        for (const double knee : {curve.kneeStart, curve.kneeEnd}) {
            signal.insert(signal.end(), {knee, std::nextafter(knee, -9.0), knee, std::nextafter(knee, 9.0)});
        }
    }
    const size_t count = signal.size();
    while (signal.size() < static_cast<size_t>(kCount)) {
        signal.push_back(signal[signal.size() - count]);
    }
    const auto input = blockOperand(static_cast<int32_t>(blocks.size()));
    blocks.push_back(signal);
    CSteps steps;
    addBand(steps, input, 12, 0);
    steps[0].immediate = steps[1].immediate = 1.0;
    EXPECT_EQ(wavesOf(steps, blocks), 1);
}

TEST(WaveJoiner, MovesWhatWritesBlocksAheadOfBandsThatDoNotUseThem) {
    CSteps steps;
    addBand(steps, 0, 12, 0);
    // In this order: the second one counts.
    steps.push_back({KernelName::kBiquadInit, {filterBlock(1), filterBlock(3)}, 0.0, 1});
    steps.push_back({KernelName::kBiquadInit, {filterBlock(1), filterBlock(4)}, 0.0, 1});
    addBand(steps, 12, 15, 1);
    EXPECT_EQ(wavesOf(steps), 1);
    // The block of a band that has run by then.
    steps[4].operands = {filterBlock(0), filterBlock(kEach - 1)};
    EXPECT_EQ(wavesOf(steps), 2);
}

}  // namespace
}  // namespace tarv
