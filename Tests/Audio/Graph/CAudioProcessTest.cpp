#include "Audio/Graph/CAudioProcess.h"

#include "Tests/Audio/Graph/GraphTree.h"
#include "Tests/Core/LogCapture.h"

namespace tarv {
namespace {

using CSignals = std::vector<std::vector<double>>;

CTestNode processNode(std::vector<CTestNode> children, CTestAttributes attributes = {}) {
    return {"audio:process-def", "p", std::move(attributes), std::move(children)};
}
CTestNode stateNode(CTestAttributes attributes) {
    return {"audio:process-bypass-state", "state", std::move(attributes)};
}

TEST(CAudioProcessTest, ADefinitionOfAnotherClassIsRefused) {
    CGraphTree tree({CTestNode{"audio:modNode", "node"}});
    CAudioProcess process;
    process.place({&tree.graph, nullptr, &tree.definition("node"), "plugin.node", "node", -1});
    EXPECT_EQ(messageOf(process.init()), "Audio process def of invalid class supplied.");
}

TEST(CAudioProcessTest, ASecondChildOfTheSameNameIsRefused) {
    CGraphTree tree({processNode({gainNode("a", "2")})});
    ASSERT_EQ(tree.build("p"), "");
    auto& process = tree.as<CAudioProcess>();
    EXPECT_EQ(messageOf(process.addProcess(process.findProcess("a")->def(), "a")), "Duplicate audio process name 'a'.");
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{2.0});
}

TEST(CAudioProcessTest, ChildrenAreChainedInDeclaredOrder) {
    CGraphTree tree({processNode({gainNode("c", "2"), gainNode("a", "3"), gainNode("b", "5")})});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(tree.runMono({1.0, -0.5}), (std::vector<double>{30.0, -15.0}));
    EXPECT_EQ(orderOf(tree.as<CAudioProcess>()), "c a b");
    const CAudioProcessBase& child = *tree.as<CAudioProcess>().findProcess("a");
    EXPECT_EQ(child.path(), "plugin.p.a");
    EXPECT_EQ(child.parent(), &tree.process());
    EXPECT_EQ(tree.as<CAudioProcess>().findProcess("d"), nullptr);
}

TEST(CAudioProcessTest, WithoutChildrenTheInputPasses) {
    CGraphTree tree({processNode({})});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(tree.runMono({1.0, 2.0}), (std::vector<double>{1.0, 2.0}));
}

TEST(CAudioProcessTest, WithoutAutoLinksOnlyTheDeclaredLinksExist) {
    CGraphTree tree({processNode({gainNode("a", "2"), gainNode("b", "3"), linkNode("*", "b"), linkNode("b", "*")},
                                 {{"is-auto-links", "false"}})});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{3.0});
}

TEST(CAudioProcessTest, WithoutAnyLinkToTheOutputThereIsNoChannel) {
    CGraphTree tree({processNode({gainNode("a", "2"), linkNode("*", "a")}, {{"is-auto-links", "false"}})});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_TRUE(tree.run({{0, 0, {1.0}}}).empty());
    EXPECT_EQ(orderOf(tree.as<CAudioProcess>()), "a");
}

TEST(CAudioProcessTest, PrototypesAreNotMadeAndOutOfOrderOnesNotChained) {
    CGraphTree tree({processNode({gainNode("a", "2"), gainNode("proto", "7", {{"is-prototype", "true"}}),
                                  gainNode("aside", "11", {{"is-outoforder", "true"}}), gainNode("b", "3")})});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{6.0});
    EXPECT_EQ(tree.as<CAudioProcess>().findProcess("proto"), nullptr);
    EXPECT_NE(tree.as<CAudioProcess>().findProcess("aside"), nullptr);
}

TEST(CAudioProcessTest, ALinkToAPrototypeIsDropped) {
    CGraphTree tree({processNode({gainNode("a", "2"), gainNode("proto", "7", {{"is-prototype", "true"}}),
                                  linkNode("proto", "a"), linkNode("a", "proto")})});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{2.0});
    EXPECT_EQ(tree.as<CAudioProcess>().links().count(), 2);
}

