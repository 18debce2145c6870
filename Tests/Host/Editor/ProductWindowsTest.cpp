// Each window of the product's editor, opened, worked and closed on the system's desktop.

#include "Tests/Host/Editor/ProductWindow.h"

namespace tarv::host {
namespace {

constexpr const char* kSettings = "ui.win-settings.c.settings.";
constexpr const char* kGlobal = "ui.win-global-settings.c.settings.";
constexpr const char* kRouting = "ui.win-channel-routing.c.";

std::string indexed(const std::string& path, int32_t index) {
    return path + (index > 0 ? "#" + std::to_string(index) : "");
}

class ProductWindows : public ProductWindow {};

TEST_F(ProductWindows, SettingsActAtOnceAndAreThereInTheNextEditor) {
    click("c.buttons.settings");
    expectSame("settings opened");
    click(indexed(std::string(kSettings) + "color-scheme.selector.button", 0));
    EXPECT_EQ(twin->at("").getAttrString("palette"), CString("Blue"));
    expectSame("another palette");
    click(std::string(kSettings) + "show-hints");
    expectSame("no hints");
    click("ui.win-settings.window-title.close");
    expectSame("settings closed");
    reopen();
    EXPECT_EQ(twin->at("").getAttrString("palette"), CString("Blue"));
    EXPECT_EQ(heard(), "");
}

TEST_F(ProductWindows, GlobalSettingsAreSwitchedDraggedAndSetBack) {
    click("c.buttons.settings");
    click(std::string(kSettings) + "global-settings");
    expectSame("global settings opened");
    for (const char* each : {"left.show-knob-labels", "left.show-virtual-keyboard", "right.radial-knob-mode"}) {
        click(std::string(kGlobal) + "switches." + each);
    }
    drag(std::string(kGlobal) + "mouse-wheel-precision.slider", 20, 0);
    click(indexed(std::string(kGlobal) + "oversampling.selector.button", 0));
    expectSame("global settings changed");
    click(std::string(kGlobal) + "reset-defaults");
    expectSame("a question");
    click("ui.win-confirmation.c.buttons.cancel");
    expectSame("the question is gone");
    click(std::string(kGlobal) + "reset-defaults");
    click("ui.win-confirmation.c.buttons.ok");
    expectSame("all set back");
    click("ui.win-global-settings.window-title.close");
    click("ui.win-settings.window-title.close");
    expectSame("both closed");
    EXPECT_EQ(heard(), "");
}

TEST_F(ProductWindows, EachRowOfTheRoutingIsChosenAndUndone) {
    const std::string before = effect.chunk(false);
    click("c.buttons.channel-routing");
    expectSame("routing opened, under the pointer or beside it");
    EXPECT_FALSE(twin->hasState("c.buttons.channel-routing", "pushed"));
    for (const char* panel : {"input-routing", "ms-pairs", "group-assignments", "output-routing"}) {
        click(std::string(kRouting) + panel + ".fields.object#2");
        expectSame("a list of routing");
        choose(1);
        expectSame(panel);
        expectSameState();
    }
    EXPECT_TRUE(effect.chunk(false) != before);
    click("ui.win-channel-routing.window-title.close");
    for (int32_t i = 0; i < 4; ++i) {
        click("c.buttons.history.button-undo");
    }
    expectSame("all undone");
    expectSameState();
    click("c.buttons.channel-routing");
    point("window-title.label");
    click(std::string(kRouting) + "buttons.routing-presets.quick-preset-list");
    expectSame("the list of routing presets");
    choose(1);
    expectSame("a routing preset chosen");
    expectSameState();
    click("ui.win-channel-routing.window-title.close");
    expectSame("routing closed");
}

TEST_F(ProductWindows, SettingsActInTheEditorsOfAllInstances) {
    click("c.buttons.settings");
    click(indexed(std::string(kSettings) + "color-scheme.selector.button", 0));
    click("ui.win-settings.window-title.close");
    expectSame("another palette");
    openSecond();
    expectSame("the second editor has the palette, too");
    click("c.buttons.settings");
    click(indexed(std::string(kSettings) + "color-scheme.selector.button", 2));
    click("ui.win-settings.window-title.close");
    expectSame("a palette chosen in the second");
    closeSecond();
    expectSame("the first has it at once");
}

TEST_F(ProductWindows, TheNamesOfGroupsOpenAndEscapeClosesThem) {
    click("c.buttons.channel-routing");
    click(std::string(kRouting) + "group-assignments.names");
    expectSame("names opened");
    strike('\x1b');
    expectSame("names closed");
}

TEST_F(ProductWindows, WhatIsOpenGoesWithTheEditorAndTheNextOneShowsTheSameGroups) {
    click(indexed("c.xeq1.xeq-base.edit-group.selector.button", 5));
    click(indexed("c.xeq2.xeq-base.underlay-group.selector.button", 2));
    click("c.buttons.settings");
    click("c.buttons.channel-routing");
    expectSame("two windows opened");
    const std::string state = effect.chunk(false);
    reopen();
    EXPECT_TRUE(desk.popups().empty());
    EXPECT_TRUE(twin->hasState(indexed("c.xeq1.xeq-base.edit-group.selector.button", 5), "active"));
    EXPECT_EQ(effect.chunk(false), state);
}

}  // namespace
}  // namespace tarv::host
