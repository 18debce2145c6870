// Escape while a press is held: what the hand has changed becomes what it was, and nothing else ends.

#include <cmath>

#include "Core/CApplicationData.h"
#include "ProductEditor.h"
#include "UI/Controls/Buttons/CScrollerBar.h"

namespace tarv {

namespace {

constexpr int32_t kBands = 7;
constexpr const char* kGains = "modBrindleXEQ.xeq-gains";
constexpr const char* kUndo = "c.buttons.history.button-undo";
constexpr const char* kRedo = "c.buttons.history.button-redo";
constexpr const char* kSettings = "ui.win-settings.c.settings.";
constexpr const char* kGlobal = "ui.win-global-settings.c.settings.";

class EscapeInDrag : public CProductEditor {
protected:
    EscapeInDrag() { letHostKeepFocus(false); }
    /// All hosts but a few give it to an editor that is pressed.
    void letHostKeepFocus(bool isKept) {
        EXPECT_EQ(tree().setAttribute("IsFocusTaken", CAttributeValue::fromBool(!isKept)), nullptr);
    }
    /// The gain that a step of the history holds, no whole decibel.
    void makeStep() {
        drag(column("xeq1", 3), 0, -37);
        heard();
    }
    std::string history() {
        return text("c.buttons.history", "undo-label") + "|" + text("c.buttons.history", "redo-label");
    }
    double setting(const char* name) { return at<CObject>(std::string("ui.global-data.") + name).getAttrReal(name); }
};

TEST_F(EscapeInDrag, ABarIsToTheBitWhatItWasAndNoStepIsWritten) {
    makeStep();
    const double before = engine(kGains, 0, 3);
    const std::string state = chunk(false);
    const std::string steps = history();
    press(column("xeq1", 3));
    moveBy(0, 23);
    wait();
    EXPECT_NE(engine(kGains, 0, 3), before);
    tap(kKeyEscape);
    EXPECT_EQ(engine(kGains, 0, 3), before);
    EXPECT_EQ(heardGestures(), "begin 4, automate 4, end 4");
    moveBy(0, 31);
    release();
    EXPECT_EQ(heard(), "") << "the button is held for nothing";
    EXPECT_EQ(engine(kGains, 0, 3), before);
    EXPECT_TRUE(chunk(false) == state);
    EXPECT_EQ(history(), steps);
}

TEST_F(EscapeInDrag, ABarGetsItAlsoWhereTheHostKeepsTheFocus) {
    letHostKeepFocus(true);
    press(column("xeq2", 2));
    moveBy(0, -23);
    wait();
    tap(kKeyEscape);
    EXPECT_EQ(engine(kGains, 1, 2), 1.0);
    release();
    EXPECT_TRUE(at(kUndo).isDisabled());
    tap(kKeyEscape);
    EXPECT_EQ(at<CWindow>("window-renderer").keyFocusView(), nullptr) << "the next one gives the keys back";
}

TEST_F(EscapeInDrag, WhatCouldBeRedoneStill) {
    makeStep();
    const double gain = engine(kGains, 0, 3);
    click(kUndo);
    ASSERT_FALSE(at(kRedo).isDisabled());
    press(column("xeq1", 5));
    moveBy(0, 23);
    wait();
    EXPECT_TRUE(at(kRedo).isDisabled());
    tap(kKeyEscape);
    release();
    EXPECT_TRUE(at(kUndo).isDisabled());
    ASSERT_FALSE(at(kRedo).isDisabled());
    click(kRedo);
    EXPECT_EQ(engine(kGains, 0, 3), gain);
}

TEST_F(EscapeInDrag, APressWithoutAMoveEndsItsEditOnly) {
    const std::string state = chunk(false);
    press(column("xeq1", 3));
    tap(kKeyEscape);
    EXPECT_EQ(heard(), "begin 4, end 4");
    release();
    EXPECT_EQ(heard(), "");
    EXPECT_TRUE(chunk(false) == state);
    EXPECT_TRUE(at(kUndo).isDisabled());
}

TEST_F(EscapeInDrag, ACurveThatIsDrawnGoesFromEveryBar) {
    makeStep();
    const std::string state = chunk(false);
    const std::string steps = history();
    system_.input().holdKeys(false, false, true);
    press(column("xeq1", 0));
    moveBy(6 * 31, -40);
    wait();
    EXPECT_NE(engine(kGains, 0, 5), 1.0);
    tap(kKeyEscape);
    release();
    system_.input().holdKeys(false, false, false);
    EXPECT_TRUE(chunk(false) == state);
    EXPECT_EQ(history(), steps);
}

TEST_F(EscapeInDrag, TheDragButtonScalesBack) {
    makeStep();
    const std::string state = chunk(false);
    const std::string steps = history();
    letHostKeepFocus(true);
    press("c.xeq1.title-frame-head.eq-invert-scale.scale");
    moveBy(0, -30);
    EXPECT_FALSE(system_.input().tap(kKeySpace, u" ")) << "other keys are the host's";
    wait();
    EXPECT_FALSE(chunk(false) == state);
    tap(kKeyEscape);
    EXPECT_TRUE(chunk(false) == state);
    moveBy(0, -30);
    release();
    EXPECT_TRUE(chunk(false) == state);
    EXPECT_EQ(history(), steps);
    EXPECT_EQ(system_.input().hostKeys().size(), 2u) << "of the space bar alone";
    std::string begins;
    std::string ends;
    for (int32_t band = 1; band <= kBands; ++band) {
        begins += "begin " + std::to_string(band) + ", ";
        ends += ", end " + std::to_string(band);
    }
    const std::string all = heardGestures();
    EXPECT_TRUE(all.starts_with(begins + "automate ")) << all;
    EXPECT_TRUE(all.ends_with("automate 7" + ends)) << all;
    EXPECT_EQ(all.find("begin", begins.size()), std::string::npos);
    EXPECT_EQ(all.find("end"), all.size() - ends.size() + 2);
}

TEST_F(EscapeInDrag, ASliderOfTheSettingsGoesBackAndItsWindowStays) {
    click("c.buttons.settings");
    click(std::string(kSettings) + "global-settings");
    const double before = setting("drag-precision");
    press(std::string(kGlobal) + "drag-precision.slider");
    moveBy(25, 0);
    wait();
    EXPECT_NE(setting("drag-precision"), before);
    tap(kKeyEscape);
    EXPECT_EQ(setting("drag-precision"), before);
    moveBy(25, 0);
    release();
    EXPECT_EQ(setting("drag-precision"), before);
    EXPECT_TRUE(exists("ui.win-global-settings"));
    EXPECT_TRUE(exists("ui.win-settings"));
    tap(kKeyEscape);
    EXPECT_TRUE(exists("ui.win-global-settings")) << "it takes the keys from the slider";
    tap(kKeyEscape);
    EXPECT_FALSE(exists("ui.win-global-settings"));
    EXPECT_TRUE(exists("ui.win-settings"));
}

TEST_F(EscapeInDrag, OneThatRepeatsClosesNothing) {
    click("c.buttons.settings");
    press("ui.win-settings.window-title.label");
    const CIntRect place = at<CWindow>("ui.win-settings.window-renderer").screenBounds();
    moveBy(40, 30);
    EXPECT_NE(at<CWindow>("ui.win-settings.window-renderer").screenBounds(), place);
    EXPECT_TRUE(system_.input().key(kKeyEscape, true));
    EXPECT_EQ(at<CWindow>("ui.win-settings.window-renderer").screenBounds(), place) << "a window goes back, too";
    EXPECT_TRUE(system_.input().key(kKeyEscape, true));
    EXPECT_TRUE(system_.input().key(kKeyEscape, true));
    EXPECT_TRUE(system_.input().key(kKeyEscape, false));
    release();
    EXPECT_TRUE(exists("ui.win-settings"));
    tap(kKeyEscape);
    EXPECT_FALSE(exists("ui.win-settings"));
}

TEST_F(EscapeInDrag, TheKeysOfAnotherWindowEndADragOfTheMainOne) {
    click("c.buttons.settings");
    const double before = engine(kGains, 0, 6);
    press(column("xeq1", 6));
    moveBy(0, -20);
    wait();
    system_.desktop().activate(at<CWindow>("ui.win-settings.window-renderer").handle());
    tap(kKeyEscape);
    release();
    EXPECT_EQ(engine(kGains, 0, 6), before);
    EXPECT_TRUE(exists("ui.win-settings"));
}

TEST_F(EscapeInDrag, AButtonThatIsHeldDoesNothing) {
    press("window-title.bypass");
    tap(kKeyEscape);
    release();
    EXPECT_EQ(engine("modBypass.enable"), 0.0);
    EXPECT_EQ(heard(), "");
}

TEST_F(EscapeInDrag, APresetThatCameMeanwhileStands) {
    makeStep();
    press(column("xeq1", 3));
    moveBy(0, 23);
    wait();
    dispatch(vst::kEffectSetProgram, 0, 1);
    wait();
    const std::string state = chunk(false);
    tap(kKeyEscape);
    release();
    EXPECT_TRUE(chunk(false) == state);
}

}  // namespace

}  // namespace tarv
