// What a change of the layout touches starts from silence. For a full-scale sine nothing behind the change stands out
// by more than 6 dB over the settled signal before and after it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>

#include "Tests/System/EngineRun.h"

namespace tarv::engine {
namespace {

constexpr double kRate = 44100.0;
constexpr size_t kSettle = 22050;
constexpr size_t kSettledPart = 4410;

struct CCurve {
    const char* name;
    double db[kBands];
};
constexpr CCurve kCurves[] = {{"flat", {0, 0, 0, 0, 0, 0, 0}},
                              {"lively", {4, -3, 2, -4, 3, -2, 5}},
                              {"treble", {0, 0, 0, 0, 1, 3, 6}},
                              {"bass", {6, 4, 2, 0, 0, 0, 0}},
                              // A sine that starts at full level rings in a band far above its frequency.
                              {"highest", {12, 12, 12, 12, 12, 12, 12}},
                              {"lowest", {-12, -12, -12, -12, -12, -12, -12}},
                              {"a hole at 1 kHz", {12, 12, 12, -6, 12, 12, 12}},
                              {"1 kHz above all", {-12, -12, -12, 12, -12, -12, -12}},
                              {"comb", {12, -12, 12, -12, 12, -12, 12}}};
/// Of these a sine may start at full level, as it does behind a resume.
constexpr size_t kEvenCurves = 4;

struct CLayoutChange {
    const char* name;
    std::vector<CSet> before, after;
};

/// With that many bands, and three behind the seventh that stand high at 100 Hz, 1 kHz and 5 kHz.
std::vector<CSet> louderBands(std::vector<CSet> sets, int32_t count) {
    const double frequencies[] = {100.0, 1000.0, 5000.0};
    for (int32_t group = 0; group < 2; ++group) {
        for (int32_t i = 0; i < 3; ++i) {
            sets.push_back({kFreqs, group, kBands + i, frequencies[i]});
            sets.push_back({kGains, group, kBands + i, factorOf(9.0)});
        }
    }
    sets.push_back({kBandCount, 0, 0, static_cast<double>(count)});
    return sets;
}

std::vector<CLayoutChange> layoutChanges() {
    return {{"1x to 2x", straight(2, 0), {{kOversampling, 0, 0, 2}}},
            {"2x to 1x", straight(2, 1), {{kOversampling, 0, 0, 1}}},
            {"1x to 8x", straight(2, 0), {{kOversampling, 0, 0, 4}}},
            {"8x to 1x", straight(2, 3), {{kOversampling, 0, 0, 1}}},
            {"4x to 8x", straight(2, 2), {{kOversampling, 0, 0, 4}}},
            {"input routing", straight(2, 0), {{kInRouting, 0, 1, 1}}},
            {"input routing at 4x", straight(2, 2), {{kInRouting, 0, 1, 1}}},
            {"output routing", straight(2, 0), {{kOutRouting, 0, 0, 2}, {kOutRouting, 0, 1, 1}}},
            {"grouping", straight(2, 0), {{kGrouping, 0, 1, 1}}},
            {"grouping at 2x", straight(2, 1), {{kGrouping, 0, 1, 1}}},
            {"pairs on", straight(2, 0), {{kPairs, 0, 0, 1}, {kPairs, 0, 1, 1}}},
            {"pairs off", midSide(), {{kPairs, 0, 0, 0}, {kPairs, 0, 1, 0}}},
            {"7 bands to 10", louderBands(straight(2, 0), 7), {{kBandCount, 0, 0, 10}}},
            {"7 bands to 1", straight(2, 0), {{kBandCount, 0, 0, 1}}},
            {"10 bands to 3", louderBands(straight(2, 0), 10), {{kBandCount, 0, 0, 3}}},
            {"1 band to 7 at 4x", louderBands(straight(2, 2), 1), {{kBandCount, 0, 0, 7}}}};
}

std::vector<CSet> curveSets(const CCurve& curve) {
    std::vector<CSet> sets;
    for (int32_t group = 0; group < 2; ++group) {
        for (int32_t band = 0; band < kBands; ++band) {
            sets.push_back({kGains, group, band, factorOf(curve.db[band])});
        }
    }
    return sets;
}

/// Decibels by which the highest sample behind the change exceeds the larger of both settled peaks.
double overshoot(const CCurve& curve, const CLayoutChange& change, double hz, int64_t extra) {
    CSetup setup{kRate, 2, curveSets(curve)};
    setup.sets.insert(setup.sets.end(), change.before.begin(), change.before.end());
    const size_t at = kSettle + static_cast<size_t>(extra);
    std::vector<CEvent> events;
    for (const CSet& set : change.after) {
        events.push_back({static_cast<int64_t>(at), set});
    }
    const CSignal output = render(*start(setup), sine(2, at + kSettle, hz, kRate, 1.0), events);
    double worst = -400.0;
    for (const auto& row : output) {
        const std::vector<double> before(row.begin() + static_cast<int64_t>(at - kSettledPart),
                                         row.begin() + static_cast<int64_t>(at));
        const double settled = std::max(peak(before), peak(row, row.size() - kSettledPart));
        worst = std::max(worst, decibels(peak(row, at)) - decibels(settled));
    }
    return worst;
}

constexpr double kAllowed = 6.0;

TEST(Continuity, NoLayoutChangeStandsOutOfASineByMoreThan6Decibels) {
    const std::vector<CLayoutChange> changes = layoutChanges();
    double worst = -400.0;
    for (const CCurve& curve : std::span(kCurves).first(static_cast<size_t>(repeats(std::size(kCurves), 2)))) {
        for (size_t c = 0; c < changes.size(); c += isLong() ? 1 : 2) {
            for (const double hz : {50.0, 100.0, 440.0, 1000.0, 5000.0, 15000.0}) {
                for (const double part : {0.0, 0.25, 0.5}) {
                    if (!isLong() && (hz > 1000.0 || hz == 440.0 || part != 0.25)) {
                        continue;
                    }
                    const double over = overshoot(curve, changes[c], hz, static_cast<int64_t>(part * kRate / hz));
                    EXPECT_LT(over, kAllowed) << curve.name << ", " << changes[c].name << ", " << hz << " Hz";
                    worst = std::max(worst, over);
                }
            }
        }
    }
    RecordProperty("worstDecibels", std::to_string(worst));
}

/// The largest difference of two samples that follow each other.
double largestStep(const std::vector<double>& row, size_t from, size_t end) {
    double step = 0.0;
    for (size_t i = from + 1; i < end; ++i) {
        step = std::max(step, std::fabs(row[i] - row[i - 1]));
    }
    return step;
}

TEST(Continuity, AnotherBandCountMakesNoStepInASine) {
    for (const CCurve& curve : kCurves) {
        for (const double hz : {50.0, 440.0, 3000.0}) {
            for (const double count : {1.0, 5.0, 10.0}) {
                CSetup setup{kRate, 2, curveSets(curve)};
                const std::vector<CSet> bands = louderBands(straight(2, 0), kBands);
                setup.sets.insert(setup.sets.end(), bands.begin(), bands.end());
                // At 0.9 of a quarter period the sine is nearly at its peak.
                const auto at = static_cast<int64_t>(kSettle + std::lround(0.225 * kRate / hz));
                const int64_t back = at + static_cast<int64_t>(kSettle);
                const std::vector<CEvent> events = {{at, {kBandCount, 0, 0, count}},
                                                    {back, {kBandCount, 0, 0, static_cast<double>(kBands)}}};
                const auto end = static_cast<size_t>(back) + kSettle;
                const CSignal output = render(*start(setup), sine(2, end, hz, kRate, 1.0), events);
                for (const auto& row : output) {
                    const auto first = static_cast<size_t>(at);
                    const auto second = static_cast<size_t>(back);
                    const double settled = std::max(largestStep(row, first - kSettledPart, first),
                                                    largestStep(row, second - kSettledPart, second));
                    EXPECT_LT(largestStep(row, first - kSettledPart, end), 2.0 * settled)
                        << curve.name << ", " << count << " bands, " << hz << " Hz";
                }
            }
        }
    }
}

TEST(Continuity, NorDoesAResumeAtAnotherRate) {
    for (const CCurve& curve : std::span(kCurves).first(static_cast<size_t>(repeats(kEvenCurves, 1)))) {
        for (const double rate : {48000.0, 96000.0}) {
            for (const double hz : {50.0, 100.0, 440.0, 1000.0, 5000.0}) {
                CSetup setup{kRate, 2, curveSets(curve)};
                const auto instance = start(setup);
                const CSignal before = render(*instance, sine(2, 2 * kSettle, hz, kRate, 1.0));
                instance->start(rate, 2, 2);
                for (const double phase : {0.0, 1.5707963267948966}) {
                    const CSignal after = render(*instance, sine(2, 2 * kSettle, hz, rate, 1.0, phase));
                    const double settled =
                        std::max(peak(before, 2 * kSettle - kSettledPart), peak(after, 2 * kSettle - kSettledPart));
                    EXPECT_LT(decibels(peak(after)) - decibels(settled), kAllowed) << curve.name << ' ' << hz;
                    instance->suspend();
                    instance->resume();
                }
            }
        }
    }
}

}  // namespace
}  // namespace tarv::engine
