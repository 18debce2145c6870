#include "Audio/Modules/CModDecimator.h"
#include "Audio/Modules/CModInterpolator.h"
#include "Audio/Modules/CModResampler.h"

#include "Tests/Audio/Graph/GraphTree.h"
#include "Tests/Audio/Modules/CTestGen.h"

namespace tarv {
namespace {

using CSignal = std::vector<double>;

CTestNode resamplerNode(const std::string& name, bool isDown, std::vector<CTestNode> more = {}) {
    more.insert(more.end(), {allocNode("mode", 0), allocNode("host-mode", 1)});
    return {isDown ? "audio:modDownsampler" : "audio:modUpsampler", name, {{"use-time-shift", "false"}}, more};
}

/// A filter of one section that is the input times `gain` (a one-pole that follows at once) or, with a smaller k, has a
/// history.
std::vector<CTestNode> filterNodes(const std::string& name, const std::string& gain, const std::string& k) {
    return {{"test:gen", name + "-gen", {{"type", "5"}, {"gains", gain}, {"numerators", k}}},
            {"audio:fltgen-array",
             name + "-array",
             {},
             {{"audio:fltgen-array-item", "item", {{"index", "0"}, {"fltgen", "audio." + name + "-gen"}}}}},
            {"audio:modFilter",
             name,
             {{"gen-array", "audio." + name + "-array"}, {"is-smooth-update", "true"}},
             {privateNode("index", "0"), allocNode("count", 0), allocNode("index", 1)}}};
}

/// The shared definitions that the resamplers need, without the one of that name.
std::vector<CTestNode> sharedNodes(const std::string& without = "", const std::string& k = "1") {
    std::vector<CTestNode> nodes = {{"audio:modInterpolator", "modUpsamplerInterpolator"},
                                    {"audio:modDecimator", "modDownsamplerDecimator"}};
    const struct {
        const char* name;
        const char* gain;
    } filters[] = {{"modUpsamplerFilter1", "3"},
                   {"modUpsamplerFilter2", "5"},
                   {"modDownsamplerFilter1", "7"},
                   {"modDownsamplerFilter2", "11"}};
    for (const auto& filter : filters) {
        const std::vector<CTestNode> made = filterNodes(filter.name, filter.gain, k);
        nodes.insert(nodes.end(), made.begin(), made.end());
    }
    std::erase_if(nodes, [&without](const CTestNode& node) { return node.name == without; });
    return nodes;
}

std::vector<CTestNode> with(std::vector<CTestNode> nodes, const CTestNode& node) {
    nodes.push_back(node);
    return nodes;
}

/// Both resamplers on the parameters p.over and p.host-over.
CTestNode pairNode(const std::string& over) {
    const std::vector<CTestNode> remaps = {remapNode("mode", "^over"), remapNode("host-mode", "^host-over")};
    return {"audio:process-def",
            "p",
            {},
            {numberNode("over", over), numberNode("host-over", "0"), resamplerNode("up", false, remaps),
             resamplerNode("down", true, remaps)}};
}

/// Kinds of the children in order: I, D and F.
std::string kindsOf(const CModProcessSeq& sequence) {
    std::string kinds;
    for (int32_t i = 0; i < sequence.childCount(); ++i) {
        const CAudioProcessBase& child = sequence.child(i);
        const bool isStage =
            dynamic_cast<const CModInterpolator*>(&child) || dynamic_cast<const CModDecimator*>(&child);
        EXPECT_EQ(child.name(), isStage ? "modInterpDecim" : "modFilter");
        kinds += !isStage ? 'F' : dynamic_cast<const CModInterpolator*>(&child) ? 'I' : 'D';
    }
    return kinds;
}

TEST(CModInterpolatorTest, EachSampleIsDoubledAndFollowedByAZeroAtTwiceTheRate) {
    CGraphTree tree({CTestNode{"audio:modInterpolator", "i"}});
    ASSERT_EQ(tree.build("i"), "");
    const CTestChannels out = tree.run({{1, 2, {1.0, -0.25, 3.0}, 9}, {0, 3, {0.5, 0.0, 1.0}}});
    EXPECT_EQ(out[0].samples, (CSignal{2.0, 0.0, -0.5, 0.0, 6.0, 0.0}));
    EXPECT_EQ(out[1].samples, (CSignal{1.0, 0.0, 0.0, 0.0, 2.0, 0.0}));
    EXPECT_TRUE(out[0].group == 1 && out[0].element == 2 && out[0].serial == 9);
    EXPECT_EQ(tree.process().output(0).rate, 88200.0);
}

TEST(CModDecimatorTest, EverySecondSampleIsKeptOverBlocksOfAnyLength) {
    const std::vector<std::vector<int32_t>> cuts = {{2, 2, 2},       {1, 1, 1, 1, 1, 1}, {3, 3, 3, 3},
                                                    {1, 2, 3, 4, 5}, {5, 0, 1, 0, 0, 7}, {7, 2, 1, 1, 512, 511, 513}};
    for (const std::vector<int32_t>& blocks : cuts) {
        CGraphTree tree({CTestNode{"audio:modDecimator", "d"}});
        ASSERT_EQ(tree.build("d"), "");
        CSignal in;
        CSignal out;
        for (const int32_t block : blocks) {
            const CSignal piece = noiseSignal(block, static_cast<uint32_t>(in.size() + 1));
            in.insert(in.end(), piece.begin(), piece.end());
            const CSignal kept = tree.run({{0, 0, piece}})[0].samples;
            out.insert(out.end(), kept.begin(), kept.end());
            EXPECT_EQ(out.size(), (in.size() + 1) / 2);
        }
        CSignal expected;
        for (size_t i = 0; i < in.size(); i += 2) {
            expected.push_back(in[i]);
        }
        EXPECT_EQ(out, expected);
        EXPECT_EQ(tree.process().output(0).rate, 22050.0);
    }
}

TEST(CModDecimatorTest, AnOddBlockAlternatesTheOffset) {
    CGraphTree tree({CTestNode{"audio:modDecimator", "d"}});
    ASSERT_EQ(tree.build("d"), "");
    EXPECT_EQ(tree.runMono({1, 2, 3, 4, 5}), (CSignal{1, 3, 5}));
    EXPECT_EQ(tree.runMono({1, 2, 3, 4, 5}), (CSignal{2, 4}));
    EXPECT_EQ(tree.runMono({1, 2, 3, 4, 5}), (CSignal{1, 3, 5}));
    tree.process().reset();
    EXPECT_EQ(tree.runMono({1, 2, 3}), (CSignal{1, 3}));
}

TEST(CModResamplerTest, ModeAndHostModeGiveTheNumberOfStages) {
    const struct {
        double mode;
        double host;
        int32_t stages;
    } rows[] = {{1, 0, 0}, {1, 3, 0}, {2, 0, 1}, {3, 0, 2},  {4, 1, 3},   {0, 0, 0},     {0, 1, 1},
                {0, 2, 2}, {0, 3, 3}, {0, 9, 3}, {0, -1, 0}, {1.5, 0, 1}, {0.4, 2.4, 2}, {0.5, 2, 0}};
    for (const bool isDown : {false, true}) {
        CGraphTree tree(
            with(sharedNodes(), resamplerNode("r", isDown, {numberNode("mode", "1"), numberNode("host-mode", "0")})));
        ASSERT_EQ(tree.build("r"), "");
        for (const auto& row : rows) {
            tree.set("plugin.r.mode", row.mode);
            tree.set("plugin.r.host-mode", row.host);
            tree.run({{0, 0, {}}});
            EXPECT_EQ(tree.as<CModResampler>().stageCount(), row.stages) << row.mode << ' ' << row.host;
        }
    }
}

TEST(CModResamplerTest, UnsetSlotsGiveAnEmptySequenceWhichPassesByReference) {
    CGraphTree tree(with(sharedNodes(), resamplerNode("r", false)));
    ASSERT_EQ(tree.build("r"), "");
    EXPECT_EQ(tree.runMono({1.0, 2.0}), (CSignal{1.0, 2.0}));
    EXPECT_EQ(tree.as<CModResampler>().childCount(), 0);
    EXPECT_EQ(tree.graph.context->counters().operations, 0u);
}

TEST(CModResamplerTest, TheSequencesMirrorEachOther) {
    const struct {
        const char* over;
        const char* up;
        const char* down;
        double upGain;
        double downGain;
    } rows[] = {{"1", "", "", 1, 1},
                {"2", "IF", "FD", 2 * 3, 7},
                {"3", "IFIF", "FDFD", 4 * 3 * 5, 7 * 11},
                {"4", "IFIFIF", "FDFDFD", 8 * 3 * 5 * 5, 7 * 11 * 11}};
    for (const auto& row : rows) {
        CGraphTree tree(with(sharedNodes(), pairNode(row.over)));
        ASSERT_EQ(tree.build("p"), "");
        tree.start();
        // The filters follow at once, so the first sample of a run of the lower rate goes through, the zeros stay
        // zeros.
        EXPECT_EQ(tree.runMono({1.0, -2.0, 3.0}), (CSignal{row.upGain * row.downGain, -2.0 * row.upGain * row.downGain,
                                                           3.0 * row.upGain * row.downGain}));
        EXPECT_EQ(kindsOf(dynamic_cast<CModResampler&>(tree.inner("up"))), row.up);
        EXPECT_EQ(kindsOf(dynamic_cast<CModResampler&>(tree.inner("down"))), row.down);
    }
}

TEST(CModResamplerTest, TheSteepFilterStandsAtTwiceTheHostsRateAndTheOthersAbove) {
    CGraphTree tree(with(sharedNodes(), pairNode("4")));
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    const struct {
        const char* child;
        const char* definition;
        double rate;
    } rows[] = {{"up.1", "modUpsamplerFilter1", 88200.0},      {"up.3", "modUpsamplerFilter2", 176400.0},
                {"up.5", "modUpsamplerFilter2", 352800.0},     {"down.0", "modDownsamplerFilter2", 352800.0},
                {"down.2", "modDownsamplerFilter2", 176400.0}, {"down.4", "modDownsamplerFilter1", 88200.0}};
    for (const auto& row : rows) {
        EXPECT_EQ(tree.inner(row.child).def().name(), row.definition) << row.child;
        EXPECT_EQ(tree.inner(row.child).output(0).rate, row.rate) << row.child;
    }
    EXPECT_EQ(tree.process().outputDelay(), 0);
}

TEST(CModResamplerTest, ABlockOfAnyLengthComesBackWhole) {
    for (const char* over : {"1", "2", "3", "4"}) {
        CGraphTree tree(with(sharedNodes("", "0.5"), pairNode(over)));
        ASSERT_EQ(tree.build("p"), "");
        tree.start();
        for (const int32_t count : {1, 2, 3, 7, 0, 64, 511, 512}) {
            EXPECT_EQ(tree.run({{0, 0, noiseSignal(count)}})[0].samples.size(), static_cast<size_t>(count)) << over;
        }
    }
}

TEST(CModResamplerTest, TheBitsDoNotDependOnHowTheBlocksAreCut) {
    const CSignal in = noiseSignal(600);
    CSignal expected;
    for (const int32_t block : {600, 1, 7, 512}) {
        CGraphTree tree(with(sharedNodes("", "0.5"), pairNode("3")));
        ASSERT_EQ(tree.build("p"), "");
        tree.start();
        const CSignal out = tree.runMono(in, block);
        expected = expected.empty() ? out : expected;
        EXPECT_EQ(out, expected) << block;
    }
}

TEST(CModResamplerTest, AChangeOfTheCountStartsFromSilence) {
    const CSignal loud = noiseSignal(101);
    const CSignal later = noiseSignal(50, 5);
    for (const auto& [from, to] : {std::pair{"4", "2"}, {"2", "4"}, {"2", "3"}}) {
        CSignal fresh;
        {
            CGraphTree tree(with(sharedNodes("", "0.5"), pairNode(to)));
            ASSERT_EQ(tree.build("p"), "");
            tree.start();
            fresh = tree.runMono(later);
        }
        CGraphTree tree(with(sharedNodes("", "0.5"), pairNode(from)));
        ASSERT_EQ(tree.build("p"), "");
        tree.start();
        tree.runMono(loud);
        tree.set("plugin.p.over", std::stod(to));
        EXPECT_EQ(tree.runMono(later), fresh) << from << ' ' << to;
    }
}

TEST(CModResamplerTest, AChangeThatLeavesTheCountKeepsTheSequenceAndItsHistory) {
    const CSignal in = noiseSignal(50);
    CSignal expected;
    for (const bool isChanged : {false, true}) {
        CGraphTree tree(with(sharedNodes("", "0.5"), pairNode("2")));
        ASSERT_EQ(tree.build("p"), "");
        tree.start();
        tree.runMono(in);
        if (isChanged) {
            tree.set("plugin.p.host-over", 1.0);
            tree.set("plugin.p.over", 0.0);  // "Auto" with one stage of the host's is 2x
        }
        const CSignal out = tree.runMono(in);
        expected = isChanged ? expected : out;
        EXPECT_EQ(out, expected);
    }
}

TEST(CModResamplerTest, AResetReachesTheChildren) {
    CGraphTree tree(with(sharedNodes("", "0.5"), pairNode("3")));
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    const CSignal in = noiseSignal(51);
    const CSignal fresh = tree.runMono(in);
    EXPECT_NE(tree.runMono(in), fresh);
    tree.process().reset();
    EXPECT_EQ(tree.runMono(in), fresh);
}

TEST(CModResamplerTest, DelaysOfTheFiltersAreSummedInHostSamples) {
    std::vector<CTestNode> nodes = sharedNodes("", "1");
    for (CTestNode& node : nodes) {
        if (node.tag == "test:gen") {
            node.attributes.emplace_back("latency", "40");
        }
    }
    CGraphTree tree(with(nodes, pairNode("3")));
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    EXPECT_EQ(tree.inner("up").outputDelay(), 20 + 10);  // 40 samples at twice and at four times the rate
    EXPECT_EQ(tree.process().outputDelay(), 60);
    // Whenever a stage comes or goes the delays are invalidated; filters know their delay when they are designed.
    const struct {
        double over;
        int32_t delay;
    } rows[] = {{1.0, 0}, {2.0, 40}, {4.0, 70}, {3.0, 60}};
    for (const auto& row : rows) {
        tree.graph.confirmDelays();
        tree.set("plugin.p.over", row.over);
        tree.runMono({1.0});
        EXPECT_FALSE(tree.graph.areDelaysValid()) << row.over;
        EXPECT_EQ(tree.process().placeDelay(0), row.delay) << row.over;
    }
}

TEST(CModResamplerTest, WhatRunsAtTheRaisedRateMeetsAnotherSerial) {
    CGraphTree tree(with(sharedNodes("", "0.5"), pairNode("2")));
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    const CSignal in = noiseSignal(50);
    const CSignal fresh = tree.run({{0, 0, in}})[0].samples;
    EXPECT_NE(tree.run({{0, 0, in}})[0].samples, fresh);
    EXPECT_EQ(tree.run({{0, 0, in, 1}})[0].samples, fresh);
    EXPECT_NE(tree.run({{0, 0, in, 1}})[0].samples, fresh);
}

TEST(CModResamplerTest, WithoutTheSharedDefinitionsItIsNotBuilt) {
    const struct {
        const char* name;
        bool isDown;
        const char* kind;
    } rows[] = {{"modUpsamplerInterpolator", false, ""},      {"modUpsamplerFilter1", false, "filter 1 "},
                {"modUpsamplerFilter2", false, "filter 2 "},  {"modDownsamplerDecimator", true, ""},
                {"modDownsamplerFilter1", true, "filter 1 "}, {"modDownsamplerFilter2", true, "filter 2 "}};
    for (const auto& row : rows) {
        CGraphTree tree(with(sharedNodes(row.name), resamplerNode("r", row.isDown)));
        EXPECT_EQ(tree.build("r"), std::string("No ") + row.kind +
                                       "module definition object with the name 'shared::audio." + row.name +
                                       "' found.");
    }
}

}  // namespace
}  // namespace tarv
