#include "UI/Controls/Buttons/CButton.h"

#include "Tests/UI/Controls/ControlEditor.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Text/CTextView.h"

namespace tarv {
namespace {

class CButtonTest : public CControlEditor {
protected:
    static constexpr const char* kBypass = "modBypass.enable";

    CButtonTest() { openWindow({}, {{"is-inline-vertical", "true"}}); }
    CButton& button(CTexts attributes = {}, const std::string& name = "b") {
        attributes.insert(attributes.end(), {{"width", "80"}, {"height", "24"}});
        CButton& made = make<CButton>("ui:button", name, attributes);
        turn();
        return made;
    }
    CButton& bypass(CTexts more = {}) {
        addBridge("test-bypass", kBypass);
        more.push_back({"bridge", "ui.test-bypass"});
        return button(more);
    }
    static bool isOn(const CButton& button) { return button.isStateSet("active"); }
    CTextView& label() { return at<CTextView>("b.label"); }
};

TEST_F(CButtonTest, AReleaseOnItTogglesItsValue) {
    CButton& made = bypass();
    EXPECT_FALSE(isOn(made));
    pointAt(made);
    system_.input().press();
    turn();
    EXPECT_EQ(engineValue(kBypass), 0.0) << "a press alone does nothing";
    EXPECT_TRUE(made.isStateSet("pushed"));
    system_.input().release();
    turn();
    EXPECT_FALSE(made.isStateSet("pushed"));
    EXPECT_EQ(engineValue(kBypass), 1.0);
    EXPECT_TRUE(isOn(made));
    click(made);
    EXPECT_EQ(engineValue(kBypass), 0.0);
    EXPECT_FALSE(isOn(made));
}

TEST_F(CButtonTest, AReleaseElsewhereDoesNothing) {
    CButton& made = bypass();
    pointAt(made);
    system_.input().press();
    pointAt(made, 200, 0);
    system_.input().release();
    turn();
    EXPECT_EQ(engineValue(kBypass), 0.0);
    EXPECT_FALSE(made.isStateSet("pushed"));
    pointAt(made);
    system_.input().press();
    pointAt(made, 200, 0);
    pointAt(made);
    system_.input().release();
    turn();
    EXPECT_EQ(engineValue(kBypass), 1.0) << "out and back";
}

TEST_F(CButtonTest, IsActiveAtZeroWhenInverse) {
    CButton& made = bypass({{"is-inverse", "true"}});
    EXPECT_TRUE(isOn(made));
    click(made);
    EXPECT_EQ(engineValue(kBypass), 1.0);
    EXPECT_FALSE(isOn(made));
    set(made, "is-inverse", "false");
    EXPECT_TRUE(isOn(made));
}

TEST_F(CButtonTest, FollowsTheEngine) {
    CButton& made = bypass();
    instance().paramCollector()->findParam("plugin.modMain.modBypass.enable")->setValue(0, 0, 1.0);
    turn();
    EXPECT_TRUE(isOn(made));
}

TEST_F(CButtonTest, AnyValueButZeroIsOn) {
    addBridge("test-quality", "oversampling");
    CButton& made = button({{"bridge", "ui.test-quality"}});
    EXPECT_EQ(consumed(bridge("test-quality").setValues(0, 0, std::vector<double>{3.0}.data(), 1)), "");
    turn();
    EXPECT_TRUE(isOn(made));
    click(made);
    EXPECT_EQ(engineValue("oversampling"), 0.0);
    click(made);
    EXPECT_EQ(engineValue("oversampling"), 1.0);
}

TEST_F(CButtonTest, AToggleIsAStepOfTheHistoryUnlessThatIsDisabled) {
    addBridge("test-quality", "oversampling");
    click(button({{"bridge", "ui.test-quality"}, {"is-undo-disabled", "true"}}, "silent"));
    EXPECT_EQ(engineValue("oversampling"), 0.0);
    EXPECT_EQ(history(), "");
    click(button({{"bridge", "ui.test-quality"}}));
    EXPECT_EQ(engineValue("oversampling"), 1.0);
    EXPECT_EQ(history(), "Oversampling change");
}

TEST_F(CButtonTest, TogglesASetting) {
    CButton& made = button({{"shared-attribute", "ui.global-data.tablet-mode"}});
    const CObject& setting = object("global-data.tablet-mode");
    EXPECT_FALSE(isOn(made));
    click(made);
    EXPECT_TRUE(setting.getAttrBool("tablet-mode"));
    EXPECT_TRUE(isOn(made));
    set(object("global-data.tablet-mode"), "tablet-mode", "false");
    EXPECT_FALSE(isOn(made));
}

TEST_F(CButtonTest, ShowsItsElementInTheGroupOfItsSelector) {
    addBridge("test-gains", "modBrindleXEQ.xeq-gains");
    CParamBridge& gains = bridge("test-gains");
    const double values[] = {0.0, 3.0};
    EXPECT_EQ(consumed(gains.setValues(1, 0, values, 2)), "");
    load("", {{"ui:param-group-selector", "test-group"}});
    CButton& made = button({{"bridge", "ui.test-gains"}, {"group-selector", "ui.test-group"}, {"element", "1"}});
    EXPECT_FALSE(isOn(made));
    set(object("test-group"), "group-index", "1");
    EXPECT_TRUE(isOn(made));
    set(made, "element", "0");
    EXPECT_FALSE(isOn(made));
}

TEST_F(CButtonTest, PathsBeginAtTheButton) {
    addBridge("test-bypass", kBypass);
    CButton& made = button({{"bridge", "^^.test-bypass"}});
    click(made);
    EXPECT_EQ(engineValue(kBypass), 1.0);
}

TEST_F(CButtonTest, AnUnknownSourceFails) {
    EXPECT_EQ(tryLoad("w", {{"ui:button-base", "x", {{"bridge", "ui.nothing"}}}}),
              "Invalid parameter bridge object 'ui.nothing'.");
    EXPECT_EQ(tryLoad("w", {{"ui:button-base", "y", {{"shared-attribute", "ui.none"}}}}),
              "Invalid parameter shared attribute 'ui.none'.");
}

TEST_F(CButtonTest, WithoutAValueItSendsItsCommandsAlone) {
    CButton& made = button({{"bridge", ""}});
    EXPECT_FALSE(made.valueParam());
    EXPECT_FALSE(made.isDisabled());
    load("w.b", {{"ui:view-command", "c", {{"on-event", "button-released"}, {"toggle-state", "active"}}}});
    click(made);
    EXPECT_TRUE(isOn(made));
    click(made);
    EXPECT_FALSE(isOn(made));
}

TEST_F(CButtonTest, SendsItsEventsBehindThoseOfTheMouse) {
    CButton& made = button();
    listen(made, {"button-enter", "button-exit", "button-released", "button-pressed-r", "button-released-r",
                  "button-cancelled-r", "mouse-enter", "mouse-release", "mouse-press-r"});
    pointAt(made);
    EXPECT_EQ(heard(), "b mouse-enter, b button-enter");
    click(made);
    EXPECT_EQ(heard(), "b mouse-release, b button-released");
    EXPECT_EQ(CHeardEvents::last["actual-x"].asReal(), made.wholeRect().x + 40.0);
    click(made, CPointerButton::Right);
    EXPECT_EQ(heard(), "b mouse-press-r, b button-pressed-r, b button-released-r");
    system_.input().press(CPointerButton::Right);
    pointAt(made, 200, 0);
    system_.input().release(CPointerButton::Right);
    EXPECT_EQ(heard(), "b mouse-press-r, b button-pressed-r, b button-cancelled-r, b button-exit");
}

TEST_F(CButtonTest, ADragReportsItsWaySinceThePress) {
    CButton& made = button();
    listen(made, {"button-drag"});
    pointAt(made, 10, 10);
    pointAt(made, 12, 10);
    EXPECT_EQ(heard(), "") << "not held";
    system_.input().press();
    pointAt(made, 20, 5);
    EXPECT_EQ(heard(), "b button-drag");
    EXPECT_EQ(CHeardEvents::last["scale"].asReal(), 13.0) << "8 to the right, 5 up";
    system_.input().holdKeys(true, false, false);
    pointAt(made, 12, 60);
    EXPECT_EQ(CHeardEvents::last["scale"].asReal(), -50.0) << "beyond the button, too";
    EXPECT_TRUE(CHeardEvents::last["is-shift"].asBool());
    heard();
    system_.input().release();
    pointAt(made, 14, 10);
    EXPECT_EQ(heard(), "");
}

TEST_F(CButtonTest, IsDisabledWhileItsValueIsNotThere) {
    CButton& made = bypass();
    EXPECT_FALSE(made.isDisabled());
    delete &object("test-bypass");
    turn();
    EXPECT_TRUE(made.isDisabled());
    EXPECT_FALSE(made.getAttrBool("is-disabled")) << "its own word stays";
    click(made);
    EXPECT_EQ(engineValue(kBypass), 0.0);
}

TEST_F(CButtonTest, AParamOfActivityDisablesAButtonWithoutAValue) {
    addBridge("test-bypass", kBypass);
    load("w", {{"ui:button-base",
                "x",
                {{"width", "10"}, {"height", "10"}},
                {{"ui:ui-param", "ui-param-activity", {{"bridge", "ui.test-bypass"}}}}}});
    const auto& made = at<CButton>("x");
    EXPECT_FALSE(made.isDisabled());
    delete &object("test-bypass");
    EXPECT_TRUE(made.isDisabled());
}

TEST_F(CButtonTest, KeysPressItAndShowThatForAMoment) {
    CButton& made = bypass();
    takeKeys();
    ASSERT_TRUE(tap(kKeyTab));
    EXPECT_EQ(window_->keyFocusView(), &made);
    EXPECT_EQ(made.focusView(), &made);
    EXPECT_TRUE(tap(kKeySpace));
    EXPECT_TRUE(made.isStateSet("temp-pushed"));
    EXPECT_TRUE(isOn(made));
    EXPECT_TRUE(tap(kKeyEnter));
    EXPECT_FALSE(isOn(made));
    turn(0.3);
    EXPECT_FALSE(made.isStateSet("temp-pushed"));
    click(made);
    EXPECT_FALSE(made.isStateSet("temp-pushed")) << "a press of the mouse shows itself";
}

TEST_F(CButtonTest, AReaderHearsWhatItIs) {
    const CViewReading plain = CViewReader::read(button({{"title", "[B]Re[/B]set"}}, "plain"));
    EXPECT_EQ(plain.name.toUtf8(), "Reset");
    EXPECT_EQ(plain.role, CViewRole::Button);
    EXPECT_EQ(plain.value.toUtf8(), "");
    CButton& made = bypass({{"title", "Bypass"}});
    CViewReading reading = CViewReader::read(made);
    EXPECT_EQ(reading.name.toUtf8(), "Bypass");
    EXPECT_EQ(reading.role, CViewRole::CheckBox);
    EXPECT_EQ(reading.value.toUtf8(), "off");
    click(made);
    EXPECT_EQ(CViewReader::read(made).value.toUtf8(), "on");
    set(made, "role", "list");
    EXPECT_EQ(made.role(), CViewRole::List);
}

TEST_F(CButtonTest, ItsLabelFollowsItsTitleItsColourAndItsStates) {
    CButton& made = button({{"title", "One"}, {"color", "Bypass"}});
    EXPECT_EQ(label().getAttrString("title").toUtf8(), "One");
    EXPECT_EQ(label().getAttrString("text-color").toUtf8(), "BypassText");
    set(made, "title", "Two");
    set(made, "color", "Custom1");
    EXPECT_EQ(label().getAttrString("title").toUtf8(), "Two");
    EXPECT_EQ(label().getAttrString("text-color").toUtf8(), "Custom1Text");
    EXPECT_EQ(consumed(made.setState("active")), "");
    pointAt(made);
    turn();
    EXPECT_TRUE(label().isStateSet("active"));
    EXPECT_TRUE(label().isStateSet("hover"));
    EXPECT_EQ(label().colorStates().count(), 2);
    EXPECT_EQ(made.colorStates()[0], CString("Active"));
    EXPECT_EQ(made.colorStates()[1], CString("Hover"));
    EXPECT_EQ(consumed(made.setAttributePlain("title", "[B]{x}")), "");
    EXPECT_EQ(label().source().plainText(0, label().source().count()).toUtf8(), "[B]{x}") << "a name has no marks";
}

TEST_F(CButtonTest, EachStateHasItsPicture) {
    CButton& made = button({{"image-set", "shared::is.history"}, {"image-set-range", "Left"}});
    EXPECT_EQ(made.imageRange().toUtf8(), "Left");
    EXPECT_EQ(consumed(made.setState("active")), "");
    EXPECT_EQ(made.imageRange().toUtf8(), "LeftActive");
    EXPECT_EQ(consumed(made.setState("pushed")), "");
    EXPECT_EQ(made.imageRange().toUtf8(), "LeftPushed");
    EXPECT_EQ(consumed(made.unsetState("pushed active")), "");
    EXPECT_EQ(consumed(made.setState("error")), "");
    EXPECT_EQ(made.imageRange().toUtf8(), "Left");
    EXPECT_EQ(made.colorStates()[0], CString("Error"));
}

TEST_F(CButtonTest, APushMovesTheLabelByAPixel) {
    CButton& made = button({{"title", "One"}});
    const CViewRect before = label().wholeRect();
    pointAt(made);
    system_.input().press();
    turn();
    EXPECT_EQ(label().wholeRect().x, before.x + 1);
    EXPECT_EQ(label().wholeRect().y, before.y + 1);
    EXPECT_EQ(made.wholeRect().width, 80);
    system_.input().release();
    turn();
    EXPECT_EQ(label().wholeRect().x, before.x);
}

TEST_F(CButtonTest, AButtonMayEndInItsHandlers) {
    for (const char* event : {"button-enter", "mouse-press", "button-pressed-r", "mouse-release", "button-released"}) {
        CButton& made = button();
        listen(made, {event});
        CHeardEvents::onEvent = [&](const std::string&) { delete &made; };
        pointAt(made);
        system_.input().click();
        system_.input().click(CPointerButton::Right);
        turn();
        CHeardEvents::onEvent = {};
        EXPECT_FALSE(object("w").findChild("b")) << event;
        heard();
    }
}

TEST_F(CButtonTest, HoverPressesAndDragsAllocateNothing) {
    CButton& made = button({{"title", "One"}});
    CButton& other = button({{"title", "Two"}}, "other");
    EXPECT_EQ(allocations([&] {
                  pointAt(made);
                  turn();
                  system_.input().press();
                  turn();
                  pointAt(made, 20, 5);
                  turn();
                  system_.input().release();
                  turn();
                  pointAt(other);
                  turn();
              }),
              0u);
}

}  // namespace
}  // namespace tarv
