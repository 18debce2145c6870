// The title and the row of buttons of the main window, by hand: what the engine and the host hold afterwards.

#include <cmath>

#include "ProductEditor.h"

namespace tarv {

namespace {

constexpr const char* kGains = "modBrindleXEQ.xeq-gains";

class TitleAndButtons : public CProductEditor {
protected:
    /// A step of the history: a gain of the first group.
    void turn(int32_t band, double notches) {
        wait(1.0);  // notches within half a second are one step
        wheel(column("xeq1", band), notches);
    }
};

TEST_F(TitleAndButtons, AHostHearsNothingOfOpeningIdlingAndClosing) {
    EXPECT_EQ(heard(), "");
    closeEditor();
    const std::string bank = chunk(false);
    const std::string program = chunk(true);
    openEditor();
    wait(2.0);
    closeEditor();
    EXPECT_EQ(heard(), "");
    EXPECT_EQ(chunk(false), bank);
    EXPECT_EQ(chunk(true), program);
}

TEST_F(TitleAndButtons, BypassSwitchesAndFollows) {
    heard();
    click("window-title.bypass");
    EXPECT_EQ(engine("modBypass.enable"), 1.0);
    EXPECT_TRUE(hasState("window-title.bypass", "active"));
    EXPECT_EQ(heard(), "begin 0, automate 0 1.000, end 0");
    effect_->setParameter(effect_, 0, 0.0F);
    wait();
    EXPECT_FALSE(hasState("window-title.bypass", "active"));
}

TEST_F(TitleAndButtons, UndoAndRedoMoveAndAreDisabledWithNothingToDo) {
    EXPECT_TRUE(at("c.buttons.history.button-undo").isDisabled());
    EXPECT_TRUE(at("c.buttons.history.button-redo").isDisabled());
    turn(0, 1.0);
    turn(1, 2.0);
    click("c.buttons.history.button-undo");
    EXPECT_NEAR(decibels(kGains, 0, 1), 0.0, 1e-9);
    click("c.buttons.history.button-undo");
    EXPECT_NEAR(decibels(kGains, 0, 0), 0.0, 1e-9);
    EXPECT_TRUE(at("c.buttons.history.button-undo").isDisabled());
    click("c.buttons.history.button-redo");
    EXPECT_NEAR(decibels(kGains, 0, 0), 0.5, 1e-9);
    EXPECT_FALSE(at("c.buttons.history.button-redo").isDisabled());
}

TEST_F(TitleAndButtons, TheHintsOfUndoAndRedoNameTheirStep) {
    turn(0, 1.0);
    point("c.buttons.history.button-undo");
    wait();
    EXPECT_EQ(at<CTextView>("window-status.label").paragraphText(0).toUtf8(), "Undo: EQ (1) change");
    click("c.buttons.history.button-undo");
    point("c.buttons.history.button-redo");
    wait();
    EXPECT_EQ(at<CTextView>("window-status.label").paragraphText(0).toUtf8(), "Redo: EQ (1) change");
}

TEST_F(TitleAndButtons, AStepIsChosenFromTheHistory) {
    turn(0, 1.0);
    turn(1, 2.0);
    turn(2, 3.0);
    click("c.buttons.history.button-select");
    choose(2);  // the newest stands on top
    EXPECT_NEAR(decibels(kGains, 0, 0), 0.5, 1e-9);
    EXPECT_NEAR(decibels(kGains, 0, 1), 0.0, 1e-9);
    EXPECT_NEAR(decibels(kGains, 0, 2), 0.0, 1e-9);
}

TEST_F(TitleAndButtons, TheOversamplingIsChosenFromItsList) {
    click("window-title.quality-selector");
    choose(2);
    EXPECT_EQ(engine("oversampling"), 2.0);
    EXPECT_EQ(effect_->getParameter(effect_, 17), 0.5F);
}

TEST_F(TitleAndButtons, APresetIsChosenFromTheQuickList) {
    click("c.buttons.preset-manager.quick-preset-list");
    ASSERT_TRUE(exists("ui.window-app-popup-list"));
    EXPECT_FALSE(exists("ui.win-preset-manager"));
    tap(kKeyEscape);
    EXPECT_FALSE(exists("ui.window-app-popup-list"));
}

TEST_F(TitleAndButtons, ARoutingIsChosenFromTheQuickList) {
    click("c.buttons.channel-routing.quick-preset-list");
    choose(0);
    EXPECT_FALSE(exists("ui.win-channel-routing"));
}

TEST_F(TitleAndButtons, TheOffLineBannerFollowsTheEngineAndLetsPressesThrough) {
    EXPECT_FALSE(at("c.offline-holder").isShown());
    setEngine("host-offline", 0, 0, 1.0);
    wait(1.0);
    EXPECT_TRUE(at("c.offline-holder").isShown());
    click("c.xeq1.xeq-base.underlay-group.selector");
    setEngine("host-offline", 0, 0, 0.0);
    wait(1.0);
    EXPECT_FALSE(at("c.offline-holder").isShown());
}

TEST_F(TitleAndButtons, HintsShowInTheStatusLine) {
    point("window-title.bypass");
    wait();
    EXPECT_EQ(at<CTextView>("window-status.label").paragraphText(0).toUtf8(),
              "Process bypass switch (not saved with project).");
}

TEST_F(TitleAndButtons, BothStatesAreSwitchedCopiedAndReset) {
    turn(0, 1.0);
    EXPECT_TRUE(hasState("c.buttons.ab.labels.a", "live"));
    click("c.buttons.ab");  // B begins as A
    EXPECT_NEAR(decibels(kGains, 0, 0), 0.5, 1e-9);
    EXPECT_TRUE(hasState("c.buttons.ab", "b-state"));
    EXPECT_TRUE(hasState("c.buttons.ab.labels.b", "live"));
    EXPECT_EQ(text("c.buttons.copy", "title").substr(0, 1), "B");
    turn(0, 4.0);
    click("c.buttons.ab");
    EXPECT_NEAR(decibels(kGains, 0, 0), 0.5, 1e-9);
    EXPECT_FALSE(hasState("c.buttons.ab", "b-state"));
    EXPECT_EQ(text("c.buttons.copy", "title").substr(0, 1), "A");
    click("c.buttons.copy");
    click("c.buttons.ab");
    EXPECT_NEAR(decibels(kGains, 0, 0), 0.5, 1e-9);
    click("c.buttons.reset");
    EXPECT_NEAR(decibels(kGains, 0, 0), 0.0, 1e-9);
    click("c.buttons.ab");
    EXPECT_NEAR(decibels(kGains, 0, 0), 0.5, 1e-9);
}

TEST_F(TitleAndButtons, TheInstancesNameIsTyped) {
    click("window-title.instance-name.readout");
    type(u"Drums [B]");
    EXPECT_EQ(engineText("instance-name"), "Drums [B]");
    EXPECT_EQ(at<CTextView>("window-title.instance-name.readout").paragraphText(0).toUtf8(), "Drums [B]");
}

TEST_F(TitleAndButtons, TheInstancesNameIsTypedOnTheScreen) {
    click("window-title.instance-name.readout");
    for (const char* key : {"d", "caps", "r", "seven", "backspace", "space", "caps", "u", "minus", "enter"}) {
        click(std::string("ui.virtual-keyboard-alphadigit.") + key);
    }
    EXPECT_EQ(engineText("instance-name"), "dR u-");
}

TEST_F(TitleAndButtons, AListLeavesTheWindowBrightAndAQuestionDimsIt) {
    click("window-title.quality-selector");
    EXPECT_FALSE(hasState("window-blocker", "modal"));
    EXPECT_EQ(at("window-blocker").opacity(), 0.0);
    tap(kKeyEscape);
    click("c.buttons.settings");
    click("ui.win-settings.c.settings.global-settings");
    click("ui.win-global-settings.c.settings.reset-defaults");
    EXPECT_TRUE(hasState("ui.win-global-settings.window-blocker", "modal"));
    EXPECT_EQ(at("ui.win-global-settings.window-blocker").opacity(), 0.5);
}

}  // namespace

}  // namespace tarv