TEST(CAudioProcessTest, AnExplicitLinkAddsToTheChain) {
    CGraphTree tree({processNode({gainNode("a", "2"), gainNode("b", "3"), linkNode("*", "b"), linkNode("a", "*")})});
    ASSERT_EQ(tree.build("p"), "");
    // Into b go a's output and the input; the output has b and a.
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{11.0});
}

TEST(CAudioProcessTest, WhereLinksMeetEqualChannelsAreSummedAndOthersStandSideBySide) {
    CGraphTree tree({processNode({gainNode("a", "10"), linkNode("*/1", "*")})});
    ASSERT_EQ(tree.build("p"), "");
    const CTestChannels out = tree.run({{0, 0, {1.0}}, {1, 1, {2.0}}}, {{0, 0, {5.0}}, {0, 2, {7.0}}});
    // In the order in which they arrive: the channel that does not pass the gain is first.
    EXPECT_EQ(samplesOf(out), (CSignals{{15.0}, {7.0}, {20.0}}));
    EXPECT_EQ(out[1].element, 2);
    EXPECT_EQ(out[2].group, 1);
}

TEST(CAudioProcessTest, TheOrderIsAStableTopologicalSort) {
    const struct {
        std::vector<CTestNode> links;
        const char* order;
    } rows[] = {
        {{}, "a b c d"},
        {{linkNode("d", "a")}, "b c d a"},
        {{linkNode("c", "a"), linkNode("d", "b")}, "c d a b"},
        {{linkNode("d", "c"), linkNode("c", "b"), linkNode("b", "a")}, "d c b a"},
        {{linkNode("c", "b"), linkNode("*", "c"), linkNode("a", "*")}, "a c d b"},
    };
    for (const auto& row : rows) {
        std::vector<CTestNode> children = {gainNode("a", "1"), gainNode("b", "1"), gainNode("c", "1"),
                                           gainNode("d", "1")};
        children.insert(children.end(), row.links.begin(), row.links.end());
        CGraphTree tree({processNode(children, {{"is-auto-links", "false"}})});
        ASSERT_EQ(tree.build("p"), "");
        tree.run({{0, 0, {1.0}}});
        EXPECT_EQ(orderOf(tree.as<CAudioProcess>()), row.order);
    }
}

TEST(CAudioProcessTest, TheMembersOfACycleDoNotRunAndTheLogSaysSo) {
    CGraphTree tree({processNode(
        {gainNode("a", "2"), gainNode("b", "3"), gainNode("c", "5"), gainNode("d", "7"), linkNode("*", "a"),
         linkNode("a", "*"), linkNode("b", "c"), linkNode("c", "b"), linkNode("c", "d"), linkNode("d", "*")},
        {{"is-auto-links", "false"}})});
    ASSERT_EQ(tree.build("p"), "");
    CLogCapture log;
    EXPECT_EQ(tree.runMono({1.0, 10.0}, 1), (std::vector<double>{2.0, 20.0}));
    // d waits for the cycle and so is left out as well.
    EXPECT_EQ(orderOf(tree.as<CAudioProcess>()), "a");
    EXPECT_EQ(log.lines, std::vector<std::string>{"process seq err // plugin.p"});
}

TEST(CAudioProcessTest, WithoutACycleTheLogStaysEmpty) {
    CGraphTree tree({processNode({gainNode("a", "2"), gainNode("b", "3"), linkNode("*", "b")})});
    ASSERT_EQ(tree.build("p"), "");
    CLogCapture log;
    tree.runMono({1.0});
    EXPECT_TRUE(log.lines.empty());
}

TEST(CAudioProcessTest, OnlyLinksOfTheCurrentStateAreLive) {
    CGraphTree tree({processNode(
        {gainNode("a", "2"), gainNode("b", "3"), linkNode("*", "a"), linkNode("*", "b", {{"state-id", "1"}}),
         linkNode("a", "*", {{"state-id", "0"}}), linkNode("b", "*", {{"state-id", "1"}})},
        {{"is-auto-links", "false"}})});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_TRUE(tree.runMono({1.0}).empty());
    tree.as<CAudioProcess>().setLinkState(0);
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{2.0});
    tree.as<CAudioProcess>().setLinkState(1);
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{3.0});
    tree.as<CAudioProcess>().setLinkState(-1);
    EXPECT_TRUE(tree.runMono({1.0}).empty());
}

