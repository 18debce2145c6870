#include "Audio/Kernels/FilterKernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/StandardKernels.h"

namespace tarv {
namespace {

/// One section run through the context from its init on.
class CSectionRunner {
public:
    CSectionRunner(int32_t type, const std::vector<double>& coefficients)
        : context_(makeStandardContext()), kernels_(context_->sectionKernels(type)) {
        block_ = context_->takeBuffer(kernels_.stateSize * 8);
        context_->issue(kernels_.init, 0, 0.0, {block_, listOf(coefficients)});
    }
    void update(const std::vector<double>& coefficients) {
        const CBufferHandle fresh = context_->takeBuffer(kernels_.stateSize * 8);
        context_->issue(kernels_.update, 0, 0.0, {fresh, listOf(coefficients), block_});
        context_->releaseReference(block_);
        block_ = fresh;
    }
    std::vector<double> run(const std::vector<double>& signal, bool isGain = false, double gain = 1.0) {
        const auto count = static_cast<int32_t>(signal.size());
        const CBufferHandle in = listOf(signal);
        const CBufferHandle out = context_->takeBuffer(count * 8);
        context_->issue(isGain ? kernels_.runGain : kernels_.run, count, gain, {out, block_, in});
        context_->flush();
        return {context_->signal(out), context_->signal(out) + count};
    }
    std::vector<double> block() {
        context_->flush();
        return {context_->signal(block_), context_->signal(block_) + kernels_.stateSize};
    }

private:
    CBufferHandle listOf(const std::vector<double>& values) {
        const CBufferHandle handle = context_->takeBuffer(static_cast<int32_t>(values.size()) * 8);
        std::copy(values.begin(), values.end(), context_->signal(handle));
        return handle;
    }

