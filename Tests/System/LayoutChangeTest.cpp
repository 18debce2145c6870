// A change of oversampling, routing, groups or pairs while audio runs: what it touches starts from silence,
// without a peak.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

#include "CPlainInstance.h"
#include "Tests/System/SoundHelp.h"

namespace tarv::sound {
namespace {

constexpr double kRate = 44100.0;
// Between two changes: long enough for every filter to settle.
constexpr int64_t kPart = 11000;

struct CLayoutChange {
    const char* name;
    const char* param;
    int element;
    double value;
};

constexpr CLayoutChange kChanges[] = {
    {"to 2x", "plugin.modMain.oversampling", 0, 2},
    {"to 8x", "plugin.modMain.oversampling", 0, 4},
    {"to 4x", "plugin.modMain.oversampling", 0, 3},
    {"back to 1x", "plugin.modMain.oversampling", 0, 1},
    {"right takes left", "plugin.modMain.io-params.in-routing", 1, 1},
    {"right takes right", "plugin.modMain.io-params.in-routing", 1, 2},
    {"outputs crossed", "plugin.modMain.io-params.out-routing", 0, 2},
    {"left alone", "plugin.modMain.io-params.out-routing", 0, 1},
    {"right in group B", "plugin.modMain.io-params.grouping", 1, 1},
    {"left is half a pair", "plugin.modMain.io-params.ms-pairs", 0, 1},
    {"right makes it whole", "plugin.modMain.io-params.ms-pairs", 1, 1},
    {"no pair", "plugin.modMain.io-params.ms-pairs", 0, 0},
    {"right back in group A", "plugin.modMain.io-params.grouping", 1, 0},
};

class LayoutChange : public testing::Test {
protected:
    void SetUp() override {
        CError* error = nullptr;
        instance_.reset(CPlainInstance::create(error));
        ASSERT_NE(instance_, nullptr);
        for (int group : {0, 1}) {
            for (int band = 0; band < reference::kDefaultBands; ++band) {
                const double db = (band + group) % 2 == 0 ? 9.0 : -6.0;
                set("plugin.modMain.modBrindleXEQ.xeq-gains", group, band, reference::factorOf(db));
            }
        }
    }

    void set(const char* param, int group, int element, double value) {
        ASSERT_TRUE(instance_->set(param, group, element, value)) << param;
    }

    /// The next part of a full-scale sine on both channels.
    CSignal next(int64_t frames) {
        CSignal rows(2);
        for (int64_t i = 0; i < frames; ++i, ++frame_) {
            for (int channel = 0; channel < 2; ++channel) {
                const double turns = (440.0 + 1000.0 * channel) * static_cast<double>(frame_) / kRate;
                rows[static_cast<size_t>(channel)].push_back(std::sin(2.0 * std::numbers::pi * turns));
            }
        }
        input_ = rows;
        return instance_->run(rows, 512);
    }

    std::unique_ptr<CPlainInstance> instance_;
    CSignal input_;

private:
    int64_t frame_ = 0;
};

double peakOf(const CSignal& rows, size_t from) {
    double peak = 0.0;
    for (const std::vector<double>& row : rows) {
        for (size_t i = from; i < row.size(); ++i) {
            peak = std::max(peak, std::isfinite(row[i]) ? std::fabs(row[i]) : INFINITY);
        }
    }
    return peak;
}

TEST_F(LayoutChange, OfAFullScaleSineNeverMakesAPeak6DecibelsAboveTheSettledOnes) {
    instance_->start(kRate, 2, 2);
    double before = peakOf(next(2 * kPart), static_cast<size_t>(kPart));
    for (const CLayoutChange& change : kChanges) {
        set(change.param, 0, change.element, change.value);
        const CSignal output = next(2 * kPart);
        const double after = peakOf(output, static_cast<size_t>(kPart));
        EXPECT_LE(peakOf(output, 0), 2.0 * std::max(before, after)) << change.name;
        before = after;
    }
}

TEST_F(LayoutChange, OfOversamplingStartsTheWholeChainFromSilence) {
    set("plugin.modMain.denorm-enable", 0, 0, 0.0);
    instance_->start(kRate, 2, 2);
    next(1000);
    for (int stages : {1, 3, 2, 0}) {
        set("plugin.modMain.oversampling", 0, 0, stages + 1);
        const CSignal output = next(3000);
        CLayout layout;
        layout.rate = kRate;
        layout.stages = stages;
        layout.hasNoise = false;
        layout.hasRise = true;
        CSettings settings;
        for (size_t band = 0; band < reference::kDefaultBands; ++band) {
            settings.groups[0].gains[band] = reference::factorOf(band % 2 == 0 ? 9.0 : -6.0);
        }
        EXPECT_TRUE(isClose(output, reference::render(layout, settings, {}, input_, 3000), kTolerance64))
            << (1 << stages) << "x";
    }
    // A parameter of all instances: put back.
    set("plugin.modMain.denorm-enable", 0, 0, 1.0);
}

}  // namespace
}  // namespace tarv::sound