TEST(CAudioProcessTest, AChangeOfTheLinkStateOpensOrClosesACycle) {
    CGraphTree tree({processNode({gainNode("a", "2"), gainNode("b", "3"), linkNode("b", "a", {{"state-id", "1"}})})});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{6.0});
    CLogCapture log;
    tree.as<CAudioProcess>().setLinkState(1);
    EXPECT_TRUE(tree.runMono({1.0}).empty());
    EXPECT_TRUE(log.has("process seq err // plugin.p"));
    tree.as<CAudioProcess>().setLinkState(0);
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{6.0});
}

/// a, b with the bypass state 11, c; the state depends on `on`.
CTestNode switchable(CTestAttributes state = {{"id", "11"}, {"param", "on"}}, const std::string& on = "0") {
    return processNode({numberNode("on", on, {{"is-global", "true"}}), numberNode("also", "0", {{"is-global", "true"}}),
                        gainNode("a", "2"), gainNode("b", "3", {{"bypass-state-id", "11"}}), gainNode("c", "5"),
                        stateNode(std::move(state))});
}

TEST(CAudioProcessTest, AnActiveStateTakesItsProcessOutAndConnectsThrough) {
    CGraphTree tree({switchable()});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{30.0});
    tree.set("plugin.p.on", 1.0);
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{10.0});
    EXPECT_EQ(orderOf(tree.as<CAudioProcess>()), "a c");
    tree.set("plugin.p.on", 0.0);
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{30.0});
    EXPECT_EQ(orderOf(tree.as<CAudioProcess>()), "a b c");
}

TEST(CAudioProcessTest, AnInvertedStateIsActiveWhileTheConditionFails) {
    CGraphTree tree({switchable({{"id", "11"}, {"param", "on"}, {"is-inverted", "true"}, {"is-group0", "true"}}, "1")});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{30.0});
    tree.set("plugin.p.on", 0.0);
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{10.0});
    tree.set("plugin.p.on", 1.0);
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{30.0});
}

TEST(CAudioProcessTest, TheStateReadsTheRoundedValueOfGroupAndElement0) {
    CGraphTree tree({switchable({{"id", "11"}, {"param", "on"}, {"range", "[1;2]"}})});
    ASSERT_EQ(tree.build("p"), "");
    const struct {
        int32_t group, element;
        double value, output;
    } rows[] = {{0, 0, 0.4, 30.0}, {0, 0, 0.5, 10.0}, {0, 0, 2.4, 10.0}, {0, 0, 2.5, 30.0},
                {1, 0, 1.0, 30.0}, {0, 1, 1.0, 30.0}, {0, 0, 1.0, 10.0}};
    for (const auto& row : rows) {
        tree.set("plugin.p.on", row.group, row.element, row.value);
        EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{row.output}) << row.group << row.element << row.value;
    }
}

TEST(CAudioProcessTest, AStateIsBoundAsASlot) {
    const auto bound = [](const std::string& param, std::vector<CTestNode> more) {
        more.insert(more.end(),
                    {numberNode("also", "0"), gainNode("a", "2", {}, {privateNode("hidden", "1")}),
                     gainNode("b", "3", {{"bypass-state-id", "11"}}), stateNode({{"id", "11"}, {"param", param}})});
        return processNode(more);
    };
    const struct {
        CTestNode definition;
        double output;
        const char* changedBy;
        double changed;
    } rows[] = {{bound("on", {privateNode("on", "1")}), 2.0, nullptr, 0.0},
                {bound("on", {privateNode("on", "0")}), 6.0, nullptr, 0.0},
                {bound("on", {remapNode("on", "also")}), 6.0, "plugin.p.also", 2.0},
                {bound("on", {privateNode("on", "1"), remapNode("on", "also")}), 6.0, "plugin.p.also", 2.0},
                {bound("a.hidden", {remapNode("a.hidden", "also")}), 6.0, "plugin.p.also", 2.0},
                {bound("a.hidden", {}), 2.0, nullptr, 0.0},
                {bound("a.gain", {}), 6.0, "plugin.p.a.gain", 1.0}};
    for (const auto& row : rows) {
        CGraphTree tree({row.definition});
        ASSERT_EQ(tree.build("p"), "");
        EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{row.output});
        if (row.changedBy != nullptr) {
            tree.set(row.changedBy, 1.0);
            EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{row.changed});
        }
    }
}