    std::unique_ptr<CQPLEXContext> context_;
    CSectionKernels kernels_;
    CBufferHandle block_;
};

std::vector<double> impulse(size_t length) {
    std::vector<double> signal(length);
    signal[0] = 1.0;
    return signal;
}

TEST(FilterKernels, TheTableNamesTheKernelsOfEverySectionType) {
    const auto context = makeStandardContext();
    const struct {
        int32_t type;
        const char* init;
        const char* update;
        const char* run;
        const char* runGain;
        int32_t stateSize;
    } kRows[] = {
        {0, "fltbiqi", "fltbiqu", "fltbiqcommon", "fltbiqcommong", 6},
        {1, "fltbiqi", "fltbiqu", "fltbiqlp", "fltbiqlpg", 6},
        {2, "fltbiqi", "fltbiqu", "fltbiqhp", "fltbiqhpg", 6},
        {3, "fltbiqi", "fltbiqu", "fltbiqbp", "fltbiqbpg", 6},
        {4, "fltbiqi", "fltbiqu", "fltbiqnotch", "fltbiqnotchg", 6},
        {5, "fltlphp1i", "fltlphp1u", "fltlp1a", "fltlp1ag", 5},
        {8, "fltlphp1i", "fltlphp1u", "fltlp1d", "fltlp1dg", 5},
        {9, "fltlphp1i", "fltlphp1u", "flthp1a", "flthp1ag", 5},
        {12, "fltlphp1i", "fltlphp1u", "flthp1d", "flthp1dg", 5},
        {13, "flthbf2i", "flthbf2u", "flthbf2", "flthbf2g", 20},
        {14, "flthbf4i", "flthbf4u", "flthbf4", "flthbf4g", 30},
        {16, "flthbf8i", "flthbf8u", "flthbf8", "flthbf8g", 50},
        {20, "flthbf16i", "flthbf16u", "flthbf16", "flthbf16g", 90},
        {22, "fltheqi", "flthequ", "fltheq", "fltheq", 20},
        {23, "fltapf1_6i", "fltapf1_6u", "fltapf1_6", "fltapf1_6g", 18},
    };
    for (const auto& row : kRows) {
        const CSectionKernels& section = context->sectionKernels(row.type);
        const auto numberOf = [&](const char* name) {
            return context->findKernel((std::string("com.tarvelo.qplex.") + name).c_str());
        };
        EXPECT_EQ(section.init, numberOf(row.init)) << row.type;
        EXPECT_EQ(section.update, numberOf(row.update)) << row.type;
        EXPECT_EQ(section.run, numberOf(row.run)) << row.type;
        EXPECT_EQ(section.runGain, numberOf(row.runGain)) << row.type;
        EXPECT_EQ(section.stateSize, row.stateSize) << row.type;
        EXPECT_GE(section.init, 0) << row.type;
    }
    const CSectionKernels& fir = context->sectionKernels(kSectionTypeFir);
    EXPECT_EQ(fir.init + fir.update + fir.run + fir.runGain, -4);
}

TEST(FilterKernels, TheBiquadHasTheResponseOfItsTransferFunction) {
    const double c[] = {-1.2, 0.5, 1.1, -0.6};
    const std::vector<double> y = CSectionRunner(0, {c[0], c[1], c[2], c[3]}).run(impulse(400));
    for (double w = 0.1; w < 3.0; w += 0.3) {
        std::complex<double> measured = 0.0;
        for (size_t i = 0; i < y.size(); ++i) {
            measured += y[i] * std::polar(1.0, -w * static_cast<double>(i));
        }
        const std::complex<double> z = std::polar(1.0, -w);
        const std::complex<double> wanted = (1.0 + c[0] * z + c[1] * z * z) / (1.0 - c[2] * z - c[3] * z * z);
        EXPECT_NEAR(std::abs(measured - wanted), 0.0, 1e-12) << w;  // 0.77^400 of the tail is missing
    }
}

TEST(FilterKernels, TheFixedNumeratorsEqualTheCommonOne) {
    const struct {
        int32_t type;
        double c0, c1;
    } kRows[] = {{1, 2.0, 1.0}, {2, -2.0, 1.0}, {3, 0.0, -1.0}, {4, -1.4, 1.0}};
    for (const auto& row : kRows) {
        const std::vector<double> coefficients = {row.c0, row.c1, 1.1, -0.6};
        const std::vector<double> common = CSectionRunner(0, coefficients).run(impulse(60));
        const std::vector<double> own = CSectionRunner(row.type, coefficients).run(impulse(60));
        for (size_t i = 0; i < own.size(); ++i) {
            EXPECT_NEAR(own[i], common[i], 1e-15) << row.type;  // the same sum in another order
        }
    }
}

TEST(FilterKernels, AGainKernelMultipliesWhatThePlainOneGives) {
    for (const int32_t type : {0, 1, 4, 5, 8, 9, 12, 13, 16, 20, 23}) {
        const std::vector<double> coefficients(16, 0.3);
        const std::vector<double> plain = CSectionRunner(type, coefficients).run(impulse(50));
        const std::vector<double> scaled = CSectionRunner(type, coefficients).run(impulse(50), true, 0.7);
        for (size_t i = 0; i < plain.size(); ++i) {
            EXPECT_EQ(scaled[i], plain[i] * 0.7) << type;
        }
    }
}

TEST(FilterKernels, AnUpdateWithTheSameCoefficientsChangesNothing) {
    for (const int32_t type : {0, 2, 6, 11, 13, 14, 17, 20, 22, 23}) {
        std::vector<double> coefficients(16, 0.3);
        if (type == 22) {
            coefficients = {-1.2, 0.5, 0.1, 0.1, 1.0, 1.0, 0.01, 0.01, 1.1, -0.6};
        }
        CSectionRunner once(type, coefficients);
        CSectionRunner updated(type, coefficients);
        once.run(impulse(33));
        updated.run(impulse(33));
        updated.update(coefficients);
        const std::vector<double> expected = once.run(std::vector<double>(40));
        EXPECT_EQ(updated.run(std::vector<double>(40)), expected) << type;
        EXPECT_NE(expected, std::vector<double>(40)) << type;  // there was a history to be kept
    }
}

TEST(FilterKernels, InitStartsFromSilence) {
    for (const int32_t type : {0, 5, 12, 13, 20, 23}) {
        EXPECT_EQ(CSectionRunner(type, std::vector<double>(16, 0.3)).run(std::vector<double>(20)),
                  std::vector<double>(20))
            << type;
    }
}

TEST(FilterKernels, TheHalfBandIndexStartsAtThreeAndStepsDown) {
    CSectionRunner runner(14, {0.1, 0.5, 0.3, 0.7});
    EXPECT_EQ(runner.block()[5], 3.0);
    runner.run(impulse(1));
    EXPECT_EQ(runner.block()[5], 2.0);
    runner.run(impulse(6));
    EXPECT_EQ(runner.block()[5], 0.0);
}

TEST(FilterKernels, AHalfBandPairPassesDcTwiceAndStopsNyquist) {
    const std::vector<double> soft = {0.042454709865267684, 0.39331989319032801, 0.17073985049749907,
                                      0.74571358872022298};
    const std::vector<double> dc = CSectionRunner(14, soft).run(std::vector<double>(400, 1.0));
    EXPECT_NEAR(dc.back(), 2.0, 1e-12);  // each branch is an all-pass
    std::vector<double> nyquist(400);
    for (size_t i = 0; i < nyquist.size(); ++i) {
        nyquist[i] = i % 2 ? -1.0 : 1.0;
    }
    EXPECT_NEAR(CSectionRunner(14, soft).run(nyquist).back(), 0.0, 1e-12);
}

TEST(FilterKernels, TheAllpassChainPassesEveryFrequencyAtOne) {
    const std::vector<double> y = CSectionRunner(23, {-0.9, -0.5, -0.1, 0.2, 0.5, 0.8}).run(impulse(600));
    for (double w = 0.05; w < 3.1; w += 0.35) {
        std::complex<double> sum = 0.0;
        for (size_t i = 0; i < y.size(); ++i) {
            sum += y[i] * std::polar(1.0, -w * static_cast<double>(i));
        }
        EXPECT_NEAR(std::abs(sum), 1.0, 1e-12) << w;
    }
}

TEST(FilterKernels, TheLevelDependentBlockStartsAtUnitGainsAndKeepsItsSpareValues) {
    const std::vector<double> block = CSectionRunner(22, {0.1, 0.2, 1.0, 2.0, 3.0, 4.0, 0.5, 0.6, 0.3, 0.4}).block();
    EXPECT_EQ(block, (std::vector<double>{0.1, 0.2, 0.3, 0.4, 0.0, 0.0, 1.0,   2.0,   3.0, 4.0,
                                          0.5, 0.6, 1.0, 1.0, 1.0, 1.0, 1e-20, 1e-20, 1.0, 1.0}));
}

TEST(FilterKernels, TheLevelDependentGainFollowsTheSignal) {
    const std::vector<double> coefficients = {0.0, 0.0, 0.5, 0.5, 1.0, 1.0, 0.2, 0.2, 0.0, 0.0};
    CSectionRunner quiet(22, coefficients);
    CSectionRunner loud(22, coefficients);
    quiet.run(std::vector<double>(200, 0.01));
    loud.run(std::vector<double>(200, 2.0));
    EXPECT_NE(quiet.block()[12], loud.block()[12]);
}

}  // namespace
}  // namespace tarv
