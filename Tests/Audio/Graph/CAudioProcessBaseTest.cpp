#include "Audio/Graph/CAudioProcessBase.h"

#include "Audio/Modules/CModGain.h"
#include "Tests/Audio/Graph/GraphTree.h"
#include "Tests/Core/LogCapture.h"

namespace tarv {
namespace {

CTestNode processNode(const std::string& name, std::vector<CTestNode> children, CTestAttributes attributes = {}) {
    return {"audio:process-def", name, std::move(attributes), std::move(children)};
}

/// p.q.g, a gain with the private default 2, and the parameter p.main with the default 3.
CTestNode nested(std::vector<CTestNode> inP, std::vector<CTestNode> inQ, std::vector<CTestNode> inG) {
    inG.insert(inG.end(), {privateNode("gain", "2"), allocNode("gain", 0), allocNode("mute", 1)});
    inQ.push_back({"audio:modGain", "g", {}, inG});
    inP.push_back(numberNode("main", "3"));
    inP.push_back(numberNode("other", "5"));
    inP.push_back(processNode("q", inQ));
    return processNode("p", inP);
}

TEST(CAudioProcessBaseTest, ARemapAtAnyLevelSharesTheParameterAndTheNearestWins) {
    const struct {
        CTestNode definition;
        double value;
        const char* heardFrom;
    } rows[] = {
        {nested({}, {}, {}), 2.0, nullptr},
        {nested({}, {}, {remapNode("gain", "^^.main")}), 3.0, "plugin.p.main"},
        {nested({}, {}, {remapNode("gain", "/plugin.p.main")}), 3.0, "plugin.p.main"},
        {nested({}, {remapNode("g.gain", "^main")}, {}), 3.0, "plugin.p.main"},
        {nested({remapNode("q.g.gain", "main")}, {}, {}), 3.0, "plugin.p.main"},
        {nested({remapNode("q.g.gain", "main")}, {remapNode("g.gain", "^.other")}, {}), 5.0, "plugin.p.other"},
        {nested({}, {remapNode("g.gain", "^main")}, {remapNode("gain", "^^other")}), 5.0, "plugin.p.other"},
        {nested({remapNode("g.gain", "main")}, {remapNode("gain", "^main")}, {}), 2.0, nullptr},
    };
    for (const auto& row : rows) {
        CGraphTree tree({row.definition});
        ASSERT_EQ(tree.build("p"), "");
        tree.run({{0, 0, {}}});
        const CAudioProcessBase& gain = tree.inner("q.g");
        EXPECT_EQ(tree.slotValue(gain, 0), row.value);
        if (row.heardFrom) {
            tree.set(row.heardFrom, 0, 0, 7.0);
            EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{7.0});
        }
    }
}

TEST(CAudioProcessBaseTest, NamedParametersAreSharedAndUnnamedOnesPrivate) {
    for (const char* flag : {"is-storable", "is-global", "is-persistent"}) {
        CGraphTree tree({nested({}, {}, {numberNode("mute", "1", {{flag, "true"}})})});
        ASSERT_EQ(tree.build("p"), "");
        const CAudioParam* param = tree.collector().findParam("plugin.p.q.g.mute");
        ASSERT_NE(param, nullptr) << flag;
        EXPECT_EQ(tree.inner("q.g").slot(1)->param == nullptr, false) << flag;
        EXPECT_EQ(tree.collector().findParam("plugin.p.q.g.gain"), nullptr);
        EXPECT_EQ(tree.inner("q.g").slot(0)->param, nullptr);
    }
}

TEST(CAudioProcessBaseTest, APrivateParameterHasItsDefaultsElementByElement) {
    CGraphTree tree({{"audio:modRouter", "r", {}, {privateNode("routing", "1,2,0,5"), allocNode("routing", 0)}}});
    ASSERT_EQ(tree.build("r"), "");
    const double expected[] = {1, 2, 0, 5, 1, 1};
    for (int32_t element = 0; element < 6; ++element) {
        EXPECT_EQ(tree.slotValue(tree.process(), 0, 0, element), expected[element]) << element;
        EXPECT_EQ(tree.slotValue(tree.process(), 0, 3, element), expected[element]) << element;
    }
}

TEST(CAudioProcessBaseTest, ASlotWithoutADefinedParameterIsUnset) {
    CGraphTree tree({{"audio:modGain", "g", {}, {allocNode("gain", 0), allocNode("mute", 1)}}});
    ASSERT_EQ(tree.build("g"), "");
    ASSERT_NE(tree.process().slot(0), nullptr);
    EXPECT_EQ(tree.process().slotValue(tree.process().slot(0), 0, 0, 0.25), 0.25);
    EXPECT_EQ(tree.process().slotValue(nullptr, 0, 0, 0.5), 0.5);
}

TEST(CAudioProcessBaseTest, ASharedParameterThatIsDefinedLaterReachesItsSlot) {
    // `late` belongs to a process that is built behind the one that reads it.
    CGraphTree tree({processNode(
        "p", {{"audio:modGain", "g", {}, {allocNode("gain", 0), allocNode("mute", 1), remapNode("gain", "^h.late")}},
              {"audio:modNode", "h", {}, {numberNode("late", "7")}}})});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{7.0});
}

