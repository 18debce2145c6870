// Input that a host must not hand over: samples that aren't finite, missing buffers, levels beyond the format.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Tests/System/EngineRun.h"

namespace tarv::engine {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

TEST(AbsurdInput, WhatIsNotFiniteCountsAsZero) {
    for (int32_t stages = 0; stages <= 3; ++stages) {
        const CSetup setup{44100.0, 2, straight(2, stages)};
        CSignal clean = noise(2, 2000, 0.5);
        CSignal spoiled = clean;
        const double kBad[] = {kInfinity, -kInfinity, kNotANumber, -kNotANumber};
        for (size_t i = 100; i < 2000; i += 37) {
            clean[i % 2][i] = 0.0;
            spoiled[i % 2][i] = kBad[i % 4];
        }
        const CSignal expected = render(*start(setup), clean);
        EXPECT_GT(peak(expected), 0.1);
        EXPECT_EQ(firstDifference(render(*start(setup), spoiled), expected), CDifference()) << stages;
    }
}

TEST(AbsurdInput, NarrowSamplesThatAreNotFiniteCountAsZeroToo) {
    std::vector<float> clean(300, 0.25f);
    std::vector<float> spoiled = clean;
    for (const size_t i : {5, 100, 299}) {
        clean[i] = 0.0f;
        spoiled[i] = i == 5 ? std::numeric_limits<float>::infinity() : std::numeric_limits<float>::quiet_NaN();
    }
    const auto run = [](std::vector<float> row) {
        const auto instance = start({44100.0, 2, straight(2, 0)});
        float* const channels[] = {row.data(), nullptr};
        instance->processBlock(channels, channels, 300);
        return row;
    };
    EXPECT_EQ(run(spoiled), run(clean));
}

TEST(AbsurdInput, AChannelWithoutABufferIsTheSameAsOneOfSilence) {
    for (int32_t stages = 0; stages <= 3; ++stages) {
        const CSetup setup{44100.0, 2, straight(2, stages)};
        const CSignal sound = noise(2, 600, 0.5);
        const CSignal none = silence(2, 600);
        const auto whole = start(setup);
        const auto gappy = start(setup);
        // Channels without a buffer in each of the blocks.
        for (const auto& missing : {std::vector<size_t>{}, {1}, {}, {0, 1}, {0}, {}}) {
            const double* in[] = {sound[0].data(), sound[1].data()};
            const double* inGappy[] = {in[0], in[1]};
            for (const size_t c : missing) {
                in[c] = none[c].data();
                inGappy[c] = nullptr;
            }
            CSignal expected = silence(2, 600);
            CSignal output = expected;
            double* const to[] = {expected[0].data(), expected[1].data()};
            double* const toGappy[] = {output[0].data(), output[1].data()};
            whole->processBlock(in, to, 600);
            gappy->processBlock(missing.size() == 2 ? static_cast<const double* const*>(nullptr) : inGappy, toGappy,
                                600);
            ASSERT_GT(peak(expected), 0.0);
            ASSERT_EQ(firstDifference(output, expected), CDifference()) << stages;
        }
    }
}

/// The first frame whose sample is 0 and behind which all are, up to `end`.
int64_t silentFrom(const std::vector<double>& row, size_t begin, size_t end) {
    size_t first = end;
    while (first > begin && row[first - 1] == 0.0) {
        --first;
    }
    return static_cast<int64_t>(first);
}

/// A level that drives the saturation's recursion beyond the format within a sub-block.
constexpr double kAbsurd = 1e300;

TEST(AbsurdInput, AnAbsurdLevelGivesSilenceToTheEndOfItsSubBlockAndNoLonger) {
    for (int32_t stages = 0; stages <= 3; ++stages) {
        const CSetup setup{44100.0, 2, straight(2, stages)};
        CSignal input = noise(2, 4 * 512, 0.5);
        for (size_t i = 612; i < 640; ++i) {
            input[0][i] = i % 2 == 0 ? kAbsurd : -kAbsurd;
        }
        const CSignal output = render(*start(setup), input, {}, cutInto(4 * 512));
        for (const auto& row : output) {
            for (const double sample : row) {
                ASSERT_TRUE(std::isfinite(sample));
            }
            // Both channels fall silent at the first bad sample of either.
            EXPECT_GE(silentFrom(row, 512, 1024), 612) << stages;
            EXPECT_LT(silentFrom(row, 512, 1024), 700) << stages;
        }
        EXPECT_EQ(silentFrom(output[0], 512, 1024), silentFrom(output[1], 512, 1024)) << stages;

        // Behind it the graph is as after a reset: what a fresh instance makes of the rest.
        CSignal rest;
        for (const auto& row : input) {
            rest.emplace_back(row.begin() + 1024, row.end());
        }
        const CSignal fresh = render(*start(setup), rest);
        for (size_t c = 0; c < 2; ++c) {
            const CSignal tail = {{output[c].begin() + 1024, output[c].end()}};
            EXPECT_EQ(firstDifference(tail, {fresh[c]}), CDifference()) << stages;
        }
    }
}

TEST(AbsurdInput, EveryPowerOfTenIsSurvived) {
    for (int32_t power = 1; power <= 308; power += isLong() ? 1 : 9) {
        const auto instance = start({44100.0, 2, straight(2, power % 4)});
        CSignal input = noise(2, 1024, std::pow(10.0, power));
        for (const auto& row : render(*instance, input)) {
            for (const double sample : row) {
                ASSERT_TRUE(std::isfinite(sample)) << power;
            }
        }
        render(*instance, silence(2, 512));
        const CSignal after = render(*instance, noise(2, 44100, 0.5));
        EXPECT_LT(peak(after, 22050), 2.0) << power;
        EXPECT_GT(peak(after, 22050), 0.1) << power;
    }
}

TEST(AbsurdInput, BeyondTheRangeOfANarrowHostComesSilenceToo) {
    // The level is within the range, four times it is not.
    CSetup setup{44100.0, 2, straight(2, 0)};
    setup.sets.push_back({kOutGain, 0, 0, 4.0});
    const auto instance = start(setup);
    std::vector<float> left(512, 0.1f);
    std::vector<float> right(512, 0.1f);
    left[200] = 3e38f;
    float* const channels[] = {left.data(), right.data()};
    instance->processBlock(channels, channels, 512);
    for (size_t i = 0; i < 512; ++i) {
        ASSERT_TRUE(std::isfinite(left[i]));
        ASSERT_EQ(i >= 200, left[i] == 0.0f) << i;
        ASSERT_EQ(i >= 200, right[i] == 0.0f) << i;
    }
    std::fill(left.begin(), left.end(), 0.1f);
    instance->processBlock(channels, channels, 512);
    EXPECT_GT(left[10], 0.1f);
    EXPECT_LT(left[10], 1.0f);
}

TEST(AbsurdInput, AWideHostMayHaveWhatANarrowOneMayNot) {
    CSetup setup{44100.0, 2, straight(2, 0)};
    setup.sets.push_back({kBypass, 0, 0, 1.0});
    const auto instance = start(setup);
    CSignal input = silence(2, 512);
    input[0][200] = 1e100;
    EXPECT_EQ(render(*instance, input)[0][200], 1e100);
}

}  // namespace
}  // namespace tarv::engine
