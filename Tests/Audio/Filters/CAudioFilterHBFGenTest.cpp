#include <cmath>

#include "Tests/Audio/Filters/FilterTree.h"

namespace tarv {
namespace {

constexpr const char* kTag = "audio:fltgen-hbf";

TEST(HalfBandGenerator, DeliversItsCoefficients) {
    CFilterTree tree;
    const CSectionList list = designed(tree.generator(kTag, {{"order", "4"},
                                                             {"a", "0.042454709865267684,0.393319893190328010"},
                                                             {"b", "0.170739850497499070,0.745713588720222980"}}),
                                       88200.0, {});
    ASSERT_EQ(list.sections.count(), 1);
    EXPECT_EQ(list.latency, 0);
    const CFilterSection& s = list.sections[0];
    EXPECT_EQ(s.type, 14);
    EXPECT_EQ(s.gain, 0.5);
    ASSERT_EQ(s.numerators.count(), 2);
    ASSERT_EQ(s.denominators.count(), 2);
    // Texts become numbers as integer part + fraction / 10^digits: within a unit in the last place or two.
    EXPECT_NEAR(s.numerators[0], 0.042454709865267684, 1e-16);
    EXPECT_NEAR(s.numerators[1], 0.393319893190328010, 1e-16);
    EXPECT_NEAR(s.denominators[0], 0.170739850497499070, 1e-16);
    EXPECT_NEAR(s.denominators[1], 0.745713588720222980, 2e-16);
}

TEST(HalfBandGenerator, TheSectionTypeFollowsTheLength) {
    std::string list = "0.1";
    for (int32_t length = 1; length <= 8; ++length) {
        for (const char* type : {"0", "2"}) {
            CFilterTree tree;
            const CAudioFilterGen& generator =
                tree.generator(kTag, {{"type", type}, {"a", list.c_str()}, {"b", list.c_str()}});
            const CSectionList sections = designed(generator, 88200.0, {});
            EXPECT_EQ(sections.sections[0].type, 12 + length);
            EXPECT_EQ(sections.sections[0].gain, *type == '0' ? 0.5 : 1.0);
        }
        list += ",0.1";
    }
}

TEST(HalfBandGenerator, TypeOneIsAChainOfSixAllPasses) {
    CFilterTree tree;
    const CSectionList list =
        designed(tree.generator(kTag, {{"type", "1"}, {"a", "0.1,0.2,0.3"}, {"b", "0.4,0.5,0.6"}}), 88200.0, {});
    EXPECT_EQ(list.sections[0].type, 23);
    EXPECT_EQ(list.sections[0].gain, 1.0);
    EXPECT_EQ(list.sections[0].numerators.count() + list.sections[0].denominators.count(), 6);
}

TEST(HalfBandGenerator, PassesTheLowerHalfAndStopsTheUpper) {
    CFilterTree tree;
    const CSectionList list = designed(
        tree.generator(kTag,
                       {{"order", "8"},
                        {"a", "0.035832788431062100,0.272040143396457710,0.572057197235700250,0.827124761997323770"},
                        {"b", "0.134090141943066930,0.424324871271868350,0.706292142138639220,0.941503094173755220"}}),
        1.0, {});
    // Unity within what is left over by a stop band of 106 dB; -3 dB in the middle.
    EXPECT_NEAR(responseDb(list, 0.0, 1.0), 0.0, 1e-12);
    EXPECT_NEAR(responseDb(list, 0.225, 1.0), 0.0, 1e-9);
    EXPECT_NEAR(responseDb(list, 0.25, 1.0), -3.0103, 1e-4);
    EXPECT_LT(responseDb(list, 0.275, 1.0), -106.0);
}

struct CBadCase {
    const char* type;
    const char* order;
    const char* a;
    const char* b;
    const char* message;
};

constexpr CBadCase kBad[] = {
    {"3", "", "0.1", "0.2", "Invalid filter type '3' specified."},
    {"-1", "", "0.1", "0.2", "Invalid filter type '-1' specified."},
    {"0", "", "", "0.2", "Not enough 'a' coefficients defined."},
    {"0", "", "0.1,x", "0.2,0.3", "Not enough 'a' coefficients defined."},
    {"0", "4", "0.1", "0.2,0.3", "Not enough 'a' coefficients defined."},
    {"0", "", "0.1", "", "Not enough 'b' coefficients defined."},
    {"0", "4", "0.1,0.2", "0.2", "Not enough 'b' coefficients defined."},
    {"1", "", "0.1,0.2", "0.2,0.3,0.4", "Not enough 'a' coefficients defined."},
    {"0", "", "0.1,0.2", "0.2",
     "Coefficient count should match in 'a' and 'b' coefficient "
     "lists."},
    {"0", "", "0,0,0,0,0,0,0,0,0", "0,0,0,0,0,0,0,0,0", "Too many coefficients defined: 9 (8 at most)."},
    {"1", "", "0,0,0,0", "0,0,0,0", "Too many coefficients defined: 4 (3 at most)."},
};

TEST(HalfBandGenerator, BadAttributesAreReported) {
    for (const CBadCase& c : kBad) {
        CFilterTree tree;
        EXPECT_EQ(
            tree.failure(tree.root(), kTag, {{"type", c.type}, {"order", c.order}, {"a", c.a}, {"b", c.b}}).toUtf8(),
            c.message);
    }
}

TEST(PhasePair, DeliversSixCoefficientsFromTheCorners) {
    // Computed with 50 digits for 44100 Hz.
    const double expected[2][6] = {
        {-0.99922900427829808, -0.99415878755187981, -0.97643624693209652, -0.90871182023994823, -0.67793562758654913,
         -0.079210140895540737},
        {-0.99732702572125387, -0.98817269842936062, -0.95336480681420055, -0.82519598941072914, -0.43905105484499984,
         0.49495650613976855},
    };
    for (int type = 0; type < 2; ++type) {
        CFilterTree tree;
        const CSectionList list =
            designed(tree.generator("audio:fltgen-apf1", {{"type", type == 0 ? "0" : "1"}}), 44100.0, {});
        ASSERT_EQ(list.sections.count(), 1);
        const CFilterSection& s = list.sections[0];
        EXPECT_EQ(s.type, 23);
        EXPECT_EQ(s.gain, 1.0);
        ASSERT_EQ(s.numerators.count() + s.denominators.count(), 6);
        for (int32_t i = 0; i < 6; ++i) {
            const double value = i < 3 ? s.numerators[i] : s.denominators[i - 3];
            EXPECT_NEAR(value / expected[type][i], 1.0, 1e-12) << type << ' ' << i;
        }
    }
}

TEST(PhasePair, TheTwoSidesStandAtRightAnglesOverTheAudioBand) {
    // The corners belong to the analogue pair, which is met far below the rate; 20 Hz to 15 kHz holds at 192 kHz.
    CFilterTree tree;
    const CSectionList one = designed(tree.generator("audio:fltgen-apf1", {{"type", "0"}}), 192000.0, {});
    const CSectionList two = designed(tree.generator("audio:fltgen-apf1", {{"type", "1"}}), 192000.0, {});
    for (double hz = 20.0; hz < 15000.0; hz *= 1.05) {
        const std::complex<double> ratio = response(one, hz, 192000.0) / response(two, hz, 192000.0);
        EXPECT_NEAR(std::abs(ratio), 1.0, 1e-9) << hz;
        EXPECT_NEAR(std::fabs(std::arg(ratio)) * 180.0 / M_PI, 90.0, 1.0) << hz;
    }
}

TEST(PhasePair, AnInvalidTypeIsReported) {
    CFilterTree tree;
    EXPECT_EQ(tree.failure(tree.root(), "audio:fltgen-apf1", {{"type", "2"}}).toUtf8(),
              "Invalid filter type '2' specified.");
}

}  // namespace
}  // namespace tarv
