#include "UI/Controls/Plugin/CParamGroupController.h"

#include "PluginTree.h"

namespace tarv {
namespace {

struct ParamGroupController : CPluginTest {
    ParamGroupController() { load("", {{"ui:param-group-selector", "sel", {{"group-index", "0"}}}}); }
    static CTestNode item(const char* bridge, bool isCopyOnly = false) {
        return {"core:object", "item", {{"bridge", bridge}, {"is-reset-disabled", isCopyOnly ? "true" : "false"}}};
    }
    static CTestNode controller(const CTexts& more = {}) {
        CTestNode node{"ui:param-group-controller",
                       "ctl",
                       {{"interface-client", "ui.interface-client"}, {"group-selector", "ui.sel"}},
                       {item("ui.xeq-bridge"), item("ui.gain-bridge"), item("ui.freq-bridge", true)}};
        node.attributes.insert(node.attributes.end(), more.begin(), more.end());
        return node;
    }
    void setFrequency(int32_t group, double value) {
        EXPECT_EQ(consumed(bridge("freq-bridge").setValues(group, 0, &value, 1)), "");
        system_.pump();
    }
    std::string lastLabel() {
        const CTextList& labels = client().engineState().history.labels;
        return labels[labels.count() - 1].toUtf8();
    }
    int32_t steps() { return client().engineState().history.labels.count() - 1; }
};

TEST_F(ParamGroupController, NeedsItsClientItsSelectorAndItsBridges) {
    EXPECT_EQ(tryLoad("", {{"ui:param-group-controller", "no", {{"interface-client", "ui.nothing"}}}}),
              "No interfacing object 'ui.nothing' found.");
    EXPECT_EQ(tryLoad("", {{"ui:param-group-controller",
                            "no",
                            {{"interface-client", "ui.interface-client"}, {"group-selector", "ui.nothing"}}}}),
              "No group selector object 'ui.nothing' found.");
    EXPECT_EQ(tryLoad("", {{"ui:param-group-controller",
                            "no",
                            {{"interface-client", "ui.interface-client"}, {"group-selector", "ui.sel"}},
                            {item("ui.nothing")}}}),
              "Invalid parameter bridge object 'ui.nothing'.");
}

TEST_F(ParamGroupController, CopiesEverythingOfTheGroupInOneStep) {
    load("", {controller()});
    setCurve(0, {1.0, 2.0, 3.0});
    setCurve(3, {9.0, 9.0, 9.0, 9.0, 9.0, 9.0, 9.0});
    setGain(4.0, 0);
    setFrequency(0, 77.0);
    const int32_t before = steps();
    deliver("ctl", "copy-group", index(3));
    EXPECT_EQ(steps(), before + 1);
    EXPECT_EQ(lastLabel(), "Group 1 to 4 copy");
    EXPECT_EQ(shownBand(3, 2), 3.0);
    EXPECT_EQ(shownBand(3, 6), shownBand(0, 6));
    EXPECT_EQ(shownGain(3), 4.0);
    EXPECT_EQ(bridge("freq-bridge").value(3, 0), 77.0);
    EXPECT_EQ(engineValue("modBrindleXEQ.xeq-freqs", 3, 0), 77.0);
    undo();
    EXPECT_EQ(shownBand(3, 2), 9.0);
    EXPECT_EQ(shownGain(3), 0.0);
    EXPECT_EQ(bridge("freq-bridge").value(3, 0), 64.0);
}

TEST_F(ParamGroupController, ResetLeavesTheFrequencies) {
    load("", {controller()});
    setCurve(0, {1.0, 2.0, 3.0});
    setGain(4.0, 0);
    setFrequency(0, 77.0);
    const int32_t before = steps();
    deliver("ctl", "reset-group");
    EXPECT_EQ(steps(), before + 1);
    EXPECT_EQ(lastLabel(), "Group 1 reset");
    EXPECT_EQ(shownBand(0, 1), 0.0);
    EXPECT_EQ(shownGain(0), 0.0);
    EXPECT_EQ(bridge("freq-bridge").value(0, 0), 77.0);
    undo();
    EXPECT_EQ(shownBand(0, 1), 2.0);
    EXPECT_EQ(shownGain(0), 4.0);
}

TEST_F(ParamGroupController, ActsOnTheGroupOfItsSelectorAndRetargetsNothing) {
    load("", {controller()});
    EXPECT_EQ(object("ctl").getAttrInt("group-index"), 0);
    setCurve(1, {5.0});
    setCurve(0, {1.0});
    set(object("sel"), "group-index", "1");
    EXPECT_EQ(object("ctl").getAttrInt("group-index"), 1);
    deliver("ctl", "popup-result", index(2));
    EXPECT_EQ(shownBand(2, 0), 5.0);
    EXPECT_EQ(shownBand(0, 0), 1.0);
    EXPECT_EQ(lastLabel(), "Group 2 to 3 copy");
}

TEST_F(ParamGroupController, LabelsHaveTheNamesOfTheGroups) {
    load("", {controller()});
    CTextList names;
    names.append("Front");
    names.append("LFE");
    EXPECT_EQ(consumed(client().setTexts("plugin.modMain.io-params.group-names", 0, 0, names)), "");
    setCurve(0, {1.0});
    deliver("ctl", "copy-group", index(1));
    EXPECT_EQ(lastLabel(), "Group Front to LFE copy");
    deliver("ctl", "reset-group");
    EXPECT_EQ(lastLabel(), "Group Front reset");
}

TEST_F(ParamGroupController, WithUndoDisabledThereIsNoStep) {
    load("", {controller({{"is-undo-disabled", "true"}})});
    setCurve(0, {1.0});
    const int32_t before = steps();
    deliver("ctl", "copy-group", index(1));
    EXPECT_EQ(shownBand(1, 0), 1.0);
    deliver("ctl", "reset-group");
    EXPECT_EQ(shownBand(0, 0), 0.0);
    EXPECT_EQ(steps(), before);
}

TEST_F(ParamGroupController, ATargetThatIsNoOtherGroupChangesNothing) {
    load("", {controller()});
    setCurve(0, {1.0});
    const int32_t before = steps();
    for (const int32_t target : {-1, 0, 8, 1000}) {
        deliver("ctl", "copy-group", index(target));
    }
    EXPECT_EQ(steps(), before);
    deliver("ctl", "copy-group", index(1));
    deliver("ctl", "copy-group", index(1));
    EXPECT_EQ(steps(), before + 1) << "the second copy changes nothing";
}

TEST_F(ParamGroupController, BeforeTheValuesHaveComeNothingHappens) {
    load("", {{"ui:param-bridge",
               "late-bridge",
               {{"interface-client", "ui.interface-client"}, {"param", "plugin.modMain.modOutGain.gain"}}},
              {"ui:param-group-controller",
               "ctl",
               {{"interface-client", "ui.interface-client"}, {"group-selector", "ui.sel"}},
               {item("ui.late-bridge")}}});
    CAttributeMap target = index(1);
    EXPECT_EQ(consumed(deliverEvent(object("ctl"), "copy-group", target)), "");
    EXPECT_EQ(consumed(deliverEvent(object("ctl"), "reset-group", target)), "");
    system_.pump();
    EXPECT_EQ(steps(), 0);
}

}  // namespace
}  // namespace tarv
