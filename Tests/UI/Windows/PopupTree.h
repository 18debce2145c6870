#pragma once

#include "Tests/UI/Windows/WindowTree.h"

namespace tarv {

/// A button at 10, 10 of 60 x 20 pixels, and another one beside it.
struct CPopupTree : CWindowTree {
    CPopupTree() {
        templates = {
            popup("ui:list", 80, 50, {{"is-popup-window", "true"}, {"window-alignment", "bottom"}, {"fill", "5"}},
                  {view("row", {{"placement", "top"}, {"width", "80"}, {"height", "20"}, {"fill", "6"}})}),
            popup("ui:tall", 80, 2000, {{"is-popup-window", "true"}}),
            popup("ui:settings", 120, 60, {{"unique-name", "settings"}, {"window-alignment", "center-overlay"}}),
            popup("ui:global", 120, 60, {{"unique-name", "global"}, {"window-alignment", "center-overlay"}}),
            popup("ui:message", 100, 40, {{"is-modal", "true"}, {"window-alignment", "center"}}),
            popup("ui:helper", 60, 30, {{"is-popup-window", "true"}, {"is-helper-window", "true"}}),
            popup("ui:placed", 60, 30, {{"window-x", "500"}, {"window-y", "40"}, {"constrain-y", "60"}}),
            popup("ui:entry", 60, 30, {{"is-taskbar", "true"}}),
            popup("ui:entries", 60, 30, {},
                  {view("entry", {{"width", "60"}, {"height", "30"}, {"is-focusable", "true"}})}),
            testTemplate("ui:plain", "test:view", {{"is-root-view", "true"}}),
            testTemplate("ui:window-blocker", "test:view",
                         {{"placement", "overlay"}, {"width", "100%"}, {"height", "100%"}})};
    }
    void openButtons() {
        open({view("panel", {{"placement", "full"}, {"width", "100%"}, {"height", "100%"}, {"is-input", "false"}},
                   {view("a", {{"placement", "left"}, {"width", "60"}, {"height", "20"}, {"outer-border", "*LT10"}}),
                    view("b", {{"placement", "left"}, {"width", "60"}, {"height", "20"}})})});
        heard();
    }
    CIntRect boundsOf(const std::string& name) const {
        const CWindow* found = popupWindow(name);
        return found ? found->screenBounds() : CIntRect();
    }
    CViewRect rectOf(const std::string& path) { return at(path).wholeRect(); }
    void moveOnto(const std::string& path) {
        const CViewRect rect = rectOf(path);
        moveTo(static_cast<int32_t>(rect.x) + 2, static_cast<int32_t>(rect.y) + 2);
    }
    void clickOn(const std::string& path) {
        moveOnto(path);
        system.input().click();
    }
    /// The opener's window ticks.
    void tick() { system.advance(0.03); }
};

}  // namespace tarv
