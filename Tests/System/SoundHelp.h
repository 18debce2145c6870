#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <string>
#include <vector>

#include "Tests/System/ReferenceChain.h"
#include "Tests/System/ReferenceDesigns.h"

namespace tarv::sound {

using reference::CLayout;
using reference::CSettings;
using reference::CSignal;

/// Repeatable random numbers.
class CRandom {
public:
    explicit CRandom(uint64_t seed) : state_(seed * 2862933555777941757u + 3037000493u) {}
    /// From 0 to below 1.
    double next() {
        state_ = state_ * 6364136223846793005u + 1442695040888963407u;
        return static_cast<double>(state_ >> 11) / 9007199254740992.0;
    }
    double between(double low, double high) { return low + (high - low) * next(); }
    int below(int count) { return static_cast<int>(next() * count); }

private:
    uint64_t state_;
};

/// A signal to send through: one row for each of `channels`, all different.
struct CSignalCase {
    const char* name;
    double (*sample)(int64_t i, int channel, double rate, CRandom& random);
};

inline constexpr CSignalCase kSignals[] = {
    {"full-scale sine",
     [](int64_t i, int channel, double rate, CRandom&) {
         return std::sin(2.0 * std::numbers::pi * (997.0 + 211.0 * channel) * static_cast<double>(i) / rate);
     }},
    {"high sine",
     [](int64_t i, int channel, double, CRandom&) {
         return 0.5 * std::sin(2.0 * std::numbers::pi * (0.41 + 0.01 * channel) * static_cast<double>(i));
     }},
    {"loud noise", [](int64_t, int, double, CRandom& random) { return random.between(-4.0, 4.0); }},
    {"quiet noise", [](int64_t, int, double, CRandom& random) { return random.between(-1e-5, 1e-5); }},
    {"impulses", [](int64_t i, int channel, double, CRandom&) { return i % (1500 + 100 * channel) == 3 ? 0.9 : 0.0; }},
    {"silence", [](int64_t, int, double, CRandom&) { return 0.0; }},
};

inline CSignal signalOf(const CSignalCase& signal, int channels, int64_t frames, double rate) {
    CSignal rows(static_cast<size_t>(channels));
    for (int channel = 0; channel < channels; ++channel) {
        CRandom random(static_cast<uint64_t>(channel) + 1);
        for (int64_t i = 0; i < frames; ++i) {
            rows[static_cast<size_t>(channel)].push_back(signal.sample(i, channel, rate, random));
        }
    }
    return rows;
}

/// Whether every sample lies within `tolerance` of the reference; if not, the first that does not and the farthest.
template <class Sample>
testing::AssertionResult isClose(const std::vector<std::vector<Sample>>& output, const CSignal& expected,
                                 double tolerance) {
    if (output.size() < expected.size()) {
        return testing::AssertionFailure() << output.size() << " channels instead of " << expected.size();
    }
    std::string first;
    double farthest = 0.0;
    for (size_t channel = 0; channel < expected.size(); ++channel) {
        for (size_t i = 0; i < expected[channel].size(); ++i) {
            const double error = std::fabs(static_cast<double>(output[channel][i]) - expected[channel][i]);
            farthest = std::isnan(error) ? INFINITY : std::max(farthest, error);
            if (!(error <= tolerance) && first.empty()) {
                first = "channel " + std::to_string(channel) + " from frame " + std::to_string(i) + ": " +
                        std::to_string(output[channel][i]) + " instead of " + std::to_string(expected[channel][i]);
            }
        }
    }
    if (first.empty()) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << first << "; farthest " << farthest;
}

/// 64-bit processing: rounding of designs and recursions.
inline constexpr double kTolerance64 = 1e-9;
/// 32-bit processing of values up to about 1: half a unit in the last place on the way out, and on the way in.
inline constexpr double kTolerance32 = 2e-7;

}  // namespace tarv::sound
