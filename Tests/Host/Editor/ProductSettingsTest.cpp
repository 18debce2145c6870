// Settings on the system's desktop: of all instances, of the next start, and what is stored of them.

#include "Tests/Host/Editor/ProductWindow.h"

namespace tarv::host {
namespace {

constexpr const char* kSettings = "ui.win-settings.c.settings.";
constexpr const char* kGlobal = "ui.win-global-settings.c.settings.";
constexpr const char* kSwitches[] = {"left.show-knob-labels", "left.tablet-mode", "left.show-virtual-keyboard",
                                     "right.builtin-refresh", "right.radial-knob-mode"};
constexpr const char* kSliders[] = {"mouse-wheel-precision", "shift-key-precision", "drag-precision"};
constexpr const char* kField = "c.xeq1.cs-sliders.ruler-values.label";

std::string indexed(const std::string& path, int32_t index) {
    return path + (index > 0 ? "#" + std::to_string(index) : "");
}

class ProductSettings : public ProductWindow {
protected:
    void openGlobal() {
        click("c.buttons.settings");
        click(std::string(kSettings) + "global-settings");
    }
    void closeGlobal() {
        click("ui.win-global-settings.window-title.close");
        click("ui.win-settings.window-title.close");
        // Off the bars, where a window closed under the pointer.
        point("window-title.label");
    }
    void switchOver(const char* name) { click(std::string(kGlobal) + "switches." + name); }
    std::string stored(const char* name) { return twin->text(std::string("ui.global-data.") + name, name); }
    /// The frequency of a bar under the pointer is shown whole.
    bool isHovered() {
        point(column("xeq1", 3));
        return twin->text("c.xeq1.cs-sliders.ruler-freqs.label#3", "title") == "1.00k";
    }
    std::string all() {
        std::string text;
        for (const char* name :
             {"builtin-refresh", "drag-precision", "mouse-wheel-precision", "oversampling-level", "shift-key-precision",
              "show-knob-labels", "show-virtual-keyboard", "tablet-mode", "radial-knob-mode"}) {
            text += stored(name) + ' ';
        }
        return text;
    }
};

TEST_F(ProductSettings, ResetToDefaultsAsksAndThenSetsBackWhatIsStored) {
    const std::string defaults = all();
    openGlobal();
    for (const char* each : kSwitches) {
        switchOver(each);
    }
    for (const char* each : kSliders) {
        drag(std::string(kGlobal) + each + ".slider", 30, 0);
    }
    click(indexed(std::string(kGlobal) + "oversampling.selector.button", 2));
    const std::string changed = all();
    EXPECT_EQ(stored("tablet-mode"), "1");
    EXPECT_EQ(stored("oversampling-level"), "3");
    expectSame("all changed");
    expectSameSettings();
    click(std::string(kGlobal) + "reset-defaults");
    expectSame("a question");
    strike('\x1b');
    expectSame("no");
    EXPECT_EQ(all(), changed);
    click(std::string(kGlobal) + "reset-defaults");
    strike('\r');
    expectSame("yes");
    EXPECT_EQ(all(), defaults);
    expectSameSettings();
    switchOver("right.denorm");
    expectSame("the noise is off");
    expectSameState();
    click(std::string(kGlobal) + "reset-defaults");
    click("ui.win-confirmation.c.buttons.ok");
    expectSame("the noise is on");
    expectSameState();
    EXPECT_EQ(twin->engine("denorm-enable"), 1.0);
    EXPECT_EQ(heard(), "");
}

TEST_F(ProductSettings, TabletModeIsThatOfBothInstances) {
    openGlobal();
    switchOver("left.show-virtual-keyboard");
    switchOver("left.tablet-mode");
    expectSame("tablet mode");
    closeGlobal();
    EXPECT_FALSE(isHovered());
    expectSame("no hover in the first");
    openSecond();
    EXPECT_FALSE(isHovered());
    expectSame("no hover in the second");
    click(kField);
    EXPECT_EQ(twin->popups().size(), 1U) << "a keyboard with each field";
    expectSame("the keyboard on the screen of the second");
    strike('\x1b');
    openGlobal();
    switchOver("left.tablet-mode");
    closeGlobal();
    click(kField);
    EXPECT_TRUE(twin->popups().empty());
    expectSame("no keyboard in the second");
    strike('\x1b');
    closeSecond();
    EXPECT_TRUE(isHovered());
    expectSame("hover in the first, at once");
    expectSameSettings();
    EXPECT_EQ(heard(), "");
}

TEST_F(ProductSettings, EachScaleIsThatOfTheNextStartAndTheHostsWindowHasItsSize) {
    struct CRow {
        int32_t button;
        int width;
        int height;
    };
    for (const CRow& row : {CRow{2, 800, 500}, CRow{0, 512, 320}, CRow{1, 640, 400}}) {
        const CIntRect before = desk.place(parent);
        click("c.buttons.settings");
        click(indexed(std::string(kSettings) + "scale.selector.button", row.button));
        expectSame("a scale chosen, for the next start");
        click("ui.win-settings.window-title.close");
        EXPECT_EQ(twin->mainWindow().width(), before.width());
        restart();
        const CIntRect place = desk.place(parent);
        EXPECT_EQ(place.width(), row.width);
        EXPECT_EQ(place.height(), row.height);
        EXPECT_EQ(twin->mainWindow(), place);
        drag(column("xeq1", 3), 0, -20);
        expectSame("a bar at another scale");
        expectSameState();
        expectSameSettings();
    }
}

}  // namespace
}  // namespace tarv::host
