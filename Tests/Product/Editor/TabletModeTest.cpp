// Tablet mode on the product's tree: where a finger may press, and that nothing lights up under it.

#include <cmath>

#include "Core/CApplication.h"
#include "Core/CGlobalSettings.h"
#include "Platform/ByHand/CDesktopByHand.h"
#include "Tests/Product/Editor/ProductEditor.h"

namespace tarv {

namespace {

constexpr const char* kReset = "c.xeq1.title-frame-head.param-reset-button";
constexpr const char* kSurface = "c.xeq1.cs-sliders.control-surface";

struct CTabletMode : CProductEditor {
    explicit CTabletMode(double scale = 1.0) : CProductEditor(scale) { setMode(true); }
    ~CTabletMode() override { setMode(false); }

    void setMode(bool isOn) {
        CObject& setting = at<CObject>("ui.global-data.tablet-mode");
        EXPECT_EQ(setting.setAttribute("tablet-mode", CAttributeValue::fromBool(isOn)), nullptr);
        wait();
    }
    /// So many pixels below the lower edge of a view.
    CSpot below(const std::string& path, int32_t pixels) {
        const CViewRect& rect = at(path).visibleRect();
        const auto lowest = static_cast<int32_t>(std::lround(rect.y + rect.height)) - 1;
        return {path, 0, lowest + pixels - static_cast<int32_t>(std::lround(rect.y + rect.height / 2.0))};
    }
};

TEST_F(CTabletMode, AButtonIsPressedBesideItButOnlyInTheMode) {
    setEngine("modBrindleXEQ.xeq-gains", 0, 2, 2.0);
    setMode(false);
    click(below(kReset, 5));
    EXPECT_NEAR(decibels("modBrindleXEQ.xeq-gains", 0, 2), 6.02, 0.01);
    setMode(true);
    click(below(kReset, 5));
    EXPECT_EQ(decibels("modBrindleXEQ.xeq-gains", 0, 2), 0.0);
}

TEST_F(CTabletMode, AReadoutIsEditedByAPressBelowIt) {
    setMode(false);
    click(below("window-title.instance-name.readout", 4));
    EXPECT_FALSE(hasState("window-title.instance-name.readout", "edited") || exists("temp-editbox"));
    setMode(true);
    click(below("window-title.instance-name.readout", 4));
    EXPECT_TRUE(exists("temp-editbox"));
    type(u"Strings");
    EXPECT_EQ(engineText("instance-name"), "Strings");
}

TEST_F(CTabletMode, AFrequencyIsEditedByAPressAboveIt) {
    const std::string label = "c.xeq1.cs-sliders.ruler-freqs.label#3";
    const int32_t above = -static_cast<int32_t>(at(label).visibleRect().height / 2.0) - 4;
    setMode(false);
    click(CSpot(label, 0, above));
    EXPECT_FALSE(exists("temp-editbox"));
    setMode(true);
    click(CSpot(label, 0, above));
    ASSERT_TRUE(exists("temp-editbox"));
    type(u"2K");
    EXPECT_NEAR(engine("modBrindleXEQ.xeq-freqs", 0, 3), 2000.0, 1e-9);
}

TEST_F(CTabletMode, ASelectorTakesPressesAroundIt) {
    const std::string selector = "c.xeq1.xeq-base.underlay-group.selector.button#4";
    click(below(selector, 3));
    EXPECT_TRUE(hasState(selector, "active"));
}

TEST_F(CTabletMode, NeighboursKeepWhatIsTheirs) {
    for (int32_t i = 1; i < 8; ++i) {
        const std::string button =
            "c.xeq1.xeq-base.edit-group.selector.button" + (i == 0 ? "" : "#" + std::to_string(i));
        const auto half = static_cast<int32_t>(at(button).visibleRect().width / 2.0);
        click(CSpot(button, -half + 1));
        EXPECT_TRUE(hasState(button, "active")) << button;
        click(CSpot(button, half - 1));
        EXPECT_TRUE(hasState(button, "active")) << button;
    }
}

TEST_F(CTabletMode, TheWholeSurfaceBelongsToItsBars) {
    const CViewRect& rect = at(kSurface).visibleRect();
    const auto half = static_cast<int32_t>(rect.width / 2.0);
    drag(CSpot(kSurface, -half), 0, -20);
    EXPECT_GT(decibels("modBrindleXEQ.xeq-gains", 0, 0), 1.0);
    drag(CSpot(kSurface, half - 1), 0, -20);
    EXPECT_GT(decibels("modBrindleXEQ.xeq-gains", 0, 6), 1.0);
    setEngine("modBrindleXEQ.xeq-gains", 0, 3, 1.0);
    drag(column("xeq1", 3), 0, -20);
    EXPECT_GT(decibels("modBrindleXEQ.xeq-gains", 0, 3), 1.0);
}

TEST_F(CTabletMode, ABarThatIsHeldBesideItStartsWithoutAJump) {
    click("c.buttons.settings");
    click("ui.win-settings.c.settings.global-settings");
    const std::string slider = "ui.win-global-settings.c.settings.drag-precision.slider";
    const double before = at<CObject>("ui.global-data.drag-precision").getAttrReal("drag-precision");
    press(below(slider, 5));
    moveBy(0, 0);
    release();
    EXPECT_EQ(at<CObject>("ui.global-data.drag-precision").getAttrReal("drag-precision"), before);
    drag(below(slider, 5), 40, 0);
    EXPECT_GT(at<CObject>("ui.global-data.drag-precision").getAttrReal("drag-precision"), before + 0.1);
}

TEST_F(CTabletMode, RowsOfListsAreAFingerHigh) {
    const auto rowHeight = [this] {
        const double height = at<CTextView>("ui.window-app-popup-list.list").rowRect(1).height;
        choose(2);
        wait();
        return height;
    };
    click("window-title.quality-selector");
    EXPECT_GE(rowHeight(), 36.0);
    EXPECT_EQ(engine("oversampling"), 2.0) << "the row that was pressed";
    setMode(false);
    click("window-title.quality-selector");
    EXPECT_LT(rowHeight(), 20.0);
}

TEST_F(CTabletMode, TheListsOfAWindowThatIsOpenFollowAtOnce) {
    click("c.buttons.preset-manager");
    auto& list = at<CTextView>("ui.win-preset-manager.c.banks.outline.list");
    EXPECT_GE(list.rowRect(0).height, 36.0);
    setMode(false);
    EXPECT_LE(list.rowRect(0).height, 20.0);
    setMode(true);
    EXPECT_GE(list.rowRect(0).height, 36.0);
}

TEST_F(CTabletMode, NothingLightsUpUnderThePointer) {
    point(kReset);
    EXPECT_FALSE(hasState(kReset, "hover"));
    EXPECT_FALSE(at<CTextView>("window-status.label").paragraphText(0).isEmpty()) << "the hint is there";
    setMode(false);
    EXPECT_TRUE(hasState(kReset, "hover"));
    point(column("xeq1", 2));
    EXPECT_EQ(text(kSurface, "hovered-point"), "2");
    setMode(true);
    wait();
    point(column("xeq1", 2));
    EXPECT_EQ(text(kSurface, "hovered-point"), "-1");
}

TEST_F(CTabletMode, AllOpenEditorsSwitchAtOnce) {
    setMode(false);
    const CWindowHandle host = system_.desktop().openHost({100, 60, 1100, 760});
    ASSERT_EQ(CApplication::openEditor(), nullptr);
    CObject* root = nullptr;
    ASSERT_EQ(CApplication::initRootObject(root), nullptr);
    std::unique_ptr<CObject> second(root);
    ASSERT_EQ(root->setAttribute("ParentWindow", CAttributeValue::fromPointer(reinterpret_cast<void*>(host))), nullptr);
    ASSERT_EQ(root->setAttribute("PluginRootPtrVar", CAttributeValue::fromPointer(wrapper().instanceRoot())), nullptr);
    ASSERT_EQ(root->loadFromResource("UserInterface.xml", true), nullptr);
    auto* window = root->findObjectOf<CWindow>("ui.main-window.window-renderer");
    ASSERT_EQ(window->open(), nullptr);
    wait();
    const auto* button = root->findObjectOf<CView>((std::string("ui.main-window.") + kReset).c_str());
    const CViewRect& rect = button->visibleRect();
    system_.input().moveIn(window->handle(), static_cast<int32_t>(rect.x) + 10, static_cast<int32_t>(rect.y) + 10);
    wait();
    EXPECT_TRUE(button->isStateSet("hover"));
    setMode(true);
    EXPECT_FALSE(button->isStateSet("hover"));
    setEngine("modBrindleXEQ.xeq-gains", 0, 2, 2.0);
    wait(1.0);
    system_.input().moveIn(window->handle(), static_cast<int32_t>(rect.x) + 10,
                           static_cast<int32_t>(rect.y + rect.height) + 4);
    system_.input().click();
    wait();
    EXPECT_EQ(decibels("modBrindleXEQ.xeq-gains", 0, 2), 0.0) << "pressed in the other editor";
    second.reset();
    CApplication::closeEditor();
}

}  // namespace

}  // namespace tarv