TEST(CAudioProcessBaseTest, OfTwoAllocsOfOneIndexTheFirstCounts) {
    CGraphTree tree(
        {{"audio:modGain",
          "g",
          {},
          {privateNode("a", "2"), privateNode("b", "3"), allocNode("a", 0), allocNode("b", 0), allocNode("mute", 1)}}});
    ASSERT_EQ(tree.build("g"), "");
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{2.0});
}

TEST(CAudioProcessBaseTest, ASlotThatTheDefinitionDoesNotListIsLogged) {
    CGraphTree tree({{"audio:modGain", "g", {}, {privateNode("mute", "0"), allocNode("mute", 1)}}});
    CLogCapture log;
    ASSERT_EQ(tree.build("g"), "");
    EXPECT_EQ(tree.runMono({0.5}), std::vector<double>{0.5});
    EXPECT_EQ(log.lines, std::vector<std::string>{"regModuleParam error 0 g // plugin.g"});
}

TEST(CAudioProcessBaseTest, EachChannelReadsTheGroupThatItBelongsTo) {
    CGraphTree tree({gainNode("g", "2")});
    ASSERT_EQ(tree.build("g"), "");
    tree.set("plugin.g.gain", 1, 0, 3.0);
    const CTestChannels channels = {{0, 0, {1.0}}, {1, 1, {1.0}}, {0, 2, {1.0}}, {2, 3, {1.0}}};
    // Group 2 holds no value, so its channel has the default. Outside a stack the element of a channel selects no
    // element of the parameter.
    EXPECT_EQ(samplesOf(tree.run(channels)), (std::vector<std::vector<double>>{{2.0}, {3.0}, {2.0}, {2.0}}));
    tree.set("plugin.g.gain", 0, 0, 5.0);
    tree.set("plugin.g.gain", 0, 1, 9.0);
    EXPECT_EQ(samplesOf(tree.run(channels)), (std::vector<std::vector<double>>{{5.0}, {3.0}, {5.0}, {2.0}}));
}

TEST(CAudioProcessBaseTest, WithAllChannelsInGroup0OnlyItsParametersAct) {
    CGraphTree tree({gainNode("g", "2")});
    ASSERT_EQ(tree.build("g"), "");
    for (int32_t group = 1; group < 8; ++group) {
        tree.set("plugin.g.gain", group, 0, 30.0 + group);
    }
    EXPECT_EQ(samplesOf(tree.run({{0, 0, {1.0}}, {0, 1, {1.0}}})), (std::vector<std::vector<double>>{{2.0}, {2.0}}));
}

TEST(CAudioProcessBaseTest, IsGroup0ReadsGroup0ForEveryChannel) {
    CGraphTree tree({gainNode("g", "2", {{"is-group0", "true"}})});
    ASSERT_EQ(tree.build("g"), "");
    tree.set("plugin.g.gain", 1, 0, 3.0);
    tree.set("plugin.g.gain", 0, 0, 5.0);
    EXPECT_EQ(samplesOf(tree.run({{0, 0, {1.0}}, {1, 1, {1.0}}})), (std::vector<std::vector<double>>{{5.0}, {5.0}}));
}

TEST(CAudioProcessBaseTest, AParameterOfASingleGroupServesEveryGroup) {
    CGraphTree tree({{"audio:modGain",
                      "g",
                      {},
                      {numberNode("gain", "2", {{"is-global", "true"}, {"is-single-group", "true"}}),
                       allocNode("gain", 0), allocNode("mute", 1)}}});
    ASSERT_EQ(tree.build("g"), "");
    tree.set("plugin.g.gain", 0, 0, 5.0);
    tree.set("plugin.g.gain", 1, 0, 9.0);
    EXPECT_EQ(samplesOf(tree.run({{0, 0, {1.0}}, {1, 1, {1.0}}, {7, 2, {1.0}}})),
              (std::vector<std::vector<double>>{{5.0}, {5.0}, {5.0}}));
}

