#include <cmath>
#include <cstring>

#include "Tests/Core/LogCapture.h"
#include "Tests/UI/Binding/BindingTree.h"

namespace tarv {
namespace {

using CCalls = std::vector<std::string>;

class UIParam : public CBindingTest {};

TEST_F(UIParam, AParentThatFollowsNoParamIsRefused) {
    EXPECT_EQ(tryOpen({{"core:object", "c", {}, {uiParam("p", {})}}}), "Parent object does not support ui-param.");
}

TEST_F(UIParam, APathWithoutItsObjectIsRefused) {
    const auto failure = [this](const char* attribute, const char* path) {
        return tryOpen({{"test:control", "c", {}, {uiParam("p", {{attribute, path}})}}});
    };
    EXPECT_EQ(failure("bridge", "ui.nothing"), "Invalid parameter bridge object 'ui.nothing'.");
    EXPECT_EQ(failure("bridge", "ui.sel"), "Invalid parameter bridge object 'ui.sel'.");
    EXPECT_EQ(failure("group-selector", "ui.gains-bridge"), "Invalid parameter group selector 'ui.gains-bridge'.");
    EXPECT_EQ(failure("shared-attribute", "ui.nothing"), "Invalid parameter shared attribute 'ui.nothing'.");
}

TEST_F(UIParam, WithoutASourceItIsInactive) {
    CControlRecorder& control = openControl({uiParam("p", {{"bridge", ""}, {"index", "3"}})});
    EXPECT_EQ(control.take(), CCalls());
    EXPECT_FALSE(param("c.p").isActive());
    EXPECT_FALSE(param("c.p").getAttrBool("is-active"));
    EXPECT_EQ(param("c.p").index(), 3);
    EXPECT_EQ(param("c.p").getValue(), 0.0);
    EXPECT_EQ(param("c.p").getValueText(CAudioTextMode::Full), CString());
    EXPECT_EQ(consumed(param("c.p").setValue(1.0)), "");
    EXPECT_TRUE(engine_->sets.empty());
}

TEST_F(UIParam, IsActiveFromTheFirstValuesOnAndShowsThemInDecibels) {
    CControlRecorder& control = openControl({uiParam("p", {{"bridge", "ui.gains-bridge"}, {"element", "1"}})});
    EXPECT_EQ(control.take(), CCalls());
    sendWhole("gains", {{1.0, 2.0}});
    EXPECT_EQ(control.take(), (CCalls{"p active", "p in -12.0..12.0", "p 6.0206", "p 6.0206"}));
    EXPECT_TRUE(param("c.p").getAttrBool("is-active"));
    EXPECT_EQ(param("c.p").getElement(), 1);
    EXPECT_EQ(param("c.p").getValueText(CAudioTextMode::Full), CString("6.0"));
}

TEST_F(UIParam, ThatComesLaterBeginsWithTheValueThatIsThere) {
    open();
    sendWhole("gains", {{2.0}});
    CObject& ui = at<CObject>("client");
    CControlRecorder* control = nullptr;
    ASSERT_EQ(consumed(ui.parent()->createChildOf(control, "test:control", "late", false)), "");
    CUIParam* made = nullptr;
    CAttributeMap attributes;
    attributes["bridge"] = CAttributeValue::fromString("ui.gains-bridge");
    ASSERT_EQ(consumed(control->createChildOf(made, "ui:ui-param", "p", false, &attributes)), "");
    EXPECT_EQ(control->take(), (CCalls{"p active", "p in -12.0..12.0", "p 6.0206"}));
}

TEST_F(UIParam, IsCalledForItsOwnElementAndGroup) {
    CControlRecorder& control = openControl(
        {uiParam("a", {{"bridge", "ui.gains-bridge"}}), uiParam("b", {{"bridge", "ui.gains-bridge"}, {"element", "2"}}),
         uiParam("c", {{"bridge", "ui.gains-bridge"}, {"element", "2"}, {"group-selector", "ui.sel"}})});
    sendWhole("gains", {{1.0, 1.0, 1.0}, {1.0, 1.0, 1.0}});
    control.take();
    sendPart("gains", 0, 1, {2.0, 0.5}, 3);
    EXPECT_EQ(control.take(), CCalls{"b -6.0206"});
    sendPart("gains", 0, 0, {2.0, 1.0}, 3);
    EXPECT_EQ(control.take(), CCalls{"a 6.0206"});
    sendPart("gains", 1, 2, {2.0}, 3);
    EXPECT_EQ(control.take(), CCalls{"c 6.0206"});
    sendPart("gains", 2, 0, {2.0, 2.0, 2.0}, 3);
    EXPECT_EQ(control.take(), CCalls());
    // The group ends before the element, which is at its default again.
    sendPart("gains", 1, 0, {2.0}, 1);
    EXPECT_EQ(control.take(), CCalls{"c 0.0000"});
}

TEST_F(UIParam, IsCalledForTheElementsBehindItThatItsHandlerShows) {
    CControlRecorder& control = openControl({uiParam("p", {{"bridge", "ui.gains-bridge"}, {"element", "1"}})});
    control.followed = 3;
    sendWhole("gains", {{1.0, 1.0, 1.0, 1.0, 1.0, 1.0}});
    control.take();
    for (int32_t element = 0; element < 6; ++element) {
        sendPart("gains", 0, element, {2.0}, 6);
        EXPECT_EQ(control.take().size(), element >= 1 && element <= 3 ? 1u : 0u) << element;
    }
    sendPart("gains", 0, 0, {1.0, 1.0}, 6);
    EXPECT_EQ(control.take().size(), 1u);
    sendPart("gains", 0, 3, {1.0}, 4);
    EXPECT_EQ(control.take().size(), 1u) << "the group ends within them";
}

TEST_F(UIParam, GivesTheDefaultOfAnElementAndOfASetting) {
    openControl({uiParam("p", {{"bridge", "ui.gains-bridge"}}), uiParam("s", {{"shared-attribute", "ui.setting"}}),
                 uiParam("none", {})});
    double value = -1.0;
    EXPECT_FALSE(param("c.p").defaultValue(0, value));
    sendWhole("gains", {{2.0, 2.0}});
    EXPECT_TRUE(param("c.p").defaultValue(1, value));
    EXPECT_EQ(value, 0.0);
    EXPECT_TRUE(param("c.s").defaultValue(0, value));
    EXPECT_EQ(value, 0.7);
    EXPECT_FALSE(param("c.s").defaultValue(1, value));
    EXPECT_FALSE(param("c.none").defaultValue(0, value));
}

TEST_F(UIParam, FollowsItsGroupSelectorAndWithoutOneShowsGroup0) {
    CControlRecorder& control =
        openControl({uiParam("fixed", {{"bridge", "ui.gains-bridge"}, {"group-selector", ""}}),
                     uiParam("free", {{"bridge", "ui.gains-bridge"}, {"group-selector", "ui.sel"}})});
    sendWhole("gains", {{1.0}, {2.0}, {0.5}});
    control.take();
    EXPECT_NEAR(param("c.free").getValue(), 6.0206, 1e-4);
    set(at<CObject>("sel"), "group-index", "2");
    EXPECT_EQ(control.take(), CCalls{"free -6.0206"});
    set(at<CObject>("sel"), "group-index", "2");
    EXPECT_EQ(control.take(), CCalls());
    set(at<CObject>("sel"), "group-index", "-1");
    EXPECT_EQ(control.take(), CCalls{"free 0.0000"});
    EXPECT_EQ(param("c.fixed").group(), 0);
    EXPECT_EQ(param("c.fixed").getValue(), 0.0);
}

TEST_F(UIParam, FollowsItsElement) {
    CControlRecorder& control = openControl({uiParam("p", {{"bridge", "ui.gains-bridge"}})});
    sendWhole("gains", {{1.0, 2.0}});
    control.take();
    set(param("c.p"), "element", "1");
    EXPECT_EQ(control.take(), CCalls{"p 6.0206"});
}

TEST_F(UIParam, AParameterOfOneGroupIsTheSameInAll) {
    CControlRecorder& control =
        openControl({uiParam("p", {{"bridge", "ui.mode-bridge"}, {"group-selector", "ui.sel"}})});
    sendWhole("mode", {{3.0}});
    EXPECT_EQ(control.take().back(), "p 3.0000");
    sendPart("mode", 0, 0, {4.0}, 1);
    EXPECT_EQ(control.take(), CCalls{"p 4.0000"});
}

TEST_F(UIParam, SetsItsElementOfItsGroupAndWaitsForTheEngine) {
    CControlRecorder& control =
        openControl({uiParam("p", {{"bridge", "ui.gains-bridge"}, {"element", "2"}, {"group-selector", "ui.sel"}})});
    EXPECT_EQ(consumed(param("c.p").setValue(3.0)), "");
    EXPECT_TRUE(engine_->sets.empty()) << "no values have come";
    sendWhole("gains", {{1.0}});
    control.take();
    EXPECT_EQ(consumed(param("c.p").setValue(20.0, 7)), "");
    ASSERT_EQ(engine_->sets.size(), 1u);
    const CSetMessage& message = engine_->sets[0];
    EXPECT_EQ(message.param, "p.gains");
    EXPECT_EQ(message.group, 1);
    EXPECT_EQ(message.first, 2);
    ASSERT_EQ(message.numbers.size(), 1u);
    EXPECT_NEAR(message.numbers[0], 10.0, 1e-12) << "the parameter clamps";
    EXPECT_EQ(message.flags, uint32_t{kIsRecorded});
    EXPECT_EQ(message.key, 7);
    EXPECT_EQ(control.take(), CCalls());
    EXPECT_EQ(param("c.p").getValue(), 0.0);
}

TEST_F(UIParam, IsInactiveWhenTheEngineHasGone) {
    CControlRecorder& control = openControl({uiParam("p", {{"bridge", "ui.gains-bridge"}})});
    sendWhole("gains", {{2.0}});
    control.take();
    client_->engineGone();
    EXPECT_EQ(control.take(), CCalls{"p inactive"});
    EXPECT_EQ(param("c.p").getValue(), 0.0);
    EXPECT_EQ(consumed(param("c.p").setValue(1.0)), "");
    EXPECT_TRUE(engine_->sets.empty());
}

TEST_F(UIParam, OutlivesItsBridge) {
    CControlRecorder& control =
        openControl({uiParam("a", {{"bridge", "ui.gains-bridge"}}), uiParam("b", {{"bridge", "ui.gains-bridge"}})});
    sendWhole("gains", {{2.0}});
    control.take();
    // Reading the other one meanwhile is safe.
    control.onCall = [this] { param("c.a").getValue(); };
    delete &bridgeAt("gains");
    EXPECT_EQ(control.take(), (CCalls{"b inactive", "a inactive"}));
    EXPECT_EQ(param("c.a").bridge(), nullptr);
    EXPECT_EQ(param("c.a").minimum(), 0.0);
}

TEST_F(UIParam, NotifiesItsParentOfItsOwnEndButNotOfTheParents) {
    openControl({uiParam("a", {{"bridge", "ui.gains-bridge"}}), uiParam("b", {{"bridge", "ui.gains-bridge"}})});
    delete &param("c.a");
    EXPECT_EQ(CControlRecorder::removed(), CCalls{"a"});
    delete &at<CControlRecorder>("c");
    EXPECT_EQ(CControlRecorder::removed(), CCalls{"a"});
    sendWhole("gains", {{2.0}});
    EXPECT_TRUE(bridgeAt("gains").isActive());
}

TEST_F(UIParam, AHandlerMayBeDestroyedByItsOwnCallAndOthersAreCalledStill) {
    open({{"test:control", "c", {}, {uiParam("p", {{"bridge", "ui.gains-bridge"}})}},
          {"test:control", "d", {}, {uiParam("q", {{"bridge", "ui.gains-bridge"}})}}});
    at<CControlRecorder>("c").onCall = [this] { delete &at<CControlRecorder>("c"); };
    sendWhole("gains", {{2.0}});
    EXPECT_EQ(tree_->findObject("ui.c"), nullptr);
    EXPECT_EQ(at<CControlRecorder>("d").take().back(), "q 6.0206");
    sendPart("gains", 0, 0, {0.5}, 1);
    EXPECT_EQ(at<CControlRecorder>("d").take(), CCalls{"q -6.0206"});
}

TEST_F(UIParam, AHandlerMayDestroyTheWholeEditor) {
    CControlRecorder& control =
        openControl({uiParam("a", {{"bridge", "ui.gains-bridge"}}), uiParam("b", {{"bridge", "ui.gains-bridge"}})});
    control.onCall = [this] { close(); };
    sendWhole("gains", {{2.0}});
    EXPECT_EQ(tree_, nullptr);
}

TEST_F(UIParam, BindsASettingInPlaceOfABridge) {
    CControlRecorder& control = openControl({uiParam("p", {{"shared-attribute", "ui.setting"}})});
    EXPECT_EQ(control.take(), (CCalls{"p active", "p in 0.0..0.0", "p 0.7000"}));
    EXPECT_EQ(param("c.p").getValueText(CAudioTextMode::Full), CString("0.7"));
    set(at<CObject>("setting"), "amount", "0.25");
    EXPECT_EQ(control.take(), CCalls{"p 0.2500"});
    EXPECT_EQ(consumed(param("c.p").setValue(0.5)), "");
    EXPECT_EQ(control.take(), CCalls{"p 0.5000"});
    EXPECT_EQ(at<CObject>("setting").getAttrReal("amount"), 0.5);
}

/// Where a virtual operation stands among those of its class.
template <class Operation>
size_t slotOf(Operation operation) {
    size_t address = 0;
    std::memcpy(&address, &operation, sizeof address);
    return address / sizeof(void*);
}

TEST(UIParamUpdateHandler, ItsOperationsStandInTheirOrder) {
    using CHandler = CUIParamUpdateHandler;
    const size_t first = slotOf(&CHandler::onParamChanged);
    EXPECT_GT(first, 0u) << "behind the destructor";
    EXPECT_EQ(slotOf(&CHandler::onParamActivity), first + 1);
    EXPECT_EQ(slotOf(&CHandler::onParamRangeChanged), first + 2);
    EXPECT_EQ(slotOf(&CHandler::onParamRemoved), first + 3);
}

TEST_F(UIParam, ASettingOfARangeIsClamped) {
    open({{"core:shared-attribute",
           "factor",
           {{"attribute", "amount"}, {"def-value", "0.7"}, {"min-value", "0.1"}, {"max-value", "1.0"}}},
          {"test:control", "c", {}, {uiParam("p", {{"shared-attribute", "ui.factor"}})}}});
    EXPECT_EQ(at<CControlRecorder>("c").take(), (CCalls{"p active", "p in 0.1..1.0", "p 0.7000"}));
    for (const auto& [value, taken] : {std::pair{7.0, 1.0}, {-1.0, 0.1}, {0.35, 0.35}}) {
        EXPECT_EQ(consumed(param("c.p").setValue(value)), "");
        EXPECT_EQ(param("c.p").getValue(), taken);
    }
    set(at<CObject>("factor"), "amount", "fast");
    EXPECT_EQ(param("c.p").getValue(), 0.7);
}

TEST_F(UIParam, ASettingMayBeAFlag) {
    CControlRecorder& control = openControl({uiParam("p", {{"shared-attribute", "ui.setting"}})});
    control.take();
    set(at<CObject>("setting"), "amount", "true");
    EXPECT_EQ(control.take(), CCalls{"p 1.0000"});
    EXPECT_EQ(consumed(param("c.p").setValue(0.0)), "");
    EXPECT_EQ(control.take(), CCalls{"p 0.0000"});
    EXPECT_FALSE(at<CObject>("setting").getAttrBool("amount"));
    EXPECT_EQ(consumed(param("c.p").setValue(1.0)), "");
    EXPECT_EQ(at<CObject>("setting").getAttrString("amount"), CString("1"));
    EXPECT_TRUE(at<CObject>("setting").getAttrBool("amount"));
}

TEST_F(UIParam, TheValueOfASettingMayBeBoundByAnExpression) {
    CControlRecorder& control = openControl(
        {uiParam("p", {{"shared-attribute", "ui.setting"}, {"shared-attribute-value", "{*/ui.setting amount}"}})});
    EXPECT_EQ(control.take().back(), "p 0.7000");
    set(at<CObject>("setting"), "amount", "0.25");
    EXPECT_EQ(control.take(), CCalls{"p 0.2500"});
}

TEST_F(UIParam, TakesWhatAPersonTypes) {
    openControl({uiParam("p", {{"bridge", "ui.gains-bridge"}, {"element", "1"}, {"group-selector", "ui.sel"}})});
    bool isTaken = true;
    EXPECT_EQ(consumed(param("c.p").setValueText("3", isTaken)), "");
    EXPECT_FALSE(isTaken) << "inactive";
    sendWhole("gains", {{1.0}});
    EXPECT_EQ(param("c.p").unit(), CString("dB"));
    EXPECT_EQ(consumed(param("c.p").setValueText("+20 dB", isTaken)), "");
    EXPECT_TRUE(isTaken);
    ASSERT_EQ(engine_->sets.size(), 1u);
    EXPECT_EQ(engine_->sets[0].group, 1);
    EXPECT_EQ(engine_->sets[0].first, 1);
    EXPECT_NEAR(20.0 * std::log10(engine_->sets[0].numbers[0]), 12.0, 1e-12);
    EXPECT_EQ(consumed(param("c.p").setValueText("loud", isTaken)), "");
    EXPECT_FALSE(isTaken);
    EXPECT_EQ(engine_->sets.size(), 1u);
}

TEST_F(UIParam, ATextParameterTakesATextAsItIs) {
    openControl({uiParam("p", {{"bridge", "ui.names-bridge"}, {"element", "1"}})});
    sendTexts("names", {"L", "R"});
    EXPECT_EQ(param("c.p").getValueText(CAudioTextMode::Full), CString("R"));
    bool isTaken = false;
    EXPECT_EQ(consumed(param("c.p").setValueText(" {Bass} +3 ", isTaken)), "");
    EXPECT_TRUE(isTaken);
    ASSERT_EQ(engine_->sets.size(), 1u);
    EXPECT_EQ(engine_->sets[0].texts, CCalls{" {Bass} +3 "});
    EXPECT_EQ(consumed(param("c.p").setValue(3.0)), "");
    EXPECT_EQ(engine_->sets.size(), 1u) << "no number";
}

TEST_F(UIParam, ResetsToTheDefaultOfItsElement) {
    openControl({uiParam("g", {{"bridge", "ui.gains-bridge"}, {"element", "1"}}),
                 uiParam("m", {{"bridge", "ui.mode-bridge"}})});
    EXPECT_EQ(param("c.m").defaultValue(), 0.0);
    sendWhole("gains", {{2.0, 2.0}});
    sendWhole("mode", {{5.0}});
    EXPECT_EQ(param("c.m").defaultValue(), 2.0);
    EXPECT_EQ(param("c.g").defaultValue(), 0.0);
    EXPECT_EQ(consumed(param("c.g").reset()), "");
    EXPECT_EQ(consumed(param("c.m").reset(4)), "");
    ASSERT_EQ(engine_->sets.size(), 2u);
    EXPECT_EQ(engine_->sets[0].numbers, std::vector<double>{1.0});
    EXPECT_EQ(engine_->sets[0].first, 1);
    EXPECT_EQ(engine_->sets[1].numbers, std::vector<double>{2.0});
    EXPECT_EQ(engine_->sets[1].key, 4);
}

TEST_F(UIParam, ASettingTakesTypedNumbersAndItsDefault) {
    openControl({uiParam("p", {{"shared-attribute", "ui.setting"}})});
    bool isTaken = false;
    EXPECT_EQ(consumed(param("c.p").setValueText(" +0,25 ", isTaken)), "");
    EXPECT_TRUE(isTaken);
    EXPECT_EQ(param("c.p").getValue(), 0.25);
    for (const char* text : {"", "much"}) {
        EXPECT_EQ(consumed(param("c.p").setValueText(text, isTaken)), "");
        EXPECT_FALSE(isTaken) << text;
    }
    EXPECT_EQ(param("c.p").getValue(), 0.25);
    EXPECT_EQ(param("c.p").defaultValue(), 0.7);
    EXPECT_EQ(consumed(param("c.p").reset()), "");
    EXPECT_EQ(at<CObject>("setting").getAttrString("amount"), CString("0.7"));
}

}  // namespace
}  // namespace tarv
