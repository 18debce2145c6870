// The states of the product's editor that pictures show: a row each.

#include "CScene.h"

namespace tarv {

namespace {

constexpr const char* kSettings = "c.buttons.settings";
constexpr const char* kGlobalSettings = "ui.win-settings.c.settings.global-settings";

CScene& openRouting(CScene& scene) {
    return scene.click("c.buttons.channel-routing");
}

/// Without the keyboard on the screen, which would be the last window, and all names as they are shown.
CScene& openNames(CScene& scene, const char* button) {
    return scene.click(button).tap(kKeyEscape);
}

}  // namespace

const CSceneRow kScenes[] = {
    {"main-flat", [](CScene&) {}},
    {"main-curves", [](CScene& scene) { scene.curves(); }},
    {"main-extreme", [](CScene& scene) { scene.extreme(); }},
    {"main-hover", [](CScene& scene) { scene.curves().point("c.xeq1.cs-sliders.control-surface"); }},
    {"main-pushed", [](CScene& scene) { scene.curves().press("c.xeq1.title-frame-head.param-reset-button"); }},
    {"main-bypass", [](CScene& scene) { scene.curves().click("window-title.bypass"); }},
    {"main-offline", [](CScene& scene) { scene.curves().set("host-offline", 0, 0, 1.0).wait(1.0); }},
    {"main-no-engine", [](CScene& scene) { scene.curves().wait(0.2).endEngine(); }},
    {"main-no-hints",
     [](CScene& scene) { scene.curves().attribute("ui.local-data.ui-show-hints", "show-hints", "false"); }},
    {"main-ten-bands", [](CScene& scene) { scene.set("modBrindleXEQ.band-count", 0, 0, 10.0); }},
    {"main-eight-groups", [](CScene& scene) { scene.eightGroups().groups(2, 5, 3, 6); }},
    {"main-eight-groups-more", [](CScene& scene) { scene.eightGroups().groups(4, 7, 1, 0); }},
    {"main-long-names",
     [](CScene& scene) { scene.eightGroups().longNames().point("c.xeq1.xeq-base.edit-group.selector.button#3"); }},
    {"menu-copy-to", [](CScene& scene) { scene.curves().click("c.xeq1.xeq-base.edit-group.param-copy-button"); }},
    {"menu-copy-to-names",
     [](CScene& scene) { scene.eightGroups().longNames().click("c.xeq2.xeq-base.edit-group.param-copy-button"); }},
    {"menu-quality", [](CScene& scene) { scene.click("window-title.quality-selector"); }},
    {"menu-bars",
     [](CScene& scene) { scene.curves().click("c.xeq1.cs-sliders.control-surface", CPointerButton::Right); }},
    {"menu-presets", [](CScene& scene) { scene.click("c.buttons.preset-manager.quick-preset-list").pointAtRow(1); }},
    {"menu-routing", [](CScene& scene) { scene.click("c.buttons.channel-routing.quick-preset-list"); }},
    {"menu-history",
     [](CScene& scene) {
         scene.click("c.xeq1.title-frame-head.eq-invert-scale.invert").click("window-title.bypass");
         scene.click("c.xeq1.cs-sliders.ruler-values.label#3").type(u"6").tap(kKeyEnter);
         scene.click("c.xeq1.title-frame-head.param-reset-button").click("c.buttons.history.button-undo");
         scene.click("c.buttons.history.button-select");
     }},
    {"edit-name", [](CScene& scene) { scene.click("window-title.instance-name.readout"); }},
    {"edit-value", [](CScene& scene) { scene.curves().click("c.xeq1.cs-sliders.ruler-values.label#3").type(u"-4"); }},
    {"edit-value-error",
     [](CScene& scene) { scene.curves().click("c.xeq1.cs-sliders.ruler-values.label#3").type(u"--4").tap(kKeyEnter); }},
    {"window-settings", [](CScene& scene) { scene.click(kSettings); }},
    {"window-settings-focus", [](CScene& scene) { scene.click(kSettings).tap(kKeyTab, 3); }},
    {"window-global-settings", [](CScene& scene) { scene.click(kSettings).click(kGlobalSettings); }},
    {"window-confirmation",
     [](CScene& scene) {
         scene.click(kSettings).click(kGlobalSettings).click("ui.win-global-settings.c.settings.reset-defaults");
     }},
    {"window-message",
     [](CScene& scene) {
         scene.click("c.buttons.preset-manager");
         scene.raise(
             "ui.win-preset-manager", "error-preset-load",
             "Can't read \"/home/studio/Music/Sessions/2026/Strings/Presets/Upper Balcony.cpf\": it is damaged.");
     }},
    {"window-channel-routing", [](CScene& scene) { openRouting(scene); }},
    {"window-channel-routing-eight", [](CScene& scene) { openRouting(scene.eightGroups().longNames().wait(0.5)); }},
    {"window-channel-names",
     [](CScene& scene) { openNames(openRouting(scene), "ui.win-channel-routing.c.input-routing.names"); }},
    {"window-group-names",
     [](CScene& scene) {
         openNames(openRouting(scene.longNames()), "ui.win-channel-routing.c.group-assignments.names");
     }},
    {"window-preset-manager", [](CScene& scene) { scene.click("c.buttons.preset-manager"); }},
    {"window-routing-presets",
     [](CScene& scene) { openRouting(scene).click("ui.win-channel-routing.c.buttons.routing-presets"); }},
    {"tablet-main", [](CScene& scene) { scene.tabletMode().curves().point("c.xeq1.cs-sliders.control-surface"); }},
    {"tablet-menu-bars",
     [](CScene& scene) {
         scene.tabletMode().curves().click("c.xeq1.cs-sliders.control-surface", CPointerButton::Right);
     }},
    {"tablet-menu-copy-to",
     [](CScene& scene) { scene.tabletMode().curves().click("c.xeq1.xeq-base.edit-group.param-copy-button"); }},
    {"tablet-menu-presets",
     [](CScene& scene) { scene.tabletMode().click("c.buttons.preset-manager.quick-preset-list").pointAtRow(1); }},
    {"tablet-menu-quality", [](CScene& scene) { scene.tabletMode().click("window-title.quality-selector"); }},
    {"tablet-edit-value",
     [](CScene& scene) { scene.tabletMode().curves().click("c.xeq1.cs-sliders.ruler-values.label#3"); }},
    {"tablet-window-settings", [](CScene& scene) { scene.tabletMode().click(kSettings); }},
    {"tablet-window-global-settings",
     [](CScene& scene) { scene.tabletMode().click(kSettings).click(kGlobalSettings); }},
    {"tablet-window-channel-routing", [](CScene& scene) { openRouting(scene.tabletMode().eightGroups().wait(0.5)); }},
    {"tablet-window-preset-manager", [](CScene& scene) { scene.tabletMode().click("c.buttons.preset-manager"); }},
    {nullptr, nullptr},
};

}  // namespace tarv
