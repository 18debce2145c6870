#include "Audio/Kernels/TubeKernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "Audio/Kernels/CTubeBlock.h"

namespace tarv {
namespace {

constexpr double kRelative = 1e-12;  // the design's sines and roots are rounded; nothing amplifies that

CTubeBlock defaults() {
    CTubeBlock block = {};
    block.ratioA = 1.0 / 1.05;
    block.ratioB = 1.0 / 1.1;
    block.kneeA = 3.5;
    block.kneeB = 4.8;
    block.biasI = -1.8;
    block.biasV = 0.5;
    block.gainI = 1.0;
    block.gainV = 0.15;
    block.autoGainPoint = 1.009;
    block.feedFrequency = 50.0;
    return block;
}

void design(CTubeBlock& block, double rate = 44100.0) {
    COperation operation = {};
    operation.pointers[0] = &block;
    operation.immediate = rate;
    kernelMetaTubeInit(operation);
}

std::vector<double> run(CTubeBlock& block, std::vector<double> in, std::vector<double> feed) {
    std::vector<double> out(in.size());
    COperation operation = {};
    operation.count = static_cast<int32_t>(in.size());
    operation.pointers[0] = out.data();
    operation.pointers[1] = &block;
    operation.pointers[2] = in.data();
    operation.pointers[3] = feed.data();
    kernelMetaTube(operation);
    return out;
}

/// A block whose output is curve A itself: no bias, no mix, no gain.
CTubeBlock curveAOnly(double ratio, double knee) {
    CTubeBlock block = {};
    block.ratioA = ratio;
    block.ratioB = 0.5;
    block.kneeA = knee;
    block.gainI = 1.0;
    block.autoGainPoint = 1.0;
    block.feedFrequency = 1000.0;
    design(block);
    block.autoGain = 1.0;
    block.restOutput = 0.0;
    return block;
}

void expectRelative(double actual, double expected, const char* what) {
    EXPECT_NEAR(actual, expected, std::fabs(expected) * kRelative) << what;
}

TEST(TubeKernels, TheDefaultDesignHasTheReferenceValues) {
    CTubeBlock block = defaults();
    design(block);
    const struct {
        const char* what;
        double actual;
        double expected;
    } kRows[] = {
        {"bend a", block.curveA.bend, -0.04761904761904767},
        {"slope a", block.curveA.slope, 0.9523809523809523},
        {"start a", block.curveA.kneeStart, -1.75},
        {"centre a", block.curveA.centreOffset, -73.54164307285001},
        {"end a", block.curveA.kneeEnd, 1.7480192410177655},
        {"radius a", block.curveA.radiusSquared, 5408.373265854468},
        {"bend b", block.curveB.bend, -0.09090909090909094},
        {"slope b", block.curveB.slope, 0.9090909090909091},
        {"start b", block.curveB.kneeStart, -2.4},
        {"centre b", block.curveB.centreOffset, -52.90886644124921},
        {"end b", block.curveB.kneeEnd, 2.390143695522489},
        {"radius b", block.curveB.radiusSquared, 2799.3481480979467},
        {"rest", block.restOutput, -1.8017010928369976},
        {"auto-gain", block.autoGain, 1.0074737505099467},
        {"feed 44100", block.feedCoef, 0.007098448886555695},
    };
    for (const auto& row : kRows) {
        expectRelative(row.actual, row.expected, row.what);
    }
    design(block, 48000.0);
    // 1 + sqrt(a^2 - 1) - a loses four digits by cancellation near a = 1.
    EXPECT_NEAR(block.feedCoef, 0.006523589722669966, 1e-14);
    design(block, 96000.0);
    EXPECT_NEAR(block.feedCoef, 0.0032671406696184774, 1e-14);
}

TEST(TubeKernels, TheDesignClearsTheFeedStateAndLeavesTheSlots) {
    CTubeBlock block = defaults();
    block.feedState = 3.0;
    design(block);
    EXPECT_EQ(block.feedState, 0.0);
    EXPECT_EQ(block.kneeB, 4.8);
    EXPECT_EQ(block.feedFrequency, 50.0);
}

TEST(TubeKernels, AnInvertedFeedNegatesItsCoefficient) {
    CTubeBlock block = defaults();
    design(block);
    const double coefficient = block.feedCoef;
    block.feedInverted = 1;
    design(block);
    EXPECT_EQ(block.feedCoef, -coefficient);
}

TEST(TubeKernels, ARatioOfOneIsLimitedSoThatTheArcKeepsItsRadius) {
    CTubeBlock block = defaults();
    block.ratioA = 1.0;
    design(block);
    EXPECT_EQ(block.curveA.bend, -9.999999999998899e-05);
    EXPECT_TRUE(std::isfinite(block.curveA.radiusSquared));
}

TEST(TubeKernels, ARatioAtTheLimitIsFlatAboveItsKnee) {
    CTubeBlock block = defaults();
    block.ratioA = 0.002;
    design(block);
    EXPECT_EQ(block.curveA.bend, -1.0);
    EXPECT_EQ(block.curveA.slope, 0.0);
}

TEST(TubeKernels, AKneeOfZeroIsAHardCornerAtTheOrigin) {
    CTubeBlock block = curveAOnly(0.25, 0.0);
    EXPECT_EQ(block.curveA.kneeStart, 0.0);
    EXPECT_EQ(block.curveA.centreOffset, 0.0);
    EXPECT_EQ(block.curveA.kneeEnd, 0.0);
    EXPECT_EQ(run(block, {-1.0, 0.0, 1e-300, 2.0}, {0, 0, 0, 0}), (std::vector<double>{-1.0, 0.0, 2.5e-301, 0.5}));
}

TEST(TubeKernels, AtTheKneesStartTheCurveIsTheIdentityAndAtItsEndTheLine) {
    CTubeBlock block = curveAOnly(0.25, 2.0);
    const double start = block.curveA.kneeStart;
    const double end = block.curveA.kneeEnd;
    const std::vector<double> out = run(block, {start, end}, {0, 0});
    EXPECT_EQ(out[0], start);
    EXPECT_EQ(out[1], block.curveA.slope * end);
}

TEST(TubeKernels, TheArcJoinsBothLinesWithoutAStep) {
    CTubeBlock block = curveAOnly(0.25, 2.0);
    const double start = block.curveA.kneeStart;
    const double end = block.curveA.kneeEnd;
    const std::vector<double> out = run(block, {start + 1e-6, end - 1e-6}, {0, 0});
    EXPECT_NEAR(out[0], start + 1e-6, 1e-11);  // the slopes agree too: what is left is of second order
    EXPECT_NEAR(out[1], 0.25 * (end - 1e-6), 1e-11);
}

TEST(TubeKernels, SilenceComesOutAsExactSilenceFromTheFirstSample) {
    CTubeBlock block = defaults();
    design(block);
    // rest is y with the mix at rest computed in another order, so v x (b - a) may differ in the last bit
    for (const double y : run(block, std::vector<double>(64), std::vector<double>(64))) {
        EXPECT_NEAR(y, 0.0, 4e-16);
    }
}

TEST(TubeKernels, ASteadyInputAtTheAutoGainPointSettlesWhereTheRecursionDoes) {
    CTubeBlock block = defaults();
    design(block);
    const std::vector<double> level(44100, 1.009);
    const double settled = run(block, level, level).back();
    // The feed acts on the output before the auto-gain, so the state is not 1.0 to the last digit.
    EXPECT_NEAR(settled, 1.00004476, 5e-9);
}

TEST(TubeKernels, ClearingKeepsTheDesign) {
    CTubeBlock block = defaults();
    design(block);
    const CTubeBlock designed = block;
    run(block, {0.5, 0.25}, {0.5, 0.25});
    EXPECT_NE(block.feedState, 0.0);
    COperation operation = {};
    operation.pointers[0] = &block;
    kernelMetaTubeClear(operation);
    EXPECT_EQ(block.feedState, 0.0);
    EXPECT_EQ(block.autoGain, designed.autoGain);
    EXPECT_EQ(block.curveB.kneeEnd, designed.curveB.kneeEnd);
}

TEST(TubeKernels, AnUnguardedDenominatorGivesAnInfiniteGain) {
    CTubeBlock block = defaults();
    block.autoGainPoint = 0.0;  // silence is to come out at 1
    block.biasV = 0.0;
    design(block);
    EXPECT_TRUE(std::isinf(block.autoGain));
}

}  // namespace
}  // namespace tarv
