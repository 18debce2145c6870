// The windows of settings, and the questions, by hand: what the settings and the engine hold afterwards.

#include "Core/CApplicationData.h"
#include "Core/CGlobalSettings.h"
#include "Platform/ByHand/CDesktopByHand.h"
#include "ProductEditor.h"
#include "UI/Controls/Surface/CControlSurface.h"
#include "UI/Controls/Surface/CControlSurfaceGroup.h"
#include "UI/Windows/CWindowSharedData.h"

namespace tarv {

namespace {

constexpr const char* kSettings = "ui.win-settings.c.settings.";
constexpr const char* kGlobal = "ui.win-global-settings.c.settings.";

struct CSwitchRow {
    const char* button;
    const char* setting;
    const char* former;
};
constexpr CSwitchRow kSwitches[] = {{"left.show-knob-labels", "show-knob-labels", "true"},
                                    {"left.tablet-mode", "tablet-mode", "false"},
                                    {"left.show-virtual-keyboard", "show-virtual-keyboard", "true"},
                                    {"right.builtin-refresh", "builtin-refresh", "false"},
                                    {"right.radial-knob-mode", "radial-knob-mode", "false"}};

class SettingsWindows : public CProductEditor {
protected:
    void openSettings() { click("c.buttons.settings"); }
    void openGlobal() {
        openSettings();
        click(std::string(kSettings) + "global-settings");
        ASSERT_TRUE(exists("ui.win-global-settings"));
    }
    bool isOn(const char* name) { return at<CObject>(std::string("ui.global-data.") + name).getAttrBool(name); }
    std::string setting(const char* name) { return text(std::string("ui.global-data.") + name, name); }
    double amount(const char* name) { return at<CObject>(std::string("ui.global-data.") + name).getAttrReal(name); }
    static std::string button(const std::string& selector, int32_t index) {
        return selector + ".button" + (index > 0 ? "#" + std::to_string(index) : "");
    }
};

TEST_F(SettingsWindows, OpenAndCloseByTheirButtonsAndEscape) {
    openSettings();
    EXPECT_TRUE(exists("ui.win-settings"));
    click("ui.win-settings.window-title.close");
    EXPECT_FALSE(exists("ui.win-settings"));
    openGlobal();
    click("ui.win-global-settings.window-title.close");
    EXPECT_FALSE(exists("ui.win-global-settings"));
    click("ui.win-settings.window-title.label");
    tap(kKeyEscape);
    EXPECT_FALSE(exists("ui.win-settings"));
}

TEST_F(SettingsWindows, AreOneEachAndCloseByASecondPress) {
    for (int32_t presses = 1; presses < 4; ++presses) {
        openSettings();
        EXPECT_EQ(exists("ui.win-settings"), presses % 2 == 1) << presses;
        EXPECT_FALSE(exists("ui.win-settings#1"));
    }
    // The window leaves the right end of its button free.
    const CSpot opener(std::string(kSettings) + "global-settings", 97);
    for (int32_t presses = 1; presses < 4; ++presses) {
        click(opener);
        EXPECT_EQ(exists("ui.win-global-settings"), presses % 2 == 1) << presses;
        EXPECT_FALSE(exists("ui.win-global-settings#1"));
    }
}

TEST_F(SettingsWindows, AWindowWhoseButtonIsMadeAnewClosesByItAsByTheOldOne) {
    openGlobal();
    click("ui.win-settings.window-title.close");
    EXPECT_TRUE(exists("ui.win-global-settings"));
    openSettings();
    const CSpot opener(std::string(kSettings) + "global-settings", 97);
    for (int32_t presses = 1; presses < 4; ++presses) {
        click(opener);
        EXPECT_EQ(exists("ui.win-global-settings"), presses % 2 == 0) << presses;
        EXPECT_FALSE(exists("ui.win-global-settings#1")) << "one for an editor";
    }
}

TEST_F(SettingsWindows, APaletteIsWornAtOnce) {
    openSettings();
    click(button(std::string(kSettings) + "color-scheme.selector", 0));
    EXPECT_EQ(text("ui.local-data.ui-color-scheme", "palette-name"), "Blue");
    EXPECT_EQ(text("", "palette"), "Blue");
    EXPECT_EQ(text("ui.win-settings", "palette"), "Blue");
}

TEST_F(SettingsWindows, APaletteThatIsNotThereIsTheDefault) {
    const uint32_t before = system_.desktop().picture(at<CWindow>("window-renderer").screenBounds()).at(3, 40);
    closeEditor();
    CLocalData::instance().writeText("ui-color-scheme", "Plaid");
    openEditor();
    EXPECT_EQ(system_.desktop().picture(at<CWindow>("window-renderer").screenBounds()).at(3, 40), before);
    openSettings();
    EXPECT_TRUE(exists("ui.win-settings"));
}

TEST_F(SettingsWindows, AScaleIsStoredForTheNextStart) {
    openSettings();
    click(button(std::string(kSettings) + "scale.selector", 2));
    EXPECT_EQ(at<CObject>("ui.local-data.ui-scale").getAttrReal("scale"), 1.25);
    EXPECT_EQ(box("").width, 640.0);
}

TEST_F(SettingsWindows, HintsAreSwitched) {
    openSettings();
    const double height = box("c").height;
    click(std::string(kSettings) + "show-hints");
    EXPECT_FALSE(at("window-status").isShown());
    EXPECT_GT(box("c").height, height);
    EXPECT_FALSE(at<CWindowSharedData>("ui.window-shared-data").isShowHints());
    click(std::string(kSettings) + "show-hints");
    EXPECT_TRUE(at("window-status").isShown());
}

TEST_F(SettingsWindows, EachSwitchSwitchesItsSetting) {
    openGlobal();
    for (const CSwitchRow& row : kSwitches) {
        const std::string path = std::string(kGlobal) + "switches." + row.button;
        const bool wasOn = row.former == std::string("true");
        EXPECT_EQ(hasState(path, "active"), wasOn) << row.setting;
        click(path);
        EXPECT_EQ(at<CObject>(std::string("ui.global-data.") + row.setting).getAttrBool(row.setting), !wasOn)
            << row.setting;
        EXPECT_EQ(hasState(path, "active"), !wasOn) << row.setting;
        click(path);
        EXPECT_EQ(hasState(path, "active"), wasOn) << row.setting;
    }
}

TEST_F(SettingsWindows, TheKeyboardOpensByItsSwitchOrInTabletMode) {
    for (const auto& [isShown, isTablet] : {std::pair{false, false}, {true, false}, {false, true}}) {
        for (const auto& [name, isOn] : {std::pair{"show-virtual-keyboard", isShown}, {"tablet-mode", isTablet}}) {
            CObject& setting = at<CObject>(std::string("ui.global-data.") + name);
            EXPECT_EQ(setting.setAttribute(name, CAttributeValue::fromBool(isOn)), nullptr);
        }
        click("window-title.instance-name.readout");
        EXPECT_EQ(exists("ui.virtual-keyboard-alphadigit"), isShown || isTablet) << isShown << isTablet;
        tap(kKeyEscape);
        wait();
        EXPECT_FALSE(exists("ui.virtual-keyboard-alphadigit"));
    }
}

TEST_F(SettingsWindows, EachKeyboardSaysWhereItIsSwitchedOff) {
    const std::pair<const char*, std::string> kFields[] = {
        {"window-title.instance-name.readout", "ui.virtual-keyboard-alphadigit"},
        {"c.xeq1.cs-gain.ruler-values.label", "ui.virtual-keyboard-digit"}};
    for (const auto& [field, keyboard] : kFields) {
        click(CSpot(field));
        auto& note = at<CTextView>(keyboard + ".note");
        EXPECT_NE(note.paragraphText(0).toUtf8().find("Global"), std::string::npos) << keyboard;
        EXPECT_LE(note.layout().width(), box(keyboard).width) << keyboard;
        tap(kKeyEscape);
    }
}

TEST_F(SettingsWindows, TheGlobalOnesStayWhenTheirOpenerCloses) {
    openGlobal();
    click("ui.win-settings.window-title.close");
    EXPECT_FALSE(exists("ui.win-settings"));
    ASSERT_TRUE(exists("ui.win-global-settings"));
    click(std::string(kGlobal) + "switches.left.tablet-mode");
    EXPECT_TRUE(isOn("tablet-mode"));
    click(std::string(kGlobal) + "switches.left.tablet-mode");
    click("ui.win-global-settings.window-title.close");
    EXPECT_FALSE(exists("ui.win-global-settings"));
}

TEST_F(SettingsWindows, TheNoiseIsSwitchedWithoutAStep) {
    openGlobal();
    click(std::string(kGlobal) + "switches.right.denorm");
    EXPECT_EQ(engine("denorm-enable"), 0.0);
    EXPECT_TRUE(at("c.buttons.history.button-undo").isDisabled());
}

TEST_F(SettingsWindows, TheOversamplingOfAutoIsChosen) {
    openGlobal();
    for (int32_t stages = 3; stages > 0; --stages) {
        click(button(std::string(kGlobal) + "oversampling.selector", stages - 1));
        EXPECT_EQ(amount("oversampling-level"), stages);
    }
}

TEST_F(SettingsWindows, SlidersMoveInStepsOfATwentieth) {
    openGlobal();
    for (const char* name : {"mouse-wheel-precision", "shift-key-precision", "drag-precision"}) {
        const double before = amount(name);
        drag(std::string(kGlobal) + name + ".slider", 20, 0);
        const double steps = amount(name) / 0.05;
        EXPECT_GT(amount(name), before) << name;
        EXPECT_LE(amount(name), 1.0) << name;
        EXPECT_NEAR(steps, static_cast<double>(static_cast<int32_t>(steps + 0.5)), 1e-9) << name;
        const std::pair<int32_t, const char*> kEnds[] = {{-300, "0.10"}, {300, "1.00"}};
        for (const auto& [way, shown] : kEnds) {
            drag(std::string(kGlobal) + name + ".slider", way, 0);
            EXPECT_EQ(text(std::string(kGlobal) + name + ".readout", "title"), shown) << name;
            EXPECT_EQ(amount(name), std::atof(shown)) << name;
        }
    }
}

TEST_F(SettingsWindows, AStoredTextThatIsNoNumberOfItsRangeIsTheDefaultInForceAndAsShown) {
    const CGlobalSettingValues& inForce = globalSettings();
    const struct {
        const char* name;
        const std::atomic<double>& inForce;
        double value;
        const char* shown;
    } kSliders[] = {{"mouse-wheel-precision", inForce.mouseWheelPrecision, 0.5, "0.50"},
                    {"shift-key-precision", inForce.shiftKeyPrecision, 0.5, "0.50"},
                    {"drag-precision", inForce.dragPrecision, 0.7, "0.70"}};
    for (const char* stored : {"fast", "7", "0.03", ""}) {
        closeEditor();
        for (const auto& slider : kSliders) {
            CGlobalData::instance().writeText(slider.name, stored);
        }
        CGlobalData::instance().writeText("oversampling-level", stored);
        openEditor();
        openGlobal();
        for (const auto& slider : kSliders) {
            const std::string path = std::string(kGlobal) + slider.name;
            EXPECT_EQ(slider.inForce, slider.value) << slider.name << " '" << stored << "'";
            EXPECT_EQ(text(path + ".readout", "title"), slider.shown) << slider.name << " '" << stored << "'";
            EXPECT_EQ(at<CControlSurface>(path + ".slider").group(0).barValue(0), slider.value) << slider.name;
        }
        EXPECT_EQ(inForce.oversamplingLevel, 1) << stored;
        EXPECT_TRUE(hasState(button(std::string(kGlobal) + "oversampling.selector", 0), "active")) << stored;
    }
}

TEST_F(SettingsWindows, OneSliderIsSelectedWhileItHasTheKeys) {
    openGlobal();
    const std::string names[] = {"mouse-wheel-precision", "shift-key-precision", "drag-precision"};
    const auto slider = [](const std::string& name) { return std::string(kGlobal) + name + ".slider"; };
    for (const std::string& pressed : names) {
        click(slider(pressed));
        for (const std::string& name : names) {
            EXPECT_EQ(at<CControlSurface>(slider(name)).selectedPoint(), name == pressed ? 0 : -1) << pressed << name;
        }
        const double before = amount(pressed.c_str());
        tap(kKeyLeft);
        EXPECT_NEAR(amount(pressed.c_str()), before - 0.05, 1e-9) << pressed;
    }
    click("ui.win-global-settings.window-title.label");
    for (const std::string& name : names) {
        EXPECT_EQ(at<CControlSurface>(slider(name)).selectedPoint(), -1) << name;
    }
}

TEST_F(SettingsWindows, ResetAsksAndSetsAllBack) {
    const std::pair<const char*, const char*> kNumbers[] = {{"drag-precision", "0.7"},
                                                            {"mouse-wheel-precision", "0.5"},
                                                            {"shift-key-precision", "0.5"},
                                                            {"oversampling-level", "1"}};
    const std::pair<const char*, const char*> kStaying[] = {
        {"ui-color-scheme", "palette-name"}, {"ui-show-hints", "show-hints"}, {"ui-scale", "scale"}};
    openSettings();
    click(button(std::string(kSettings) + "color-scheme.selector", 0));
    click(std::string(kSettings) + "show-hints");
    click(button(std::string(kSettings) + "scale.selector", 2));
    std::string before;
    for (const auto& [name, attribute] : kStaying) {
        before += text(std::string("ui.local-data.") + name, attribute) + " ";
    }
    EXPECT_EQ(before, "Blue 0 1.25 ");
    click(std::string(kSettings) + "global-settings");
    for (const CSwitchRow& row : kSwitches) {
        click(std::string(kGlobal) + "switches." + row.button);
        EXPECT_NE(setting(row.setting), row.former);
    }
    for (const char* name : {"drag-precision", "mouse-wheel-precision", "shift-key-precision"}) {
        drag(std::string(kGlobal) + name + ".slider", 300, 0);
        EXPECT_EQ(amount(name), 1.0);
    }
    click(button(std::string(kGlobal) + "oversampling.selector", 2));
    EXPECT_EQ(setting("oversampling-level"), "3");
    click(std::string(kGlobal) + "switches.right.denorm");
    EXPECT_EQ(engine("denorm-enable"), 0.0);
    click(std::string(kGlobal) + "reset-defaults");
    EXPECT_EQ(engine("denorm-enable"), 0.0);
    ASSERT_TRUE(exists("ui.win-confirmation"));
    click("ui.win-confirmation.c.buttons.cancel");
    EXPECT_FALSE(exists("ui.win-confirmation"));
    EXPECT_EQ(engine("denorm-enable"), 0.0);
    click(std::string(kGlobal) + "reset-defaults");
    click("ui.win-confirmation.c.buttons.ok");
    EXPECT_FALSE(exists("ui.win-confirmation"));
    EXPECT_EQ(engine("denorm-enable"), 1.0);
    for (const CSwitchRow& row : kSwitches) {
        EXPECT_EQ(setting(row.setting), row.former);
    }
    for (const auto& [name, value] : kNumbers) {
        EXPECT_EQ(setting(name), value);
    }
    std::string after;
    for (const auto& [name, attribute] : kStaying) {
        after += text(std::string("ui.local-data.") + name, attribute) + " ";
    }
    EXPECT_EQ(after, before);
}

TEST_F(SettingsWindows, AQuestionIsAnsweredByKeys) {
    openGlobal();
    click(std::string(kGlobal) + "switches.left.tablet-mode");
    click(std::string(kGlobal) + "reset-defaults");
    tap(kKeyEscape);
    EXPECT_FALSE(exists("ui.win-confirmation"));
    EXPECT_TRUE(isOn("tablet-mode"));
    click(std::string(kGlobal) + "reset-defaults");
    tap(kKeyEnter);
    EXPECT_FALSE(exists("ui.win-confirmation"));
    EXPECT_FALSE(isOn("tablet-mode"));
}

}  // namespace

}  // namespace tarv
