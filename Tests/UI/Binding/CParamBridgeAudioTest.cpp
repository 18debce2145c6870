#include "Tests/UI/Binding/BindingTree.h"

namespace tarv {
namespace {

class ParamBridge : public CBindingTest {
protected:
    void openListening(const char* event) {
        open();
        events().listenObject("ui.gains-bridge", event, "take");
    }
    int32_t eventInt(const char* name) { return events().last[name].asInt(); }
};

TEST_F(ParamBridge, WithoutItsClientItFails) {
    EXPECT_EQ(tryOpen({{"ui:param-bridge", "b", {{"interface-client", "ui.nobody"}, {"param", "p.gains"}}}}),
              "No interfacing object 'ui.nobody' found.");
}

TEST_F(ParamBridge, HoldsTheValuesOfAllGroups) {
    open();
    CParamBridge& bridge = bridgeAt("gains");
    EXPECT_FALSE(bridge.isActive());
    EXPECT_EQ(bridge.value(0, 0), 0.0);
    EXPECT_EQ(bridge.elementCount(0), 0);
    EXPECT_EQ(consumed(bridge.resetGroup(0)), "");
    EXPECT_EQ(consumed(bridge.copyGroup(0, 1)), "");
    EXPECT_TRUE(engine_->sets.empty());
    sendWhole("gains", {{2.0, 0.5}, {0.5}});
    EXPECT_TRUE(bridge.isActive());
    EXPECT_NEAR(bridge.value(0, 0), 6.0206, 1e-4);
    EXPECT_NEAR(bridge.value(0, 1), -6.0206, 1e-4);
    EXPECT_NEAR(bridge.value(1, 0), -6.0206, 1e-4);
    EXPECT_EQ(bridge.value(1, 1), 0.0) << "the default";
    EXPECT_EQ(bridge.elementCount(0), 2);
    EXPECT_EQ(bridge.elementCount(1), 1);
    EXPECT_NEAR(bridge.minimum(), -12.0, 1e-12);
    EXPECT_NEAR(bridge.maximum(), 12.0, 1e-12);
}

TEST_F(ParamBridge, SetsARunOfElementsAsOneChange) {
    open();
    sendWhole("gains", {{1.0}});
    const double values[] = {20.0, -20.0};
    EXPECT_EQ(consumed(bridgeAt("gains").setValues(1, 3, values, 2, true, 5)), "");
    ASSERT_EQ(engine_->sets.size(), 1u);
    const CSetMessage& message = engine_->sets[0];
    EXPECT_EQ(message.group, 1);
    EXPECT_EQ(message.first, 3);
    ASSERT_EQ(message.numbers.size(), 2u);
    EXPECT_NEAR(message.numbers[0], 10.0, 1e-12);
    EXPECT_NEAR(message.numbers[1], 0.1, 1e-12);
    EXPECT_EQ(message.flags, uint32_t{kIsReplacing} | kIsRecorded);
    EXPECT_EQ(message.key, 5);
}

TEST_F(ParamBridge, AStepOfTheHistoryNamesTheParameterAndItsGroup) {
    open();
    sendWhole("gains", {{1.0}});
    sendWhole("mode", {{1.0}});
    const double value = 0.0;
    EXPECT_EQ(consumed(bridgeAt("gains").setValues(1, 0, &value, 1)), "");
    EXPECT_EQ(consumed(bridgeAt("gains").setValues(CAudioParamData::kAllGroups, 0, &value, 1)), "");
    EXPECT_EQ(consumed(bridgeAt("gains").resetGroup(2)), "");
    EXPECT_EQ(consumed(bridgeAt("gains").copyGroup(0, 1)), "");
    // One group for all, and no visual name.
    EXPECT_EQ(consumed(bridgeAt("mode").setValues(1, 0, &value, 1)), "");
    EXPECT_EQ(consumed(bridgeAt("mode").resetGroup(1)), "");
    std::vector<std::string> labels;
    std::vector<int32_t> groups;
    for (const CSetMessage& message : engine_->sets) {
        labels.push_back(message.label);
        groups.push_back(message.group);
    }
    EXPECT_EQ(labels, (std::vector<std::string>{"Gains (2) change", "Gains change", "Gains (3) reset",
                                                "Group 1 to 2 copy", "mode change", "mode reset"}));
    EXPECT_EQ(groups, (std::vector<int32_t>{1, CAudioParamData::kAllGroups, 2, 1, 0, 0}));
}

TEST_F(ParamBridge, CopiesWhatAGroupStoresAndResetsByStoringNothing) {
    open();
    events().listenObject("ui.gains-bridge", "copy-group", "take");
    events().listenObject("ui.gains-bridge", "reset-group", "take");
    sendWhole("gains", {{2.0, 0.5}, {1.0, 1.0, 1.0}});
    EXPECT_EQ(consumed(bridgeAt("gains").copyGroup(0, 1, 9)), "");
    EXPECT_EQ(eventInt("group"), 0);
    EXPECT_EQ(eventInt("index"), 1);
    EXPECT_EQ(consumed(bridgeAt("gains").copyGroup(1, 1)), "");
    EXPECT_EQ(consumed(bridgeAt("gains").resetGroup(1, 9)), "");
    EXPECT_EQ(eventInt("group"), 1);
    EXPECT_EQ(events().names, (std::vector<std::string>{"copy-group", "reset-group"}));
    ASSERT_EQ(engine_->sets.size(), 2u);
    EXPECT_EQ(engine_->sets[0].numbers, (std::vector<double>{2.0, 0.5}));
    EXPECT_EQ(engine_->sets[1].numbers, std::vector<double>());
    for (const CSetMessage& message : engine_->sets) {
        EXPECT_EQ(message.group, 1);
        EXPECT_EQ(message.first, 0);
        EXPECT_EQ(message.flags, uint32_t{kIsReplacing} | kIsRecorded);
        EXPECT_EQ(message.key, 9);
    }
}

TEST_F(ParamBridge, TextsAreReadAndCopiedAsTexts) {
    open();
    sendTexts("names", {"Bass", "Drums"});
    EXPECT_EQ(bridgeAt("names").valueText(0, 1, CAudioTextMode::Full), CString("Drums"));
    EXPECT_EQ(consumed(bridgeAt("names").copyGroup(0, 2)), "");
    ASSERT_EQ(engine_->sets.size(), 1u);
    EXPECT_EQ(engine_->sets[0].texts, (std::vector<std::string>{"Bass", "Drums"}));
}

TEST_F(ParamBridge, SendsWhichElementsHaveChanged) {
    openListening("param-change");
    sendWhole("gains", {{1.0, 1.0, 1.0}, {1.0}});
    EXPECT_EQ(events().names.size(), 2u) << "one for each group";
    sendPart("gains", 0, 1, {2.0, 2.0}, 3);
    EXPECT_EQ(eventInt("group"), 0);
    EXPECT_EQ(eventInt("element-offset"), 1);
    EXPECT_EQ(eventInt("element-count"), 2);
    EXPECT_FALSE(events().last["is-replacing"].asBool());
    sendPart("gains", 0, 0, {2.0}, 1);
    EXPECT_EQ(eventInt("element-count"), 1);
    EXPECT_TRUE(events().last["is-replacing"].asBool());
}

TEST_F(ParamBridge, SendsWhenThereAreMoreOrFewerGroups) {
    openListening("group-change");
    sendGroupCount(4);
    EXPECT_EQ(bridgeAt("gains").groupCount(), 4);
    EXPECT_EQ(events().names.size(), 1u);
    sendGroupCount(4);
    EXPECT_EQ(events().names.size(), 1u);
    sendGroupCount(2);
    EXPECT_EQ(events().names.size(), 2u);
}

TEST_F(ParamBridge, AnEditorMayBeClosedByWhatItSets) {
    open({{"test:control", "c", {}, {uiParam("p", {{"bridge", "ui.gains-bridge"}})}}});
    sendWhole("gains", {{1.0}});
    sendWhole("mode", {{1.0}});
    engine_->onSet = [this] { delete &at<CControlRecorder>("c"); };
    EXPECT_EQ(consumed(param("c.p").setValue(1.0)), "");
    engine_->onSet = [this] { delete &bridgeAt("gains"); };
    EXPECT_EQ(consumed(bridgeAt("gains").resetGroup(0)), "");
    engine_->onSet = [this] { delete &bridgeAt("mode"); };
    const double value = 1.0;
    EXPECT_EQ(consumed(bridgeAt("mode").setValues(0, 0, &value, 1)), "");
    EXPECT_EQ(engine_->sets.size(), 3u);
}

TEST_F(ParamBridge, EndsItsSubscriptionWithItself) {
    open();
    const uint32_t id = engine_->ids.at("p.gains");
    delete &bridgeAt("gains");
    EXPECT_EQ(engine_->ended, std::vector<uint32_t>{id});
}

}  // namespace
}  // namespace tarv
