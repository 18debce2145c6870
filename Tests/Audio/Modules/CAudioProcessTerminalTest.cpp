#include "Audio/Modules/CAudioProcessTerminal.h"

#include <cmath>

#include "Audio/Modules/CModGain.h"
#include "Tests/Audio/Graph/GraphTree.h"

namespace tarv {
namespace {

using CSignal = std::vector<double>;
constexpr const char* kGain = "plugin.g.gain";

/// Share of the new signal in sample i of a fade of n samples: a raised cosine, 0 in the first sample.
double newShare(int32_t i, int32_t n) {
    return 0.5 - 0.5 * std::sin((0.5 + i * 1.0 / n) * M_PI);
}

/// A smooth gain of 2 with fades of `fade` seconds, running.
class CFade : public CGraphTree {
public:
    explicit CFade(const std::string& fade = "", CTestAttributes more = {})
        : CGraphTree({gainNode("g", "2", attributes(fade, std::move(more)))}) {
        EXPECT_EQ(build("g"), "");
        start();
    }
    CModGain& gain() const { return as<CModGain>(); }
    /// Sets the gain and runs samples of 1.0.
    CSignal after(double value, int32_t count, int32_t block = 512) {
        set(kGain, value);
        return runMono(CSignal(static_cast<size_t>(count), 1.0), block);
    }

private:
    static CTestAttributes attributes(const std::string& fade, CTestAttributes more) {
        more.emplace_back("is-smooth-update", "true");
        if (!fade.empty()) {
            more.emplace_back("xfade-length", fade);
        }
        return more;
    }
};

/// The signal of a fade from one gain to another, and what follows it.
void appendFade(CSignal& signal, double from, double to, int32_t length) {
    for (int32_t i = 0; i < length; ++i) {
        const double share = newShare(i, length);
        signal.push_back(share * to + (1.0 - share) * from);
    }
}

void expectNear(const CSignal& actual, const CSignal& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t i = 0; i < actual.size(); ++i) {
        // The ramp is a recurrence: its rounding grows with the length, far below what is audible.
        ASSERT_NEAR(actual[i], expected[i], 1e-10) << i;
    }
}

TEST(CAudioProcessTerminalTest, TheLengthOfAFadeIsReadAndRaised) {
    const struct {
        const char* text;
        double seconds;
        int32_t samples;
    } rows[] = {{"", 0.015, 662}, {"0.02", 0.02, 882}, {"0.0001", 0.0001, 4}, {"0.00009", 0.0001, 4},
                {"0", 0.0001, 4}, {"-1", 0.0001, 4},   {"1", 1.0, 44100}};
    for (const auto& row : rows) {
        CFade tree(row.text);
        EXPECT_EQ(tree.gain().fadeSeconds(), row.seconds) << row.text;
        EXPECT_EQ(tree.gain().fadeSamples(44100.0), row.samples) << row.text;
    }
}

TEST(CAudioProcessTerminalTest, ALengthIsRoundedToTheRateAndAtLeastOne) {
    const struct {
        const char* text;
        double rate;
        int32_t samples;
    } rows[] = {{"0.0001", 44999.0, 4}, {"0.0001", 45000.0, 5},  // halves away from zero
                {"0.0001", 4000.0, 1},  {"", 352800.0, 5292},   {"", 44100.5, 662}, {"1000000", 352800.0, 1 << 30}};
    for (const auto& row : rows) {
        EXPECT_EQ(CFade(row.text).gain().fadeSamples(row.rate), row.samples) << row.text << row.rate;
    }
}

TEST(CAudioProcessTerminalTest, AFadeBeginsWithAllOfTheOldAndEndsExactlyAfterItsLength) {
    CFade tree;
    const CSignal out = tree.after(6.0, 1000);
    CSignal expected;
    appendFade(expected, 2.0, 6.0, 662);
    expected.resize(1000, 6.0);
    expectNear(out, expected);
    EXPECT_EQ(out[0], 2.0);
    EXPECT_NE(out[661], 6.0);
    EXPECT_EQ(out[662], 6.0);
}

TEST(CAudioProcessTerminalTest, TheRunningModuleIsCountedAsFadingUntilTheEnd) {
    CFade tree("0.001");
    EXPECT_EQ(tree.gain().voiceCount(), 1);
    tree.after(6.0, 43);
    EXPECT_EQ(tree.gain().fadeCount(), 1);
    tree.runMono({1.0});
    EXPECT_EQ(tree.gain().fadeCount(), 0);
    EXPECT_EQ(tree.gain().voiceCount(), 1);
}

TEST(CAudioProcessTerminalTest, AFadeOfOneSampleIsOneOldSample) {
    CGraphTree tree({gainNode("g", "2", {{"is-smooth-update", "true"}, {"xfade-length", "0.0001"}})});
    tree.graph.hostRate = 8000.0;
    ASSERT_EQ(tree.build("g"), "");
    tree.start();
    tree.set(kGain, 6.0);
    EXPECT_EQ(tree.runMono({1.0, 1.0, 1.0}), (CSignal{2.0, 6.0, 6.0}));
}

TEST(CAudioProcessTerminalTest, TheBitsDoNotDependOnHowTheBlocksAreCut) {
    const CSignal signal = noiseSignal(3000);
    CSignal expected;
    for (const int32_t block : {3000, 1, 7, 64, 511, 512, 661, 662, 663}) {
        CFade tree;
        CSignal out;
        // Both changes stand at a boundary of every cut: 0 and 900, the second one within the first one's fade.
        tree.set(kGain, 6.0);
        out = tree.runMono(CSignal(signal.begin(), signal.begin() + 300), block);
        tree.set(kGain, 0.5);
        const CSignal rest = tree.runMono(CSignal(signal.begin() + 300, signal.end()), block);
        out.insert(out.end(), rest.begin(), rest.end());
        expected = expected.empty() ? out : expected;
        EXPECT_EQ(out, expected) << block;
    }
}

TEST(CAudioProcessTerminalTest, AChangeDuringAFadeWaitsForItsEndAndTakesTheNewestValue) {
    CFade tree("0.001");  // 44 samples
    CSignal out = tree.after(6.0, 10);
    for (const double value : {1.0, 9.0, 4.0}) {
        const CSignal more = tree.after(value, 5);
        out.insert(out.end(), more.begin(), more.end());
    }
    const CSignal rest = tree.runMono(CSignal(100, 1.0));
    out.insert(out.end(), rest.begin(), rest.end());
    CSignal expected;
    appendFade(expected, 2.0, 6.0, 44);
    appendFade(expected, 6.0, 4.0, 44);
    expected.resize(125, 4.0);
    expectNear(out, expected);
}

TEST(CAudioProcessTerminalTest, AChangeAtTheVerySampleWhereAFadeEndsStartsTheNextOne) {
    for (const bool isWaiting : {false, true}) {
        CFade tree("0.001");
        CSignal out = tree.after(6.0, 20);
        CSignal more = isWaiting ? tree.after(9.0, 24) : tree.runMono(CSignal(24, 1.0));
        out.insert(out.end(), more.begin(), more.end());
        more = tree.after(4.0, 60);
        out.insert(out.end(), more.begin(), more.end());
        CSignal expected;
        appendFade(expected, 2.0, 6.0, 44);
        appendFade(expected, 6.0, 4.0, 44);
        expected.resize(104, 4.0);
        expectNear(out, expected);
    }
}

TEST(CAudioProcessTerminalTest, AChangeTakenBackDuringAFadeStartsNoOther) {
    CFade tree("0.001");
    tree.after(6.0, 10);
    tree.after(9.0, 10);
    tree.after(6.0, 24);
    EXPECT_EQ(tree.gain().fadeCount(), 0);
    EXPECT_EQ(tree.runMono({1.0}), CSignal{6.0});
    EXPECT_EQ(tree.gain().fadeCount(), 0);
}

TEST(CAudioProcessTerminalTest, AChangeThatLeavesTheValuesAsTheyWereStartsNoFade) {
    CFade tree;
    tree.after(2.0, 1);
    EXPECT_EQ(tree.gain().fadeCount(), 0);
    tree.set(kGain, 3, 0, 9.0);  // a group that has no channel
    tree.set(kGain, 0, 4, 9.0);  // an element that no module reads
    tree.set("plugin.g.mute", 0.4);
    EXPECT_EQ(tree.runMono({1.0}), CSignal{2.0});
    EXPECT_EQ(tree.gain().fadeCount(), 0);
}

TEST(CAudioProcessTerminalTest, OnlyTheChannelsThatAChangeConcernsFade) {
    CFade tree("0.001");
    const CTestChannels channels = {{0, 0, CSignal(10, 1.0)}, {1, 1, CSignal(10, 1.0)}};
    tree.run(channels);
    tree.set(kGain, 1, 0, 6.0);
    const CTestChannels out = tree.run(channels);
    EXPECT_EQ(tree.gain().fadeCount(), 1);
    EXPECT_EQ(out[0].samples, CSignal(10, 2.0));
    CSignal expected;
    appendFade(expected, 2.0, 6.0, 44);
    expected.resize(10);
    expectNear(out[1].samples, expected);
}

TEST(CAudioProcessTerminalTest, ChannelsFadeEachInItsOwnTime) {
    CFade tree("0.001");
    const auto block = [](int32_t count) {
        const CSignal ones(static_cast<size_t>(count), 1.0);
        return CTestChannels{{0, 0, ones}, {1, 1, ones}};
    };
    tree.run(block(1));
    tree.set(kGain, 0, 0, 6.0);
    tree.run(block(20));
    tree.set(kGain, 1, 0, 6.0);
    // The block is cut for both where the first one's fade ends.
    const CTestChannels out = tree.run(block(64));
    CSignal first;
    appendFade(first, 2.0, 6.0, 44);
    first.erase(first.begin(), first.begin() + 20);
    first.resize(64, 6.0);
    CSignal second;
    appendFade(second, 2.0, 6.0, 44);
    second.resize(64, 6.0);
    expectNear(out[0].samples, first);
    expectNear(out[1].samples, second);
}

TEST(CAudioProcessTerminalTest, AChangeForAllGroupsReachesEveryChannel) {
    CFade tree("0.001");
    const CTestChannels channels = {{0, 0, CSignal(100, 1.0)}, {1, 1, CSignal(100, 1.0)}};
    tree.set(kGain, 1, 0, 3.0);
    tree.run(channels);
    CAudioParam& param = *tree.collector().findParam(kGain);
    CAudioParamChange* change = tree.collector().createChange(param, CAudioParamData::kAllGroups, 0, 1);
    change->values[0] = 8.0;
    tree.collector().postChange(param, change, true, 0.0);
    tree.run(channels);
    EXPECT_EQ(samplesOf(tree.run(channels)), (std::vector<CSignal>{CSignal(100, 8.0), CSignal(100, 8.0)}));
}

TEST(CAudioProcessTerminalTest, WithoutSmoothUpdateAChangeIsTakenInPlace) {
    CGraphTree tree({gainNode("g", "2")});
    ASSERT_EQ(tree.build("g"), "");
    tree.start();
    EXPECT_EQ(tree.runMono({1.0}), CSignal{2.0});
    tree.set(kGain, 6.0);
    EXPECT_EQ(tree.runMono({1.0, 1.0}), (CSignal{6.0, 6.0}));
    EXPECT_EQ(tree.as<CModGain>().fadeCount(), 0);
}

TEST(CAudioProcessTerminalTest, WithoutRunningAudioAChangeIsTakenInPlace) {
    CFade tree;
    tree.suspend();
    tree.set(kGain, 6.0);
    tree.start();
    EXPECT_EQ(tree.runMono({1.0, 1.0}), (CSignal{6.0, 6.0}));
}

TEST(CAudioProcessTerminalTest, WhileAudioStandsStillAModuleThatIsThereIsChangedInPlace) {
    CFade tree;
    tree.runMono({1.0});
    tree.graph.setRunning(false);
    tree.set(kGain, 6.0);
    EXPECT_EQ(tree.runMono({1.0}), CSignal{6.0});
    EXPECT_EQ(tree.gain().fadeCount(), 0);
}

TEST(CAudioProcessTerminalTest, AFadeIsAsLongAsTheRateOfItsTimeSays) {
    CFade tree;
    for (const auto& [rate, length] : {std::pair{44100.0, 662}, {88200.0, 1323}, {8000.0, 120}}) {
        tree.graph.hostRate = rate;
        tree.after(2.0, 2000);
        const CSignal out = tree.after(6.0, 2000);
        EXPECT_NE(out[static_cast<size_t>(length - 1)], 6.0) << rate;
        EXPECT_EQ(out[static_cast<size_t>(length)], 6.0) << rate;
        EXPECT_NEAR(out[static_cast<size_t>(length / 2)], 4.0, 0.01) << rate;
    }
}

TEST(CAudioProcessTerminalTest, AChangeIsDueAtOrBeforeTheCurrentTime) {
    CFade tree("0.0001");  // 4 samples
    CAudioParam& param = *tree.collector().findParam(kGain);
    tree.graph.env->setRunning(true);  // while no audio runs, every change is due at once
    CAudioParamChange* change = tree.collector().createChange(param, 0, 0, 1);
    change->values[0] = 6.0;
    tree.collector().postChange(param, change, true, 5.0);
    EXPECT_EQ(tree.runMono(CSignal(4, 1.0)), CSignal(4, 2.0));
    EXPECT_EQ(tree.runMono(CSignal(1, 1.0)), CSignal(1, 2.0));
    EXPECT_EQ(tree.gain().fadeCount(), 0);
    EXPECT_EQ(tree.runMono({1.0}), CSignal{2.0});  // sample 5: the first one of the fade
    EXPECT_EQ(tree.gain().fadeCount(), 1);
    EXPECT_EQ(tree.runMono(CSignal(4, 1.0)).back(), 6.0);
}

TEST(CAudioProcessTerminalTest, AResetEndsTheFadeWithTheNewValue) {
    CFade tree;
    tree.after(6.0, 10);
    EXPECT_EQ(tree.gain().fadeCount(), 1);
    tree.process().reset();
    EXPECT_EQ(tree.gain().voiceCount(), 0);
    EXPECT_EQ(tree.runMono({1.0}), CSignal{6.0});
    EXPECT_EQ(tree.gain().fadeCount(), 0);
}

TEST(CAudioProcessTerminalTest, AProcessMayGoInTheMiddleOfAFade) {
    CFade tree;
    tree.after(6.0, 10);
    EXPECT_EQ(tree.gain().fadeCount(), 1);  // the tree fails the test for blocks still in use
}

TEST(CAudioProcessTerminalTest, ChannelsKeepTheirModulesWhenOthersComeAndGo) {
    CFade tree("0.001");
    const CTestChannel first = {0, 0, CSignal(10, 1.0)};
    const CTestChannel second = {1, 1, CSignal(10, 1.0)};
    tree.run({first, second});
    tree.set(kGain, 1, 0, 6.0);
    tree.run({first, second});
    EXPECT_EQ(tree.gain().fadeCount(), 1);
    // The fading channel moves to the front and goes on fading.
    const CTestChannels out = tree.run({second});
    CSignal fade;
    appendFade(fade, 2.0, 6.0, 44);
    expectNear(out[0].samples, CSignal(fade.begin() + 10, fade.begin() + 20));
    EXPECT_EQ(tree.gain().fadeCount(), 1);
    // A channel with another serial starts without a fade.
    tree.run({first});
    EXPECT_EQ(tree.gain().fadeCount(), 0);
    EXPECT_EQ(samplesOf(tree.run({second})), std::vector<CSignal>{CSignal(10, 6.0)});
}

TEST(CAudioProcessTerminalTest, ANewSerialGroupElementOrRateStartsTheChannelAnew) {
    const auto expectNew = [](const char* what, auto&& change) {
        CFade tree;
        tree.set(kGain, 1, 0, 6.0);
        tree.after(6.0, 10);
        ASSERT_EQ(tree.gain().fadeCount(), 1);
        CTestChannel channel = {0, 0, CSignal(10, 1.0)};
        change(tree, channel);
        EXPECT_EQ(samplesOf(tree.run({channel})), std::vector<CSignal>{CSignal(10, 6.0)}) << what;
        EXPECT_EQ(tree.gain().fadeCount(), 0) << what;
    };
    expectNew("serial", [](CFade&, CTestChannel& channel) { channel.serial = 1; });
    expectNew("group", [](CFade&, CTestChannel& channel) { channel.group = 1; });
    expectNew("element", [](CFade&, CTestChannel& channel) { channel.element = 1; });
    expectNew("rate", [](CFade& tree, CTestChannel&) { tree.graph.hostRate = 48000.0; });
}

TEST(CAudioProcessTerminalTest, WithoutChannelsThereAreNone) {
    CFade tree;
    EXPECT_TRUE(tree.run({}).empty());
    EXPECT_EQ(tree.gain().voiceCount(), 0);
    EXPECT_EQ(tree.runMono({1.0}), CSignal{2.0});
}

TEST(CAudioProcessTerminalTest, FadesTakeNoMemoryOnceTheStepIsPrepared) {
    CFade tree("0.001");
    const CSignal signal(64, 1.0);
    // Warm-up: the first blocks of this size, and the records of the changes.
    for (int32_t i = 0; i < 20; ++i) {
        tree.set(kGain, 2.0 + i % 5);
        tree.run({{0, 0, signal}});
    }
    CHeapCounters spent = {};
    for (int32_t i = 0; i < 200; ++i) {
        tree.set(kGain, 2.0 + i % 5);
        tree.collector().applyPendingChanges(tree.graph.now);
        const CBufferHandle block = tree.graph.context->takeSignal(64);
        tree.process().input(0).add(0, 0, 0, block);
        tree.process().input(0).samples = 64;
        const CHeapCounters before = CHeap::counters();
        tree.process().process();
        const CHeapCounters after = CHeap::counters();
        spent.allocations += after.allocations - before.allocations;
        spent.frees += after.frees - before.frees;
        tree.process().output(0).release(*tree.graph.context);
        tree.graph.now += 64;
    }
    EXPECT_EQ(spent.allocations, 0u);
    EXPECT_EQ(spent.frees, 0u);
}

}  // namespace
}  // namespace tarv
