// The output of the library against the reference chain, over everything that the 18 parameters reach.

#include "HostTest.h"
#include "Tests/System/SoundHelp.h"

namespace tarv::host {
namespace {

using reference::CLayout;
using reference::CSettings;
using sound::CRandom;
using sound::CSignalCase;
using sound::isClose;
using sound::kSignals;
using sound::kTolerance32;
using sound::kTolerance64;
using sound::signalOf;
using CRows = reference::CSignal;

constexpr int32_t kBands = 7;

double gainOf(float normalised) {
    const double low = reference::factorOf(-12.0);
    return std::exp(std::log(low) + static_cast<double>(normalised) * std::log(reference::factorOf(12.0) / low));
}

/// The reference's setting for a parameter of the host. Oversampling is part of the layout.
void apply(const CChange& change, CSettings& settings) {
    if (change.index == kBypass) {
        settings.isBypassed = std::round(change.value) > 0.5;
    } else if (change.index >= kEqA0 && change.index < kEqA0 + kBands) {
        settings.groups[0].gains[static_cast<size_t>(change.index - kEqA0)] = gainOf(change.value);
    } else if (change.index == kOutGainA) {
        settings.groups[0].outGain = gainOf(change.value);
    } else if (change.index >= kEqB0 && change.index < kEqB0 + kBands) {
        settings.groups[1].gains[static_cast<size_t>(change.index - kEqB0)] = gainOf(change.value);
    } else if (change.index == kOutGainB) {
        settings.groups[1].outGain = gainOf(change.value);
    }
}

CRows expected(const CLayout& layout, const std::vector<CChange>& changes, const CRows& input) {
    CSettings settings;
    CSettings first;
    std::vector<reference::CChange> schedule;
    for (const CChange& change : changes) {
        apply(change, settings);
        if (change.frame < 0) {
            first = settings;
        } else if (!schedule.empty() && schedule.back().frame == change.frame) {
            schedule.back().settings = settings;
        } else {
            schedule.push_back({change.frame, settings});
        }
    }
    return reference::render(layout, first, schedule, input, static_cast<int64_t>(input[0].size()));
}

class HostSound : public HostTest {
protected:
    /// Compares the outputs of an effect and of the reference for the first rows of the inputs.
    template <class Sample>
    static void expectSame(const char* name, const CLayout& layout, std::vector<CChange> changes, CRows input,
                           double tolerance) {
        CSignal<Sample> rows(kChannels, std::vector<Sample>(input[0].size()));
        for (size_t c = 0; c < input.size(); ++c) {
            std::transform(input[c].begin(), input[c].end(), rows[c].begin(), [](double x) { return Sample(x); });
            // The reference gets the same input as the effect.
            input[c].assign(rows[c].begin(), rows[c].end());
        }
        // Modes count 1x as 1, of 4.
        changes.insert(changes.begin(), {-1, kOversampling, static_cast<float>(layout.stages + 1) / 4.0f});
        const CSignal<Sample> output = render(library->entry(), rows, layout.rate, {}, changes);
        EXPECT_TRUE(isClose(output, expected(layout, changes, input), tolerance))
            << name << " at " << layout.rate << " Hz, " << (1 << layout.stages) << "x, " << sizeof(Sample) * 8
            << " bit";
    }
};

CLayout layoutOf(double rate, int stages) {
    CLayout layout;
    layout.rate = rate;
    layout.stages = stages;
    return layout;
}

/// All gains of both groups anywhere in their range.
std::vector<CChange> anyGains(uint64_t seed) {
    CRandom random(seed);
    std::vector<CChange> changes;
    for (int32_t index = kEqA0; index <= kOutGainB; ++index) {
        changes.push_back({-1, index, static_cast<float>(random.next())});
    }
    return changes;
}

constexpr double kRates[] = {44100.0, 48000.0, 96000.0, 192000.0};

TEST_F(HostSound, EverySignalAtEveryRateAndOversamplingIsTheReferences) {
    uint64_t seed = 1;
    for (double rate : kRates) {
        for (int stages = 0; stages <= 3; ++stages) {
            for (const CSignalCase& signal : kSignals) {
                expectSame<double>(signal.name, layoutOf(rate, stages), anyGains(++seed),
                                   signalOf(signal, 2, 2000, rate), kTolerance64);
            }
        }
    }
}

TEST_F(HostSound, A32BitHostGetsTheReferenceRounded) {
    for (double rate : kRates) {
        for (int stages = 0; stages <= 3; ++stages) {
            CLayout layout = layoutOf(rate, stages);
            // Levels around 1: the tolerance is absolute.
            for (int s : {1, 3, 4, 5}) {
                std::vector<CChange> changes = anyGains(static_cast<uint64_t>(s));
                for (CChange& change : changes) {
                    change.value = std::min(change.value, 0.5f);
                }
                expectSame<float>(kSignals[s].name, layout, changes, signalOf(kSignals[s], 2, 2000, rate),
                                  kTolerance32);
            }
        }
    }
}

TEST_F(HostSound, TheEndsOfTheGainsRangeAreTheReferences) {
    for (float end : {0.0f, 1.0f, 0.5f}) {
        for (int stages : {0, 1, 3}) {
            std::vector<CChange> changes;
            for (int32_t index = kEqA0; index <= kOutGainB; ++index) {
                changes.push_back({-1, index, end});
            }
            expectSame<double>("noise", layoutOf(44100.0, stages), changes, signalOf(kSignals[3], 2, 4000, 44100.0),
                               kTolerance64);
        }
    }
}

TEST_F(HostSound, FadesOfEveryParameterAreTheReferences) {
    for (double rate : {44100.0, 96000.0}) {
        for (int stages = 0; stages <= 3; ++stages) {
            for (int32_t index : {int32_t{kBypass}, int32_t{kEqA0}, kEqA0 + 6, int32_t{kOutGainA}}) {
                const std::vector<CChange> changes = {{-1, index, 0.1f}, {700, index, 0.8f}, {4000, index, 0.3f}};
                expectSame<double>("sine", layoutOf(rate, stages), changes, signalOf(kSignals[0], 2, 6000, rate),
                                   kTolerance64);
            }
        }
    }
}

TEST_F(HostSound, InterruptedFadesAreTheReferences) {
    for (uint64_t seed = 1; seed <= 12; ++seed) {
        CRandom random(seed);
        const CLayout layout = layoutOf(kRates[seed % 4], static_cast<int>(seed % 3));
        std::vector<CChange> changes = anyGains(seed);
        for (int64_t frame = 50; frame < 7000; frame += 1 + random.below(400)) {
            changes.push_back({frame, random.below(kOutGainB + 1), static_cast<float>(random.next())});
        }
        expectSame<double>("noise", layout, changes, signalOf(kSignals[seed % 2 == 0 ? 0 : 3], 2, 8000, layout.rate),
                           kTolerance64);
    }
}

TEST_F(HostSound, AChangeTakenBackDuringAFadeStartsNoSecondFade) {
    const std::vector<CChange> changes = {{-1, kEqA0 + 3, 0.2f},  {100, kEqA0 + 3, 0.9f},  {200, kEqA0 + 3, 0.2f},
                                          {300, kEqA0 + 3, 0.9f}, {3000, kEqA0 + 3, 0.9f}, {3100, kEqA0 + 3, 0.5f}};
    expectSame<double>("sine", layoutOf(44100.0, 0), changes, signalOf(kSignals[0], 2, 5000, 44100.0), kTolerance64);
}

TEST_F(HostSound, ManyChangesAtOneFrameAreOneStep) {
    std::vector<CChange> changes;
    for (int32_t index = 0; index <= kOutGainA; ++index) {
        changes.push_back({500, index, 0.75f});
    }
    for (int32_t index = 0; index <= kOutGainA; ++index) {
        changes.push_back({600, index, 0.4f});
    }
    expectSame<double>("sine", layoutOf(48000.0, 1), changes, signalOf(kSignals[0], 2, 4000, 48000.0), kTolerance64);
}

TEST_F(HostSound, InputThatIsNotFiniteCountsAsSilence) {
    CRows input = signalOf(kSignals[0], 2, 2000, 44100.0);
    input[0][100] = NAN;
    input[0][101] = INFINITY;
    input[1][102] = -INFINITY;
    expectSame<double>("poisoned sine", layoutOf(44100.0, 1), anyGains(3), input, kTolerance64);
}

}  // namespace
}  // namespace tarv::host
