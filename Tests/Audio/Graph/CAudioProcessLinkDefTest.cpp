#include "Audio/Graph/CAudioProcessLinkDef.h"

#include "Audio/Graph/CAudioProcessDef.h"
#include "Tests/Audio/Graph/GraphTree.h"

namespace tarv {
namespace {

CTestNode stateNode(CTestAttributes attributes) {
    return {"audio:process-bypass-state", "state", std::move(attributes)};
}

/// A composite with the children `a` and `b`, the bypass states 3 and 11, and what the test adds.
CTestNode owner(std::vector<CTestNode> more) {
    std::vector<CTestNode> children = {{"audio:modNode", "a"},
                                       {"audio:modNode", "b"},
                                       stateNode({{"id", "3"}, {"param", "x"}}),
                                       stateNode({{"id", "11"}, {"param", "x"}})};
    children.insert(children.end(), more.begin(), more.end());
    return {"audio:process-def", "p", {}, children};
}

TEST(CAudioProcessLinkDefTest, EndsNameAChildAndAPort) {
    struct CRow {
        const char* src;
        const char* srcChild;
        int32_t srcPort;
        const char* dst;
        const char* dstChild;
        int32_t dstPort;
    };
    const CRow rows[] = {
        {"a", "a", 0, "b/1", "b", 1},   {"a/2", "a", 2, "b", "b", 0},     {"*", nullptr, 0, "b/0x1", "b", 1},
        {"a", "a", 0, "*", nullptr, 0}, {"*/1", nullptr, 1, "a", "a", 0}, {"b", "b", 0, "*/$A", nullptr, 10},
        {"a/010", "a", 8, "b", "b", 0}, {"a/63", "a", 63, "b", "b", 0},
    };
    for (const CRow& row : rows) {
        CGraphTree tree({owner({linkNode(row.src, row.dst)})});
        const auto& def = tree.definition<CAudioProcessDef>("p");
        const CAudioProcessLinkDef& link = *def.links()[0];
        EXPECT_EQ(link.src().child, row.srcChild ? def.findChildDef(row.srcChild) : nullptr) << row.src;
        EXPECT_EQ(link.src().port, row.srcPort) << row.src;
        EXPECT_EQ(link.dst().child, row.dstChild ? def.findChildDef(row.dstChild) : nullptr) << row.dst;
        EXPECT_EQ(link.dst().port, row.dstPort) << row.dst;
        EXPECT_EQ(link.stateId(), -1);
        EXPECT_TRUE(link.bypassStateIds().isEmpty());
    }
}

TEST(CAudioProcessLinkDefTest, BadLinksStopTheBuild) {
    const struct {
        CTestAttributes attributes;
        std::string message;
    } rows[] = {
        {{{"dst", "b"}}, "No 'src' attribute defined."},
        {{{"src", ""}, {"dst", "b"}}, "No 'src' attribute defined."},
        {{{"src", "a"}}, "No 'dst' attribute defined."},
        {{{"src", "a/x"}, {"dst", "b"}}, "Invalid port in the 'src' attribute value 'a/x' specified."},
        {{{"src", "a/-1"}, {"dst", "b"}}, "Invalid port in the 'src' attribute value 'a/-1' specified."},
        {{{"src", "a/"}, {"dst", "b"}}, "Invalid port in the 'src' attribute value 'a/' specified."},
        {{{"src", "a/64"}, {"dst", "b"}}, "Invalid port in the 'src' attribute value 'a/64' specified."},
        {{{"src", "a"}, {"dst", "b/2147483647"}},
         "Invalid port in the 'dst' attribute value 'b/2147483647' specified."},
        {{{"src", "c"}, {"dst", "b"}}, "Invalid process in the 'src' attribute value 'c' specified."},
        {{{"src", "/1"}, {"dst", "b"}}, "Invalid process in the 'src' attribute value '/1' specified."},
        {{{"src", "a"}, {"dst", "b/x"}}, "Invalid port in the 'dst' attribute value 'b/x' specified."},
        {{{"src", "a"}, {"dst", "b/1/2"}}, "Invalid port in the 'dst' attribute value 'b/1/2' specified."},
        {{{"src", "a"}, {"dst", "c/1"}}, "Invalid process in the 'dst' attribute value 'c/1' specified."},
        {{{"src", "a"}, {"dst", "b"}, {"state-id", "-2"}}, "Invalid state identifier '-2' specified."},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(graphLoadFailure({owner({{"audio:process-link", "link", row.attributes}})}), row.message);
    }
}

TEST(CAudioProcessLinkDefTest, ALinkThatRepeatsAnAutomaticOneStopsTheBuild) {
    const struct {
        const char* src;
        const char* dst;
        bool isRepeated;
    } rows[] = {{"*", "a", true},     {"a", "b", true},    {"b", "*", true},      {"a/0", "b/0", true},
                {"*", "b", false},    {"a", "*", false},   {"b", "a", false},     {"*", "*", false},
                {"a", "b/1", false},  {"a/1", "b", false}, {"b", "proto", false}, {"proto", "*", false},
                {"b", "side", false}, {"side", "*", false}};
    for (const auto& row : rows) {
        const CTestNode side{"audio:modNode", "side", {{"is-outoforder", "true"}}};
        const CTestNode prototype{"audio:modNode", "proto", {{"is-prototype", "true"}}};
        CTestNode definition = owner({side, prototype, linkNode(row.src, row.dst)});
        const std::string message =
            std::string("Link from '") + row.src + "' to '" + row.dst + "' repeats an automatic one.";
        EXPECT_EQ(graphLoadFailure({definition}), row.isRepeated ? message : "") << row.src << ' ' << row.dst;
        definition.attributes.emplace_back("is-auto-links", "false");
        EXPECT_EQ(graphLoadFailure({definition}), "") << row.src << ' ' << row.dst;
    }
    EXPECT_EQ(graphLoadFailure({owner({linkNode("a", "b", {{"state-id", "1"}})})}),
              "Link from 'a' to 'b' repeats an automatic one.");
}

TEST(CAudioProcessLinkDefTest, ALinkMayStandBeforeTheProcessesThatItNames) {
    EXPECT_EQ(
        graphLoadFailure(
            {{"audio:process-def", "p", {}, {linkNode("a", "b/1"), {"audio:modNode", "a"}, {"audio:modNode", "b"}}}}),
        "");
}

TEST(CAudioProcessLinkDefTest, StatesAreReadAndUnknownOnesDropped) {
    CGraphTree tree(
        {owner({linkNode("a", "b/1", {{"state-id", "4"}, {"bypass-state-id", "11 5  x 3"}}),
                linkNode("a", "b/1", {{"bypass-state-id", ""}}), linkNode("a", "b/1", {{"bypass-state-id", "5"}})})});
    const auto& links = tree.definition<CAudioProcessDef>("p").links();
    EXPECT_EQ(links[0]->stateId(), 4);
    ASSERT_EQ(links[0]->bypassStateIds().count(), 2);
    EXPECT_EQ(links[0]->bypassStateIds()[0], 11);
    EXPECT_EQ(links[0]->bypassStateIds()[1], 3);
    EXPECT_TRUE(links[1]->bypassStateIds().isEmpty());
    EXPECT_TRUE(links[2]->bypassStateIds().isEmpty());
}

TEST(CAudioIntervalTest, BracketsIncludeTheirLimitAndParenthesesExcludeIt) {
    const struct {
        const char* text;
        bool holds[5];  // 0, 0.25, 0.5, 1, 1.5
    } rows[] = {
        {"[0.5;1]", {false, false, true, true, false}}, {"(0;1)", {false, true, true, false, false}},
        {"(0;1]", {false, true, true, true, false}},    {"[0;1)", {true, true, true, false, false}},
        {"[-1;0,5]", {true, true, true, false, false}}, {"[1;1]", {false, false, false, true, false}},
        {"(1;1)", {false, false, false, false, false}}, {"[1;0]", {false, false, false, false, false}},
    };
    constexpr double kValues[] = {0.0, 0.25, 0.5, 1.0, 1.5};
    for (const auto& row : rows) {
        CAudioInterval interval;
        ASSERT_TRUE(CAudioInterval::parse(row.text, interval)) << row.text;
        for (int32_t i = 0; i < 5; ++i) {
            EXPECT_EQ(interval.contains(kValues[i]), row.holds[i]) << row.text << ' ' << kValues[i];
        }
    }
}

TEST(CAudioIntervalTest, AMalformedTextLeavesTheIntervalAlone) {
    for (const char* text : {"", "[", "[]", "0;1", "[0;1", "0;1]", "{0;1}", "[0]", "[0;1;2]", "[;1]", "[0;]", "[a;1]",
                             "[0;1b]", "[0 1]", "]0;1["}) {
        CAudioInterval interval{5.0, 6.0, false, true};
        EXPECT_FALSE(CAudioInterval::parse(text, interval)) << text;
        EXPECT_TRUE(interval.low == 5.0 && interval.high == 6.0 && !interval.includesLow && interval.includesHigh)
            << text;
    }
}

const CAudioProcessBypassStateDef& thirdState(const CGraphTree& tree) {
    return *tree.definition<CAudioProcessDef>("p").bypassStates()[2];
}

TEST(CAudioProcessBypassStateDefTest, WithoutARangeTheConditionIsEqualityWithTheValue) {
    CGraphTree tree({owner({stateNode({{"id", "0"}, {"param", "x"}})})});
    const CAudioProcessBypassStateDef& plain = thirdState(tree);
    EXPECT_EQ(plain.id(), 0);
    EXPECT_EQ(plain.condition().param, "x");
    EXPECT_TRUE(plain.condition().interval.contains(1.0));
    EXPECT_FALSE(plain.condition().interval.contains(0.999));
    EXPECT_FALSE(plain.condition().interval.contains(2.0));
    EXPECT_TRUE(plain.andCondition().param.isEmpty());
    EXPECT_FALSE(plain.isInverted() || plain.isGroup0() || plain.isMultiband());
}

TEST(CAudioProcessBypassStateDefTest, EveryAttributeIsRead) {
    CGraphTree tree({owner({stateNode({{"id", "0x20"},
                                       {"param", "^.x"},
                                       {"value", "3"},
                                       {"and-param", "y"},
                                       {"and-range", "(0;2]"},
                                       {"is-multiband", "true"},
                                       {"is-inverted", "true"},
                                       {"is-group0", "true"}})})});
    const CAudioProcessBypassStateDef& state = thirdState(tree);
    EXPECT_EQ(state.id(), 32);
    EXPECT_TRUE(state.condition().interval.contains(3.0));
    EXPECT_FALSE(state.condition().interval.contains(1.0));
    EXPECT_EQ(state.andCondition().param, "y");
    EXPECT_TRUE(state.andCondition().interval.contains(2.0));
    EXPECT_FALSE(state.andCondition().interval.contains(0.0));
    EXPECT_TRUE(state.isInverted() && state.isGroup0() && state.isMultiband());
}

TEST(CAudioProcessBypassStateDefTest, ARangeGoesBeforeAValue) {
    CGraphTree tree({owner({stateNode({{"id", "1"},
                                       {"param", "x"},
                                       {"range", "[0.5;1]"},
                                       {"value", "3"},
                                       {"and-param", "y"},
                                       {"and-value", "4"}})})});
    EXPECT_TRUE(thirdState(tree).condition().interval.contains(0.5));
    EXPECT_FALSE(thirdState(tree).condition().interval.contains(3.0));
    EXPECT_TRUE(thirdState(tree).andCondition().interval.contains(4.0));
    EXPECT_FALSE(thirdState(tree).andCondition().interval.contains(1.0));
}

TEST(CAudioProcessBypassStateDefTest, BadStatesStopTheBuild) {
    const struct {
        CTestAttributes attributes;
        std::string message;
    } rows[] = {
        {{{"param", "x"}}, "Invalid identifier '' specified."},
        {{{"id", "-1"}, {"param", "x"}}, "Invalid identifier '-1' specified."},
        {{{"id", "one"}, {"param", "x"}}, "Invalid identifier 'one' specified."},
        {{{"id", "1"}}, "Invalid parameter name specified."},
        {{{"id", "1"}, {"param", "x"}, {"range", "0;1"}}, "Invalid 'range' attribute value '0;1' specified."},
        {{{"id", "1"}, {"param", "x"}, {"and-param", "y"}, {"and-range", "[0;1;2]"}},
         "Invalid 'and-range' attribute value '[0;1;2]' specified."},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(graphLoadFailure({owner({stateNode(row.attributes)})}), row.message);
    }
}

}  // namespace
}  // namespace tarv
