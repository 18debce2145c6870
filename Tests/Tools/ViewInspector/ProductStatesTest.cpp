// What the product's editor shows while it can do less: without its engine, and bypassed.

#include <gtest/gtest.h>

#include <string>

#include "CPlainEditor.h"
#include "CScene.h"
#include "UI/Controls/Surface/CControlSurface.h"

namespace tarv {

namespace {

struct ProductStates : testing::Test {
    ProductStates() {
        EXPECT_EQ(editor.openProduct(), "");
        scene.curves().wait(0.2);
    }
    ~ProductStates() override { EXPECT_EQ(scene.failure(), ""); }

    CView& at(const std::string& path) {
        auto* found = editor.tree().findObjectOf<CView>(("ui.main-window." + path).c_str());
        EXPECT_TRUE(found) << path;
        return *found;
    }
    CControlSurface& bars() { return dynamic_cast<CControlSurface&>(at("c.xeq1.cs-sliders.control-surface")); }
    /// Of the highest of three channels, at the middle of a bar.
    int32_t lightOfBar(int32_t band) {
        const CIntRect bar = bars().barRect(*bars().editableGroup(), band);
        const CPictureByHand picture = editor.pictureOf(*editor.window());
        const uint32_t pixel = picture.at((bar.left + bar.right) / 2, (bar.top + bar.bottom) / 2);
        return static_cast<int32_t>(std::max({pixel & 0xff, pixel >> 8 & 0xff, pixel >> 16 & 0xff}));
    }

    CPlainEditor editor;
    CScene scene{editor};
};

TEST_F(ProductStates, WithoutItsEngineWhatDoesNothingIsDisabled) {
    constexpr const char* kControls[] = {"window-title.bypass",
                                         "window-title.quality-selector.object",
                                         "window-title.instance-name.readout",
                                         "c.buttons.preset-manager",
                                         "c.buttons.preset-manager.quick-preset-list",
                                         "c.buttons.history.button-undo",
                                         "c.buttons.history.button-select",
                                         "c.buttons.history.button-redo",
                                         "c.buttons.ab",
                                         "c.buttons.copy",
                                         "c.buttons.reset",
                                         "c.buttons.channel-routing",
                                         "c.buttons.channel-routing.quick-preset-list",
                                         "c.xeq1.title-frame-head.eq-invert-scale.scale",
                                         "c.xeq1.title-frame-head.eq-invert-scale.invert",
                                         "c.xeq1.title-frame-head.param-reset-button",
                                         "c.xeq2.xeq-base.edit-group.param-copy-button",
                                         "c.xeq2.xeq-base.edit-group.selector.button",
                                         "c.xeq2.xeq-base.underlay-group.selector.button#4",
                                         "c.xeq1.cs-sliders.ruler-values.label#3",
                                         "c.xeq1.cs-sliders.ruler-freqs.label#3",
                                         "c.xeq1.cs-gain.ruler-values.label"};
    for (const char* control : kControls) {
        EXPECT_EQ(at(control).isDisabled(), std::string(control).find("history") != std::string::npos) << control;
    }
    scene.endEngine().wait(0.1);
    for (const char* control : kControls) {
        EXPECT_TRUE(at(control).isDisabled()) << control;
    }
    EXPECT_FALSE(at("c.buttons.settings").isDisabled()) << "settings need no engine";
}

TEST_F(ProductStates, WithoutItsEngineBarsAndNamesStayAsTheyWere) {
    const CControlSurfaceGroup& group = *bars().editableGroup();
    const CString quality = at("window-title.quality-selector.object").getAttrString("object-value-title");
    const double value = group.point(6).y;
    ASSERT_EQ(group.count(), 7);
    ASSERT_GT(value, 1.0);
    const int32_t before = lightOfBar(6);
    scene.endEngine().wait(0.1);
    EXPECT_EQ(group.count(), 7);
    EXPECT_EQ(group.point(6).y, value);
    EXPECT_FALSE(group.isActive());
    EXPECT_LT(lightOfBar(6), before / 2) << "disabled";
    EXPECT_FALSE(quality.isEmpty());
    EXPECT_TRUE(at("window-title.quality-selector.object").getAttrString("object-value-title") == quality);
}

TEST_F(ProductStates, BypassDimsTheBarsAndLeavesTheValues) {
    const auto valuesOf = [this] {
        const CViewRect& box = at("c.xeq1.cs-sliders.ruler-values").area().box();
        const CPictureByHand picture = editor.pictureOf(*editor.window());
        std::string pixels;
        for (auto y = static_cast<int32_t>(box.y) + 1; y < static_cast<int32_t>(box.bottom()); ++y) {
            for (auto x = static_cast<int32_t>(box.x); x < static_cast<int32_t>(box.right()); ++x) {
                pixels += std::to_string(picture.at(x, y)) + ' ';
            }
        }
        return pixels;
    };
    const int32_t before = lightOfBar(6);
    const std::string values = valuesOf();
    scene.click("window-title.bypass").wait(0.1);
    EXPECT_TRUE(bars().isStateSet("bypassed"));
    EXPECT_LT(lightOfBar(6), before * 7 / 10);
    EXPECT_GT(lightOfBar(6), before * 4 / 10) << "still seen";
    EXPECT_TRUE(valuesOf() == values);
    scene.click("window-title.bypass").wait(0.1);
    EXPECT_EQ(lightOfBar(6), before);
}

TEST_F(ProductStates, ABypassInTheMiddleOfADragLetsTheDragGoOn) {
    scene.press("c.xeq1.cs-gain.control-surface").set("modBypass.enable", 0, 0, 1.0).wait(0.2);
    EXPECT_TRUE(bars().isStateSet("bypassed"));
    EXPECT_TRUE(dynamic_cast<CControlSurface&>(at("c.xeq1.cs-gain.control-surface")).isDragging());
}

}  // namespace

}  // namespace tarv
