// The kernel context has room for twice what the largest tree of the product takes.

#include <gtest/gtest.h>

#include <cstdio>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Graph/CAudioGraphObserver.h"
#include "Tests/System/EngineRun.h"

namespace tarv::engine {
namespace {

/// Counts the buffers in use behind each process, while its blocks and those that wait for others are there.
class CPeakWatch : public CAudioGraphObserver {
public:
    explicit CPeakWatch(const CQPLEXContext& context) : context_(context) {}
    void processed(CAudioProcessBase&) override { peak = std::max(peak, context_.counters().buffersInUse); }

    int32_t peak = 0;

private:
    const CQPLEXContext& context_;
};

TEST(ContextRoom, IsTwiceWhatTheLargestTreeTakes) {
    CSetup setup{44100.0, 8, straight(8, 3)};
    setup.sets.push_back({kBandCount, 0, 0, 10.0});
    for (int32_t channel = 0; channel < 8; ++channel) {
        setup.sets.push_back({kGrouping, 0, channel, static_cast<double>(channel)});
    }
    const auto instance = start(setup);
    CPeakWatch watch(*instance->context());
    instance->graph().observer = &watch;
    CSignal signal = noise(8, 512, 0.5);
    std::vector<const double*> inputs;
    std::vector<double*> outputs;
    for (auto& row : signal) {
        inputs.push_back(row.data());
        outputs.push_back(row.data());
    }
    // Every band of every channel is in a fade, the outer stages too, while the count of the bands is faded.
    for (int32_t round = 0; round < 6; ++round) {
        for (int32_t group = 0; group < 8; ++group) {
            for (int32_t band = 0; band < 10; ++band) {
                apply(*instance, {kGains, group, band, 1.5 + 0.1 * round});
            }
            apply(*instance, {kMute, group, 0, round % 2 == 0 ? 0.0 : 1.0});
        }
        apply(*instance, {kBypass, 0, 0, round % 2 == 0 ? 0.0 : 1.0});
        apply(*instance, {kBandCount, 0, 0, round % 3 == 2 ? 7.0 : 10.0});
        for (int32_t block = 0; block < 2; ++block) {
            instance->processBlock(inputs.data(), outputs.data(), 512);
        }
    }
    instance->graph().observer = nullptr;
    const CContextCounters& counters = instance->context()->counters();
    std::printf("largest tree: %d buffers in use, %d storages of %d\n", watch.peak, instance->context()->storageCount(),
                CQPLEXContext::kUsableBuffers);
    EXPECT_GT(watch.peak, 500) << "nothing was measured";
    EXPECT_LE(2 * watch.peak, CQPLEXContext::kUsableBuffers);
    EXPECT_LT(instance->context()->storageCount(), CQPLEXContext::kUsableBuffers);
    EXPECT_EQ(counters.rejected, 0u);
}

}  // namespace
}  // namespace tarv::engine
