#include "Audio/Graph/CAudioProcessDef.h"

#include "Audio/Graph/CAudioProcessLinkDef.h"
#include "Audio/Graph/CAudioProcessMB.h"
#include "Audio/Graph/CAudioProcessStack.h"
#include "Audio/Modules/CModGain.h"
#include "Tests/Audio/Graph/GraphTree.h"

namespace tarv {
namespace {

CTestNode processNode(const std::string& name, CTestAttributes attributes = {}, std::vector<CTestNode> children = {}) {
    return {"audio:process-def", name, std::move(attributes), std::move(children)};
}

struct CFlagRow {
    const char* name;
    bool (CAudioProcessDefBase::*get)() const;
    bool fallback;
};

constexpr CFlagRow kFlags[] = {
    {"is-stacked", &CAudioProcessDefBase::isStacked, false},
    {"is-smooth-update", &CAudioProcessDefBase::isSmoothUpdate, false},
    {"is-multiband", &CAudioProcessDefBase::isMultiband, false},
    {"is-whole", &CAudioProcessDefBase::isWhole, false},
    {"is-terminal-whole", &CAudioProcessDefBase::isTerminalWhole, false},
    {"is-grouped", &CAudioProcessDefBase::isGrouped, false},
    {"is-prototype", &CAudioProcessDefBase::isPrototype, false},
    {"is-outoforder", &CAudioProcessDefBase::isOutOfOrder, false},
    {"is-group0", &CAudioProcessDefBase::isGroup0, false},
    {"is-element0", &CAudioProcessDefBase::isElement0, false},
    {"use-time-shift", &CAudioProcessDefBase::useTimeShift, true},
    {"is-weighted-input", &CAudioProcessDefBase::isWeightedInput, false},
};

TEST(CAudioProcessDefTest, EachFlagIsReadAndHasItsDefault) {
    for (const CFlagRow& row : kFlags) {
        CGraphTree tree({processNode("absent"), processNode("on", {{row.name, "true"}}),
                         processNode("off", {{row.name, "false"}}), processNode("empty", {{row.name, ""}})});
        EXPECT_EQ((tree.definition("absent").*row.get)(), row.fallback) << row.name;
        EXPECT_TRUE((tree.definition("on").*row.get)()) << row.name;
        EXPECT_FALSE((tree.definition("off").*row.get)()) << row.name;
        EXPECT_EQ((tree.definition("empty").*row.get)(), row.fallback) << row.name;
    }
}

TEST(CAudioProcessDefTest, AFlagSetsNoOther) {
    for (const CFlagRow& set : kFlags) {
        CGraphTree tree({processNode("p", {{set.name, set.fallback ? "false" : "true"}})});
        for (const CFlagRow& row : kFlags) {
            EXPECT_EQ((tree.definition("p").*row.get)(), row.fallback != (row.get == set.get))
                << set.name << ' ' << row.name;
        }
    }
}

TEST(CAudioProcessDefTest, TextsAndNumbersAreReadAndHaveDefaults) {
    CGraphTree tree({processNode("absent"), processNode("set", {{"multiband-freq-param", "freqs"},
                                                                {"multiband-count-param", "bands"},
                                                                {"stack-param", "^.band-count"},
                                                                {"stack-index-shift", "2"},
                                                                {"bypass-state-id", "11"},
                                                                {"is-auto-links", "false"}})});
    const auto& absent = tree.definition<CAudioProcessDef>("absent");
    EXPECT_EQ(absent.multibandFreqParam(), "");
    EXPECT_EQ(absent.multibandCountParam(), "");
    EXPECT_EQ(absent.stackParam(), "");
    EXPECT_EQ(absent.stackIndexShift(), 0);
    EXPECT_EQ(absent.bypassStateId(), -1);
    EXPECT_TRUE(absent.isAutoLinks());
    const auto& set = tree.definition<CAudioProcessDef>("set");
    EXPECT_EQ(set.multibandFreqParam(), "freqs");
    EXPECT_EQ(set.multibandCountParam(), "bands");
    EXPECT_EQ(set.stackParam(), "^.band-count");
    EXPECT_EQ(set.stackIndexShift(), 2);
    EXPECT_EQ(set.bypassStateId(), 11);
    EXPECT_FALSE(set.isAutoLinks());
}

TEST(CAudioProcessDefTest, ANegativeIndexShiftStopsTheBuild) {
    EXPECT_EQ(graphLoadFailure({processNode("p", {{"stack-index-shift", "-1"}})}),
              "Invalid stack index shift value '-1' "
              "specified.");
    EXPECT_EQ(graphLoadFailure({processNode("p", {{"stack-index-shift", "0"}})}), "");
}

TEST(CAudioProcessDefTest, ChildrenAreSortedInDeclaredOrder) {
    CGraphTree tree({processNode("p", {},
                                 {numberNode("first", "1"),
                                  {"audio:modNode", "b"},
                                  linkNode("b", "a"),
                                  remapNode("gain", "^.gains"),
                                  {"audio:modNode", "a", {{"is-prototype", "true"}}},
                                  allocNode("first", 3),
                                  {"audio:process-bypass-state", "state", {{"id", "7"}, {"param", "first"}}},
                                  processNode("c", {{"is-multiband", "true"}}),
                                  numberNode("second", "2"),
                                  {"core:object", "notes", {{"text", "none"}}}})});
    const auto& def = tree.definition<CAudioProcessDef>("p");
    ASSERT_EQ(def.childDefs().count(), 3);
    EXPECT_EQ(def.childDefs()[0]->name(), "b");
    EXPECT_EQ(def.childDefs()[1]->name(), "a");
    EXPECT_EQ(def.childDefs()[2]->name(), "c");
    EXPECT_EQ(def.findChildDef("a"), def.childDefs()[1]);
    EXPECT_EQ(def.findChildDef("d"), nullptr);
    ASSERT_EQ(def.prototypeDefs().count(), 1);
    EXPECT_EQ(def.prototypeDefs()[0], def.childDefs()[1]);
    ASSERT_EQ(def.multibandDefs().count(), 1);
    EXPECT_EQ(def.multibandDefs()[0], def.childDefs()[2]);
    EXPECT_EQ(def.links().count(), 1);
    ASSERT_EQ(def.bypassStates().count(), 1);
    EXPECT_EQ(def.findBypassState(7), def.bypassStates()[0]);
    EXPECT_EQ(def.findBypassState(8), nullptr);
    ASSERT_EQ(def.params().count(), 2);
    EXPECT_EQ(def.params()[0].name, "first");
    EXPECT_EQ(def.params()[1].name, "second");
    ASSERT_NE(def.allocAt(3), nullptr);
    EXPECT_EQ(def.allocAt(3)->paramName(), "first");
    EXPECT_EQ(def.allocAt(0), nullptr);
    ASSERT_NE(def.findRemap("gain"), nullptr);
    EXPECT_EQ(def.findRemap("gain")->newName(), "^.gains");
    EXPECT_EQ(def.findRemap("gains"), nullptr);
}

TEST(CAudioProcessDefTest, APlainObjectIsANamespaceAndNests) {
    CGraphTree tree({processNode("p", {},
                                 {{"core:object",
                                   "io-params",
                                   {},
                                   {numberNode("grouping", "0", {{"is-global", "true"}}),
                                    {"core:object", "names", {}, {numberNode("in", "0", {{"is-global", "true"}})}}}},
                                  numberNode("grouping", "1")})});
    const auto& def = tree.definition("p");
    ASSERT_EQ(def.params().count(), 3);
    EXPECT_EQ(def.params()[0].name, "io-params.grouping");
    EXPECT_EQ(def.params()[1].name, "io-params.names.in");
    EXPECT_EQ(def.params()[2].name, "grouping");
    EXPECT_NE(def.findParam("io-params.grouping"), def.findParam("grouping"));

    ASSERT_EQ(tree.build("p"), "");
    for (const char* name : {"plugin.p.io-params.grouping", "plugin.p.io-params.names.in", "plugin.p.grouping"}) {
        const CAudioParam* param = tree.collector().findParam(name);
        EXPECT_TRUE(param && param->isDefined()) << name;
    }
}

TEST(CAudioProcessDefTest, TheFactoryChoosesTheClass) {
    CGraphTree tree({processNode("plain"), processNode("stacked", {{"is-stacked", "true"}}),
                     processNode("bands", {{"is-multiband", "true"}, {"is-stacked", "true"}}),
                     processNode("whole", {{"is-whole", "true"}}), gainNode("module", "1"),
                     gainNode("modules", "1", {{"is-stacked", "true"}})});
    const auto make = [&tree](const char* name) {
        return std::unique_ptr<CAudioProcessBase>(tree.definition(name).instantiate());
    };
    EXPECT_EQ(typeid(*make("plain")), typeid(CAudioProcess));
    EXPECT_EQ(typeid(*make("stacked")), typeid(CAudioProcessStack));
    EXPECT_EQ(typeid(*make("bands")), typeid(CAudioProcessMB));
    EXPECT_EQ(typeid(*make("module")), typeid(CModGain));
    EXPECT_EQ(typeid(*make("modules")), typeid(CAudioProcessStack));
    // Whole without stacked has no stack.
    EXPECT_EQ(typeid(*make("whole")), typeid(CAudioProcess));
}

}  // namespace
}  // namespace tarv
