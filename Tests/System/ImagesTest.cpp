// What the half-bands of oversampling leave: images on the way up, folded components on the way down.

#include <gtest/gtest.h>

#include <cmath>

#include "Audio/Graph/CAudioGraphObserver.h"
#include "Audio/Graph/CAudioProcessBase.h"
#include "Tests/System/EngineRun.h"

namespace tarv::engine {
namespace {

/// Keeps the signal behind one process.
class CTap : public CAudioGraphObserver {
public:
    explicit CTap(const char* path) : path_(path) {}
    void processed(CAudioProcessBase& process) override {
        if (process.path() == path_) {
            process.context().flush();
            const CAudioPort& port = process.output(0);
            rate_ = port.rate;
            const double* signal = process.context().signal(port.channels[0].handle);
            samples_.insert(samples_.end(), signal, signal + port.samples);
        }
    }
    const std::vector<double>& samples() const { return samples_; }
    double rate() const { return rate_; }

private:
    CString path_;
    std::vector<double> samples_;
    double rate_ = 0.0;
};

constexpr size_t kCount = 4096;
constexpr size_t kSettle = 8192;
/// The steep half-band of the first stage is named for -106 dB, the soft one of the others for -116 dB.
constexpr double kSteep = -106.0;
constexpr double kSoft = -116.0;

TEST(Images, LieUnderTheAttenuationOfTheHalfBandsFrom55PercentOfTheHostsRateOn) {
    double worst = -400.0;
    for (int32_t stages = 1; stages <= 3; ++stages) {
        const auto factor = static_cast<size_t>(1) << stages;
        for (const size_t cycles : {1, 37, 409, 1021, 1501, 1787, 1843}) {
            ASSERT_LE(cycles, kCount * 45 / 100);
            const auto instance = start({44100.0, 1, straight(1, stages)});
            CTap tap("plugin.modMain.modUpsampler");
            instance->graph().observer = &tap;
            render(*instance, periodicSine(1, kSettle + kCount, cycles, kCount, 1.0));
            ASSERT_EQ(tap.rate(), 44100.0 * static_cast<double>(factor));
            const CBins bins(tap.samples(), kCount * factor);
            EXPECT_NEAR(decibels(bins.amplitude(cycles)), 0.0, 0.001);
            for (size_t multiple = 1; multiple <= factor / 2; ++multiple) {
                for (const size_t image : {multiple * kCount - cycles, multiple * kCount + cycles}) {
                    if (image > kCount * factor / 2) {
                        continue;
                    }
                    // Odd multiples are stopped by the first stage, the others by a later one.
                    const double limit = multiple % 2 == 1 ? kSteep : kSoft;
                    const double level = decibels(bins.amplitude(image));
                    EXPECT_LT(level, limit) << factor << "x, " << cycles << " cycles, image at " << image;
                    worst = std::max(worst, level);
                }
            }
        }
    }
    RecordProperty("worstDecibels", std::to_string(worst));
}

TEST(Images, TheWayDownFoldsNothingBackThatTheWayUpWouldHaveStopped) {
    // Seen from the output, an image and what it folds to stand at the same frequency: both filters have stopped it.
    for (int32_t stages = 1; stages <= 3; ++stages) {
        CSetup setup{44100.0, 1, straight(1, stages)};
        setup.sets.push_back({kBypass, 0, 0, 1.0});
        const CSignal output = render(*start(setup), periodicSine(1, kSettle + kCount, 409, kCount, 1.0));
        const CBins bins(output[0], kCount);
        EXPECT_NEAR(decibels(bins.amplitude(409)), 0.0, 0.0001);
        for (size_t cycles = 0; cycles < kCount / 2; ++cycles) {
            if (cycles != 409) {
                ASSERT_LT(decibels(bins.amplitude(cycles)), 2.0 * kSteep) << cycles;
            }
        }
    }
}

}  // namespace
}  // namespace tarv::engine
