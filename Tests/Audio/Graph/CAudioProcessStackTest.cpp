#include "Audio/Graph/CAudioProcessStack.h"

#include <cmath>
#include <numbers>

#include "Tests/Audio/Graph/GraphTree.h"

namespace tarv {
namespace {

/// p with the parameters `count` and `gains`, and a stack `s` of composites, each with a gain `g` and what `more` adds.
CTestNode stackNode(const std::string& count, CTestAttributes attributes = {}, std::vector<CTestNode> more = {}) {
    attributes.insert(attributes.end(), {{"is-stacked", "true"}, {"is-whole", "true"}, {"stack-param", "^.count"}});
    std::vector<CTestNode> children = {
        remapNode("g.gain", "^.gains"),
        {"audio:modGain", "g", {}, {privateNode("gain", "1"), allocNode("gain", 0), allocNode("mute", 1)}}};
    children.insert(children.end(), more.begin(), more.end());
    return {"audio:process-def",
            "p",
            {},
            {numberNode("count", count),
             numberNode("gains", "2,3,5,7,11,13,17"),
             {"audio:process-def", "s", attributes, children}}};
}

CAudioProcessStack& stackOf(const CGraphTree& tree) {
    return dynamic_cast<CAudioProcessStack&>(tree.inner("s"));
}

double outputOf(CGraphTree& tree) {
    const std::vector<double> out = tree.runMono({1.0});
    return out.size() == 1 ? out[0] : -1.0;
}

TEST(CAudioProcessStackTest, EachInstanceReadsTheElementOfItsPosition) {
    CGraphTree tree({stackNode("7")});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(outputOf(tree), 510510.0);
    EXPECT_EQ(stackOf(tree).count(), 7);
    for (int32_t i = 0; i < 7; ++i) {
        const CAudioProcessBase& instance = tree.inner("s." + std::to_string(i));
        EXPECT_EQ(instance.stackIndex(), i);
        EXPECT_EQ(instance.path(), "plugin.p.s");
        EXPECT_EQ(tree.inner("s." + std::to_string(i) + ".g").path(), "plugin.p.s.g");
    }
    tree.set("plugin.p.gains", 0, 3, 1.0);
    EXPECT_EQ(outputOf(tree), 510510.0 / 7.0);
}

TEST(CAudioProcessStackTest, GroupsStayApartWithinOneInstance) {
    CGraphTree tree({stackNode("2")});
    ASSERT_EQ(tree.build("p"), "");
    tree.set("plugin.p.gains", 1, 1, 100.0);
    EXPECT_EQ(samplesOf(tree.run({{0, 0, {1.0}}, {1, 1, {1.0}}})), (std::vector<std::vector<double>>{{6.0}, {200.0}}));
}

TEST(CAudioProcessStackTest, TheIndexShiftMovesTheElements) {
    CGraphTree tree({stackNode("3", {{"stack-index-shift", "2"}})});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(outputOf(tree), 5.0 * 7.0 * 11.0);
}

TEST(CAudioProcessStackTest, IsElement0ReadsElement0AtEveryPosition) {
    CTestNode definition = stackNode("3");
    definition.children[2].children[1].attributes.emplace_back("is-element0", "true");
    CGraphTree tree({definition});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(outputOf(tree), 8.0);
    tree.set("plugin.p.gains", 0, 0, 3.0);
    tree.set("plugin.p.gains", 0, 1, 50.0);
    EXPECT_EQ(outputOf(tree), 27.0);
}

TEST(CAudioProcessStackTest, APositionBeyondTheDefaultsTakesTheFirstOne) {
    CGraphTree tree({stackNode("8")});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(outputOf(tree), 510510.0 * 2.0);
}

/// Samples of a fade at the tree's rate.
constexpr size_t kFade = 662;

TEST(CAudioProcessStackTest, SevenFiveSevenLeavesNoGap) {
    CGraphTree tree({stackNode("7")});
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    const std::vector<double> ones(kFade + 64, 1.0);
    EXPECT_EQ(tree.runMono(ones), std::vector<double>(kFade + 64, 510510.0));
    double last = 510510.0;
    for (const double count : {5.0, 7.0}) {
        tree.set("plugin.p.count", count);
        const double settled = count == 5.0 ? 2310.0 : 510510.0;
        const std::vector<double> out = tree.runMono(ones, 16);
        EXPECT_EQ(stackOf(tree).count(), count);
        for (size_t i = 0; i < out.size(); ++i) {
            // A raised cosine never moves by more than pi/2 of its length's part.
            EXPECT_LE(std::fabs(out[i] - last), 1.6 * 508200.0 / kFade) << i;
            last = out[i];
        }
        EXPECT_EQ(std::vector<double>(out.begin() + kFade, out.end()), std::vector<double>(64, settled));
    }
}

TEST(CAudioProcessStackTest, AnotherCountIsFadedInAsARaisedCosineHoweverTheBlocksAreCut) {
    std::vector<double> first;
    for (const int32_t block : {1, 16, 512, 700, 4096}) {
        CGraphTree tree({stackNode("2")});
        ASSERT_EQ(tree.build("p"), "");
        tree.start();
        tree.runMono({1.0});
        tree.set("plugin.p.count", 3.0);
        std::vector<double> out = tree.runMono(std::vector<double>(100, 1.0), block);
        EXPECT_TRUE(stackOf(tree).isFading());
        // This count waits until the fade has ended, and the next one replaces it.
        tree.set("plugin.p.count", 0.0);
        const std::vector<double> more = tree.runMono(std::vector<double>(100, 1.0), block);
        out.insert(out.end(), more.begin(), more.end());
        tree.set("plugin.p.count", 1.0);
        const std::vector<double> rest = tree.runMono(std::vector<double>(2000, 1.0), block);
        out.insert(out.end(), rest.begin(), rest.end());
        EXPECT_FALSE(stackOf(tree).isFading());
        for (size_t i = 0; i < out.size(); ++i) {
            const double turn = static_cast<double>(i % kFade) / kFade;
            const double part = 0.5 - 0.5 * std::cos(std::numbers::pi * turn);
            const double expected = i < kFade ? 6.0 + 24.0 * part : i < 2 * kFade ? 30.0 - 28.0 * part : 2.0;
            ASSERT_NEAR(out[i], expected, 1e-9) << i << " in blocks of " << block;
        }
        first = first.empty() ? out : first;
        EXPECT_EQ(out, first) << block;
    }
}

TEST(CAudioProcessStackTest, ACountSetBeforeTheFirstSampleActsAtOnce) {
    CGraphTree tree({stackNode("2")});
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    tree.set("plugin.p.count", 3.0);
    EXPECT_EQ(outputOf(tree), 30.0);
    tree.suspend();
    tree.start();
    tree.set("plugin.p.count", 1.0);
    EXPECT_EQ(outputOf(tree), 2.0);
}

TEST(CAudioProcessStackTest, OtherChannelsEndAFade) {
    CGraphTree tree({stackNode("2")});
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    outputOf(tree);
    tree.set("plugin.p.count", 3.0);
    outputOf(tree);
    EXPECT_TRUE(stackOf(tree).isFading());
    EXPECT_EQ(samplesOf(tree.run({{0, 0, {1.0}, 5}, {0, 1, {2.0}, 5}})),
              (std::vector<std::vector<double>>{{30.0}, {60.0}}));
    EXPECT_FALSE(stackOf(tree).isFading());
}

/// A stack `s` of composites, whose outputs 0 and 1 are twice its input 1 and three times its input 0, between two
/// inputs and the outputs of p.
CTestNode crossedNode(const std::string& count) {
    return {"audio:process-def",
            "p",
            {{"is-auto-links", "false"}},
            {numberNode("count", count),
             {"audio:process-def",
              "s",
              {{"is-stacked", "true"}, {"stack-param", "^.count"}, {"is-auto-links", "false"}},
              {gainNode("a", "2"), gainNode("b", "3"), linkNode("*", "b"), linkNode("*/1", "a"), linkNode("a", "*"),
               linkNode("b", "*/1")}},
             linkNode("*", "s"),
             linkNode("*/1", "s/1"),
             linkNode("s", "*"),
             linkNode("s/1", "*/1")}};
}

TEST(CAudioProcessStackTest, AllPortsLeadFromInstanceToInstance) {
    const struct {
        const char* count;
        double first, second;
    } rows[] = {{"0", 1.0, 10.0}, {"1", 20.0, 3.0}, {"2", 6.0, 60.0}, {"3", 120.0, 18.0}};
    for (const auto& row : rows) {
        CGraphTree tree({crossedNode(row.count)});
        ASSERT_EQ(tree.build("p"), "");
        const CTestChannels out = tree.run({{0, 0, {1.0}}}, {{0, 0, {10.0}}});
        EXPECT_EQ(samplesOf(out), std::vector<std::vector<double>>{{row.first}}) << row.count;
        CAudioPort& second = tree.process().output(1);
        ASSERT_EQ(second.channels.count(), 1) << row.count;
        EXPECT_EQ(tree.graph.context->signal(second.channels[0].handle)[0], row.second) << row.count;
        second.release(*tree.graph.context);
    }
}

TEST(CAudioProcessStackTest, AnInputWithoutAnOutputOfItsNumberLeadsToEveryInstance) {
    CTestNode definition = stackNode("3", {}, {linkNode("*/1", "g")});
    definition.children.push_back(linkNode("*/1", "s/1"));
    CGraphTree tree({definition});
    ASSERT_EQ(tree.build("p"), "");
    // ((1 + 10) 2 + 10) 3 + 10) 5
    EXPECT_EQ(samplesOf(tree.run({{0, 0, {1.0}}}, {{0, 0, {10.0}}})), std::vector<std::vector<double>>{{530.0}});
}

TEST(CAudioProcessStackTest, ASingleModulesSecondInputIsFedToo) {
    CGraphTree tree({{"audio:process-def",
                      "p",
                      {},
                      {{"audio:modBypass",
                        "s",
                        {{"is-stacked", "true"}},
                        {privateNode("enable", "1"), allocNode("enable", 0), allocNode("group-solo", 1)}},
                       linkNode("*/1", "s/1")}}});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(samplesOf(tree.run({{0, 0, {1.0}}}, {{0, 0, {10.0}}})), std::vector<std::vector<double>>{{10.0}});
}

TEST(CAudioProcessStackTest, TheCountIsBoundAsASlot) {
    const auto bound = [](CTestNode count, std::vector<CTestNode> more, const std::string& name) {
        CTestNode stack = gainNode("s", "2", {{"is-stacked", "true"}, {"stack-param", name}});
        more.insert(more.end(), {numberNode("main", "3"), std::move(count), stack});
        return CTestNode{"audio:process-def", "p", {}, more};
    };
    const struct {
        CTestNode definition;
        double output;
        const char* changedBy;
    } rows[] = {{bound(numberNode("count", "2"), {}, "^.count"), 4.0, "plugin.p.count"},
                {bound(privateNode("count", "2"), {}, "^.count"), 4.0, nullptr},
                {bound(privateNode("count", "2"), {remapNode("count", "main")}, "^.count"), 8.0, "plugin.p.main"},
                {bound(numberNode("count", "2"), {}, "/plugin.p.count"), 4.0, "plugin.p.count"}};
    for (const auto& row : rows) {
        CGraphTree tree({row.definition});
        ASSERT_EQ(tree.build("p"), "");
        EXPECT_EQ(outputOf(tree), row.output);
        if (row.changedBy != nullptr) {
            tree.set(row.changedBy, 4.0);
            EXPECT_EQ(outputOf(tree), 16.0);
        } else {
            EXPECT_EQ(tree.collector().findParam("plugin.p.count"), nullptr);
        }
    }
}

TEST(CAudioProcessStackTest, TheCountIsRoundedAndLimited) {
    CGraphTree tree({stackNode("2.4")});
    ASSERT_EQ(tree.build("p"), "");
    const struct {
        double count;
        int32_t instances;
    } rows[] = {{2.4, 2}, {2.5, 3}, {0.0, 0}, {-3.0, 0}, {1.0, 1}, {1000.0, CAudioProcessStack::kMaxCount}, {0.49, 0}};
    for (const auto& row : rows) {
        tree.set("plugin.p.count", row.count);
        EXPECT_EQ(tree.runMono({1.0}).size(), 1u);
        EXPECT_EQ(stackOf(tree).count(), row.instances) << row.count;
    }
    EXPECT_EQ(outputOf(tree), 1.0);
}

TEST(CAudioProcessStackTest, TheCountIsReadAtGroup0AndElement0) {
    CGraphTree tree({stackNode("2")});
    ASSERT_EQ(tree.build("p"), "");
    tree.set("plugin.p.count", 1, 0, 4.0);
    tree.set("plugin.p.count", 0, 1, 4.0);
    tree.run({{1, 1, {1.0}}});
    EXPECT_EQ(stackOf(tree).count(), 2);
}

TEST(CAudioProcessStackTest, WithoutAStackParameterThereIsOneInstance) {
    CGraphTree tree({gainNode("s", "2,3", {{"is-stacked", "true"}})});
    ASSERT_EQ(tree.build("s"), "");
    EXPECT_EQ(outputOf(tree), 2.0);
    EXPECT_EQ(tree.as<CAudioProcessStack>().count(), 1);
}

TEST(CAudioProcessStackTest, ASingleModuleStacksToo) {
    CGraphTree tree(
        {{"audio:process-def",
          "p",
          {},
          {numberNode("count", "3"), gainNode("s", "2,3,5", {{"is-stacked", "true"}, {"stack-param", "^.count"}})}}});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(outputOf(tree), 30.0);
    tree.set("plugin.p.s.gain", 0, 2, 7.0);
    EXPECT_EQ(outputOf(tree), 42.0);
}

TEST(CAudioProcessStackTest, InstancesMadeLaterHaveTheNewestValues) {
    CGraphTree tree({stackNode("2")});
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    EXPECT_EQ(outputOf(tree), 6.0);
    tree.set("plugin.p.gains", 0, 2, 10.0);
    EXPECT_EQ(outputOf(tree), 6.0);
    tree.set("plugin.p.count", 3.0);
    EXPECT_EQ(tree.runMono(std::vector<double>(kFade + 1, 1.0)).back(), 60.0);
}

/// A stack whose instances have a one-pole low-pass at 100 Hz behind a smooth gain.
std::vector<CTestNode> filtering(const std::string& count) {
    CTestNode definition =
        stackNode(count, {},
                  {{"audio:modFilter",
                    "f",
                    {{"gen-array", "audio.arr"}},
                    {privateNode("freq", "100"), allocNode("count", 0), allocNode("index", 1), allocNode("freq", 2)}}});
    definition.children[2].children[1].attributes.emplace_back("is-smooth-update", "true");
    return {{"audio:fltgen-lphp1", "lp1"},
            {"audio:fltgen-array",
             "arr",
             {},
             {{"audio:fltgen-array-item", "i", {{"index", "0"}, {"fltgen", "audio.lp1"}}}}},
            definition};
}

/// Output of a stack of one such instance at gain `gain` for the last of these signals.
std::vector<double> throughOne(double gain, const std::vector<std::vector<double>>& signals) {
    CGraphTree tree(filtering("1"));
    EXPECT_EQ(tree.build("p"), "");
    tree.set("plugin.p.gains", gain);
    tree.start();
    std::vector<double> out;
    for (const std::vector<double>& signal : signals) {
        out = tree.runMono(signal);
    }
    return out;
}

TEST(CAudioProcessStackTest, AnInstanceThatComesBackStartsFromSilenceWithTheNewestValues) {
    const std::vector<double> loud = noiseSignal(100);
    const std::vector<double> aFade = noiseSignal(static_cast<int32_t>(kFade) + 10, 5);
    const std::vector<double> silent(10, 0.0);
    const std::vector<double> later = noiseSignal(static_cast<int32_t>(kFade) + 60, 9);
    // The first instance keeps its history; its output passes through a second one without history.
    const std::vector<double> expected = throughOne(10.0, {throughOne(2.0, {loud, aFade, silent, later})});

    CGraphTree tree(filtering("2"));
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    tree.runMono(loud);
    tree.set("plugin.p.count", 1.0);
    tree.runMono(aFade);
    tree.set("plugin.p.gains", 0, 1, 10.0);
    tree.runMono(silent);
    tree.set("plugin.p.count", 2.0);
    const std::vector<double> out = tree.runMono(later, 1024);
    EXPECT_EQ(std::vector<double>(out.begin() + kFade, out.end()),
              std::vector<double>(expected.begin() + kFade, expected.end()));
}

TEST(CAudioProcessStackTest, ChangesForInstancesBeyondTheCountDoNotPileUp) {
    CGraphTree tree(filtering("3"));
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    tree.set("plugin.p.count", 1.0);
    tree.runMono(std::vector<double>(kFade + 2, 1.0));
    const auto automate = [&tree](int32_t blocks) {
        for (int32_t i = 0; i < blocks; ++i) {
            tree.set("plugin.p.gains", 0, 2, 2.0 + i % 7);
            tree.runMono({1.0});
        }
        return CHeap::counters().allocations - CHeap::counters().frees;
    };
    // By then every record of the pool has been used once.
    const auto before = automate(500);
    EXPECT_EQ(automate(500), before);
}

TEST(CAudioProcessStackTest, DelaysOfTheInstancesAddUp) {
    CTestNode definition = stackNode(
        "3", {},
        {{"audio:modFilter", "f", {{"gen-array", "audio.arr"}}, {allocNode("count", 0), allocNode("index", 1)}}});
    CGraphTree tree({{"test:gen", "late", {{"type", "5"}, {"gains", "1"}, {"numerators", "1"}, {"latency", "10"}}},
                     {"audio:fltgen-array",
                      "arr",
                      {},
                      {{"audio:fltgen-array-item", "i", {{"index", "0"}, {"fltgen", "audio.late"}}}}},
                     definition});
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    EXPECT_EQ(tree.process().outputDelay(), 30);
}

TEST(CAudioProcessStackTest, AFailureOfAnInstanceStopsTheBuild) {
    CTestNode definition = stackNode("1");
    definition.children[2].children.push_back({"audio:process-def", "bands", {{"is-multiband", "true"}}});
    CGraphTree tree({definition});
    EXPECT_EQ(tree.build("p"), "No 'multiband-count-param' attribute defined.");
}

}  // namespace
}  // namespace tarv
