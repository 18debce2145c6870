#include "Tools/SignalMeter/CSignalMeter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <sstream>

namespace tarv {
namespace {

constexpr double kRate = 48000.0;

std::vector<double> sine(double hz, double amplitude, int frames) {
    std::vector<double> out(frames);
    for (int i = 0; i < frames; ++i)
        out[i] = amplitude * std::sin(2.0 * std::numbers::pi * hz * i / kRate);
    return out;
}

double bandDb(const std::vector<CSignalMeter::CBand>& bands, double hz) {
    return std::min_element(bands.begin(), bands.end(),
                            [hz](const auto& a, const auto& b) {
                                return std::abs(std::log(a.hz / hz)) < std::abs(std::log(b.hz / hz));
                            })
        ->db;
}

TEST(SignalMeter, ASineOfHalfScaleHasItsPeakAndAnRmsThreeDecibelsBelow) {
    CSignalMeter meter(1, kRate);
    meter.add(sine(1000.0, 0.5, 48000));
    EXPECT_NEAR(meter.peakDb(0), -6.0206, 1e-4);
    EXPECT_NEAR(meter.rmsDb(0), -9.0309, 1e-4);
    EXPECT_EQ(meter.frames(), 48000);
}

TEST(SignalMeter, ChannelsAreMeasuredApart) {
    CSignalMeter meter(2, kRate);
    meter.add(std::vector<double>{0.5, -1.0, 0.5, 1.0});
    EXPECT_NEAR(meter.peakDb(0), -6.0206, 1e-4);
    EXPECT_NEAR(meter.peakDb(1), 0.0, 1e-12);
    EXPECT_NEAR(meter.rmsDb(1), 0.0, 1e-12);
}

TEST(SignalMeter, AFullScaleSineInTheMiddleOfABinReadsZeroDecibelsThere) {
    const double hz = 8.0 * kRate / CSignalMeter::kWindow;
    CSignalMeter meter(1, kRate);
    meter.add(sine(hz, 1.0, 4 * CSignalMeter::kWindow));
    const auto bands = meter.finishSpectrum();
    const auto loudest = std::max_element(bands.begin(), bands.end(), [](auto& a, auto& b) { return a.db < b.db; });
    EXPECT_NEAR(std::log2(loudest->hz / hz), 0.0, 1.0 / 8.0);
    // Two bins in the band: the other one holds a quarter of the power, so the mean is 5/8 of it at least.
    EXPECT_GT(loudest->db, 10.0 * std::log10(5.0 / 8.0) - 1e-6);
    EXPECT_LT(loudest->db, 1e-6);
    EXPECT_LT(bandDb(bands, 4000.0), -150.0);
}

TEST(SignalMeter, WhiteNoiseLiesFlat) {
    std::mt19937 random(7);
    std::normal_distribution<double> gauss(0.0, 0.1);
    std::vector<double> noise(60 * 48000);
    std::generate(noise.begin(), noise.end(), [&] { return gauss(random); });
    CSignalMeter meter(1, kRate);
    meter.add(noise);
    // Density of a bin: variance times the window's mean square over its squared mean, times 4 / window length.
    const double expected = 10.0 * std::log10(0.01 * 1.5 * 4.0 / CSignalMeter::kWindow);
    for (const auto& band : meter.finishSpectrum()) {
        // From here up a band has 10 bins and more, over 350 windows: a deviation of 0.07 dB.
        const double deviation = band.hz > 500.0 ? std::abs(band.db - expected) : 0.0;
        EXPECT_LT(deviation, 0.5) << band.hz;
    }
}

TEST(SignalMeter, HowTheStreamIsCutChangesNothing) {
    const std::vector<double> signal = sine(440.0, 0.3, 50000);
    CSignalMeter whole(1, kRate), cut(1, kRate);
    whole.add(signal);
    for (size_t at = 0; at < signal.size(); at += 777)
        cut.add({signal.data() + at, std::min<size_t>(777, signal.size() - at)});
    std::ostringstream a, b;
    writeReport(whole, 1, a);
    writeReport(cut, 1, b);
    EXPECT_EQ(a.str(), b.str());
}

TEST(SignalMeter, LessThanAWindowStillGivesASpectrum) {
    CSignalMeter meter(1, kRate);
    meter.add(sine(1000.0, 1.0, 4000));
    const auto bands = meter.finishSpectrum();
    const auto loudest = std::max_element(bands.begin(), bands.end(), [](auto& a, auto& b) { return a.db < b.db; });
    EXPECT_NEAR(std::log2(loudest->hz / 1000.0), 0.0, 1.0 / 24.0);
}

TEST(SignalMeter, NothingAtAllReadsSilence) {
    CSignalMeter meter(2, kRate);
    EXPECT_TRUE(std::isinf(meter.peakDb(0)));
    for (const auto& band : meter.finishSpectrum())
        EXPECT_LE(band.db, -290.0);
}

}  // namespace
}  // namespace tarv
