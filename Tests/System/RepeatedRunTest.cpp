// A run of the graph in which nothing changes is recorded and repeated. Its bits are those of
// the graph, whatever ends the repetition.

#include <gtest/gtest.h>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Graph/CAudioGraphObserver.h"
#include "Tests/System/EngineRun.h"

namespace tarv::engine {
namespace {

/// Counts the processes that ran. While the graph has an observer, every block runs through it.
class CWatcher : public CAudioGraphObserver {
public:
    void processed(CAudioProcessBase&) override { ++count; }
    int64_t count = 0;
};

uint64_t repeats(const CPlainInstance& instance) {
    return instance.context()->counters().repeats;
}

TEST(RepeatedRun, GivesTheBitsOfTheGraph) {
    for (int32_t stages = 0; stages < 4; ++stages) {
        CSetup setup{44100.0, 2, straight(2, stages)};
        for (const CSet& set : midSide()) {
            setup.sets.push_back(set);
        }
        // Long pauses between the changes, so that most blocks are repetitions.
        const std::vector<CEvent> events = {{3200, {kGains, 0, 2, 2.0}},        {6400, {kMute, 0, 0, 1.0}},
                                            {9600, {kMute, 0, 0, 0.0}},         {12800, {kBypass, 0, 0, 1.0}},
                                            {16000, {kBandCount, 0, 0, 4.0}},   {17000, {kBypass, 0, 0, 0.0}},
                                            {19200, {kOversampling, 0, 0, 2.0}}};
        const CSignal input = noise(2, 22400, 0.5);
        const auto watched = start(setup);
        CWatcher watcher;
        watched->graph().observer = &watcher;
        const CSignal expected = render(*watched, input, events, cutInto(32));
        EXPECT_EQ(repeats(*watched), 0u);
        EXPECT_GT(watcher.count, 22400 / 32);
        const auto free = start(setup);
        EXPECT_EQ(firstDifference(render(*free, input, events, cutInto(32)), expected), CDifference()) << stages;
        EXPECT_GT(repeats(*free), 300u) << stages;
    }
}

TEST(RepeatedRun, BeginsAtTheThirdBlockOfOneLengthAndEndsWithIt) {
    const auto instance = start({44100.0, 2, straight(2, 0)});
    const CSignal input = noise(2, 64, 0.5);
    const auto blocks = [&](int32_t frames, int32_t count) {
        const uint64_t before = repeats(*instance);
        for (int32_t i = 0; i < count; ++i) {
            render(*instance,
                   {{input[0].begin(), input[0].begin() + frames}, {input[1].begin(), input[1].begin() + frames}});
        }
        return repeats(*instance) - before;
    };
    blocks(64, 5);
    EXPECT_EQ(blocks(64, 10), 10u);
    EXPECT_EQ(blocks(63, 1), 0u);
    EXPECT_EQ(blocks(64, 2), 0u);
    EXPECT_EQ(blocks(64, 3), 3u);
}

TEST(RepeatedRun, EndsWithAChangeOfAnyKind) {
    const CSet changes[] = {{kGains, 0, 3, 2.0},   {kFreqs, 0, 3, 900.0},  {kOutGain, 0, 0, 0.5},
                            {kMute, 0, 0, 1.0},    {kBypass, 0, 0, 1.0},   {kSolo, 0, 1, 1.0},
                            {kInRouting, 0, 1, 1}, {kOutRouting, 0, 0, 2}, {kGrouping, 0, 1, 1},
                            {kBandCount, 0, 0, 3}, {kPairs, 0, 0, 1},      {kOversampling, 0, 0, 3}};
    for (const CSet& change : changes) {
        const auto instance = start({44100.0, 2, straight(2, 0)});
        const CSignal input = noise(2, 512, 0.5);
        for (int32_t i = 0; i < 5; ++i) {
            render(*instance, input);
        }
        const uint64_t before = repeats(*instance);
        apply(*instance, change);
        render(*instance, input);
        EXPECT_EQ(repeats(*instance), before) << change.param;
        for (int32_t i = 0; i < 8; ++i) {
            render(*instance, input);
        }
        EXPECT_GT(repeats(*instance), before) << change.param;
    }
}

TEST(RepeatedRun, GoesOnUnderChangesThatWaitForAFade) {
    // At 44.1 kHz a fade takes 661.5 samples: at twice the rate it ends between two of the host.
    for (int32_t stages = 0; stages < 3; ++stages) {
        const CSetup setup{44100.0, 2, straight(2, stages)};
        const CSignal input = noise(2, 32 * 400, 0.5);
        std::vector<CEvent> events;
        for (int32_t i = 1; i < 400; ++i) {
            events.push_back({32 * i, {kGains, 0, i % 7, 0.5 + 0.001 * i}});
        }
        const auto watched = start(setup);
        CWatcher watcher;
        watched->graph().observer = &watcher;
        const CSignal expected = render(*watched, input, events, cutInto(32));
        EXPECT_EQ(repeats(*watched), 0u);
        const auto free = start(setup);
        EXPECT_EQ(firstDifference(render(*free, input, events, cutInto(32)), expected), CDifference()) << stages;
        EXPECT_GT(repeats(*free), 150u) << stages;
    }
}

TEST(RepeatedRun, EndsWithAChangeOfAnotherFilterDuringAFade) {
    for (int32_t stages = 0; stages < 4; ++stages) {
        const CSetup setup{44100.0, 2, straight(2, stages)};
        const CSignal input = noise(2, 8 * 400, 0.5);
        const std::vector<CEvent> events = {{800, {kGains, 0, 2, 2.0}}, {1000, {kGains, 0, 5, 0.5}}};
        const auto watched = start(setup);
        CWatcher watcher;
        watched->graph().observer = &watcher;
        const CSignal expected = render(*watched, input, events, cutInto(8));
        const auto free = start(setup);
        EXPECT_EQ(firstDifference(render(*free, input, events, cutInto(8)), expected), CDifference()) << stages;
        EXPECT_GT(repeats(*free), 300u) << stages;
    }
}

TEST(RepeatedRun, OfABlockEndsWhereAFadeEnds) {
    // A fade of 661.5 samples, begun with a block of 512, ends in the next one. At twice the rate it ends between two
    // of the host's samples: that frame runs alone.
    for (int32_t stages = 0; stages < 2; ++stages) {
        const auto instance = start({44100.0, 2, straight(2, stages)});
        const CSignal input = noise(2, 512, 0.5);
        for (int32_t i = 0; i < 5; ++i) {
            render(*instance, input);
        }
        apply(*instance, {kGains, 0, 3, 2.0});
        const auto runsOfBlock = [&] {
            const int64_t before = instance->graph().runNumber();
            render(*instance, input);
            return instance->graph().runNumber() - before;
        };
        EXPECT_EQ(runsOfBlock(), 1) << stages;
        EXPECT_EQ(runsOfBlock(), stages == 0 ? 2 : 3) << stages;
        EXPECT_EQ(runsOfBlock(), 1) << stages;
    }
}

TEST(RepeatedRun, EndsWhenTheHostTakesAnInputAway) {
    const auto instance = start({44100.0, 2, straight(2, 0)});
    const CSignal input = noise(2, 512, 0.5);
    CSignal output = silence(2, 512);
    double* out[] = {output[0].data(), output[1].data()};
    const double* both[] = {input[0].data(), input[1].data()};
    const double* one[] = {input[0].data(), nullptr};
    for (int32_t i = 0; i < 5; ++i) {
        instance->processBlock(both, out, 512);
    }
    const uint64_t before = repeats(*instance);
    instance->processBlock(one, out, 512);
    EXPECT_EQ(repeats(*instance), before);
    for (int32_t i = 0; i < 200; ++i) {  // until the last of the input has left the high-passes at 5 Hz
        instance->processBlock(one, out, 512);
    }
    EXPECT_GT(repeats(*instance), before);
    EXPECT_GT(peak(output[0]), 0.01);
    EXPECT_LT(decibels(peak(output[1])), -200.0);
}

/// An instance whose runs are repeated by now, and what it gave for its input when it was fresh.
struct CRepeating {
    std::unique_ptr<CPlainInstance> instance = start({44100.0, 2, straight(2, 0)});
    CSignal input = noise(2, 512, 0.5);
    CSignal fresh = render(*instance, input);
    uint64_t before = 0;

    CRepeating() {
        for (int32_t i = 0; i < 5; ++i) {
            render(*instance, input);
        }
        before = repeats(*instance);
        EXPECT_GT(before, 0u);
    }
};

TEST(RepeatedRun, EndsBehindANumberThatIsNotFinite) {
    const CRepeating run;
    render(*run.instance, noise(2, 512, 1e300));
    EXPECT_EQ(repeats(*run.instance), run.before + 1);
    // The graph was reset: what follows is what a fresh instance would give.
    EXPECT_EQ(firstDifference(render(*run.instance, run.input), run.fresh), CDifference());
    EXPECT_EQ(repeats(*run.instance), run.before + 1);
}

TEST(RepeatedRun, EndsWithASuspension) {
    const CRepeating run;
    run.instance->suspend();
    run.instance->resume();
    const CSignal again = render(*run.instance, run.input);
    EXPECT_EQ(repeats(*run.instance), run.before);
    // From silence again, seeds of the noise included.
    EXPECT_EQ(firstDifference(again, run.fresh), CDifference());
}

}  // namespace
}  // namespace tarv::engine
