#include <cmath>

#include "Tests/Audio/Filters/FilterTree.h"

namespace tarv {
namespace {

constexpr const char* kTag = "audio:fltgen-rbj";
constexpr double kRate = 44100.0;

/// A type with the numbers that it delivers at 1000 Hz, gain 2 and `value`, computed with 50 digits.
struct CLiteralCase {
    const char* type;
    const char* isQ;
    const char* isType2;
    double value;
    int32_t sectionType;
    double expected[5];  // gain, numerators, denominators
};

constexpr CLiteralCase kLiterals[] = {
    {"0", "false", "false", 1.5, 1, {0.0047019892265168445, 2, 1, 1.8373880835876624, -0.85619604049372977}},
    {"1", "false", "false", 1.5, 2, {0.92339603102034806, -2, 1, 1.8373880835876624, -0.85619604049372977}},
    {"2", "false", "false", 1.5, 3, {0.071901979753135115, 0, -1, 1.8373880835876624, -0.85619604049372977}},
    {"3", "false", "false", 1.5, 3, {0.065892322691388644, 0, -1, 1.8373880835876624, -0.85619604049372977}},
    {"4",
     "false",
     "false",
     1.5,
     4,
     {0.92809802024686494, -1.9797349455598832, 1, 1.8373880835876624, -0.85619604049372977}},
    {"5",
     "false",
     "false",
     1.5,
     0,
     {0.85619604049372977, -2.1459899330159518, 1.1679568144502805, 1.8373880835876624, -0.85619604049372977}},
    {"6",
     "false",
     "false",
     1.5,
     0,
     {1.0519361317431164, -1.7842482199947642, 0.80251222417066159, 1.8769151706108336, -0.89612773651376698}},
    {"7",
     "false",
     "false",
     1.5,
     0,
     {1.0287373654104996, -1.805415024792139, 0.83160616803040466, 1.8640338480002026, -0.87750575184621382}},
    {"8",
     "false",
     "false",
     1.5,
     0,
     {1.9441308027165272, -1.8640338480002026, 0.87750575184621382, 1.805415024792139, -0.83160616803040466}},
    {"0", "true", "false", 1.5, 1, {0.0048373069114800993, 2, 1, 1.8902659380174429, -0.90961516566336342}},
    {"6",
     "true",
     "false",
     1.5,
     0,
     {1.032384524092248, -1.855531661716352, 0.8745253407562541, 1.9156221715191339, -0.9352309518155042}},
    {"7",
     "true",
     "false",
     1.5,
     0,
     {1.0193278515239603, -1.8665581708688834, 0.89363631730305915, 1.9095351072632722, -0.92333586167727189}},
    {"8",
     "true",
     "false",
     1.5,
     0,
     {1.9620772620014963, -1.9095351072632722, 0.92333586167727189, 1.8665581708688834, -0.89363631730305915}},
    {"0", "false", "true", 1.5, 1, {0.0047032334826886549, 2, 1, 1.8378742993897152, -0.85668723332046992}},
    {"6",
     "false",
     "true",
     1.5,
     0,
     {1.0517549299005549, -1.78489669870932, 0.80316734087303643, 1.8772739022307527, -0.89649014019889028}},
    {"7",
     "false",
     "true",
     1.5,
     0,
     {1.0286504786586339, -1.8059744991855453, 0.83217375871495447, 1.8644540032463548, -0.87792894367406915}},
    {"8",
     "false",
     "true",
     1.5,
     0,
     {1.9442950171063076, -1.8644540032463548, 0.87792894367406915, 1.8059744991855453, -0.83217375871495447}},
    {"9", "true", "false", 0.9, 0, {0.81, -2.1997054950665369, 1.2345679012345678, 1.7817614510038948, -0.81}},
};

TEST(CookbookGenerator, DeliversTheNumbersOfTheFormulas) {
    for (const CLiteralCase& c : kLiterals) {
        CFilterTree tree;
        const CAudioFilterGen& generator =
            tree.generator(kTag, {{"type", c.type}, {"is-q", c.isQ}, {"is-type2", c.isType2}});
        const CSectionList list = designed(generator, kRate, {1000.0, 2.0, c.value});
        ASSERT_EQ(list.sections.count(), 1);
        const CFilterSection& s = list.sections[0];
        EXPECT_EQ(s.type, c.sectionType) << c.type;
        ASSERT_EQ(s.numerators.count(), 2);
        ASSERT_EQ(s.denominators.count(), 2);
        const double numbers[5] = {s.gain, s.numerators[0], s.numerators[1], s.denominators[0], s.denominators[1]};
        for (int i = 0; i < 5; ++i) {
            EXPECT_NEAR(numbers[i], c.expected[i], 1e-12 * std::fabs(c.expected[i]))
                << c.type << ' ' << c.isQ << ' ' << c.isType2 << ' ' << i;
        }
    }
}

TEST(CookbookGenerator, WithQAPassFilterHasThatGainAtItsFrequency) {
    for (const char* type : {"0", "1"}) {
        CFilterTree tree;
        const CAudioFilterGen& generator = tree.generator(kTag, {{"type", type}, {"is-q", "true"}});
        for (double q : {0.5, 0.70710678, 3.0}) {
            const CSectionList list = designed(generator, kRate, {3000.0, 1.0, q});
            EXPECT_NEAR(std::abs(response(list, 3000.0, kRate)), q, 1e-12 * q);
        }
    }
}

TEST(CookbookGenerator, APassFilterIsUnityOnItsSideAndNothingOnTheOther) {
    CFilterTree tree;
    const CSectionList low = designed(tree.generator(kTag, {{"type", "0"}}), kRate, {3000.0, 1.0, 2.0});
    EXPECT_NEAR(std::abs(response(low, 0.0, kRate)), 1.0, 1e-12);
    EXPECT_NEAR(std::abs(response(low, kRate / 2.0, kRate)), 0.0, 1e-12);
    const CSectionList high = designed(tree.generator(kTag, {{"type", "1"}}), kRate, {3000.0, 1.0, 2.0});
    EXPECT_NEAR(std::abs(response(high, 0.0, kRate)), 0.0, 1e-12);
    EXPECT_NEAR(std::abs(response(high, kRate / 2.0, kRate)), 1.0, 1e-12);
}

TEST(CookbookGenerator, ABandPassIsThreeDecibelsDownAtTheEdgesOfItsBand) {
    CFilterTree tree;
    const CAudioFilterGen& generator = tree.generator(kTag, {{"type", "2"}});
    const CAudioFilterGen& analogue = tree.generator(kTag, {{"type", "2"}, {"is-type2", "true"}});
    for (double octaves : {0.5, 1.0, 2.0}) {
        // The bandwidth compensation w / sin(w) is right for small bands; 0.02 dB is left at two octaves of 1000 Hz.
        const CSectionList list = designed(generator, kRate, {1000.0, 1.0, octaves});
        EXPECT_NEAR(responseDb(list, 1000.0, kRate), 0.0, 1e-9);
        EXPECT_NEAR(responseDb(list, 1000.0 * std::exp2(octaves / 2.0), kRate), -3.0103, 0.05);
        EXPECT_NEAR(responseDb(list, 1000.0 * std::exp2(-octaves / 2.0), kRate), -3.0103, 0.05);
        // The other choice holds exactly on the analogue axis tan(pi f / rate).
        const CSectionList warped = designed(analogue, kRate, {1000.0, 1.0, octaves});
        const double centre = std::tan(M_PI * 1000.0 / kRate);
        for (double side : {-0.5, 0.5}) {
            const double edge = std::atan(centre * std::exp2(octaves * side)) * kRate / M_PI;
            EXPECT_NEAR(responseDb(warped, edge, kRate), -10.0 * std::log10(2.0), 1e-9);
        }
    }
}

TEST(CookbookGenerator, ABandPassOfConstantSkirtPeaksAtItsQ) {
    CFilterTree tree;
    const CSectionList list =
        designed(tree.generator(kTag, {{"type", "3"}, {"is-q", "true"}}), kRate, {1000.0, 1.0, 4.0});
    EXPECT_NEAR(std::abs(response(list, 1000.0, kRate)), 4.0, 1e-11);
}

TEST(CookbookGenerator, ANotchIsSilentAtItsFrequencyAndUnityFarAway) {
    CFilterTree tree;
    const CSectionList list = designed(tree.generator(kTag, {{"type", "4"}}), kRate, {1000.0, 1.0, 1.0});
    EXPECT_NEAR(std::abs(response(list, 1000.0, kRate)), 0.0, 1e-12);
    EXPECT_NEAR(std::abs(response(list, 0.0, kRate)), 1.0, 1e-11);
    EXPECT_NEAR(std::abs(response(list, kRate / 2.0, kRate)), 1.0, 1e-12);
}

TEST(CookbookGenerator, TheAllPassesTurnThePhaseAndLeaveTheMagnitude) {
    CFilterTree tree;
    const CSectionList byBand = designed(tree.generator(kTag, {{"type", "5"}}), kRate, {1000.0, 1.0, 1.0});
    const CSectionList byRadius =
        designed(tree.generator(kTag, {{"type", "9"}, {"is-q", "true"}}), kRate, {1000.0, 1.0, 0.9});
    for (double hz = 20.0; hz < 22000.0; hz *= 1.2) {
        EXPECT_NEAR(std::abs(response(byBand, hz, kRate)), 1.0, 1e-10) << hz;
        EXPECT_NEAR(std::abs(response(byRadius, hz, kRate)), 1.0, 1e-12) << hz;
    }
    EXPECT_NEAR(response(byBand, 1000.0, kRate).real(), -1.0, 1e-10);
    // Its poles are r exp(+-iw), its zeros the same angle at 1 / r.
    const CFilterSection& s = byRadius.sections[0];
    EXPECT_NEAR(-s.denominators[1], 0.81, 1e-15);
    EXPECT_NEAR(s.denominators[0], 2.0 * 0.9 * std::cos(2.0 * M_PI * 1000.0 / kRate), 1e-15);
}

TEST(CookbookGenerator, APeakHasItsGainAtTheCentreOnly) {
    CFilterTree tree;
    const CAudioFilterGen& generator = tree.generator(kTag, {{"type", "6"}});
    for (double db : {-24.0, -3.0, 12.0}) {
        const CSectionList list = designed(generator, kRate, {2000.0, fromDb(db), 1.0});
        EXPECT_NEAR(responseDb(list, 2000.0, kRate), db, 1e-10);
        EXPECT_NEAR(responseDb(list, 0.0, kRate), 0.0, 1e-10);
        EXPECT_NEAR(responseDb(list, kRate / 2.0, kRate), 0.0, 1e-10);
    }
}

TEST(CookbookGenerator, AShelfHasItsGainOnItsSideAndHalfOfItAtTheFrequency) {
    for (const char* type : {"7", "8"}) {
        CFilterTree tree;
        const CAudioFilterGen& generator = tree.generator(kTag, {{"type", type}});
        const bool isLow = *type == '7';
        for (double db : {-48.0, -20.0, 6.0, 48.0}) {
            const CSectionList list = designed(generator, kRate, {4000.0, fromDb(db), 2.0});
            EXPECT_NEAR(responseDb(list, isLow ? 0.0 : kRate / 2.0, kRate), db, 1e-9);
            EXPECT_NEAR(responseDb(list, isLow ? kRate / 2.0 : 0.0, kRate), 0.0, 1e-9);
            EXPECT_NEAR(responseDb(list, 4000.0, kRate), db / 2.0, 1e-10);
        }
    }
}

TEST(CookbookGenerator, TheShelvesAroundTheBandsUndoEachOther) {
    // The filters before and after the bands are one shelf and its inverse: -20 and +20 dB, 4000 Hz, 2 octaves.
    CFilterTree tree;
    const CAudioFilterGen& generator = tree.generator(kTag, {{"type", "8"}});
    for (double rate : {8000.0, 8334.0, 44100.0, 352800.0, 6144000.0}) {
        const CSectionList before = designed(generator, rate, {4000.0, fromDb(-20.0), 2.0});
        const CSectionList after = designed(generator, rate, {4000.0, fromDb(20.0), 2.0});
        for (double hz = 20.0; hz < rate / 2.0; hz *= 1.2) {
            // At the highest rate the numerator's zeros lie 1e-3 from 1, whose square takes six digits of the response.
            EXPECT_NEAR(responseDb(before, hz, rate) + responseDb(after, hz, rate), 0.0, 1e-7) << rate << ' ' << hz;
        }
    }
}

TEST(CookbookGenerator, AnInvertedPassFilterIsTheNegativeOfThePlainOne) {
    for (const char* type : {"0", "1"}) {
        CFilterTree tree;
        const CSectionList plain = designed(tree.generator(kTag, {{"type", type}}), kRate, {1000.0, 1.0, 1.0});
        const CSectionList inverted =
            designed(tree.generator(kTag, {{"type", type}, {"is-inverted", "true"}}), kRate, {1000.0, 1.0, 1.0});
        EXPECT_EQ(inverted.sections[0].gain, -plain.sections[0].gain);
        EXPECT_EQ(response(inverted, 3000.0, kRate), -response(plain, 3000.0, kRate));
    }
}

TEST(CookbookGenerator, InversionLeavesTheOtherTypesAlone) {
    for (const char* type : {"2", "4", "6", "8"}) {
        CFilterTree tree;
        const CSectionList plain = designed(tree.generator(kTag, {{"type", type}}), kRate, {1000.0, 2.0, 1.0});
        const CSectionList inverted =
            designed(tree.generator(kTag, {{"type", type}, {"is-inverted", "true"}}), kRate, {1000.0, 2.0, 1.0});
        EXPECT_EQ(inverted.sections[0].gain, plain.sections[0].gain) << type;
    }
}

TEST(CookbookGenerator, TheLevelDependentBiquadCarriesSixMoreNumbers) {
    CFilterTree tree;
    const CAudioFilterGen& plain = tree.generator(kTag, {{"type", "6"}, {"is-type2", "true"}});
    const CAudioFilterGen& heq = tree.generator(kTag, {{"type", "6"}, {"is-type2", "true"}, {"is-heq", "true"}});
    const CSectionList same = designed(plain, kRate, {1000.0, 2.0, 1.5});
    const CSectionList list = designed(heq, kRate, {1000.0, 2.0, 1.5, 0.11, 0.22, 0.33, 0.44, 50.0, 2000.0});
    ASSERT_EQ(list.sections.count(), 1);
    const CFilterSection& s = list.sections[0];
    EXPECT_EQ(s.type, 22);
    EXPECT_EQ(s.gain, same.sections[0].gain);
    ASSERT_EQ(s.numerators.count(), 8);
    ASSERT_EQ(s.denominators.count(), 2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(s.numerators[i], same.sections[0].numerators[i]);
        EXPECT_EQ(s.denominators[i], same.sections[0].denominators[i]);
    }
    const double given[4] = {0.11, 0.22, 0.33, 0.44};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(s.numerators[2 + i], given[i]);
    }
    // One-pole coefficients at 50 and 2000 Hz, computed with 50 digits; at 50 Hz 1 - cos is 2.5e-5, which costs five
    // digits.
    EXPECT_NEAR(s.numerators[6] / 0.0070984488865492718, 1.0, 1e-11);
    EXPECT_NEAR(s.numerators[7] / 0.24651252027253856, 1.0, 1e-12);
}

TEST(CookbookGenerator, TooFewValuesLeaveTheListEmpty) {
    CFilterTree tree;
    const CAudioFilterGen& plain = tree.generator(kTag, {{"type", "6"}});
    const CAudioFilterGen& heq = tree.generator(kTag, {{"type", "6"}, {"is-heq", "true"}});
    EXPECT_TRUE(designed(plain, kRate, {1000.0, 2.0}).sections.isEmpty());
    EXPECT_FALSE(designed(plain, kRate, {1000.0, 2.0, 1.0}).sections.isEmpty());
    EXPECT_TRUE(designed(heq, kRate, {1000.0, 2.0, 1.0, 0.1, 0.1, 0.1, 0.1, 50.0}).sections.isEmpty());
    EXPECT_FALSE(designed(heq, kRate, {1000.0, 2.0, 1.0, 0.1, 0.1, 0.1, 0.1, 50.0, 50.0}).sections.isEmpty());
}

TEST(CookbookGenerator, StandsAtMostAtItsHighestPlace) {
    for (const char* type : {"0", "1", "7", "8"}) {
        CFilterTree tree;
        const CAudioFilterGen& generator = tree.generator(kTag, {{"type", type}});
        const CSectionList limit = designed(generator, 8000.0, {0.48 * 8000.0, 0.1, 2.0});
        const CSectionList above = designed(generator, 8000.0, {4000.0, 0.1, 2.0});
        EXPECT_EQ(above.sections[0].gain, limit.sections[0].gain) << type;
        EXPECT_EQ(above.sections[0].denominators[0], limit.sections[0].denominators[0]) << type;
        EXPECT_TRUE(isStable(above)) << type;
    }
}

TEST(CookbookGenerator, AnInvalidTypeIsReported) {
    for (const char* type : {"10", "-1", "peak"}) {
        CFilterTree tree;
        EXPECT_EQ(tree.failure(tree.root(), kTag, {{"type", type}}).toUtf8(),
                  "Invalid filter type '" + std::string(type) + "' specified.");
    }
}

}  // namespace
}  // namespace tarv
