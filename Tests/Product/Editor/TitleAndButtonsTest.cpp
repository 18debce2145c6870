// The title and the row of buttons of the main window, by hand: what the engine and the host hold afterwards.

#include <cmath>

#include "Audio/Presets/CAudioParamRegistry.h"
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
    std::string hint() { return at<CTextView>("window-status.label").paragraphText(0).toUtf8(); }
    void undoTheOnlyStep(const std::string& label) {
        EXPECT_EQ(text("c.buttons.history", "undo-label"), label);
        click("c.buttons.history.button-undo");
        EXPECT_TRUE(at("c.buttons.history.button-undo").isDisabled());
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
    EXPECT_TRUE(at("c.buttons.history.button-undo").isDisabled()) << "no step of the history";
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

TEST_F(TitleAndButtons, TheHintsOfUndoAndRedoSayThatThereIsNoStep) {
    point("c.buttons.history.button-undo");
    wait();
    EXPECT_EQ(at<CTextView>("window-status.label").paragraphText(0).toUtf8(), "Undo: no step to undo.");
    point("c.buttons.history.button-redo");
    wait();
    EXPECT_EQ(at<CTextView>("window-status.label").paragraphText(0).toUtf8(), "Redo: no step to redo.");
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

TEST_F(TitleAndButtons, TheOversamplingFollowsTheHostAPresetAndTheHistory) {
    const auto shown = [this] { return text("window-title.quality-selector.object", "object-value-title"); };
    EXPECT_EQ(shown(), "1x");
    effect_->setParameter(effect_, 17, 1.0F);
    wait();
    EXPECT_EQ(shown(), "8x");
    click("window-title.quality-selector");
    choose(0);
    EXPECT_EQ(shown(), "Auto");
    click("c.buttons.history.button-undo");
    EXPECT_EQ(shown(), "8x");
    click("c.buttons.history.button-redo");
    EXPECT_EQ(shown(), "Auto");
    click("c.buttons.preset-manager.quick-preset-list");
    choose(1);
    choose(1, "ui.window-app-popup-list#1");  // whose oversampling is 1x
    EXPECT_EQ(shown(), "1x");
    click("c.buttons.history.button-undo");
    EXPECT_EQ(shown(), "Auto");
}

TEST_F(TitleAndButtons, APresetIsChosenFromTheQuickList) {
    click("c.buttons.preset-manager.quick-preset-list");
    EXPECT_FALSE(exists("ui.win-preset-manager"));
    heard();
    choose(1);  // the factory bank, whose presets stand beside it
    choose(1, "ui.window-app-popup-list#1");
    EXPECT_FALSE(exists("ui.window-app-popup-list"));
    const double kSmiley[] = {-2.10, -0.40, 1.29, 2.09, 1.29, -0.40, -2.10};
    std::string begins, values, ends;
    for (int32_t band = 0; band < 7; ++band) {
        EXPECT_NEAR(decibels(kGains, 0, band), kSmiley[band], 1e-9) << band;
        const std::string number = std::to_string(band + 1);
        begins += "begin " + number + ", ";
        values += "automate " + number + ", ";
        ends += (band > 0 ? ", end " : "end ") + number;
    }
    EXPECT_EQ(heardGestures(), begins + values + ends);
    EXPECT_EQ(wrapper().paramRegistry()->programName(0).toUtf8(), "Inverted Smiley");
    point("c.buttons.preset-manager");
    wait();
    EXPECT_TRUE(hint().starts_with("Inverted Smiley. Presets and banks")) << hint();
    undoTheOnlyStep("Undo: ROM preset activate");
    EXPECT_NEAR(decibels(kGains, 0, 0), 0.0, 1e-9);
}

TEST_F(TitleAndButtons, APresetIsChosenFromTheNestedListByKeysAndByThePointer) {
    // By keys: into the list below the first bank, to its second preset.
    EXPECT_EQ(dispatch(vst::kEffectGetProgram), 0);
    click("c.buttons.preset-manager.quick-preset-list");
    for (const int32_t key : {kKeyHome, kKeyRight, kKeyDown, kKeyEnter}) {
        tap(key);
    }
    EXPECT_EQ(dispatch(vst::kEffectGetProgram), 1);
    EXPECT_FALSE(exists("ui.window-app-popup-list"));
    // By the pointer: rests on the bank, presses there, then on the third one.
    click("c.buttons.preset-manager.quick-preset-list");
    wait(0.3);
    const auto below = [this] {
        CTextView* found = nullptr;
        for (CObject* child : tree().findObject("ui")->children()) {
            const bool isBelow = !child->getAttrString("popup-dynamic-list-parent-id").isEmpty();
            found = isBelow ? dynamic_cast<CTextView*>(child->findChild("list")) : found;
        }
        return found;
    };
    const auto pointAtRow = [this](const CTextView& view, int32_t row) {
        const CViewRect rect = view.rowRect(row);
        system_.input().moveIn(dynamic_cast<CWindow*>(view.window())->handle(), static_cast<int32_t>(rect.x) + 6,
                               static_cast<int32_t>(rect.y + rect.height / 2.0));
        wait(0.5);
    };
    pointAtRow(at<CTextView>("ui.window-app-popup-list.list"), 0);
    const CTextView* opened = below();
    ASSERT_TRUE(opened);
    system_.input().click();
    wait(0.5);
    ASSERT_EQ(below(), opened) << "it stays open";
    pointAtRow(*opened, 2);
    system_.input().click();
    wait(0.2);
    EXPECT_EQ(dispatch(vst::kEffectGetProgram), 2);
    EXPECT_FALSE(exists("ui.window-app-popup-list"));
}

TEST_F(TitleAndButtons, ARoutingIsChosenFromTheQuickList) {
    const auto grouping = [this] {
        std::string all;
        for (int32_t channel = 0; channel < 8; ++channel) {
            all += std::to_string(static_cast<int32_t>(engine("io-params.grouping", 0, channel)));
        }
        return all;
    };
    EXPECT_EQ(grouping(), "00112233");
    click("c.buttons.channel-routing.quick-preset-list");
    choose(3);
    EXPECT_FALSE(exists("ui.win-channel-routing"));
    EXPECT_EQ(grouping(), "01111111") << "Dual Mono";
    undoTheOnlyStep("Undo: Routing preset activate");
    EXPECT_EQ(grouping(), "00112233");
}

TEST_F(TitleAndButtons, TheOffLineBannerFollowsTheEngineAndLetsPressesThrough) {
    EXPECT_FALSE(at("c.offline-holder").isShown());
    setEngine("host-offline", 0, 0, 1.0);
    wait(1.0);
    EXPECT_TRUE(at("c.offline-holder").isShown());
    // The banner's frame lies over the bottom of the window, its holder over all of it.
    click("c.xeq1.xeq-base.underlay-group.selector.button");
    EXPECT_EQ(at<CObject>("ui.groupsel-eq-au").getAttrInt("group-index"), 0);
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
