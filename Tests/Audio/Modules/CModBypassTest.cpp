#include "Audio/Modules/CModBypass.h"

#include "Tests/Audio/Graph/GraphTree.h"
#include "Tests/Audio/Modules/NoiseReference.h"

namespace tarv {
namespace {

using CSignal = std::vector<double>;
constexpr const char* kEnable = "plugin.b.enable";
constexpr const char* kSolo = "plugin.b.group-solo";

/// The switch with the parameters enable and group-solo, and on demand with fades of 44 samples.
class CBypass : public CGraphTree {
public:
    explicit CBypass(bool isSmooth = false, bool isGroup0 = true)
        : CGraphTree({{"audio:modBypass",
                       "b",
                       {{"is-group0", isGroup0 ? "true" : "false"},
                        {"is-smooth-update", isSmooth ? "true" : "false"},
                        {"xfade-length", "0.001"}},
                       {numberNode("enable", "0"),
                        numberNode("group-solo", "0", {{"is-global", "true"}, {"is-single-group", "true"}}),
                        allocNode("enable", 0), allocNode("group-solo", 1)}}}) {
        EXPECT_EQ(build("b"), "");
        start();
    }
    /// A channel of group 0 with 1.0 on the processed side and 2.0 on the dry one.
    CSignal pass(int32_t count) {
        const auto size = static_cast<size_t>(count);
        return run({{0, 0, CSignal(size, 1.0)}}, {{0, 0, CSignal(size, 2.0)}})[0].samples;
    }
};

TEST(CModBypassTest, EnableAboveOneHalfPassesTheDrySignal) {
    CBypass tree;
    for (const auto& [value, output] : {std::pair{0.0, 1.0}, {0.5, 1.0}, {0.51, 2.0}, {1.0, 2.0}}) {
        tree.set(kEnable, value);
        EXPECT_EQ(tree.pass(3), CSignal(3, output)) << value;
    }
    EXPECT_EQ(tree.graph.context->counters().operations, 0u);  // by reference
}

TEST(CModBypassTest, WithoutADrySignalForTheChannelThereIsNoise) {
    CBypass tree;
    tree.set(kEnable, 1.0);
    const CTestChannels out =
        tree.run({{0, 0, CSignal(50, 1.0)}, {1, 1, CSignal(50, 1.0)}}, {{0, 0, CSignal(50, 2.0)}});
    EXPECT_EQ(out[0].samples, CSignal(50, 2.0));
    EXPECT_EQ(out[1].samples, antiDenormalNoise(50));
}

TEST(CModBypassTest, TheDrySignalIsFoundByGroupAndElementElseByElement) {
    CBypass tree;
    tree.set(kEnable, 1.0);
    const CTestChannels out = tree.run({{0, 1, {1.0}}, {2, 0, {1.0}}}, {{1, 0, {5.0}}, {0, 1, {6.0}}, {3, 1, {7.0}}});
    EXPECT_EQ(out[0].samples, CSignal{6.0});
    EXPECT_EQ(out[1].samples, CSignal{5.0});
}

TEST(CModBypassTest, ABlockOfASecondPortIsFoundByGroupAndElementThenByElement) {
    CGraphTree tree({CTestNode{"audio:modBypass", "b"}});
    ASSERT_EQ(tree.build("b"), "");
    const auto& process = dynamic_cast<const CAudioProcessTerminalBase&>(tree.process());
    CAudioPort& port = tree.process().input(1);
    for (const auto& [group, element] : {std::pair{0, 0}, {1, 2}, {2, 2}, {0, 1}}) {
        port.add(group, element, 0, tree.graph.context->takeSignal(1));
    }
    const auto position = [&](int32_t guess, int32_t group, int32_t element) {
        const CBufferHandle block = process.findBlock(1, guess, {group, element});
        for (int32_t i = 0; i < port.channels.count(); ++i) {
            if (port.channels[i].handle == block) {
                return i;
            }
        }
        return -1;
    };
    for (int32_t guess = 0; guess < 6; ++guess) {
        EXPECT_EQ(position(guess, 0, 0), 0);
        EXPECT_EQ(position(guess, 1, 2), 1);
        EXPECT_EQ(position(guess, 7, 2), 2);  // the last one of the element
        EXPECT_EQ(position(guess, 7, 1), 3);
        EXPECT_EQ(position(guess, 0, 3), -1);
    }
    tree.process().clearBuffers();
}

TEST(CModBypassTest, OnlyTheGroupAtWhichItIsReadSwitches) {
    CBypass tree(true);
    const CTestChannels wet = {{0, 0, {1.0}}, {3, 1, {1.0}}};
    const CTestChannels dry = {{0, 0, {2.0}}, {3, 1, {2.0}}};
    tree.set(kEnable, 3, 0, 1.0);
    EXPECT_EQ(samplesOf(tree.run(wet, dry)), (std::vector<CSignal>{{1.0}, {1.0}}));
    EXPECT_EQ(tree.as<CModBypass>().fadeCount(), 0);
    tree.set(kEnable, 0, 0, 1.0);
    tree.run(wet, dry);
    EXPECT_EQ(tree.as<CModBypass>().fadeCount(), 2);
}

TEST(CModBypassTest, WithoutIsGroup0EachGroupHasItsOwnSwitch) {
    CBypass tree(false, false);
    tree.set(kEnable, 3, 0, 1.0);
    EXPECT_EQ(samplesOf(tree.run({{0, 0, {1.0}}, {3, 1, {1.0}}}, {{0, 0, {2.0}}, {3, 1, {2.0}}})),
              (std::vector<CSignal>{{1.0}, {2.0}}));
}

TEST(CModBypassTest, SoloedGroupsSoundAlone) {
    const struct {
        std::vector<int32_t> soloed;
        bool passes[3];  // groups 0, 2 and 7
    } rows[] = {{{}, {true, true, true}},
                {{0}, {true, false, false}},
                {{2, 7}, {false, true, true}},
                {{5}, {false, false, false}},
                {{0, 2, 7}, {true, true, true}}};
    for (const auto& row : rows) {
        CBypass tree;
        for (const int32_t group : row.soloed) {
            tree.set(kSolo, 0, group, 1.0);
        }
        const CTestChannels out = tree.run({{0, 0, {1.0}}, {2, 1, {1.0}}, {7, 2, {1.0}}});
        for (size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(out[i].samples[0], row.passes[i] ? 1.0 : antiDenormalNoise(1)[0]) << row.soloed.size() << i;
        }
    }
}

TEST(CModBypassTest, SoloCountsAboveOneHalfAndGoesBeforeBypass) {
    CBypass tree;
    tree.set(kSolo, 0, 1, 0.5);
    tree.set(kEnable, 1.0);
    const CTestChannels wet = {{0, 0, {1.0}}, {1, 1, {1.0}}};
    const CTestChannels dry = {{0, 0, {2.0}}, {1, 1, {2.0}}};
    EXPECT_EQ(samplesOf(tree.run(wet, dry)), (std::vector<CSignal>{{2.0}, {2.0}}));
    tree.set(kSolo, 0, 1, 0.51);
    EXPECT_EQ(samplesOf(tree.run(wet, dry)), (std::vector<CSignal>{antiDenormalNoise(1), {2.0}}));
}

TEST(CModBypassTest, AGroupBeyondTheGroupsOfTheGraphCannotSolo) {
    CBypass tree;
    tree.graph.groupCount = 2;
    tree.set(kSolo, 0, 2, 1.0);
    EXPECT_EQ(tree.pass(1), CSignal{1.0});
}

TEST(CModBypassTest, EachSwitchFadesAndOneDuringAFadeWaitsForItsEnd) {
    CBypass tree(true);
    tree.pass(1);
    tree.set(kEnable, 1.0);
    CSignal out = tree.pass(10);
    EXPECT_EQ(out[0], 1.0);
    tree.set(kEnable, 0.0);
    const CSignal rest = tree.pass(100);
    out.insert(out.end(), rest.begin(), rest.end());
    EXPECT_NEAR(out[22], 1.5, 1e-10);  // half way to the dry signal, though it is off again
    EXPECT_EQ(out[44], 2.0);           // there, and from here back
    EXPECT_NEAR(out[66], 1.5, 1e-10);
    EXPECT_EQ(out[88], 1.0);
    for (size_t i = 1; i < out.size(); ++i) {
        EXPECT_LT(std::abs(out[i] - out[i - 1]), 0.04) << i;  // the steepest step of the cosine is pi / 88
    }
}

TEST(CModBypassTest, TheDrySignalStaysInItsPlaceWhereAFadeEndsWithinABlock) {
    CBypass tree(true);
    const CSignal dry = noiseSignal(100);
    tree.set(kEnable, 1.0);
    const CSignal out = tree.run({{0, 0, CSignal(100, 1.0)}}, {{0, 0, dry}})[0].samples;
    EXPECT_EQ(out[0], 1.0);
    EXPECT_EQ(CSignal(out.begin() + 44, out.end()), CSignal(dry.begin() + 44, dry.end()));
}

TEST(CModBypassTest, BothInputsPassWithUnsetSlots) {
    CGraphTree tree({{"audio:modBypass", "b", {}, {allocNode("enable", 0), allocNode("group-solo", 1)}}});
    ASSERT_EQ(tree.build("b"), "");
    EXPECT_EQ(tree.run({{0, 0, {1.0}}}, {{0, 0, {2.0}}})[0].samples, CSignal{1.0});
}

}  // namespace
}  // namespace tarv
