#include "Audio/Kernels/CommonKernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "Audio/Kernels/CrossfadeKernels.h"
#include "Audio/Kernels/MidSideKernels.h"
#include "Audio/Kernels/NoiseKernels.h"
#include "Audio/Kernels/ResampleKernels.h"

namespace tarv {
namespace {

const double kNan = std::numeric_limits<double>::quiet_NaN();
const double kInfinity = std::numeric_limits<double>::infinity();

/// Runs a kernel over several samples: the destination is added in front of the sources.
std::vector<double> run(CKernelFunction kernel, std::vector<std::vector<double>> sources, double immediate = 0.0) {
    std::vector<double> out(sources.empty() ? 4 : sources[0].size());
    COperation operation = {};
    operation.count = static_cast<int32_t>(out.size());
    operation.immediate = immediate;
    operation.pointers[0] = out.data();
    for (size_t j = 0; j < sources.size(); ++j) {
        operation.pointers[j + 1] = sources[j].data();
    }
    kernel(operation);
    return out;
}

TEST(CommonKernels, GreaterAndLesserGiveTheSecondOfEquals) {
    for (const auto kernel : {kernelMax2, kernelMin2}) {
        const std::vector<double> out = run(kernel, {{0.0, -0.0, 0.0}, {-0.0, 0.0, -0.0}});
        EXPECT_TRUE(std::signbit(out[0]));
        EXPECT_FALSE(std::signbit(out[1]));
        EXPECT_TRUE(std::signbit(out[2]));  // the odd sample goes the scalar way
    }
}

TEST(CommonKernels, GreaterAndLesserGiveTheSecondWhenTheFirstIsNotANumber) {
    for (const auto kernel : {kernelMax2, kernelMin2}) {
        EXPECT_EQ(run(kernel, {{kNan, kNan, kNan}, {1.0, -2.0, 3.0}}), (std::vector<double>{1.0, -2.0, 3.0}));
        for (const double y : run(kernel, {{1.0, -2.0, 3.0}, {kNan, kNan, kNan}})) {
            EXPECT_TRUE(std::isnan(y));
        }
    }
}

TEST(CommonKernels, ThreeAreComparedFromTheFirstOn) {
    // Of a first that is not a number and a second the second is taken; the third is compared with that.
    EXPECT_EQ(run(kernelMax3, {{kNan, kNan, kNan}, {1.0, 1.0, 1.0}, {0.5, 2.0, 0.5}}),
              (std::vector<double>{1.0, 2.0, 1.0}));
    EXPECT_EQ(run(kernelMin3, {{kNan, kNan, kNan}, {1.0, 1.0, 1.0}, {0.5, 2.0, 0.5}}),
              (std::vector<double>{0.5, 1.0, 0.5}));
    for (const auto kernel : {kernelMax3, kernelMin3}) {
        EXPECT_EQ(run(kernel, {{5.0, 5.0, 5.0}, {kNan, kNan, kNan}, {7.0, 3.0, 7.0}}),
                  (std::vector<double>{7.0, 3.0, 7.0}));
    }
}

TEST(CommonKernels, InfinitiesPass) {
    EXPECT_EQ(run(kernelMulc, {{kInfinity, -kInfinity}}, -0.5), (std::vector<double>{-kInfinity, kInfinity}));
    EXPECT_EQ(run(kernelAbs, {{-kInfinity, -0.0}}), (std::vector<double>{kInfinity, 0.0}));
}

TEST(CommonKernels, SumsAreTakenFromTheLeft) {
    EXPECT_EQ(run(kernelAdd3, {{1e16}, {-1e16}, {1.0}})[0], 1.0);
    EXPECT_EQ(run(kernelAdd3, {{1.0}, {1e16}, {-1e16}})[0], 0.0);
    EXPECT_EQ(run(kernelAdd4, {{1.0}, {1e16}, {-1e16}, {2.0}})[0], 2.0);
    EXPECT_EQ(run(kernelAdd3mul, {{1.0}, {1e16}, {-1e16}}, 3.0)[0], 0.0);
}

TEST(CommonKernels, MidSideComesBackWhereSumAndDifferenceAreExact) {
    const std::vector<double> a = {0.5, -0.25, 3.0, 0.0, 1.0};
    const std::vector<double> b = {0.125, 0.75, -1.0, 0.0, 1.0};
    std::vector<double> signals[4] = {a, b, a, b};
    COperation operation = {};
    operation.count = 5;
    for (size_t j = 0; j < 4; ++j) {
        operation.pointers[j] = signals[j].data();
    }
    kernelMsEnc(operation);
    for (size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(signals[0][i], (a[i] + b[i]) / 2.0);
        EXPECT_EQ(signals[1][i], (a[i] - b[i]) / 2.0);
    }
    signals[2] = signals[0];
    signals[3] = signals[1];
    kernelMsDec(operation);
    EXPECT_EQ(signals[0], a);
    EXPECT_EQ(signals[1], b);
}

TEST(CommonKernels, MidSideMaySwapItsBuffersInPlace) {
    std::vector<double> left = {1.0, 2.0, 3.0};
    std::vector<double> right = {0.5, 0.25, -1.0};
    COperation operation = {};
    operation.count = 3;
    operation.pointers[0] = right.data();
    operation.pointers[1] = left.data();
    operation.pointers[2] = left.data();
    operation.pointers[3] = right.data();
    kernelMsEnc(operation);
    EXPECT_EQ(right, (std::vector<double>{0.75, 1.125, 1.0}));
    EXPECT_EQ(left, (std::vector<double>{0.25, 0.875, 2.0}));
}

template <class Sample>
void takeHostSamples() {
    constexpr Sample kInfinity = std::numeric_limits<Sample>::infinity();
    constexpr Sample kNone = std::numeric_limits<Sample>::quiet_NaN();
    const std::vector<Sample> host = {Sample(0.1), kInfinity, Sample(-0.0), Sample(3),     kNone, -kInfinity,
                                      Sample(2),   Sample(5), Sample(-7),   Sample(1e-30), kNone};
    for (size_t first = 0; first < host.size(); ++first) {
        const auto count = static_cast<int32_t>(host.size() - first);
        std::vector<double> plain(host.begin() + static_cast<ptrdiff_t>(first), host.end());
        for (double& x : plain) {
            x = std::isfinite(x) ? x : 0.0;
        }
        std::vector<double> expected(plain.size() + 1, 9.0);
        std::vector<double> got = expected;
        uint32_t seeds[2] = {77, 77};
        COperation operation = {};
        operation.count = count;
        operation.pointers[0] = expected.data();
        operation.pointers[1] = &seeds[0];
        operation.pointers[2] = plain.data();
        kernelDenorm(operation);
        operation.pointers[0] = got.data();
        operation.pointers[1] = &seeds[1];
        operation.pointers[2] = const_cast<Sample*>(host.data() + first);
        kernelDenormHost<Sample>(operation);
        EXPECT_EQ(got, expected) << first;
        EXPECT_EQ(seeds[1], seeds[0]) << first;
    }
}

TEST(CommonKernels, NoiseIsAddedToAHostsSamplesAsToTheWidenedOnes) {
    takeHostSamples<float>();
    takeHostSamples<double>();
}

TEST(CommonKernels, TheNoiseIsASquareWaveFromBitTwentyThreeOfItsSeed) {
    std::vector<double> out(1000);
    uint32_t seed = 0;
    COperation operation = {};
    operation.count = 1000;
    operation.pointers[0] = out.data();
    operation.pointers[1] = &seed;
    kernelDenormN(operation);
    EXPECT_EQ(out[0], -1e-11);  // the seed starts at 0
    int32_t high = 0;
    for (const double y : out) {
        EXPECT_TRUE(y == 1e-11 || y == -1e-11) << y;
        high += y > 0.0;
    }
    EXPECT_GT(high, 400);  // a fair coin lies outside once in 10^9
    EXPECT_LT(high, 600);
    uint32_t expected = 0;
    for (int32_t i = 0; i < 1000; ++i) {
        expected = expected * 30013u + 30011u;
    }
    EXPECT_EQ(seed, expected);
}

TEST(CommonKernels, InterpolationDoublesAndDecimationTakesTheNamedHalf) {
    std::vector<double> in = {1.0, 2.0, 3.0};
    std::vector<double> out(6, 9.0);
    COperation operation = {};
    operation.count = 3;
    operation.pointers[0] = out.data();
    operation.pointers[1] = in.data();
    kernelInterp2(operation);
    EXPECT_EQ(out, (std::vector<double>{2.0, 0.0, 4.0, 0.0, 6.0, 0.0}));
    operation.pointers[0] = in.data();
    operation.pointers[1] = out.data();
    kernelDecim2(operation);
    EXPECT_EQ(in, (std::vector<double>{2.0, 4.0, 6.0}));
    kernelDecim2s(operation);
    EXPECT_EQ(in, (std::vector<double>{0.0, 0.0, 0.0}));
}

/// The weight of the new signal over a whole fade of n samples.
std::vector<double> fadeOf(int32_t n, double start = 0.0, int32_t samples = -1) {
    const size_t length = static_cast<size_t>(samples < 0 ? n : samples);
    std::vector<double> to(length, 1.0);
    std::vector<double> from(length, 0.0);
    std::vector<double> out(length);
    double ramp[3];
    COperation operation = {};
    operation.count = n;
    operation.immediate = start;
    operation.pointers[0] = ramp;
    kernelXfadeInit(operation);
    operation.count = static_cast<int32_t>(length);
    operation.pointers[0] = out.data();
    operation.pointers[1] = ramp;
    operation.pointers[2] = to.data();
    operation.pointers[3] = from.data();
    kernelXfade(operation);
    return out;
}

TEST(CommonKernels, AFadeIsARaisedCosineFromAllOfTheOldToAllOfTheNew) {
    constexpr int32_t kLength = 662;
    const std::vector<double> weights = fadeOf(kLength, 0.0, kLength + 1);
    EXPECT_EQ(weights[0], 0.0);
    for (int32_t i = 0; i <= kLength; ++i) {
        // The rounding of the recurrence grows with the square of the length: 662^2 x 2^-54.
        EXPECT_NEAR(weights[static_cast<size_t>(i)], 0.5 - 0.5 * std::cos(std::numbers::pi * i / kLength), 3e-11) << i;
    }
}

TEST(CommonKernels, AFadeOfOneSampleStepsByPi) {
    const std::vector<double> weights = fadeOf(1, 0.0, 2);
    EXPECT_EQ(weights[0], 0.0);
    EXPECT_NEAR(weights[1], 1.0, 1e-15);
}

TEST(CommonKernels, AFadeOfNoSamplesIsDefined) {
    for (const double weight : fadeOf(0, 0.0, 3)) {
        EXPECT_TRUE(std::isfinite(weight));
    }
}

TEST(CommonKernels, AFadeMayStartInItsMiddle) {
    EXPECT_NEAR(fadeOf(100, 0.25)[0], 0.5, 1e-15);
}

}  // namespace
}  // namespace tarv
