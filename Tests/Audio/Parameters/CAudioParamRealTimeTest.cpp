#include <atomic>
#include <thread>

#include "Tests/Audio/Graph/ProcessStub.h"
#include "Tests/Audio/Parameters/CountedNew.h"

namespace tarv {
namespace {

constexpr int32_t kBands = 7;
constexpr int32_t kGroups = 2;

/// The equaliser's gains with the consumers of two groups of seven bands, as the graph binds them.
class ParamRealTime : public testing::Test {
protected:
    ParamRealTime()
        : tree_({paramNode("gains", "gain", "-12.0", "12.0", "0,0,0,0,0,0,0"),
                 paramNode("mute", "enum-enable", "0", "1", "0")}),
          gains_(tree_.define("gains")),
          mute_(tree_.define("mute")) {
        for (int32_t i = 0; i < kGroups * kBands; ++i)
            bands_[i].consume(gains_, i / kBands, i % kBands);
        output_.consume(mute_, 0, -1);
        tree_.collector().closeCollection();
        tree_.env().setRunning(true);
        // Takes what was queued while the graph was built, before the first block.
        block(0.0);
    }
    ~ParamRealTime() override { tree_.collector().detachConsumers(); }

    void block(double now) {
        tree_.collector().applyPendingChanges(now);
        for (CProcessStub& band : bands_)
            take(band, now + 512.0);
        take(output_, now + 512.0);
    }
    static void take(CProcessStub& process, double now) {
        process.queue.takeDue(now,
                              [](const CAudioParamChange& change, CAudioParamSlot* slot) { slot->data.apply(change); });
    }
    void automate(int i) {
        for (int32_t k = 0; k < kGroups * kBands; ++k)
            gains_.setValue(k / kBands, k % kBands, 0.3 + 0.001 * ((i * 31 + k * 7) % 3000));
        mute_.setValue(i % 2, 0, i % 3 == 0);
    }

    CParamTree tree_;
    CAudioParam& gains_;
    CAudioParam& mute_;
    CProcessStub bands_[kGroups * kBands];
    CProcessStub output_;
};

TEST_F(ParamRealTime, ARoundNeitherAllocatesNorFreesFromTheFirstBlockOn) {
    for (int i = 0; i < 300; ++i) {
        automate(i);
        const CHeapCounters heap = CHeap::counters();
        const CNewCounters news = newCounters();
        block(512.0 * i);
        gains_.setEngineValue(1, 6, 1.0 + 0.001 * i);
        block(512.0 * i);
        const CHeapCounters heapAfter = CHeap::counters();
        const CNewCounters newsAfter = newCounters();
        ASSERT_EQ(heapAfter.allocations, heap.allocations) << i;
        ASSERT_EQ(heapAfter.frees, heap.frees) << i;
        ASSERT_EQ(newsAfter.news, news.news) << i;
        ASSERT_EQ(newsAfter.deletes, news.deletes) << i;
    }
}

// Hosts post from their audio thread, too, and every host parameter of a table is notified.
TEST_F(ParamRealTime, PostersDoNotAllocateEither) {
    struct CCounting : CAudioParamListener {
        void onParamChanged(CAudioParam&, int32_t, int32_t, int32_t) override { ++received; }
        int received = 0;
    };
    CCounting listeners[kGroups * kBands];
    for (CCounting& listener : listeners)
        gains_.addListener(listener);
    const uint64_t before = CHeap::counters().allocations;
    for (int i = 0; i < 300; ++i) {
        automate(i);
        block(512.0 * i);
    }
    EXPECT_EQ(CHeap::counters().allocations, before);
    for (CCounting& listener : listeners) {
        EXPECT_EQ(listener.received, 300 * kGroups * kBands);
        gains_.removeListener(listener);
    }
}

TEST_F(ParamRealTime, RecordsKeepTheRoomThatALongTableNeeds) {
    constexpr int32_t kLong = 40;
    gains_.setValue(0, kLong - 1, 1.0);
    uint64_t before = 0;
    for (int i = 0; i < 600; ++i) {
        if (i == 300)
            before = CHeap::counters().allocations;
        automate(i);
        block(512.0 * i);
    }
    EXPECT_EQ(CHeap::counters().allocations, before);
}

TEST_F(ParamRealTime, EveryValuePostedByThreeThreadsArrivesInTheEnd) {
    constexpr int kRounds = 3000;
    std::atomic<int> running{3};
    auto poster = [&](int32_t group) {
        for (int i = 1; i <= kRounds; ++i)
            for (int32_t band = 0; band < kBands; ++band)
                gains_.setValue(group, band, 0.3 + 0.001 * i);
        --running;
    };
    std::thread first(poster, 0);
    std::thread second(poster, 1);
    std::thread third([&] {
        for (int i = 0; i < kRounds; ++i) {
            mute_.setValue(0, 0, i % 2);
            EXPECT_TRUE(gains_.value(1, 3) > 0.2);
            tree_.env().setRunning(i % 500 != 0);  // suspend and resume
        }
        tree_.env().setRunning(true);
        --running;
    });
    double now = 0.0;
    while (running > 0)
        block(now += 512.0);
    first.join();
    second.join();
    third.join();
    block(now += 512.0);
    for (int32_t i = 0; i < kGroups * kBands; ++i)
        EXPECT_EQ(bands_[i].slot.data.value(i / kBands, i % kBands), 0.3 + 0.001 * kRounds) << i;
    EXPECT_EQ(output_.slot.data.value(0, 0), (kRounds - 1) % 2);
    EXPECT_EQ(gains_.value(1, 6), 0.3 + 0.001 * kRounds);
}

}  // namespace
}  // namespace tarv