/// A filter that passes its input but reports a delay of 10 samples at its rate, and a gain of 2 behind it.
std::vector<CTestNode> delayed(CTestAttributes gainAttributes, std::vector<CTestNode> before = {}) {
    before.push_back(
        {"audio:modFilter", "f", {{"gen-array", "audio.arr"}}, {allocNode("count", 0), allocNode("index", 1)}});
    before.push_back(gainNode("g", "2", std::move(gainAttributes)));
    return {{"test:gen", "late", {{"type", "5"}, {"gains", "1"}, {"numerators", "1"}, {"latency", "10"}}},
            {"audio:fltgen-array",
             "arr",
             {},
             {{"audio:fltgen-array-item", "i", {{"index", "0"}, {"fltgen", "audio.late"}}}}},
            processNode("p", before)};
}

TEST(CAudioProcessBaseTest, AChangeActsLaterByTheDelayBeforeItsPlace) {
    for (const bool isShifted : {true, false}) {
        CGraphTree tree(delayed({{"use-time-shift", isShifted ? "true" : "false"}}));
        ASSERT_EQ(tree.build("p"), "");
        tree.start();
        tree.runMono(std::vector<double>(100, 1.0), 4);
        EXPECT_EQ(tree.inner("f").outputDelay(), 10);
        EXPECT_EQ(tree.inner("g").inputDelay(), 10);
        tree.set("plugin.p.g.gain", 3.0);
        std::vector<double> expected(16, 3.0);
        std::fill_n(expected.begin(), isShifted ? 12 : 0, 2.0);  // blocks of 4: the first one at 10 or later
        EXPECT_EQ(tree.runMono(std::vector<double>(16, 1.0), 4), expected);
    }
}

TEST(CAudioProcessBaseTest, AChangeMadeWhileSuspendedActsFromTheFirstSampleBehindADelayToo) {
    CGraphTree tree(delayed({{"is-smooth-update", "true"}}));
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    tree.runMono(std::vector<double>(100, 1.0), 4);
    // The first one is still on its way to the gain when the audio stops.
    tree.set("plugin.p.g.gain", 0, 1, 7.0);
    tree.runMono(std::vector<double>(4, 1.0));
    tree.suspend();
    tree.set("plugin.p.g.gain", 3.0);
    tree.start();
    EXPECT_EQ(tree.inner("g").inputDelay(), 10);
    EXPECT_EQ(tree.slotValue(tree.inner("g"), 0, 0, 1), 7.0);
    EXPECT_EQ(tree.runMono(std::vector<double>(32, 1.0), 4), std::vector<double>(32, 3.0));
}

TEST(CAudioProcessBaseTest, AQuietChangeWaitsForItsTimeAndThenForTheEndOfAFade) {
    CGraphTree tree(delayed({{"is-smooth-update", "true"}}));
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    tree.runMono(std::vector<double>(100, 1.0), 4);
    const auto set = [&](double gain) {
        tree.set("plugin.p.g.gain", gain);
        tree.collector().applyPendingChanges(tree.graph.now);
    };
    const auto takeQuietly = [&] {
        tree.graph.beginQuietChanges();
        return tree.process().takeQuietChanges();
    };
    set(3.0);
    for (const double passed : {0.0, 9.0}) {
        tree.graph.now += passed;
        EXPECT_TRUE(takeQuietly());
        EXPECT_TRUE(tree.graph.areChangesWaiting());
    }
    tree.graph.now += 1.0;
    EXPECT_FALSE(takeQuietly()) << "a fade begins";
    tree.runMono({1.0});
    set(5.0);
    tree.graph.now += 10.0;
    EXPECT_TRUE(takeQuietly()) << "the fade goes on";
    EXPECT_FALSE(tree.graph.areChangesWaiting());
    // Two fades later both changes have acted.
    EXPECT_EQ(tree.runMono(std::vector<double>(2000, 1.0), 50).back(), 5.0);
}

TEST(CAudioProcessBaseTest, DelaysAreCountedInHostSamples) {
    CGraphTree tree(delayed({}, {{"audio:modInterpolator", "i"}}));
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    EXPECT_EQ(tree.process().outputDelay(), 5);
}

TEST(CAudioProcessBaseTest, OfSeveralWaysTheLongestDelayCounts) {
    std::vector<CTestNode> definitions = delayed({});
    definitions.back().children.push_back(linkNode("*", "*"));
    definitions.back().children.push_back(linkNode("*", "g"));
    CGraphTree tree(definitions);
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    EXPECT_EQ(tree.process().outputDelay(), 10);
    EXPECT_EQ(tree.inner("g").inputDelay(), 10);
}

TEST(CAudioProcessBaseTest, ADestroyedProcessIsNoConsumerAnyMore) {
    CGraphTree tree({gainNode("g", "2")});
    ASSERT_EQ(tree.build("g"), "");
    ASSERT_EQ(tree.build("g"), "");
    tree.set("plugin.g.gain", 3.0);
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{3.0});
}

}  // namespace
}  // namespace tarv
