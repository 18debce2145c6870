#include <cmath>

#include "Tests/Audio/Filters/FilterTree.h"

namespace tarv {
namespace {

constexpr double kRate = 44100.0;

TEST(WindowedSinc, HasTwiceItsLatencyAndOneTaps) {
    CFilterTree tree;
    const CAudioFilterGen& generator = tree.generator("audio:fltgen-firlp");
    // n = floor(factor x rate / cut-off / 8): 8 x 48000 / 1000 / 8 is 48 exactly.
    const CSectionList list = designed(generator, 48000.0, {1000.0, 8.0});
    ASSERT_EQ(list.sections.count(), 1);
    EXPECT_EQ(list.sections[0].type, 21);
    EXPECT_EQ(list.latency, 48);
    EXPECT_EQ(list.sections[0].numerators.count(), 97);
    EXPECT_EQ(list.sections[0].denominators.count(), 0);
    EXPECT_EQ(designed(generator, 48000.0, {1001.0, 8.0}).latency, 47);
}

TEST(WindowedSinc, AWholeLengthThatRoundingLeavesJustBelowCounts) {
    // 8 x rate / (rate / n) / 8 is n, but in 64-bit arithmetic a unit in the last place less for some n.
    CFilterTree tree;
    const CAudioFilterGen& generator = tree.generator("audio:fltgen-firlp");
    for (int n = 1; n < 2000; ++n) {
        EXPECT_EQ(designed(generator, kRate, {kRate / n, 8.0}).latency, n);
    }
}

TEST(WindowedSinc, IsSymmetricAndHalfAtItsCutOff) {
    CFilterTree tree;
    const CSectionList list = designed(tree.generator("audio:fltgen-firlp"), kRate, {2000.0, 80.0});
    const CArray<double, 4>& taps = list.sections[0].numerators;
    for (int32_t i = 0; i < taps.count() / 2; ++i) {
        EXPECT_EQ(taps[i], taps[taps.count() - 1 - i]);
    }
    // A windowed sinc is 6 dB down at the cut-off, flat below and gone above, by the window's side lobes (-74 dB).
    EXPECT_NEAR(responseDb(list, 2000.0, kRate), -6.02, 0.01);
    EXPECT_NEAR(responseDb(list, 1000.0, kRate), 0.0, 0.005);
    EXPECT_LT(responseDb(list, 3000.0, kRate), -70.0);
}

TEST(WindowedSinc, TheRecurrenceKeepsToTheFormula) {
    CFilterTree tree;
    const CSectionList list = designed(tree.generator("audio:fltgen-firlp"), kRate, {100.0, 20.0});
    const int32_t n = list.latency;
    ASSERT_EQ(n, 1102);
    for (int32_t i = 1; i <= n; ++i) {
        const double angle = M_PI * i / (n + 1);
        const double sinc = std::sin(2.0 * M_PI * 100.0 / kRate * i) / (M_PI * i);
        const double window = 0.42 + 0.5 * std::cos(angle) + 0.08 * std::cos(2.0 * angle);
        EXPECT_NEAR(list.sections[0].numerators[n + i], sinc * window, 1e-15) << i;
    }
}

TEST(WindowedSinc, TheAbsoluteFormIsThatOf44100Hertz) {
    CFilterTree tree;
    const CSectionList absolute =
        designed(tree.generator("audio:fltgen-firlp", {{"is-absolute", "true"}}), 192000.0, {2000.0, 8.0});
    const CSectionList plain = designed(tree.generator("audio:fltgen-firlp"), 44100.0, {2000.0, 8.0});
    ASSERT_EQ(absolute.latency, plain.latency);
    for (int32_t i = 0; i < plain.sections[0].numerators.count(); ++i) {
        EXPECT_EQ(absolute.sections[0].numerators[i], plain.sections[0].numerators[i]);
    }
}

TEST(Hilbert, TurnsByNinetyDegreesAndKeepsTheMagnitude) {
    for (double seconds : {255.0 / kRate, 256.0 / kRate}) {
        CFilterTree tree;
        const CSectionList list = designed(tree.generator("audio:fltgen-firhilb"), kRate, {seconds});
        const CArray<double, 4>& taps = list.sections[0].numerators;
        ASSERT_EQ(taps.count(), static_cast<int32_t>(std::lround(seconds * kRate)));
        EXPECT_EQ(list.latency, 0);
        for (int32_t i = 0; i < taps.count(); ++i) {
            EXPECT_NEAR(taps[i], -taps[taps.count() - 1 - i], 1e-18);
        }
        for (double hz : {1000.0, 5000.0, 15000.0}) {
            const double middle = (taps.count() - 1) * 0.5;
            const std::complex<double> turned =
                response(list, hz, kRate) * std::polar(1.0, 2.0 * M_PI * hz / kRate * middle);
            EXPECT_NEAR(turned.real(), 0.0, 1e-12) << hz;
            EXPECT_NEAR(turned.imag(), -1.0, 0.001) << hz;
        }
    }
}

TEST(Hilbert, HasAtLeastFourTaps) {
    CFilterTree tree;
    const CAudioFilterGen& generator = tree.generator("audio:fltgen-firhilb");
    EXPECT_EQ(designed(generator, kRate, {0.0}).sections[0].numerators.count(), 4);
    EXPECT_EQ(designed(generator, kRate, {7.4 / kRate}).sections[0].numerators.count(), 7);
}

TEST(LimiterCurve, IsSymmetricPositiveAndOfUnitGain) {
    for (const char* type : {"0", "1", "2"}) {
        CFilterTree tree;
        const CSectionList list =
            designed(tree.generator("audio:fltgen-firlim", {{"type", type}}), kRate, {64.0 / kRate});
        const CArray<double, 4>& taps = list.sections[0].numerators;
        ASSERT_EQ(taps.count(), 64);
        EXPECT_EQ(list.sections[0].type, 21);
        EXPECT_EQ(list.latency, 63);
        double sum = 0.0;
        for (int32_t i = 0; i < taps.count(); ++i) {
            EXPECT_GT(taps[i], 0.0);
            EXPECT_NEAR(taps[i], taps[63 - i], 1e-16);
            sum += taps[i];
        }
        EXPECT_NEAR(sum, 1.0, 1e-12) << type;
    }
}

TEST(LimiterCurve, TheThreeTypesGrowNarrower) {
    double previous = 0.0;
    for (const char* type : {"0", "1", "2"}) {
        CFilterTree tree;
        const CSectionList list =
            designed(tree.generator("audio:fltgen-firlim", {{"type", type}}), kRate, {64.0 / kRate});
        EXPECT_GT(list.sections[0].numerators[31], previous) << type;
        previous = list.sections[0].numerators[31];
    }
}

TEST(LimiterCurve, AnInvalidTypeIsReported) {
    CFilterTree tree;
    EXPECT_EQ(tree.failure(tree.root(), "audio:fltgen-firlim", {{"type", "3"}}).toUtf8(),
              "Invalid filter type '3' specified.");
}

TEST(FirGenerators, TooFewValuesOrImpossibleLengthsLeaveTheListEmpty) {
    CFilterTree tree;
    const CAudioFilterGen& sinc = tree.generator("audio:fltgen-firlp");
    const CAudioFilterGen& hilbert = tree.generator("audio:fltgen-firhilb");
    const CAudioFilterGen& limiter = tree.generator("audio:fltgen-firlim");
    EXPECT_TRUE(designed(sinc, kRate, {1000.0}).sections.isEmpty());
    EXPECT_TRUE(designed(hilbert, kRate, {}).sections.isEmpty());
    EXPECT_TRUE(designed(limiter, kRate, {}).sections.isEmpty());
    for (double bad : {0.0, -1.0, std::nan(""), 1e-300}) {
        EXPECT_TRUE(designed(sinc, kRate, {bad, 8.0}).sections.isEmpty()) << bad;
    }
    for (double bad : {-1.0, std::nan(""), HUGE_VAL, 1e9}) {
        EXPECT_TRUE(designed(hilbert, kRate, {bad}).sections.isEmpty()) << bad;
        EXPECT_TRUE(designed(limiter, kRate, {bad}).sections.isEmpty()) << bad;
    }
}

/// What a list takes, counted.
CFirSize sizeOf(const CSectionList& list) {
    CFirSize size;
    for (const CFilterSection& section : list.sections) {
        if (section.type == CFilterSection::kFirType) {
            size.extend({++size.sections, section.numerators.count()});
        }
    }
    return size;
}

CFirSize announced(const CAudioFilterGen& generator, double rate, std::initializer_list<CDesignRange> ranges) {
    return generator.firSize(rate, ranges.begin(), static_cast<int32_t>(ranges.size()));
}

bool operator==(const CFirSize& a, const CFirSize& b) {
    return a.sections == b.sections && a.taps == b.taps;
}

TEST(FirGenerators, AnnounceExactlyWhatADesignTakes) {
    CFilterTree tree;
    const CAudioFilterGen& sinc = tree.generator("audio:fltgen-firlp", "sinc");
    const CAudioFilterGen& absolute = tree.generator("audio:fltgen-firlp", "absolute", {{"is-absolute", "true"}});
    const CAudioFilterGen& hilbert = tree.generator("audio:fltgen-firhilb", "hilbert");
    const CAudioFilterGen& limiter = tree.generator("audio:fltgen-firlim", "limiter");
    const CAudioFilterGen& set = tree.serial("set", {{"sinc", "2"}, {"limiter", "0.000001"}});
    for (const CAudioFilterGen* generator : {&sinc, &absolute, &hilbert, &limiter, &set}) {
        for (const double first : {-5.0, 0.0, 1e-300, 1e-4, 0.0101, 0.5, 2.0, 1001.0, 1e9, HUGE_VAL, std::nan("")}) {
            for (const double second : {-1.0, 0.0, 1.0, 8.0, 77.7, std::nan("")}) {
                for (const double rate : {44100.0, 384000.0}) {
                    const CFirSize size = announced(*generator, rate, {{first, first}, {second, second}});
                    EXPECT_TRUE(size == sizeOf(designed(*generator, rate, {first, second})))
                        << first << ' ' << second << ' ' << rate << ' ' << size.sections << ' ' << size.taps;
                }
            }
        }
    }
    EXPECT_EQ(announced(sinc, kRate, {{1000.0, 1000.0}}).sections, 0);
    EXPECT_EQ(announced(hilbert, kRate, {}).sections, 0);
    EXPECT_EQ(announced(limiter, kRate, {}).sections, 0);
    EXPECT_EQ(announced(tree.generator("audio:fltgen-magnus", "peak"), kRate, {{1e3, 1e3}, {2, 2}, {1, 1}}).taps, 0);
}

TEST(FirGenerators, ARangeAnnouncesTheLongestDesignInIt) {
    CFilterTree tree;
    const CAudioFilterGen& sinc = tree.generator("audio:fltgen-firlp", "sinc");
    const CAudioFilterGen& limiter = tree.generator("audio:fltgen-firlim", "limiter");
    // n = 8 x 44100 / 441 / 8 at the lowest cut-off and the greatest factor.
    EXPECT_EQ(announced(sinc, kRate, {{441.0, 5000.0}, {1.0, 8.0}}).taps, 201);
    EXPECT_EQ(announced(limiter, kRate, {{0.001, 0.01}}).taps, 441);
    // A set lists both; its factors scale the range, and a negative one turns it round.
    const CAudioFilterGen& set = tree.serial("set", {{"sinc", "0.5"}, {"limiter", "-0.000001"}});
    const CFirSize both = announced(set, kRate, {{-1000.0, 1000.0}, {8.0, 8.0}});
    EXPECT_EQ(both.sections, 2);
    EXPECT_GE(both.taps, sizeOf(designed(set, kRate, {20.0, 8.0})).taps);
    // What exceeds every limit is none, but the range holds designs up to the limit.
    EXPECT_EQ(announced(limiter, kRate, {{0.001, 1e9}}).taps, 1 << 23);
    EXPECT_EQ(announced(sinc, kRate, {{0.0, 1000.0}, {8.0, 8.0}}).taps, 1 << 23);
}

}  // namespace
}  // namespace tarv
