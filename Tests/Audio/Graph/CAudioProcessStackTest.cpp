#include "Audio/Graph/CAudioProcessStack.h"

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

double heard(CGraphTree& tree) {
    const std::vector<double> out = tree.runMono({1.0});
    return out.size() == 1 ? out[0] : -1.0;
}

TEST(CAudioProcessStackTest, EachInstanceReadsTheElementOfItsPosition) {
    CGraphTree tree({stackNode("7")});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(heard(tree), 510510.0);
    EXPECT_EQ(stackOf(tree).count(), 7);
    for (int32_t i = 0; i < 7; ++i) {
        const CAudioProcessBase& instance = tree.inner("s." + std::to_string(i));
        EXPECT_EQ(instance.stackIndex(), i);
        EXPECT_EQ(instance.path(), "plugin.p.s");
        EXPECT_EQ(tree.inner("s." + std::to_string(i) + ".g").path(), "plugin.p.s.g");
    }
    tree.set("plugin.p.gains", 0, 3, 1.0);
    EXPECT_EQ(heard(tree), 510510.0 / 7.0);
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
    EXPECT_EQ(heard(tree), 5.0 * 7.0 * 11.0);
}

TEST(CAudioProcessStackTest, IsElement0ReadsElement0AtEveryPosition) {
    CTestNode definition = stackNode("3");
    definition.children[2].children[1].attributes.emplace_back("is-element0", "true");
    CGraphTree tree({definition});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(heard(tree), 8.0);
    tree.set("plugin.p.gains", 0, 0, 3.0);
    tree.set("plugin.p.gains", 0, 1, 50.0);
    EXPECT_EQ(heard(tree), 27.0);
}

TEST(CAudioProcessStackTest, APositionBeyondTheDefaultsTakesTheFirstOne) {
    CGraphTree tree({stackNode("8")});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(heard(tree), 510510.0 * 2.0);
}

TEST(CAudioProcessStackTest, SevenFiveSevenLeavesNoGap) {
    CGraphTree tree({stackNode("7")});
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    const std::vector<double> ones(64, 1.0);
    EXPECT_EQ(tree.runMono(ones), std::vector<double>(64, 510510.0));
    tree.set("plugin.p.count", 5.0);
    EXPECT_EQ(tree.runMono(ones, 16), std::vector<double>(64, 2310.0));
    EXPECT_EQ(stackOf(tree).count(), 5);
    tree.set("plugin.p.count", 7.0);
    EXPECT_EQ(tree.runMono(ones, 16), std::vector<double>(64, 510510.0));
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
    EXPECT_EQ(heard(tree), 1.0);
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
    EXPECT_EQ(heard(tree), 2.0);
    EXPECT_EQ(tree.as<CAudioProcessStack>().count(), 1);
}

TEST(CAudioProcessStackTest, ASingleModuleStacksToo) {
    CGraphTree tree(
        {{"audio:process-def",
          "p",
          {},
          {numberNode("count", "3"), gainNode("s", "2,3,5", {{"is-stacked", "true"}, {"stack-param", "^.count"}})}}});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(heard(tree), 30.0);
    tree.set("plugin.p.s.gain", 0, 2, 7.0);
    EXPECT_EQ(heard(tree), 42.0);
}

TEST(CAudioProcessStackTest, InstancesMadeLaterHaveTheNewestValues) {
    CGraphTree tree({stackNode("2")});
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    EXPECT_EQ(heard(tree), 6.0);
    tree.set("plugin.p.gains", 0, 2, 10.0);
    EXPECT_EQ(heard(tree), 6.0);
    tree.set("plugin.p.count", 3.0);
    EXPECT_EQ(heard(tree), 60.0);
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

/// What a stack of one such instance makes of the last of these signals, its gain being `gain`.
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
    const std::vector<double> silent(10, 0.0);
    const std::vector<double> later = noiseSignal(60, 9);
    // The first instance keeps its history; what it delivers goes through a fresh second one.
    const std::vector<double> expected = throughOne(10.0, {throughOne(2.0, {loud, loud, silent, later})});

    CGraphTree tree(filtering("2"));
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    tree.runMono(loud);
    tree.set("plugin.p.count", 1.0);
    tree.runMono(loud);
    tree.set("plugin.p.gains", 0, 1, 10.0);
    tree.runMono(silent);
    tree.set("plugin.p.count", 2.0);
    EXPECT_EQ(tree.runMono(later), expected);
}

TEST(CAudioProcessStackTest, ChangesForInstancesThatAreAwayDoNotPileUp) {
    CGraphTree tree(filtering("3"));
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    tree.set("plugin.p.count", 1.0);
    const auto automate = [&tree](int32_t blocks) {
        for (int32_t i = 0; i < blocks; ++i) {
            tree.set("plugin.p.gains", 0, 2, 2.0 + i % 7);
            tree.runMono({1.0});
        }
        return CHeap::counters().allocations - CHeap::counters().frees;
    };
    const auto before = automate(20);
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