TEST(CAudioProcessTest, BothConditionsMustHold) {
    CGraphTree tree({switchable({{"id", "11"}, {"param", "on"}, {"and-param", "also"}, {"and-range", "(0;2]"}})});
    ASSERT_EQ(tree.build("p"), "");
    const struct {
        double on, also, output;
    } rows[] = {{1, 0, 30}, {1, 1, 10}, {1, 2, 10}, {1, 3, 30}, {0, 1, 30}, {1, 1, 10}};
    for (const auto& row : rows) {
        tree.set("plugin.p.on", row.on);
        tree.set("plugin.p.also", row.also);
        EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{row.output}) << row.on << row.also;
    }
}

TEST(CAudioProcessTest, EitherOfTheTwoParametersSwitchesAlone) {
    CGraphTree tree({switchable({{"id", "11"}, {"param", "on"}, {"and-param", "also"}})});
    ASSERT_EQ(tree.build("p"), "");
    const struct {
        const char* param;
        double value, output;
    } rows[] = {{"on", 1, 30}, {"also", 1, 10}, {"also", 0, 30}, {"also", 1, 10}, {"on", 0, 30}};
    for (const auto& row : rows) {
        tree.set(std::string("plugin.p.") + row.param, row.value);
        EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{row.output}) << row.param << row.value;
    }
}

TEST(CAudioProcessTest, ProcessesInARowAndAtTheEndsAreConnectedThrough) {
    const CTestAttributes bypassed = {{"bypass-state-id", "11"}};
    CGraphTree tree(
        {processNode({numberNode("on", "1"), gainNode("a", "2", bypassed), gainNode("b", "3", bypassed),
                      gainNode("c", "5"), gainNode("d", "7", bypassed), stateNode({{"id", "11"}, {"param", "on"}})})});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{5.0});
    tree.set("plugin.p.on", 0.0);
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{210.0});
}

TEST(CAudioProcessTest, ARingOfBypassedProcessesEnds) {
    const CTestAttributes bypassed = {{"bypass-state-id", "11"}};
    CGraphTree tree({processNode({numberNode("on", "1"), gainNode("a", "2", bypassed), gainNode("b", "3", bypassed),
                                  gainNode("c", "5"), linkNode("a", "b"), linkNode("b", "a"), linkNode("b", "c"),
                                  linkNode("c", "*"), stateNode({{"id", "11"}, {"param", "on"}})},
                                 {{"is-auto-links", "false"}})});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_TRUE(tree.runMono({1.0}).empty());
    EXPECT_EQ(orderOf(tree.as<CAudioProcess>()), "c");
}

TEST(CAudioProcessTest, ALinkWithBypassStatesIsLiveWhileOneOfThemIsActive) {
    CGraphTree tree(
        {processNode({numberNode("x", "0"), numberNode("y", "0"), gainNode("a", "2"),
                      linkNode("*", "*", {{"bypass-state-id", "1 2"}}), stateNode({{"id", "1"}, {"param", "x"}}),
                      stateNode({{"id", "2"}, {"param", "y"}})})});
    ASSERT_EQ(tree.build("p"), "");
    const struct { double x, y, output; } rows[] = {{0, 0, 2}, {1, 0, 3}, {1, 1, 3}, {0, 1, 3}, {0, 0, 2}};
    for (const auto& row : rows) {
        tree.set("plugin.p.x", row.x);
        tree.set("plugin.p.y", row.y);
        EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{row.output}) << row.x << row.y;
    }
}

