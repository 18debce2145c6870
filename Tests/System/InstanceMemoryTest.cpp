// The memory that one more instance takes.

#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdio>

#include "Tests/System/EngineRun.h"

namespace tarv::engine {
namespace {

constexpr int64_t kMebibyte = 1 << 20;

/// Bytes of the C heap in use; the pool heap takes its memory from there, too.
int64_t heapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<int64_t>(info.uordblks + info.hblkhd);
}

std::unique_ptr<CPlainInstance> automated(int32_t channels, int32_t stages) {
    auto instance = start({44100.0, channels, straight(channels, stages)});
    std::vector<CEvent> events;
    for (int64_t frame = 0; frame < 4000; frame += 100) {
        for (int32_t band = 0; band < kBands; ++band) {
            events.push_back({frame, {kGains, 0, band, 1.0 + 0.0001 * static_cast<double>(frame + band)}});
        }
        events.push_back({frame, {kBypass, 0, 0, frame % 1000 < 500 ? 1.0 : 0.0}});
        events.push_back({frame, {kMute, 0, 0, frame % 700 < 350 ? 1.0 : 0.0}});
    }
    render(*instance, noise(channels, 4000, 0.5), events, cutInto(512));
    return instance;
}

/// Bytes of an instance while it lives.
int64_t bytesOfOne(int32_t channels, int32_t stages) {
    // The first ones use up what earlier tests left in the pools.
    constexpr int32_t kFirst = 3;
    constexpr int32_t kMeasured = 4;
    std::vector<std::unique_ptr<CPlainInstance>> instances;
    int64_t before = 0;
    for (int32_t i = 0; i < kFirst + kMeasured; ++i) {
        before = i == kFirst ? heapInUse() : before;
        instances.push_back(automated(channels, stages));
    }
    return (heapInUse() - before) / kMeasured;
}

TEST(InstanceMemory, IsUnder4MebibytesInStereoAndUnder16WithEightChannelsAt8x) {
#ifdef TARV_SANITIZED
    GTEST_SKIP() << "the sanitizers' heap is larger than what it holds";
#endif
    const int64_t stereo = bytesOfOne(2, 0);
    const int64_t eight = bytesOfOne(8, 3);
    std::printf("stereo at 1x %.2f MiB, 8 channels at 8x %.2f MiB\n", static_cast<double>(stereo) / kMebibyte,
                static_cast<double>(eight) / kMebibyte);
    EXPECT_GT(stereo, kMebibyte / 4) << "nothing was measured";
    EXPECT_LT(stereo, 4 * kMebibyte);
    EXPECT_GT(eight, stereo);
    EXPECT_LT(eight, 16 * kMebibyte);
}

}  // namespace
}  // namespace tarv::engine
