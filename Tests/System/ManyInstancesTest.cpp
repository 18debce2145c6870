// Many instances in one process: the memory that they take, and that none changes the sound of another.

#include <gtest/gtest.h>
#include <malloc.h>

#include <thread>

#include "Core/CHeap.h"
#include "Tests/System/EngineRun.h"

namespace tarv::engine {
namespace {

void makeAndRun(int32_t count) {
    const CSignal input = noise(2, 700, 0.5);
    for (int32_t i = 0; i < count; ++i) {
        const auto instance = start({44100.0 + i % 3, 2, straight(2, i % 4)});
        render(*instance, input, {{100, {kGains, 0, i % kBands, 2.0}}, {300, {kOversampling, 0, 0, 1.0}}});
    }
}

/// In a new thread, since small blocks that a thread has freed count as taken as long as the thread lives.
void makeAndRunApart(int32_t count) {
    std::thread([count] { makeAndRun(count); }).join();
}

/// Bytes of the C heap in use.
int64_t heapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<int64_t>(info.uordblks + info.hblkhd);
}

TEST(ManyInstances, OfFourHundredTheSecondHalfAddsNoMemory) {
    makeAndRunApart(200);
    const uint64_t poolBefore = CHeap::counters().platformBytes;
    [[maybe_unused]] const int64_t heapBefore = heapInUse();
    makeAndRunApart(200);
    EXPECT_EQ(CHeap::counters().platformBytes, poolBefore);
#ifndef TARV_SANITIZED
    // No byte stays behind; the sanitizers allocate their records on the same heap.
    EXPECT_LE(heapInUse(), heapBefore);
#endif
}

TEST(ManyInstances, EveryBlockOfThePoolComesBack) {
    makeAndRun(2);
    const CHeapCounters before = CHeap::counters();
    makeAndRun(4);
    const CHeapCounters after = CHeap::counters();
    EXPECT_GT(after.allocations, before.allocations);
#ifndef TARV_SANITIZED
    EXPECT_EQ(after.allocations - before.allocations, after.frees - before.frees);
#endif
}

struct CPart {
    CSetup setup;
    CSignal input;
    std::vector<CEvent> events;
    CCut cut;
    CSignal run() const { return render(*start(setup), input, events, cut); }
};

CPart firstPart() {
    return {{44100.0, 2, straight(2, 1)},
            noise(2, 12000, 0.5, 1),
            {{0, {kGains, 0, 3, 3.0}}, {3000, {kOutGain, 0, 0, 0.5}}, {5000, {kBypass, 0, 0, 1.0}}},
            cutInto(97)};
}

CPart secondPart() {
    return {{96000.0, 2, straight(2, 0)},
            noise(2, 24000, 0.9, 2),
            {{0, {kGains, 0, 3, 0.3}}, {2000, {kFreqs, 0, 3, 5000.0}}, {9000, {kOversampling, 0, 0, 3.0}}},
            cutInto(512)};
}

TEST(ManyInstances, TwoInTwoThreadsSoundAsEachAlone) {
    const CSignal firstAlone = firstPart().run();
    const CSignal secondAlone = secondPart().run();
    CSignal first, second;
    std::thread other([&] { second = secondPart().run(); });
    first = firstPart().run();
    other.join();
    EXPECT_EQ(firstDifference(first, firstAlone), CDifference());
    EXPECT_EQ(firstDifference(second, secondAlone), CDifference());
}

TEST(ManyInstances, InstancesComeAndGoInOtherThreadsWhileOneSounds) {
    const CSignal alone = firstPart().run();
    std::thread other([] { makeAndRun(12); });
    const CSignal together = firstPart().run();
    other.join();
    EXPECT_EQ(firstDifference(together, alone), CDifference());
}

}  // namespace
}  // namespace tarv::engine
