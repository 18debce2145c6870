// Silence in gives silence out: what is left two seconds behind the end of a signal.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include "Tests/System/EngineRun.h"

namespace tarv::engine {
namespace {

constexpr double kSignalSeconds = 0.3;
constexpr double kWaitSeconds = 2.0;

/// Levels in decibels.
struct CLeft {
    double peak;
    double rms;  ///< of the loudest channel
};

/// Levels of the half second that begins two seconds behind the signal's end.
CLeft leftOver(const CSetup& setup) {
    const auto instance = start(setup);
    render(*instance, noise(setup.channels, static_cast<size_t>(kSignalSeconds * setup.rate), 1.0));
    render(*instance, silence(setup.channels, static_cast<size_t>(kWaitSeconds * setup.rate)));
    const CSignal rest = render(*instance, silence(setup.channels, static_cast<size_t>(0.5 * setup.rate)));
    double power = 0.0;
    for (const auto& row : rest) {
        power = std::max(power, std::inner_product(row.begin(), row.end(), row.begin(), 0.0) / row.size());
    }
    return {decibels(peak(rest)), decibels(std::sqrt(power))};
}

CSetup flat(double rate, int32_t stages) {
    return {rate, 2, straight(2, stages)};
}

/// What is left is the noise of +-1e-11 that keeps filters away from denormal numbers, -220 dB.
TEST(Silence, LeavesLessThanMinus215DecibelsWhenFlat) {
    for (const double rate : {44100.0, 192000.0}) {
        for (int32_t stages = 0; stages <= (rate > 100000.0 && !isLong() ? 0 : 3); ++stages) {
            const CLeft left = leftOver(flat(rate, stages));
            EXPECT_LT(left.rms, -215.0) << rate << " Hz, " << (1 << stages) << "x";
            // Half-bands round the square steps of the noise off: single samples then stand up to 11 dB above its
            // level.
            EXPECT_LT(left.peak, stages == 0 ? -215.0 : -209.0) << rate << " Hz, " << (1 << stages) << "x";
        }
    }
}

/// Gains within their whole range, a third of them at an end; frequencies within the audible range.
CSetup anySetting(std::minstd_rand& engine) {
    constexpr double kRates[] = {44100.0, 48000.0, 96000.0};
    const auto pick = [&engine](uint32_t count) { return static_cast<int32_t>(engine() / 16 % count); };
    const auto part = [&] { return pick(10001) / 10000.0; };
    CSetup setup = flat(kRates[pick(3)], pick(4));
    if (pick(2) == 0) {
        for (const CSet& set : midSide()) {
            setup.sets.push_back(set);
        }
    }
    for (int32_t group = 0; group < 2; ++group) {
        for (int32_t band = 0; band < kBands; ++band) {
            const double db = pick(3) == 0 ? (pick(2) == 0 ? 12.0 : -12.0) : 24.0 * part() - 12.0;
            setup.sets.push_back({kGains, group, band, factorOf(db)});
            setup.sets.push_back({kFreqs, group, band, 20.0 * std::pow(1050.0, part())});
        }
        setup.sets.push_back({kOutGain, group, 0, factorOf(24.0 * part() - 12.0)});
    }
    return setup;
}

TEST(Silence, LeavesLessThanMinus180DecibelsAtAnySetting) {
    std::minstd_rand engine(11);
    double worst = -400.0;
    for (int32_t round = 0; round < (isLong() ? 400 : 12); ++round) {
        const CSetup setup = anySetting(engine);
        const double left = leftOver(setup).peak;
        EXPECT_LT(left, -180.0) << "setting " << round << ", " << setup.rate << " Hz, oversampling "
                                << setup.sets[0].value;
        worst = std::max(worst, left);
    }
    RecordProperty("worstDecibels", std::to_string(worst));
}

TEST(Silence, LeavesLessThanMinus180DecibelsWithEveryGainAtAnEnd) {
    for (const double db : {12.0, -12.0}) {
        for (const bool isCoded : {false, true}) {
            CSetup setup = flat(44100.0, isCoded ? 1 : 0);
            for (int32_t group = 0; group < 2; ++group) {
                for (int32_t band = 0; band < kBands; ++band) {
                    setup.sets.push_back({kGains, group, band, factorOf(db)});
                }
                setup.sets.push_back({kOutGain, group, 0, factorOf(12.0)});
            }
            const std::vector<CSet> pairs = isCoded ? midSide() : std::vector<CSet>();
            setup.sets.insert(setup.sets.end(), pairs.begin(), pairs.end());
            EXPECT_LT(leftOver(setup).peak, -180.0) << db << (isCoded ? " mid/side" : "");
        }
    }
}

TEST(Silence, IsOnlyTheNoiseThatKeepsFiltersAwakeWhenMutedOrBypassed) {
    for (const char* param : {kMute, kBypass}) {
        CSetup setup = flat(44100.0, 0);
        setup.sets.push_back({param, 0, 0, 1.0});
        EXPECT_NEAR(leftOver(setup).peak, -220.0, 0.01) << param;
    }
}

}  // namespace
}  // namespace tarv::engine
