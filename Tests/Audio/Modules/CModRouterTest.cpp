#include "Audio/Modules/CModRouter.h"

#include "Tests/Audio/Graph/GraphTree.h"

namespace tarv {
namespace {

using CSignals = std::vector<std::vector<double>>;

CTestNode routerNode(const std::string& routing, const std::string& grouping, bool isOutput) {
    return {"audio:modRouter",
            "r",
            {{"is-output", isOutput ? "true" : "false"}},
            {numberNode("routing", routing), numberNode("grouping", grouping), allocNode("routing", 0),
             allocNode("grouping", 1)}};
}

class CRouter : public CGraphTree {
public:
    CRouter(const std::string& routing, const std::string& grouping, bool isOutput)
        : CGraphTree({routerNode(routing, grouping, isOutput)}) {
        EXPECT_EQ(build("r"), "");
    }
};

/// Channels of these elements whose one sample is 10 more than the element.
CTestChannels elements(const std::vector<int32_t>& numbers) {
    CTestChannels channels;
    for (const int32_t number : numbers) {
        channels.push_back({0, number, {number + 10.0}});
    }
    return channels;
}

/// "group.element=sample" of each channel.
std::string received(const CTestChannels& channels) {
    std::string text;
    for (const CTestChannel& channel : channels) {
        text += (text.empty() ? "" : " ") + std::to_string(channel.group) + "." + std::to_string(channel.element) +
                "=" + std::to_string(static_cast<int32_t>(channel.samples[0]));
    }
    return text;
}

TEST(CModRouterTest, InputElementsTakeTheHostsChannelsAndTheirGroups) {
    const struct {
        const char* routing;
        const char* grouping;
        const char* channels;
    } rows[] = {
        {"1,2,0,0,0,0,0,0", "0,0,1,1,2,2,3,3", "0.0=10 0.1=11"},
        {"2,1,0,0,0,0,0,0", "0,1,1,1,2,2,3,3", "0.0=11 1.1=10"},
        {"0,0,1,2,0,0,0,0", "0,0,1,1,2,2,3,3", "1.2=10 1.3=11"},
        {"1,1,1,0,0,0,0,4", "0,1,2,3,4,5,6,7", "0.0=10 1.1=10 2.2=10 7.7=13"},
        {"3,5,16,0,0,0,0,0", "0,0,0,0,0,0,0,0", "0.0=12 0.1=0 0.2=0"},  // silence: the host has four
        {"1,2,0,0,0,0,0,0", "9,-1,0,0,0,0,0,0", "7.0=10 0.1=11"},       // held to the groups that there are
        {"-1,2,0,0,0,0,0,0", "0", "0.1=11"},
        {"0", "0", ""},
    };
    for (const auto& row : rows) {
        CRouter tree(row.routing, row.grouping, false);
        EXPECT_EQ(received(tree.run(elements({0, 1, 2, 3}))), row.channels) << row.routing;
    }
}

TEST(CModRouterTest, ASignalPassesByReferenceAndOnlySilenceIsMade) {
    CRouter tree("1,1,7", "0", false);
    tree.run(elements({0}));
    // One block of zeros for each element that asks for a channel which the host has not: 2 to 7 repeat the first.
    EXPECT_EQ(tree.graph.context->counters().operations, 1u);
}

TEST(CModRouterTest, BehindNoLinkThereIsNoSilenceEither) {
    CGraphTree tree({{"audio:process-def",
                      "p",
                      {{"is-auto-links", "false"}},
                      {routerNode("1,2", "0", false), linkNode("r", "*")}}});
    ASSERT_EQ(tree.build("p"), "");
    const CTestChannels out = tree.run(elements({0}));
    ASSERT_EQ(out.size(), 8u);  // elements 2 to 7 repeat the first
    EXPECT_TRUE(out[0].samples.empty());
    EXPECT_LT(tree.graph.context->counters().storageBytes, 1u << 20);
}

TEST(CModRouterTest, AnEntryFarBeyondEveryHostIsSilence) {
    for (const char* far : {"3000000", "5000000000"}) {
        const auto wide = [](const char* name, const std::string& values) {
            return paramNode(name, "real", "-10000000000", "10000000000", values, {{"is-storable", "true"}});
        };
        CGraphTree tree({{"audio:modRouter",
                          "r",
                          {},
                          {wide("routing", std::string(far) + ",1,-5000000000,-1,0,0,0,0"),
                           wide("grouping", std::string("-5000000000,") + far), allocNode("routing", 0),
                           allocNode("grouping", 1)}}});
        ASSERT_EQ(tree.build("r"), "");
        EXPECT_EQ(received(tree.run(elements({0}))), "0.0=0 7.1=10") << far;
    }
}

TEST(CModRouterTest, TheLayoutHasNoMoreElementsThanTheGraphHasChannels) {
    CRouter tree("1,2,3,4", "0", false);
    tree.graph.channelCount = 3;
    EXPECT_EQ(received(tree.run(elements({0, 1, 2, 3}))), "0.0=10 0.1=11 0.2=12");
}

TEST(CModRouterTest, OutputEntriesSendTheirElementToTheHostsChannels) {
    const struct {
        const char* what;
        const char* routing;
        std::vector<int32_t> elements;
        const char* channels;
    } rows[] = {
        {"straight", "1,2,0,0,0,0,0,0", {0, 1}, "0.0=10 0.1=11"},
        {"crossed", "2,1,0,0,0,0,0,0", {0, 1}, "0.0=11 0.1=10"},
        {"none", "0,0,0,0,0,0,0,0", {0, 1}, ""},
        {"the last of two wins", "1,1,0,0,0,0,0,0", {0, 1}, "0.0=11"},
        {"and of three", "3,3,3,0,0,0,0,0", {0, 1, 2}, "0.2=12"},
        {"mono to stereo: the second channel's own element is not there", "1,1,0,0,0,0,0,0", {0}, "0.0=10 0.1=10"},
        {"a copy names an element, not a channel", "3,1,0,0,0,0,0,0", {0}, "0.1=10 0.2=10"},
        {"no copy of an element that is not there", "1,3,0,0,0,0,0,0", {0}, "0.0=10"},
        {"no copy where an element arrives", "2,1,0,0,0,0,0,0", {0}, "0.1=10"},
        {"no copy for an element that is there and goes elsewhere", "3,3,0,0,0,0,0,0", {0, 1}, "0.2=11"},
        {"beyond the host", "9,16,0,0,0,0,0,0", {0, 1}, ""},
        {"all eight",
         "8,7,6,5,4,3,2,1",
         {0, 1, 2, 3, 4, 5, 6, 7},
         "0.0=17 0.1=16 0.2=15 0.3=14 0.4=13 0.5=12 0.6=11 0.7=10"},
        {"to the sides", "0,0,1,2,0,0,0,0", {2, 3}, "0.0=12 0.1=13"},
    };
    for (const auto& row : rows) {
        CRouter tree(row.routing, "0", true);
        EXPECT_EQ(received(tree.run(elements(row.elements))), row.channels) << row.what;
        EXPECT_EQ(tree.graph.context->counters().operations, 0u) << row.what;
    }
}

TEST(CModRouterTest, AHostOfFewerOutputsGetsNoOthers) {
    CRouter tree("1,2,3,0,0,0,0,0", "0", true);
    tree.graph.hostOutputs = 2;
    EXPECT_EQ(received(tree.run(elements({0, 1, 2}))), "0.0=10 0.1=11");
}

TEST(CModRouterTest, HostOutputsBeyondTheTableAreSilent) {
    // The ninth element of the list is its default again; it belongs to no element of the graph.
    CRouter tree("1,2,0,0,0,0,0,0", "0", true);
    tree.graph.hostOutputs = 32;
    EXPECT_EQ(received(tree.run(elements({0, 1}))), "0.0=10 0.1=11");
}

TEST(CModRouterTest, AChangeOfRoutingActsAtOnce) {
    for (const bool isOutput : {false, true}) {
        CRouter tree("1,2,0,0,0,0,0,0", "0", isOutput);
        tree.start(elements({0, 1}));
        EXPECT_EQ(received(tree.run(elements({0, 1}))), "0.0=10 0.1=11");
        tree.set("plugin.r.routing", 0, 0, 2.0);
        tree.set("plugin.r.routing", 0, 1, 1.0);
        EXPECT_EQ(received(tree.run(elements({0, 1}))), "0.0=11 0.1=10");
        tree.set("plugin.r.routing", 1, 0, 1.0);  // read at group 0 alone
        EXPECT_EQ(received(tree.run(elements({0, 1}))), "0.0=11 0.1=10");
    }
}

/// An input router and, behind it, a low-pass at 100 Hz with its own frequency for each group.
std::vector<CTestNode> routedFilter(const std::string& routing, const std::string& grouping) {
    CTestNode router = routerNode(routing, grouping, false);
    return {{"audio:fltgen-lphp1", "lp1"},
            {"audio:fltgen-array",
             "arr",
             {},
             {{"audio:fltgen-array-item", "i", {{"index", "0"}, {"fltgen", "audio.lp1"}}}}},
            {"audio:process-def",
             "p",
             {},
             {router,
              {"audio:modFilter",
               "f",
               {{"gen-array", "audio.arr"}},
               {numberNode("freq", "100"), allocNode("count", 0), allocNode("index", 1), allocNode("freq", 2)}}}}};
}

TEST(CModRouterTest, WhatAChangeOfRoutingOrGroupingTouchesStartsFromSilence) {
    const std::vector<double> loud = noiseSignal(100);
    const std::vector<double> later = noiseSignal(20, 5);
    const auto channels = [](const std::vector<double>& signal) {
        return CTestChannels{{0, 0, signal}, {0, 1, signal}, {0, 2, signal}};
    };
    CSignals fresh;
    CSignals kept;
    {
        CGraphTree tree(routedFilter("1,2,0,0,0,0,0,0", "0"));
        ASSERT_EQ(tree.build("p"), "");
        tree.start(channels({}));
        fresh = samplesOf(tree.run(channels(later)));
    }
    {
        CGraphTree tree(routedFilter("1,2,0,0,0,0,0,0", "0"));
        ASSERT_EQ(tree.build("p"), "");
        tree.start(channels({}));
        tree.run(channels(loud));
        kept = samplesOf(tree.run(channels(later)));
    }
    ASSERT_NE(fresh, kept);
    for (const char* param : {"plugin.p.r.routing", "plugin.p.r.grouping"}) {
        CGraphTree tree(routedFilter("1,2,0,0,0,0,0,0", "0"));
        ASSERT_EQ(tree.build("p"), "");
        tree.start(channels({}));
        tree.run(channels(loud));
        tree.set(param, 0, 1, 3.0);  // element 1 takes the third channel, or belongs to the fourth group
        EXPECT_EQ(samplesOf(tree.run(channels(later))), (CSignals{kept[0], fresh[1]})) << param;
    }
}

TEST(CModRouterTest, AnElementThatComesBackStartsFromSilence) {
    const std::vector<double> later = noiseSignal(20, 5);
    CGraphTree tree(routedFilter("1,0,0,0,0,0,0,0", "0"));
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    const std::vector<double> fresh = tree.runMono(later);
    tree.set("plugin.p.r.routing", 0.0);
    tree.runMono(later);
    tree.set("plugin.p.r.routing", 1.0);
    EXPECT_EQ(tree.runMono(later), fresh);
    // Away and back within one block, with no sample in between: it still counts as another signal.
    tree.set("plugin.p.r.routing", 2.0);
    tree.run({{0, 0, {}}});
    tree.set("plugin.p.r.routing", 1.0);
    EXPECT_EQ(tree.runMono(later), fresh);
}

TEST(CModRouterTest, WhatFollowsTheOutputsMeetsAnotherSerial) {
    CGraphTree tree({{"audio:process-def",
                      "p",
                      {},
                      {routerNode("1,2,0,0,0,0,0,0", "0", true), gainNode("g", "2", {{"is-smooth-update", "true"}})}}});
    ASSERT_EQ(tree.build("p"), "");
    tree.start(elements({0, 1}));
    tree.set("plugin.p.g.gain", 5.0);
    EXPECT_EQ(received(tree.run(elements({0, 1}))), "0.0=20 0.1=22");
    // The first channel begins anew, with the new gain; the second goes on fading.
    CTestChannels channels = elements({0, 1});
    channels[0].serial = 1;
    EXPECT_EQ(received(tree.run(channels)), "0.0=50 0.1=22");
}

TEST(CModRouterTest, WithNothingRoutedTheGraphRunsEmpty) {
    CGraphTree tree(routedFilter("0", "0"));
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    EXPECT_TRUE(tree.run({{0, 0, noiseSignal(100)}}).empty());
}

TEST(CModRouterTest, IsOutputIsReadAndFalseByDefault) {
    CGraphTree tree({{"audio:modRouter", "in"}, {"audio:modRouter", "out", {{"is-output", "true"}}}});
    EXPECT_FALSE(tree.definition<CModRouterDef>("in").isOutput());
    EXPECT_TRUE(tree.definition<CModRouterDef>("out").isOutput());
}

}  // namespace
}  // namespace tarv
