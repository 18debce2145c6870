#include <array>
#include <cmath>

#include "Tests/Audio/Filters/FilterTree.h"

namespace tarv {
namespace {

constexpr const char* kTag = "audio:fltgen-magnus";
constexpr double kRate = 44100.0;

/// A type with the numbers that it delivers at `hz`, `gain` and 1.5 octaves at 44100 Hz, computed with 50 digits.
struct CLiteralCase {
    const char* type;
    double hz;
    double gain;
    double expected[5];  // gain, numerators, denominators
};

const CLiteralCase kLiterals[] = {
    {"0",
     1000.0,
     2.0,
     {1.0535821689238312, -1.7848883824642696, 0.80311427543457869, 1.8770797825830337, -0.89628225842926534}},
    {"1",
     1000.0,
     2.0,
     {1.0585912809656803, -1.7670403574178419, 0.7850840002276237, 1.867144967596019, -0.88624581055131302}},
    {"2",
     1000.0,
     2.0,
     {1.0536532961850431, -1.7846337603921527, 0.80285705335975011, 1.8769387124599151, -0.89613974516256978}},
    {"3",
     1000.0,
     2.0,
     {0.11725746455255803, -0.77733706297685057, -0.22266293702314949, 1.837698171393441, -0.85648626752396939}},
    {"4",
     1000.0,
     2.0,
     {0.12371592619104045, -0.73137229504667711, -0.26862770495332289, 1.8242670944518997, -0.84291787512516592}},
    {"5",
     1000.0,
     2.0,
     {0.11734936534188443, -0.77664753059549918, -0.22335246940450079, 1.8375070740486377, -0.85629321645502299}},
    {"1",
     12000.0,
     std::pow(10.0, -0.6),
     {0.47112142434494947, 0.13653682357495736, 0.39046791154136634, 0.17185175355450699, 0.1087436006560083}},
};

std::array<double, 5> numbersOf(const CSectionList& list) {
    const CFilterSection& s = list.sections[0];
    return {s.gain, s.numerators[0], s.numerators[1], s.denominators[0], s.denominators[1]};
}

TEST(BandFilter, DeliversTheNumbersOfTheFormulas) {
    for (const CLiteralCase& c : kLiterals) {
        CFilterTree tree;
        const CSectionList list = designed(tree.generator(kTag, {{"type", c.type}}), kRate, {c.hz, c.gain, 1.5});
        ASSERT_EQ(list.sections.count(), 1);
        EXPECT_EQ(list.sections[0].type, 0);
        const std::array<double, 5> numbers = numbersOf(list);
        for (size_t i = 0; i < numbers.size(); ++i) {
            EXPECT_NEAR(numbers[i] / c.expected[i], 1.0, 1e-12) << c.type << ' ' << c.hz << ' ' << i;
        }
    }
}

TEST(BandFilter, TheKnownPeakHasItsKnownCoefficients) {
    CFilterTree tree;
    const CSectionList list = designed(tree.generator(kTag, {{"type", "1"}}), kRate, {1000.0, 2.0, 1.5});
    // b = 1.128832, -1.994692, 0.886228 and a = 1.066353, -1.991036, 0.945051, each rounded to six decimals.
    const CFilterSection& s = list.sections[0];
    EXPECT_NEAR(s.gain, 1.128832 / 1.066353, 2e-6);
    EXPECT_NEAR(s.numerators[0], -1.994692 / 1.128832, 2e-6);
    EXPECT_NEAR(s.numerators[1], 0.886228 / 1.128832, 2e-6);
    EXPECT_NEAR(s.denominators[0], 1.991036 / 1.066353, 2e-6);
    EXPECT_NEAR(s.denominators[1], -0.945051 / 1.066353, 2e-6);
    EXPECT_NEAR(std::abs(response(list, 1000.0, kRate)), 2.0, 1e-9);
    EXPECT_NEAR(std::abs(response(list, 0.0, kRate)), 1.0, 1e-11);
    EXPECT_NEAR(std::abs(response(list, kRate / 2.0, kRate)), 1.0018, 5e-5);
}

TEST(BandFilter, KeepsTheGainAtTheCentreAndAtDc) {
    for (const char* type : {"0", "1", "2"}) {
        CFilterTree tree;
        const CAudioFilterGen& generator = tree.generator(kTag, {{"type", type}});
        for (double db : {-36.0, -6.0, -0.5, 3.0, 12.0}) {
            for (double hz : {64.0, 1000.0, 6000.0, 15000.0}) {
                const CSectionList list = designed(generator, kRate, {hz, fromDb(db), 1.0});
                EXPECT_NEAR(responseDb(list, hz, kRate), db, 1e-6) << type << ' ' << hz;
                EXPECT_NEAR(responseDb(list, 0.0, kRate), 0.0, 1e-7) << type << ' ' << hz;
            }
        }
    }
}

TEST(BandFilter, ABandPassHasUnityAtTheCentreAndNothingAtDc) {
    for (const char* type : {"3", "4", "5"}) {
        CFilterTree tree;
        const CAudioFilterGen& generator = tree.generator(kTag, {{"type", type}});
        for (double hz : {64.0, 1000.0, 6000.0, 15000.0}) {
            const CSectionList list = designed(generator, kRate, {hz, 7.0, 1.0});
            EXPECT_NEAR(responseDb(list, hz, kRate), 0.0, 1e-6) << type << ' ' << hz;
            EXPECT_NEAR(std::abs(response(list, 0.0, kRate)), 0.0, 1e-9) << type << ' ' << hz;
        }
    }
}

TEST(BandFilter, DesignsAAndCHaveHalfTheGainInDecibelsAtTheEdges) {
    for (const char* type : {"0", "2"}) {
        CFilterTree tree;
        const CAudioFilterGen& generator = tree.generator(kTag, {{"type", type}});
        for (double octaves : {0.5, 1.5}) {
            const CSectionList list = designed(generator, kRate, {1000.0, 2.0, octaves});
            for (double side : {-0.5, 0.5}) {
                // Both fit the band on the straight frequency axis, which a section of second order bends a little.
                EXPECT_NEAR(responseDb(list, 1000.0 * std::exp2(octaves * side), kRate), toDb(2.0) / 2.0, 0.02) << type;
            }
        }
    }
}

TEST(BandFilter, DesignBHasABandWiderByATenth) {
    // Far below the rate its bandwidth term is that of the bilinear design times sqrt(12) / pi; the formula's
    // approximation of the analogue axis leaves that factor.
    CFilterTree tree;
    const CAudioFilterGen& generator = tree.generator(kTag, {{"type", "1"}});
    const double octaves = 1.5;
    const double gain = 2.0;
    const CSectionList list = designed(generator, kRate, {100.0, gain, octaves});
    const double centre = std::tan(M_PI * 100.0 / kRate);
    const double edge = std::tan(M_PI * 100.0 * std::exp2(-octaves / 2.0) / kRate);
    const double damping = std::sqrt(12.0) / M_PI * (centre * centre / edge - edge) / std::sqrt(gain);
    // 1 + W on both sides: a2 / a0 = (1 + W - Y) / (1 + W + Y).
    const double sum = 1.0 + centre * centre;
    EXPECT_NEAR(-list.sections[0].denominators[1], (sum - damping) / (sum + damping), 1e-6);
}

TEST(BandFilter, IsNotCrampedTowardsHalfTheRate) {
    // The analogue peak H(s) = (s^2 + s G B + 1) / (s^2 + s B + 1) still has gain at half the rate; a bilinear design
    // has none.
    CFilterTree tree;
    const CSectionList list = designed(tree.generator(kTag, {{"type", "1"}}), kRate, {12000.0, fromDb(12.0), 1.5});
    EXPECT_GT(responseDb(list, kRate / 2.0, kRate), 3.0);
}

TEST(BandFilter, BoostAndCutOfTheSameSizeUndoEachOther) {
    CFilterTree tree;
    const CAudioFilterGen& generator = tree.generator(kTag, {{"type", "1"}});
    for (double rate : {44100.0, 96000.0}) {
        for (double db : {0.5, 6.0, 12.0}) {
            const std::array<double, 5> up = numbersOf(designed(generator, rate, {1000.0, fromDb(db), 1.5}));
            const std::array<double, 5> down = numbersOf(designed(generator, rate, {1000.0, fromDb(-db), 1.5}));
            // Numerator and denominator change places; the differences of the squared gains cost up to five digits.
            EXPECT_NEAR(up[0] * down[0], 1.0, 1e-10);
            EXPECT_NEAR(up[1], -down[3], 1e-10);
            EXPECT_NEAR(up[2], -down[4], 1e-10);
            EXPECT_NEAR(up[3], -down[1], 1e-10);
            EXPECT_NEAR(up[4], -down[2], 1e-10);
        }
    }
}

TEST(BandFilter, PeakAtExactlyZeroDecibelsStillHasASection) {
    for (const char* type : {"0", "1", "2"}) {
        CFilterTree tree;
        const CAudioFilterGen& generator = tree.generator(kTag, {{"type", type}});
        const std::array<double, 5> cut = numbersOf(designed(generator, kRate, {1000.0, 0.999, 1.5}));
        for (double gain : {1.0, 1.0009, 0.9991}) {
            const CSectionList list = designed(generator, kRate, {1000.0, gain, 1.5});
            ASSERT_EQ(list.sections.count(), 1) << type;
            EXPECT_NEAR(std::abs(response(list, 1000.0, kRate)), 0.999, 1e-9) << type;
            EXPECT_EQ(numbersOf(list), cut) << type << ' ' << gain;
        }
        EXPECT_NE(numbersOf(designed(generator, kRate, {1000.0, 1.0011, 1.5})), cut) << type;
    }
}

TEST(BandFilter, TwentyKilohertzAt44100IsStable) {
    CFilterTree tree;
    const CAudioFilterGen& generator = tree.generator(kTag, {{"type", "1"}});
    for (double db : {-12.0, 0.0, 12.0}) {
        const CSectionList list = designed(generator, kRate, {20000.0, fromDb(db), 1.5});
        EXPECT_TRUE(isStable(list)) << db;
        const double expected = db == 0.0 ? toDb(0.999) : db;
        EXPECT_NEAR(responseDb(list, 20000.0, kRate), expected, 1e-6) << db;
    }
}

TEST(BandFilter, HalfTheRateIsLimited) {
    CFilterTree tree;
    const CAudioFilterGen& generator = tree.generator(kTag, {{"type", "1"}});
    // The band's lower edge follows the frequency as given, the centre stands at 0.99 of half the rate.
    for (double hz : {22050.0, 30000.0}) {
        const CSectionList list = designed(generator, kRate, {hz, 2.0, 1.5});
        EXPECT_TRUE(isStable(list)) << hz;
        EXPECT_NEAR(responseDb(list, 0.99 * kRate / 2.0, kRate), toDb(2.0), 1e-6) << hz;
    }
    const std::array<double, 5> far = numbersOf(designed(generator, kRate, {100000.0, 2.0, 1.5}));
    EXPECT_EQ(numbersOf(designed(generator, kRate, {200000.0, 2.0, 1.5})), far);
}

double peakPlace(const CSectionList& list) {
    double best = 0.0;
    double highest = 0.0;
    for (double place = 0.24; place < 0.26; place += 1e-5) {
        const double magnitude = std::abs(response(list, place, 1.0));
        if (magnitude > highest) {
            highest = magnitude;
            best = place;
        }
    }
    return best;
}

TEST(BandFilter, AtAQuarterOfTheRateThePeakLandsOnePerCentLow) {
    CFilterTree tree;
    const CAudioFilterGen& generator = tree.generator(kTag, {{"type", "1"}});
    EXPECT_NEAR(peakPlace(designed(generator, kRate, {0.25 * kRate, 2.0, 1.5})), 0.2475, 2e-5);
    // Beyond the step's reach the frequency is met.
    EXPECT_NEAR(peakPlace(designed(generator, kRate, {0.2449 * kRate, 2.0, 1.5})), 0.2449, 2e-5);
}

TEST(BandFilter, WhereTheStepLandsOnTheSingularPointThePeakStaysWhereItIs) {
    for (const char* type : {"1", "4"}) {
        CFilterTree tree;
        const CAudioFilterGen& generator = tree.generator(kTag, {{"type", type}});
        for (double db : {-48.0, -12.0, -0.5, 0.0, 0.1, 6.0, 48.0}) {
            for (double offset : {0.0, 1e-15, -1e-15, 1e-13, -1e-11, 1e-9, -1e-8, 1e-7, -4e-7, 1e-6}) {
                const double place = 0.25 / 0.99 * (1.0 + offset);
                const CSectionList list = designed(generator, kRate, {place * kRate, fromDb(db), 1.5});
                EXPECT_TRUE(isStable(list)) << type << ' ' << db << ' ' << offset;
                const double gain = *type == '4' ? 0.0 : db == 0.0 ? toDb(0.999) : db;
                // 1e-6 beside the singular point five to six digits of the design are left.
                EXPECT_NEAR(responseDb(list, place * 0.99 * kRate, kRate), gain, 2e-3)
                    << type << ' ' << db << ' ' << offset;
            }
        }
    }
}

TEST(BandFilter, TooFewValuesLeaveTheListEmpty) {
    CFilterTree tree;
    EXPECT_TRUE(designed(tree.generator(kTag, {{"type", "1"}}), kRate, {1000.0, 2.0}).sections.isEmpty());
}

TEST(BandFilter, NumbersThatNoFilterCanHaveReturn) {
    CFilterTree tree;
    const CAudioFilterGen& generator = tree.generator(kTag, {{"type", "1"}});
    for (double bad : {0.0, -1000.0, std::nan(""), HUGE_VAL}) {
        EXPECT_EQ(designed(generator, kRate, {bad, 2.0, 1.5}).sections.count(), 1);
        EXPECT_EQ(designed(generator, kRate, {1000.0, bad, 1.5}).sections.count(), 1);
        EXPECT_EQ(designed(generator, kRate, {1000.0, 2.0, bad}).sections.count(), 1);
    }
}

TEST(BandFilter, AnInvalidTypeIsReported) {
    for (const char* type : {"6", "-1", "x"}) {
        CFilterTree tree;
        EXPECT_EQ(tree.failure(tree.root(), kTag, {{"type", type}}).toUtf8(),
                  "Invalid filter type '" + std::string(type) + "' specified.");
    }
}

}  // namespace
}  // namespace tarv
