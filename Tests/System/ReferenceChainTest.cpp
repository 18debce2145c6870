#include "Tests/System/ReferenceChain.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Tests/System/ReferenceParts.h"

namespace tarv::reference {
namespace {

// Known values are compared to the last few bits.
constexpr double kRelative = 1e-12;

void expectClose(double value, double known, const char* what) {
    EXPECT_NEAR(value, known, std::fabs(known) * kRelative) << what;
}

double decibels(double factor) {
    return 20.0 * std::log10(std::fabs(factor));
}

std::vector<double> sine(double frequency, double rate, double level, size_t count) {
    std::vector<double> row(count);
    for (size_t i = 0; i < count; ++i) {
        row[i] = level * std::sin(2.0 * std::numbers::pi * frequency * static_cast<double>(i) / rate);
    }
    return row;
}

double peakOf(const std::vector<double>& row, size_t from) {
    double peak = 0.0;
    for (size_t i = from; i < row.size(); ++i) {
        peak = std::max(peak, std::fabs(row[i]));
    }
    return peak;
}

/// Amplitude of one frequency over the whole periods of the last samples.
double amplitudeOf(const std::vector<double>& row, double frequency, double rate, size_t count) {
    double re = 0.0;
    double im = 0.0;
    for (size_t k = 0; k < count; ++k) {
        const size_t i = row.size() - count + k;
        const double phase = 2.0 * std::numbers::pi * frequency * static_cast<double>(i) / rate;
        re += row[i] * std::cos(phase);
        im += row[i] * std::sin(phase);
    }
    return 2.0 * std::hypot(re, im) / static_cast<double>(count);
}

TEST(ReferenceDesigns, TheSaturationHasItsKnownValues) {
    const CTubeDesign tube = designTube(44100.0);
    expectClose(tube.curveA.bend, -0.04761904761904767, "bend A");
    expectClose(tube.curveA.slope, 0.9523809523809523, "slope A");
    expectClose(tube.curveA.kneeStart, -1.75, "knee start A");
    expectClose(tube.curveA.centreOffset, -73.54164307285001, "centre A");
    expectClose(tube.curveA.kneeEnd, 1.7480192410177655, "knee end A");
    expectClose(tube.curveA.radiusSquared, 5408.373265854468, "radius A");
    expectClose(tube.curveB.bend, -0.09090909090909094, "bend B");
    expectClose(tube.curveB.slope, 0.9090909090909091, "slope B");
    expectClose(tube.curveB.kneeStart, -2.4, "knee start B");
    expectClose(tube.curveB.centreOffset, -52.90886644124921, "centre B");
    expectClose(tube.curveB.kneeEnd, 2.390143695522489, "knee end B");
    expectClose(tube.curveB.radiusSquared, 2799.3481480979467, "radius B");
    expectClose(tube.restOutput, -1.8017010928369976, "rest output");
    expectClose(tube.autoGain, 1.0074737505099467, "auto gain");
    expectClose(tube.feedCoefficient, 0.007098448886555695, "feed at 44100");
    expectClose(designTube(48000.0).feedCoefficient, 0.006523589722669966, "feed at 48000");
    expectClose(designTube(96000.0).feedCoefficient, 0.0032671406696184774, "feed at 96000");
}

TEST(ReferenceDesigns, CurvesMeetTheirLinesWithoutACorner) {
    for (double ratio : {1.0, 1.0 / 1.05, 0.5, 0.02}) {
        for (double knee : {0.1, 3.5, 40.0}) {
            const CCurveDesign curve = designCurve(ratio, knee);
            const double step = 1e-9 * knee;
            EXPECT_NEAR(curve.at(curve.kneeStart + step), curve.kneeStart + step, 1e-9 * knee);
            EXPECT_NEAR(curve.at(curve.kneeEnd - step), curve.slope * (curve.kneeEnd - step), 1e-7 * knee);
        }
    }
    const CCurveDesign corner = designCurve(0.5, 0.0);
    EXPECT_EQ(corner.at(-1.0), -1.0);
    EXPECT_EQ(corner.at(0.0), 0.0);
    EXPECT_EQ(corner.at(2.0), 1.0);
    EXPECT_EQ(designCurve(1.0, 1.0).bend, -9.999999999998899e-05);
    EXPECT_EQ(designCurve(0.002, 1.0).slope, 0.0);
}

TEST(ReferenceDesigns, ThePeakHasItsKnownCoefficients) {
    const CBiquadDesign peak = designPeak(1000.0, 2.0, 1.5, 44100.0);
    // Ratios of the six-decimal values 1.128832, -1.994692, 0.886228 over 1.066353, -1.991036, 0.945051: each is good
    // to half a unit of its last place.
    EXPECT_NEAR(peak.gain, 1.128832 / 1.066353, 2e-6);
    EXPECT_NEAR(peak.b1, -1.994692 / 1.128832, 2e-6);
    EXPECT_NEAR(peak.b2, 0.886228 / 1.128832, 2e-6);
    EXPECT_NEAR(peak.a1, 1.991036 / 1.066353, 2e-6);
    EXPECT_NEAR(peak.a2, -0.945051 / 1.066353, 2e-6);
    expectClose(responseOf(peak, 1000.0, 44100.0), 2.0, "centre");
    // Near DC numerator and denominator are differences of nearly equal values.
    EXPECT_NEAR(responseOf(peak, 0.0, 44100.0), 1.0, 1e-9);
    EXPECT_NEAR(responseOf(peak, 22050.0, 44100.0), 1.0018, 5e-5);
}

TEST(ReferenceDesigns, PeaksKeepTheirGainAtTheCentreAndStayStable) {
    for (double rate : {44100.0, 48000.0, 96000.0, 192000.0}) {
        for (double frequency : {20.0, 64.0, 350.0, 1000.0, 6000.0, 12000.0, 20000.0}) {
            for (double db : {-12.0, -3.0, 0.5, 12.0}) {
                const CBiquadDesign peak = designPeak(frequency, factorOf(db), 1.5, rate);
                // Around a quarter of the rate the design is singular and steps down by one per cent.
                const double centre = std::fabs(frequency / rate - 0.25) < 0.005 ? frequency * 0.99 : frequency;
                EXPECT_NEAR(decibels(responseOf(peak, centre, rate)), db, 1e-6) << frequency << " at " << rate;
                EXPECT_LT(std::fabs(peak.a2), 1.0);
                EXPECT_LT(std::fabs(peak.a1), 1.0 - peak.a2);
            }
        }
    }
}

TEST(ReferenceDesigns, TheTwoShelvesUndoEachOther) {
    for (double rate : {8000.0, 44100.0, 384000.0}) {
        const CBiquadDesign down = designHighShelf(4000.0, factorOf(-20.0), 2.0, rate);
        const CBiquadDesign up = designHighShelf(4000.0, factorOf(20.0), 2.0, rate);
        for (double part : {0.001, 0.01, 0.1, 0.3, 0.49}) {
            EXPECT_NEAR(responseOf(down, part * rate, rate) * responseOf(up, part * rate, rate), 1.0, 1e-6);
        }
        EXPECT_NEAR(decibels(responseOf(up, 0.5 * rate, rate)), 20.0, 1e-6);
    }
}

TEST(ReferenceDesigns, TheOnePoleStandsAt3DecibelsAtItsCorner) {
    // |1 / (1 + (1/k - 1)(1 - z^-1))| at the corner is 1 / sqrt 2.
    for (double frequency : {5.0, 6.0, 50.0, 5000.0}) {
        const double k = onePoleCoefficient(frequency, 48000.0);
        const double w = 2.0 * std::numbers::pi * frequency / 48000.0;
        const double power = k * k / (1.0 - 2.0 * (1.0 - k) * std::cos(w) + (1.0 - k) * (1.0 - k));
        EXPECT_NEAR(power, 0.5, 1e-9) << frequency;
    }
}

TEST(ReferenceParts, HalfBandsStopWhatTheirNamesSay) {
    struct CCase {
        const CHalfBandDesign& design;
        double width, attenuation;
    };
    const CCase kCases[] = {{steepHalfBand(), 0.05, -106.0}, {softHalfBand(), 0.25, -116.0}};
    for (const CCase& c : kCases) {
        for (double part = 0.25 + c.width / 2.0; part < 0.5; part += 0.01) {
            CHalfBand filter(c.design);
            std::vector<double> row = sine(part, 1.0, 1.0, 8000);
            for (double& x : row) {
                x = filter.next(x);
            }
            EXPECT_LT(decibels(peakOf(row, 6000)), c.attenuation + 1.0) << part;
        }
    }
}

TEST(ReferenceParts, ASteadyLevelAtTheAutoGainPointComesOutAsTheLoopGivesIt) {
    CTube tube(44100.0);
    double y = 0.0;
    for (int i = 0; i < 44100; ++i) {
        y = tube.next(1.009, 1.009);
    }
    // Known to eight decimals.
    EXPECT_NEAR(y, 1.00004476, 5e-9);
}

TEST(ReferenceParts, SilenceComesOutOfTheSaturationAsZero) {
    CTube tube(44100.0);
    // Differences of values near 1.8: a bit of their last place may be left.
    EXPECT_NEAR(tube.next(0.0, 0.0), 0.0, 5e-16);
}

TEST(ReferenceParts, AFadeLasts15MillisecondsRoundedAwayFromZero) {
    EXPECT_EQ(fadeLength(44100.0), 662);
    EXPECT_EQ(fadeLength(48000.0), 720);
    EXPECT_EQ(fadeLength(88200.0), 1323);
}

TEST(ReferenceParts, AFadeIsARaisedCosine) {
    CRamp ramp(720);
    for (int i = 0; i < 720; ++i) {
        EXPECT_NEAR(ramp.next(1.0, 0.0), 0.5 - 0.5 * std::cos(std::numbers::pi * i / 720.0), 1e-10);
    }
}

TEST(ReferenceParts, NoiseIsASquareWaveOf1eMinus11) {
    CNoise noise;
    int high = 0;
    for (int i = 0; i < 100000; ++i) {
        const double x = noise.next();
        EXPECT_EQ(std::fabs(x), 1e-11);
        high += x > 0;
    }
    EXPECT_NEAR(high, 50000, 1000);
}

TEST(ReferenceParts, AChangeDuringAFadeWaitsAndTakesTheNewestValues) {
    CFading<CGain> gain({1.0, false}, 48000.0);
    std::vector<double> row;
    for (int i = 0; i < 3000; ++i) {
        if (i == 100) {
            gain.want({2.0, false});
        } else if (i == 300) {
            gain.want({5.0, false});
        } else if (i == 400) {
            gain.want({3.0, false});
        }
        row.push_back(gain.next(1.0));
    }
    EXPECT_EQ(row[100], 1.0);
    EXPECT_GT(row[101], 1.0);
    EXPECT_NEAR(row[100 + 719], 2.0, 1e-5);
    EXPECT_EQ(row[100 + 720], 2.0);
    EXPECT_GT(row[100 + 721], 2.0);
    EXPECT_NEAR(row[100 + 720 + 360], 2.5, 1e-9);
    EXPECT_EQ(row[100 + 1440], 3.0);
    EXPECT_EQ(*std::max_element(row.begin(), row.end()), 3.0);
}

TEST(ReferenceParts, AChangeTakenBackBeforeTheFadeEndsStartsNoSecondOne) {
    CFading<CGain> gain({1.0, false}, 48000.0);
    std::vector<double> row;
    for (int i = 0; i < 2000; ++i) {
        if (i == 0) {
            gain.want({2.0, false});
        } else if (i == 10) {
            gain.want({7.0, false});
        } else if (i == 20) {
            gain.want({2.0, false});
        }
        row.push_back(gain.next(1.0));
    }
    for (size_t i = 720; i < row.size(); ++i) {
        ASSERT_EQ(row[i], 2.0);
    }
}

CSettings withGain(int group, int band, double factor) {
    CSettings settings;
    settings.groups[static_cast<size_t>(group)].gains[static_cast<size_t>(band)] = factor;
    return settings;
}

TEST(ReferenceChain, ASingleBandRaisesItsFrequencyByItsGainAtAQuietLevel) {
    // A quiet signal sees the saturation as a straight line.
    for (int stages = 0; stages <= 3; ++stages) {
        CLayout layout;
        layout.rate = 48000.0;
        layout.stages = stages;
        const CSignal input = {sine(1000.0, 48000.0, 1e-4, 9600)};
        const CSignal flat = render(layout, CSettings(), {}, input, 9600);
        const CSignal raised = render(layout, withGain(0, 3, factorOf(6.0)), {}, input, 9600);
        const double ratio =
            amplitudeOf(raised[0], 1000.0, 48000.0, 4800) / amplitudeOf(flat[0], 1000.0, 48000.0, 4800);
        // A flat band stands at 0.999 and not at 1.
        EXPECT_NEAR(decibels(ratio), 6.0 - decibels(0.999), 0.02) << stages;
    }
}

TEST(ReferenceChain, BypassGivesTheInputBackAtTheHostsRate) {
    CLayout layout;
    CSettings settings;
    settings.isBypassed = true;
    const CSignal input = {sine(1000.0, 44100.0, 0.5, 500), sine(300.0, 44100.0, 0.5, 500)};
    const CSignal output = render(layout, settings, {}, input, 500);
    for (size_t channel = 0; channel < 2; ++channel) {
        for (size_t i = 0; i < 500; ++i) {
            ASSERT_NEAR(output[channel][i], input[channel][i], 1.01e-11);
        }
    }
}

TEST(ReferenceChain, MidTakesGroupAAndSideTakesGroupB) {
    CLayout layout;
    layout.grouping[1] = 1;
    layout.pairs = {1, 1, 0, 0, 0, 0, 0, 0};
    CSettings settings;
    settings.groups[1].isMuted = true;
    const std::vector<double> left = sine(1000.0, 44100.0, 0.1, 4410);
    const CSignal output = render(layout, settings, {}, {left, {}}, 4410);
    for (size_t i = 0; i < 4410; ++i) {
        ASSERT_NEAR(output[0][i], output[1][i], 3e-11) << "without its side the signal is mono";
    }
    EXPECT_NEAR(peakOf(output[0], 2000), 0.05, 0.002);
}

TEST(ReferenceChain, SoloLeavesTheOtherGroupsNoise) {
    CLayout layout;
    layout.grouping[1] = 1;
    CSettings settings;
    settings.groups[1].isSolo = true;
    const std::vector<double> row = sine(1000.0, 44100.0, 0.5, 1000);
    const CSignal output = render(layout, settings, {}, {row, row}, 1000);
    EXPECT_LE(peakOf(output[0], 0), 1e-11);
    EXPECT_GT(peakOf(output[1], 0), 0.3);
}

TEST(ReferenceChain, OutputRoutingFollowsItsRules) {
    struct CCase {
        const char* name;
        std::array<int, 8> in, out;
        // By host channel: the host input that comes out there, 0 for silence.
        std::array<int, 4> sources;
    };
    constexpr CCase kCases[] = {
        {"straight", {1, 2, 0, 0, 0, 0, 0, 0}, {1, 2, 0, 0, 0, 0, 0, 0}, {1, 2, 0, 0}},
        {"mono to stereo", {1, 0, 0, 0, 0, 0, 0, 0}, {1, 1, 0, 0, 0, 0, 0, 0}, {1, 1, 0, 0}},
        {"the last of two wins", {1, 2, 0, 0, 0, 0, 0, 0}, {1, 1, 0, 0, 0, 0, 0, 0}, {2, 0, 0, 0}},
        {"swapped", {2, 1, 0, 0, 0, 0, 0, 0}, {1, 2, 0, 0, 0, 0, 0, 0}, {2, 1, 0, 0}},
        {"beyond the host", {1, 9, 0, 0, 0, 0, 0, 0}, {2, 16, 0, 0, 0, 0, 0, 0}, {0, 1, 0, 0}},
        {"names an element that is not there", {1, 0, 0, 0, 0, 0, 0, 0}, {1, 3, 0, 0, 0, 0, 0, 0}, {1, 0, 0, 0}},
        {"nothing at all", {}, {1, 2, 3, 4, 0, 0, 0, 0}, {0, 0, 0, 0}},
    };
    for (const CCase& c : kCases) {
        CLayout layout;
        layout.hostChannels = 4;
        layout.inRouting = c.in;
        layout.outRouting = c.out;
        layout.hasNoise = false;
        CSettings settings;
        settings.isBypassed = true;
        const CSignal output = render(layout, settings, {}, {{1.0}, {2.0}, {3.0}, {4.0}}, 1);
        for (size_t h = 0; h < 4; ++h) {
            EXPECT_EQ(output[h][0], c.sources[h]) << c.name << ", channel " << h + 1;
        }
    }
}

TEST(ReferenceChain, WhatIsNotANumberCountsAsSilence) {
    CLayout layout;
    layout.hasNoise = false;
    CSettings settings;
    settings.isBypassed = true;
    const CSignal output = render(layout, settings, {}, {{NAN, INFINITY, -INFINITY, 1.0}}, 4);
    EXPECT_EQ(output[0], (std::vector<double>{0.0, 0.0, 0.0, 1.0}));
}

TEST(ReferenceChain, BandsComeAndGoInAFadeOf15Milliseconds) {
    CLayout layout;
    const CSignal input = {sine(500.0, 44100.0, 0.25, 2000)};
    constexpr size_t kLast = 1000 + 661;
    CSettings fewer;
    fewer.bandCount = 5;
    const CSignal cut = render(layout, CSettings(), {{1000, fewer}}, input, 2000);
    const CSignal whole = render(layout, CSettings(), {}, input, 2000);
    EXPECT_EQ(std::vector<double>(cut[0].begin(), cut[0].begin() + 1000),
              std::vector<double>(whole[0].begin(), whole[0].begin() + 1000));
    // The first sample of a fade is the former sound, its middle half of each; 1e-3 is what the shelf behind still
    // settles.
    EXPECT_NEAR(cut[0][1000], whole[0][1000], 1e-15);
    EXPECT_NE(cut[0][1001], whole[0][1001]);
    const CSignal few = render(layout, fewer, {}, input, 2000);
    EXPECT_NEAR(cut[0][1000 + 331], 0.5 * (few[0][1000 + 331] + whole[0][1000 + 331]), 1e-3);
    EXPECT_NEAR(cut[0][kLast + 1], few[0][kLast + 1], 1e-3);
}

TEST(ReferenceChain, ScheduledChangesLeaveWhatLiesBeforeThemAndOtherGroups) {
    CLayout layout;
    layout.grouping[1] = 1;
    const CSignal input = {sine(500.0, 44100.0, 0.25, 3000), sine(500.0, 44100.0, 0.25, 3000)};
    const CSignal steady = render(layout, CSettings(), {}, input, 3000);
    const CSignal changed = render(layout, CSettings(), {{700, withGain(0, 2, 2.0)}}, input, 3000);
    for (size_t i = 0; i < 3000; ++i) {
        ASSERT_EQ(changed[1][i], steady[1][i]);
        if (i < 701) {
            ASSERT_EQ(changed[0][i], steady[0][i]) << i;
        }
    }
    EXPECT_NE(changed[0][701], steady[0][701]);
}

}  // namespace
}  // namespace tarv::reference
