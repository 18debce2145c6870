#include "Tests/Audio/Filters/FilterTree.h"

namespace tarv {
namespace {

constexpr const char* kTag = "audio:fltgen-lphp1";

/// A type with the section and the value that it delivers for 1000 Hz at 44100 Hz (computed with 50 digits).
struct CTypeCase {
    const char* type;
    int32_t stages;
    bool isHighPass;
    int32_t sectionType;
    double value;
};

constexpr CTypeCase kTypes[] = {
    {"0", 1, false, 5, 0.13258300293690123},  {"1", 2, false, 6, 0.19786713790213195},
    {"2", 3, false, 7, 0.24245031828313099},  {"3", 4, false, 8, 0.27723055251071521},
    {"4", 1, true, 9, 0.13258300293690123},   {"5", 2, true, 10, 0.087557898990041724},
    {"6", 3, true, 11, 0.070030932427545114}, {"7", 4, true, 12, 0.060072509807175052},
};

TEST(OnePoleGenerator, DeliversOneSectionOfOneValue) {
    for (const CTypeCase& c : kTypes) {
        CFilterTree tree;
        const CSectionList list = designed(tree.generator(kTag, {{"type", c.type}}), 44100.0, {1000.0});
        ASSERT_EQ(list.sections.count(), 1) << c.type;
        EXPECT_EQ(list.isParallel, 0);
        EXPECT_EQ(list.latency, 0);
        EXPECT_EQ(list.sections[0].type, c.sectionType);
        EXPECT_EQ(list.sections[0].gain, 1.0);
        EXPECT_EQ(list.sections[0].flags, 0);
        EXPECT_EQ(list.sections[0].numerators.count(), 0);
        ASSERT_EQ(list.sections[0].denominators.count(), 1);
        // The root is taken of a difference near 0.01, which loses two digits.
        EXPECT_NEAR(list.sections[0].denominators[0] / c.value, 1.0, 1e-12) << c.type;
    }
}

TEST(OnePoleGenerator, TheMinusThreeDecibelPointFallsOnTheFrequency) {
    for (const CTypeCase& c : kTypes) {
        CFilterTree tree;
        const CSectionList list = designed(tree.generator(kTag, {{"type", c.type}}), 96000.0, {100.0});
        // Exact for one low-pass stage; otherwise the analogue relation, which holds far below the rate.
        EXPECT_NEAR(responseDb(list, 100.0, 96000.0), -3.0103, 0.05) << c.type;
    }
}

TEST(OnePoleGenerator, FallsSixDecibelsAnOctaveAStage) {
    for (const CTypeCase& c : kTypes) {
        CFilterTree tree;
        const CSectionList list = designed(tree.generator(kTag, {{"type", c.type}}), 96000.0, {300.0});
        const double far = c.isHighPass ? 300.0 / 64.0 : 300.0 * 32.0;
        const double octave = c.isHighPass ? 0.5 : 2.0;
        const double slope = responseDb(list, far * octave, 96000.0) - responseDb(list, far, 96000.0);
        // Towards half the rate a low-pass without zeros there falls less: 0.6 dB a stage at a fifth of it.
        EXPECT_NEAR(slope, -6.0206 * c.stages, c.isHighPass ? 0.02 * c.stages : 1.5 * c.stages) << c.type;
    }
}

TEST(OnePoleGenerator, PassesItsSideOfTheSpectrumAtUnity) {
    for (const CTypeCase& c : kTypes) {
        CFilterTree tree;
        const CSectionList list = designed(tree.generator(kTag, {{"type", c.type}}), 96000.0, {20.0});
        if (c.isHighPass) {
            // The output is taken behind the update of the stage, which costs (2 - 2k) / (2 - k) at half the rate.
            const double k = list.sections[0].denominators[0];
            EXPECT_NEAR(std::abs(response(list, 48000.0, 96000.0)), std::pow((2.0 - 2.0 * k) / (2.0 - k), c.stages),
                        1e-12);
            EXPECT_NEAR(std::abs(response(list, 0.0, 96000.0)), 0.0, 1e-12) << c.type;
        } else {
            EXPECT_NEAR(std::abs(response(list, 0.0, 96000.0)), 1.0, 1e-12) << c.type;
        }
    }
}

TEST(OnePoleGenerator, ReadsTheGainOnlyWithUseGain) {
    CFilterTree tree;
    const CAudioFilterGen& plain = tree.generator(kTag, {{"type", "4"}});
    const CAudioFilterGen& withGain = tree.generator(kTag, {{"type", "4"}, {"use-gain", "true"}});
    EXPECT_EQ(designed(plain, 44100.0, {6.0, 2.0}).sections[0].gain, 1.0);
    EXPECT_EQ(designed(withGain, 44100.0, {6.0, 2.0}).sections[0].gain, 2.0);
    EXPECT_EQ(designed(withGain, 44100.0, {6.0}).sections[0].gain, 1.0);
}

TEST(OnePoleGenerator, StandsAtMostAtItsHighestPlace) {
    CFilterTree tree;
    const CAudioFilterGen& generator = tree.generator(kTag, {{"type", "4"}});
    const double limit = designed(generator, 8000.0, {0.48 * 8000.0}).sections[0].denominators[0];
    EXPECT_EQ(designed(generator, 8000.0, {21000.0}).sections[0].denominators[0], limit);
    EXPECT_LT(designed(generator, 8000.0, {0.479 * 8000.0}).sections[0].denominators[0], limit);
}

TEST(OnePoleGenerator, WithoutValuesLeavesTheListEmpty) {
    CFilterTree tree;
    EXPECT_TRUE(designed(tree.generator(kTag, {{"type", "4"}}), 44100.0, {}).sections.isEmpty());
}

TEST(OnePoleGenerator, AnInvalidTypeIsReported) {
    for (const char* type : {"8", "-1", "first"}) {
        CFilterTree tree;
        EXPECT_EQ(tree.failure(tree.root(), kTag, {{"type", type}}).toUtf8(),
                  "Invalid filter type '" + std::string(type) + "' specified.");
    }
}

TEST(BypassGenerator, DeliversNoSectionAndForgetsTheLast) {
    CFilterTree tree;
    CSectionList list = designed(tree.generator(kTag, {{"type", "4"}}), 44100.0, {6.0});
    list.isParallel = 1;
    list.latency = 7;
    const double value = 1000.0;
    tree.generator("audio:fltgen-bypass").design(list, 44100.0, &value, 1);
    EXPECT_TRUE(list.sections.isEmpty());
    EXPECT_EQ(list.isParallel, 0);
    EXPECT_EQ(list.latency, 0);
}

}  // namespace
}  // namespace tarv
