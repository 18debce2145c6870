// Links that meet at one port, processes that are switched out, and the delays of both.

#include "Audio/Graph/CAudioProcessStack.h"
#include "Audio/Modules/CModGain.h"
#include "Tests/Audio/Graph/GraphTree.h"

namespace tarv {
namespace {

using CSignal = std::vector<double>;

CTestNode processNode(std::vector<CTestNode> children, CTestAttributes attributes = {}) {
    return {"audio:process-def", "p", std::move(attributes), std::move(children)};
}

/// The bypass state 11, active while the parameter `on` is 1.
std::vector<CTestNode> withState(std::vector<CTestNode> children, const std::string& on) {
    children.insert(children.begin(), numberNode("on", on));
    children.push_back({"audio:process-bypass-state", "state", {{"id", "11"}, {"param", "on"}}});
    return children;
}

const CTestAttributes kBypassed = {{"bypass-state-id", "11"}};

/// The definitions of the array `arr` of one generator, whose filter passes its input and reports a delay of 10
/// samples.
std::vector<CTestNode> lateFilter() {
    return {{"test:gen", "late", {{"type", "5"}, {"gains", "1"}, {"numerators", "1"}, {"latency", "10"}}},
            {"audio:fltgen-array",
             "arr",
             {},
             {{"audio:fltgen-array-item", "item", {{"index", "0"}, {"fltgen", "audio.late"}}}}}};
}

CTestNode lateNode(const std::string& name, CTestAttributes attributes = {}) {
    attributes.emplace_back("gen-array", "audio.arr");
    return {"audio:modFilter", name, std::move(attributes), {allocNode("count", 0), allocNode("index", 1)}};
}

/// A block of ones on an input port of the built process.
void offer(const CGraphTree& tree, int32_t port, int32_t count) {
    CAudioPort& target = tree.process().input(port);
    target.samples = count;
    target.rate = CGraphTree::kRate;
    const CBufferHandle block = tree.graph.context->takeSignal(count);
    std::fill_n(tree.graph.context->signal(block), count, 1.0);
    target.add(0, 0, 0, block);
}

TEST(CAudioProcessOrderTest, ASumIsAsLongAsTheShortestOfItsSignalsInEveryBlock) {
    CGraphTree tree({processNode({gainNode("a", "2"), linkNode("*/1", "a")})});
    ASSERT_EQ(tree.build("p"), "");
    const struct { int32_t first, second, sum; } rows[] = {{3, 2, 2}, {5, 5, 5}, {1, 7, 1}, {64, 64, 64}};
    for (const auto& row : rows) {
        offer(tree, 0, row.first);
        offer(tree, 1, row.second);
        tree.process().process();
        tree.graph.context->flush();
        CAudioPort& out = tree.process().output(0);
        ASSERT_EQ(out.samples, row.sum);
        ASSERT_EQ(out.channels.count(), 1);
        const double* signal = tree.graph.context->signal(out.channels[0].handle);
        EXPECT_EQ(CSignal(signal, signal + row.sum), CSignal(static_cast<size_t>(row.sum), 4.0));
        out.release(*tree.graph.context);
    }
}

TEST(CAudioProcessOrderTest, TheSameHoldsWhereLinksMeetAtTheOutput) {
    CGraphTree tree({processNode({gainNode("a", "2"), linkNode("*/1", "*")})});
    ASSERT_EQ(tree.build("p"), "");
    for (const int32_t count : {1, 7, 3, 64}) {
        offer(tree, 0, count);
        offer(tree, 1, count);
        tree.process().process();
        EXPECT_EQ(tree.process().output(0).samples, count);
    }
}

TEST(CAudioProcessOrderTest, EqualElementsOfDifferentGroupsAreNotSummed) {
    CGraphTree tree({processNode({gainNode("a", "2"), linkNode("*/1", "a")})});
    ASSERT_EQ(tree.build("p"), "");
    const CTestChannels out = tree.run({{0, 0, {1.0}}}, {{1, 0, {5.0}}});
    EXPECT_EQ(samplesOf(out), (std::vector<CSignal>{{2.0}, {10.0}}));
}

TEST(CAudioProcessOrderTest, ASumWithAnotherSignalStartsFromSilence) {
    CGraphTree tree({processNode({gainNode("a", "2", {{"is-smooth-update", "true"}}), linkNode("*/1", "a")})});
    ASSERT_EQ(tree.build("p"), "");
    const CTestChannels first = {{0, 0, {1.0}, 3}};
    tree.start(first);
    tree.set("plugin.p.a.gain", 6.0);
    EXPECT_EQ(samplesOf(tree.run(first, {{0, 0, {1.0}, 3}})), std::vector<CSignal>{{4.0}});
    const auto& gain = dynamic_cast<const CModGain&>(tree.inner("a"));
    tree.run(first, {{0, 0, {1.0}, 3}});
    EXPECT_EQ(gain.fadeCount(), 1);
    // The channel of the second input has another serial now, and so has the sum.
    EXPECT_EQ(samplesOf(tree.run(first, {{0, 0, {1.0}, 4}})), std::vector<CSignal>{{12.0}});
    EXPECT_EQ(gain.fadeCount(), 0);
}

TEST(CAudioProcessOrderTest, WhereLinksMeetARunBecomesSteady) {
    CGraphTree tree({processNode({gainNode("a", "2"), gainNode("b", "3"), linkNode("*/1", "a"), linkNode("a", "*")})});
    ASSERT_EQ(tree.build("p"), "");
    const CTestChannels ones = {{0, 0, {1.0}, 3}};
    tree.start(ones);
    tree.run(ones, ones);
    for (int32_t block = 0; block < 3; ++block) {
        tree.graph.beginRun();
        EXPECT_EQ(samplesOf(tree.run(ones, ones)), std::vector<CSignal>{{16.0}});
        EXPECT_TRUE(tree.graph.isSteady()) << block;
    }
    tree.graph.beginRun();
    tree.run(ones, {{0, 0, {1.0}, 4}});
    EXPECT_FALSE(tree.graph.isSteady());
}

TEST(CAudioProcessOrderTest, OnlyTheFirstInputOfASwitchedOutProcessIsConnectedThrough) {
    CGraphTree tree({processNode(withState(
        {gainNode("a", "2"), {"audio:modNode", "b", kBypassed}, gainNode("c", "5"), linkNode("*", "b/1")}, "1"))});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(tree.runMono({1.0}), CSignal{10.0});
}

TEST(CAudioProcessOrderTest, ADeadLinkIntoASwitchedOutProcessIsNotConnectedThrough) {
    CGraphTree tree(
        {processNode(withState({gainNode("a", "2"), gainNode("b", "3", kBypassed), linkNode("*", "a"),
                                linkNode("a", "b"), linkNode("*", "b", {{"state-id", "1"}}), linkNode("b", "*")},
                               "1"),
                     {{"is-auto-links", "false"}})});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(tree.runMono({1.0}), CSignal{2.0});
    tree.as<CAudioProcess>().setLinkState(1);
    EXPECT_EQ(tree.runMono({1.0}), CSignal{3.0});
}

TEST(CAudioProcessOrderTest, ASwitchedOutProcessDelaysNothing) {
    std::vector<CTestNode> nodes = lateFilter();
    nodes.push_back(processNode(withState({lateNode("a", kBypassed), lateNode("b")}, "0")));
    CGraphTree tree(nodes);
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    EXPECT_EQ(tree.process().outputDelay(), 20);
    tree.graph.confirmDelays();
    tree.set("plugin.p.on", 1.0);
    tree.runMono({1.0});
    EXPECT_EQ(tree.inner("b").inputDelay(), 0);
    EXPECT_EQ(tree.process().outputDelay(), 10);
    EXPECT_FALSE(tree.graph.areDelaysValid());
    // When it is back and designed it has its delay again: the delays are invalidated.
    tree.graph.confirmDelays();
    tree.set("plugin.p.on", 0.0);
    tree.runMono({1.0});
    EXPECT_FALSE(tree.graph.areDelaysValid());
    EXPECT_EQ(tree.process().placeDelay(0), 20);
}

TEST(CAudioProcessOrderTest, AStackThatShrinksDelaysLess) {
    std::vector<CTestNode> nodes = lateFilter();
    nodes.push_back(processNode({numberNode("count", "3"),
                                 lateNode("s", {{"is-stacked", "true"}, {"stack-param", "^.count"}}), lateNode("b")}));
    CGraphTree tree(nodes);
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    EXPECT_EQ(tree.process().outputDelay(), 40);
    tree.graph.confirmDelays();
    tree.set("plugin.p.count", 1.0);
    tree.runMono({1.0});
    EXPECT_EQ(tree.inner("s").outputDelay(), 10);
    EXPECT_FALSE(tree.graph.areDelaysValid());
    EXPECT_EQ(tree.process().placeDelay(0), 20);
}

TEST(CAudioProcessOrderTest, ChangesForAStackThatIsSwitchedOutDoNotPileUp) {
    CGraphTree tree({processNode(withState(
        {numberNode("count", "2"),
         gainNode("s", "3,5", {{"is-stacked", "true"}, {"stack-param", "^.count"}, {"bypass-state-id", "11"}})},
        "1"))});
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    const auto automate = [&tree](int32_t blocks) {
        for (int32_t i = 0; i < blocks; ++i) {
            tree.set("plugin.p.s.gain", 0, 1, 2.0 + i % 7);
            EXPECT_EQ(tree.runMono({1.0}), CSignal{1.0});
        }
        return CHeap::counters().allocations - CHeap::counters().frees;
    };
    const auto before = automate(20);
    EXPECT_EQ(automate(500), before);
    tree.set("plugin.p.on", 0.0);
    EXPECT_EQ(tree.runMono({1.0}), CSignal{3.0 * (2.0 + 499 % 7)});
}

}  // namespace
}  // namespace tarv
