#include "EveryWindow.h"

namespace tarv {

const std::vector<std::string>& CEveryWindow::windows() {
    static const std::vector<std::string> all = {"ui.main-window",
                                                 "ui.window-app-popup-list",
                                                 "ui.virtual-keyboard-alphadigit",
                                                 "ui.virtual-keyboard-digit",
                                                 "ui.win-channel-routing",
                                                 "ui.win-channel-label-setup",
                                                 "ui.win-group-name-setup",
                                                 "ui.win-preset-manager-routing",
                                                 "ui.win-preset-manager",
                                                 "ui.win-message",
                                                 "ui.win-settings",
                                                 "ui.win-global-settings",
                                                 "ui.win-confirmation"};
    return all;
}

void CEveryWindow::visitEveryWindow(const std::function<void(const char* window)>& visit) {
    visitMain(visit);
    visitRouting(visit);
    visitPresets(visit);
    visitSettings(visit);
}

void CEveryWindow::visitMain(const std::function<void(const char* window)>& visit) {
    visit("ui.main-window");
    click("c.buttons.preset-manager.quick-preset-list");
    visit("ui.window-app-popup-list");
    tap(kKeyEscape);
    click("window-title.instance-name.readout");
    visit("ui.main-window");
    visit("ui.virtual-keyboard-alphadigit");
    tap(kKeyEscape);
    click("c.xeq1.cs-sliders.ruler-values.label");
    visit("ui.virtual-keyboard-digit");
    tap(kKeyEscape);
}

void CEveryWindow::visitRouting(const std::function<void(const char* window)>& visit) {
    click("c.buttons.channel-routing");
    visit("ui.win-channel-routing");
    click("ui.win-channel-routing.c.input-routing.names");
    visit("ui.win-channel-label-setup");
    tap(kKeyEscape);
    tap(kKeyEscape);
    click("ui.win-channel-routing.c.group-assignments.names");
    visit("ui.win-group-name-setup");
    tap(kKeyEscape);
    tap(kKeyEscape);
    click("ui.win-channel-routing.c.buttons.routing-presets");
    visit("ui.win-preset-manager-routing");
    click("ui.win-preset-manager-routing.window-title.close");
    click("ui.win-channel-routing.window-title.close");
}

void CEveryWindow::visitPresets(const std::function<void(const char* window)>& visit) {
    click("c.buttons.preset-manager");
    visit("ui.win-preset-manager");
    system_.answerFileDialog(u"/no/such/folder/x.cpf");
    click("ui.win-preset-manager.c.presets.buttons.load");
    visit("ui.win-message");
    tap(kKeyEscape);
    click("ui.win-preset-manager.window-title.close");
}

void CEveryWindow::visitSettings(const std::function<void(const char* window)>& visit) {
    click("c.buttons.settings");
    visit("ui.win-settings");
    click("ui.win-settings.c.settings.global-settings");
    visit("ui.win-global-settings");
    click("ui.win-global-settings.c.settings.reset-defaults");
    visit("ui.win-confirmation");
}

}  // namespace tarv