/// A smooth gain that can be switched out, and a low-pass filter behind it that can be, too; running.
class CSwitched : public CGraphTree {
public:
    explicit CSwitched(double gain = 3.0)
        : CGraphTree({{"audio:fltgen-lphp1", "lp1"},
                      {"audio:fltgen-array",
                       "arr",
                       {},
                       {{"audio:fltgen-array-item", "i", {{"index", "0"}, {"fltgen", "audio.lp1"}}}}},
                      processNode({numberNode("on", "0"),
                                   gainNode("b", "3", {{"is-smooth-update", "true"}, {"bypass-state-id", "11"}}),
                                   {"audio:modFilter",
                                    "f",
                                    {{"gen-array", "audio.arr"}, {"bypass-state-id", "11"}},
                                    {privateNode("freq", "100"), allocNode("count", 0), allocNode("index", 1),
                                     allocNode("freq", 2)}},
                                   stateNode({{"id", "11"}, {"param", "on"}})})}) {
        EXPECT_EQ(build("p"), "");
        set("plugin.p.b.gain", gain);
        start();
    }
};

TEST(CAudioProcessTest, AProcessThatIsSwitchedInAgainStartsFromSilenceWithTheNewestValues) {
    const std::vector<double> signal = noiseSignal(50, 7);
    const std::vector<double> expected = CSwitched(4.0).runMono(signal);
    CSwitched tree;
    tree.runMono(noiseSignal(100));
    tree.set("plugin.p.on", 1.0);
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{1.0});
    tree.set("plugin.p.b.gain", 4.0);
    tree.runMono({1.0});
    tree.set("plugin.p.on", 0.0);
    EXPECT_EQ(tree.runMono(signal), expected);
}

TEST(CAudioProcessTest, ChangesForAProcessThatIsSwitchedOutDoNotPileUp) {
    CSwitched tree;
    tree.set("plugin.p.on", 1.0);
    const auto automate = [&tree](int32_t blocks) {
        for (int32_t i = 0; i < blocks; ++i) {
            tree.set("plugin.p.b.gain", 2.0 + i % 7);
            tree.runMono({1.0});
        }
        return CHeap::counters().allocations - CHeap::counters().frees;
    };
    const auto before = automate(20);
    EXPECT_EQ(automate(500), before);
}

TEST(CAudioProcessTest, ABlockOfNoSamplesDoesNothing) {
    const std::vector<double> signal = noiseSignal(100);
    std::vector<double> expected;
    {
        CSwitched plain;
        plain.runMono(signal);
        expected = plain.runMono(signal);
    }
    CSwitched tree;
    tree.runMono(signal);
    const CTestChannels none = tree.run({{0, 0, {}}});
    ASSERT_EQ(none.size(), 1u);
    EXPECT_TRUE(none[0].samples.empty());
    EXPECT_EQ(tree.runMono(signal), expected);
}

TEST(CAudioProcessTest, TheStepIsAsLongAsTheShortestInput) {
    CGraphTree tree({CTestNode{"audio:modBypass", "p"}});
    ASSERT_EQ(tree.build("p"), "");
    CAudioProcessBase& process = tree.process();
    process.input(0).samples = 3;
    process.input(1).samples = 2;
    process.process();
    EXPECT_EQ(process.output(0).samples, 2);
    // Nothing is linked to the ports any more: no samples at all.
    process.process();
    EXPECT_EQ(process.output(0).samples, 0);
}

TEST(CAudioProcessTest, ClearBuffersReleasesTheBlocksOfAllPorts) {
    CGraphTree tree({processNode({gainNode("a", "2"), gainNode("b", "3")})});
    ASSERT_EQ(tree.build("p"), "");
    tree.runMono({1.0});
    const int32_t settled = tree.graph.context->counters().buffersInUse;
    tree.process().input(0).add(0, 0, 0, tree.graph.context->takeSignal(1));
    tree.inner("b").output(0).add(0, 0, 0, tree.graph.context->takeSignal(1));
    tree.process().clearBuffers();
    EXPECT_EQ(tree.graph.context->counters().buffersInUse, settled);
}

}  // namespace
}  // namespace tarv
