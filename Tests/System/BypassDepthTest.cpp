// How far a bypassed signal nulls against the input, in each mode: the figures of Docs/manual/sound.md.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Tests/System/EngineRun.h"

namespace tarv::engine {
namespace {

constexpr double kRate = 44100.0;
/// The noise that keeps filters away from denormal numbers.
constexpr double kNoise = 1e-11;

CSetup bypassed(int32_t stages, bool isCoded) {
    CSetup setup{kRate, 2, straight(2, stages)};
    setup.sets.push_back({kBypass, 0, 0, 1.0});
    // No curve may be audible.
    setup.sets.push_back({kGains, 0, 3, 4.0});
    setup.sets.push_back({kOutGain, 0, 0, 4.0});
    if (isCoded) {
        for (const CSet& set : midSide()) {
            setup.sets.push_back(set);
        }
    }
    return setup;
}

/// Highest difference of output and input, full scale being 1.
double residual(const CSetup& setup, const CSignal& input) {
    const CSignal output = render(*start(setup), input);
    double highest = 0.0;
    for (size_t c = 0; c < input.size(); ++c) {
        for (size_t i = 0; i < input[c].size(); ++i) {
            highest = std::max(highest, std::fabs(output[c][i] - input[c][i]));
        }
    }
    return highest;
}

TEST(BypassDepth, At1xOnlyTheNoiseIsLeft) {
    // Adding the noise rounds a sample near 1 by half of 2^-53.
    EXPECT_LE(residual(bypassed(0, false), noise(2, 44100, 1.0)), kNoise + 1.2e-16);
    EXPECT_NEAR(decibels(residual(bypassed(0, false), noise(2, 44100, 1.0))), -220.0, 0.001);
}

TEST(BypassDepth, At1xMidAndSideAddOnlyRounding) {
    // Coding and decoding round a few times more.
    EXPECT_LE(residual(bypassed(0, true), noise(2, 44100, 1.0)), kNoise + 1e-15);
    EXPECT_NEAR(decibels(residual(bypassed(0, true), noise(2, 44100, 1.0))), -220.0, 0.001);
}

struct CTurn {
    int32_t stages;
    double at100Hz, at1000Hz;  ///< degrees
};

constexpr size_t kCount = 4410;  // 10 Hz apart

/// Output over input at a frequency of whole tens of Hz, of the second channel where mid and side are coded.
std::complex<double> response(int32_t stages, bool isCoded, size_t hz, double level) {
    CSignal input = periodicSine(2, 22050 + kCount, hz / 10, kCount, level);
    std::fill(input[0].begin(), input[0].end(), isCoded ? 0.0 : input[0][0]);
    const CSignal output = render(*start(bypassed(stages, isCoded)), input);
    return CBins(output[1], kCount).at(hz / 10) / CBins(input[1], kCount).at(hz / 10);
}

TEST(BypassDepth, OversamplingKeepsTheLevelUpTo20KilohertzAndTurnsThePhase) {
    const CTurn kTurns[] = {{1, -3.1, -30.6}, {2, -4.2, -41.6}, {3, -4.7, -47.1}};
    for (const CTurn& turn : kTurns) {
        for (const bool isCoded : {false, true}) {
            const auto degreesAt = [&](size_t hz) {
                return std::arg(response(turn.stages, isCoded, hz, 0.5)) * 180.0 / std::numbers::pi;
            };
            EXPECT_NEAR(degreesAt(100), turn.at100Hz, 0.06) << turn.stages << isCoded;
            EXPECT_NEAR(degreesAt(1000), turn.at1000Hz, 0.06) << turn.stages << isCoded;
            for (const size_t hz : {20, 1000, 5000, 10000, 15000, 18000, 20000}) {
                EXPECT_NEAR(decibels(std::abs(response(turn.stages, isCoded, hz, 1.0))), 0.0, 0.0001)
                    << turn.stages << isCoded << ' ' << hz;
            }
        }
    }
}

TEST(BypassDepth, OversamplingNullsOnlyWhatIsLow) {
    const struct {
        int32_t stages;
        size_t hz;
        double db;
    } kDepths[] = {{1, 10, -45.5},  {1, 100, -25.5}, {1, 1000, -5.6}, {2, 10, -42.8}, {2, 100, -22.8},
                   {2, 1000, -3.0}, {3, 10, -41.7},  {3, 100, -21.7}, {3, 1000, -1.9}};
    for (const auto& depth : kDepths) {
        const std::complex<double> h = response(depth.stages, false, depth.hz, 1.0);
        EXPECT_NEAR(decibels(std::abs(h - 1.0)), depth.db, 0.06) << depth.stages << ' ' << depth.hz;
        // With the level kept, the depth against the input is that of the turn alone: 2 sin(phase / 2).
        EXPECT_NEAR(depth.db, decibels(2.0 * std::sin(std::fabs(std::arg(h)) / 2.0)), 0.06);
    }
}

TEST(BypassDepth, InNarrowFormatTheSamplesAt1xAreTheInputs) {
    const auto instance = start(bypassed(0, false));
    std::vector<float> in(4096);
    for (size_t i = 0; i < in.size(); ++i) {
        // From full scale down to -66 dB: below -70 dB the noise reaches the last of 24 bits.
        in[i] =
            static_cast<float>(std::sin(0.05 * static_cast<double>(i)) + 1.5) * std::exp2f(-static_cast<float>(i % 11));
    }
    std::vector<float> out(in.size());
    const float* const from[] = {in.data(), nullptr};
    float* const to[] = {out.data(), nullptr};
    instance->processBlock(from, to, static_cast<int32_t>(in.size()));
    EXPECT_EQ(out, in);
}

}  // namespace
}  // namespace tarv::engine
