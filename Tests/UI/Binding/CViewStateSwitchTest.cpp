#include "UI/Binding/CViewStateSwitch.h"

#include "Tests/UI/Binding/BindingTree.h"
#include "UI/Views/CView.h"

namespace tarv {
namespace {

class ViewStateSwitch : public CBindingTest {
protected:
    ViewStateSwitch()
        : CBindingTest({{"ui:view", &createObject<CView>, &CView::initClass},
                        {"ui:view-state", &createObject<CViewState>, nullptr},
                        {"ui:view-state-switch", &createObject<CViewStateSwitch>, &CViewStateSwitch::initClass}}) {}

    /// A view with a switch of these attributes; the state `on` makes it wide within 10 seconds.
    std::string tryOpenView(CTexts attributes) {
        attributes.insert(attributes.begin(), {"state-name", "on"});
        return tryOpen({{"ui:view",
                         "v",
                         {{"is-root-view", "true"}, {"width", "10"}, {"height", "10"}},
                         {{"ui:view-state", "s", {{"state-name", "on"}, {"width", "50"}, {"morph-duration", "10.0"}}},
                          {"ui:view-state-switch", "switch", std::move(attributes)}}}});
    }
    bool isOn() { return at<CView>("v").isStateSet("on"); }
    int32_t width() { return at<CView>("v").getAttrInt("width"); }
};

TEST_F(ViewStateSwitch, SetsTheStateWhileTheValueIsNotZero) {
    ASSERT_EQ(tryOpenView({{"bridge", "ui.mode-bridge"}}), "");
    EXPECT_FALSE(isOn());
    sendWhole("mode", {{1.0}});
    EXPECT_TRUE(isOn());
    sendPart("mode", 0, 0, {0.0}, 1);
    EXPECT_FALSE(isOn());
    sendPart("mode", 0, 0, {-2.0}, 1);
    EXPECT_TRUE(isOn());
}

TEST_F(ViewStateSwitch, ShowsTheStateAtOnce) {
    ASSERT_EQ(tryOpenView({{"bridge", "ui.mode-bridge"}}), "");
    sendWhole("mode", {{1.0}});
    EXPECT_EQ(width(), 50);
    sendPart("mode", 0, 0, {0.0}, 1);
    EXPECT_EQ(width(), 10);
    EXPECT_EQ(consumed(at<CView>("v").setState("on")), "");
    EXPECT_EQ(width(), 10) << "others morph";
}

TEST_F(ViewStateSwitch, ReadsItsElementInTheGroupOfItsSelector) {
    ASSERT_EQ(tryOpenView({{"bridge", "ui.gains-bridge"}, {"element", "1"}, {"group-selector", "ui.sel"}}), "");
    sendWhole("gains", {{2.0, 2.0}, {2.0, 1.0}, {1.0, 2.0}});
    EXPECT_FALSE(isOn());
    set(at<CObject>("sel"), "group-index", "2");
    EXPECT_TRUE(isOn());
    set(at<CObject>("v.switch"), "element", "0");
    EXPECT_FALSE(isOn());
}

TEST_F(ViewStateSwitch, PathsBeginAtTheSwitch) {
    ASSERT_EQ(tryOpenView({{"bridge", "^^mode-bridge"}, {"group-selector", "^^sel"}}), "");
    sendWhole("mode", {{1.0}});
    EXPECT_TRUE(isOn());
}

TEST_F(ViewStateSwitch, WithoutABridgeNothingChanges) {
    ASSERT_EQ(tryOpenView({}), "");
    sendWhole("mode", {{1.0}});
    EXPECT_FALSE(isOn());
}

TEST_F(ViewStateSwitch, KeepsTheStateWhenTheEngineHasGone) {
    ASSERT_EQ(tryOpenView({{"bridge", "ui.mode-bridge"}}), "");
    sendWhole("mode", {{1.0}});
    client_->engineGone();
    EXPECT_TRUE(isOn());
}

TEST_F(ViewStateSwitch, FailsWithoutAViewOrForAWrongPath) {
    EXPECT_EQ(tryOpen({{"ui:view-state-switch", "switch"}}), "Parent object is not a view.");
    EXPECT_EQ(tryOpenView({{"bridge", "ui.nothing"}}), "Invalid parameter bridge object 'ui.nothing'.");
    EXPECT_EQ(tryOpenView({{"group-selector", "ui.nothing"}}), "Invalid parameter group selector 'ui.nothing'.");
}

TEST_F(ViewStateSwitch, TheViewMayGoBeforeTheBridge) {
    ASSERT_EQ(tryOpenView({{"bridge", "ui.mode-bridge"}}), "");
    delete &at<CView>("v");
    sendWhole("mode", {{1.0}});
    EXPECT_TRUE(bridgeAt("mode").isActive());
}

}  // namespace
}  // namespace tarv
