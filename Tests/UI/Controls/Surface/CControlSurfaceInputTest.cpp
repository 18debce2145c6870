// Hover, wheel and keys of a surface.

#include "Core/CGlobalSettings.h"
#include "Platform/Keyboard.h"
#include "Tests/UI/Controls/Surface/SurfaceTree.h"

namespace tarv {
namespace {

constexpr double kRounding = 1e-9;

class SurfaceInput : public CSurfaceTest {};

TEST_F(SurfaceInput, TheBarUnderThePointerIsHoveredAndMarkedByItsSurface) {
    open(bands());
    EXPECT_EQ(surface().hoveredPoint(), -1);
    moveTo(4, 5.0);
    EXPECT_EQ(surface().hoveredPoint(), 4);
    EXPECT_EQ(text("main-window.surface", "hovered-point"), "4");
    moveTo(0, -11.9);
    EXPECT_EQ(surface().hoveredPoint(), 0);
    moveToPixel(300, 300);
    EXPECT_EQ(text("main-window.surface", "hovered-point"), "-1");
}

TEST_F(SurfaceInput, ATabletHasNoHoverButTakesPresses) {
    open(bands());
    set("global-data.tablet-mode", "tablet-mode", "true");
    advance();
    moveTo(4, 5.0);
    EXPECT_EQ(surface().hoveredPoint(), -1);
    input().press();
    moveBy(0, 25);
    EXPECT_NEAR(bar(4), 3.0, kRounding);
    input().release();
    keys(false, false, true);
    input().press();
    moveTo(2, 3.0);
    EXPECT_NEAR(bar(2), 3.0, 0.13) << "a stroke sets bars";
    EXPECT_EQ(surface().hoveredPoint(), -1);
    input().release();
    keys(false, false, false);
    set("global-data.tablet-mode", "tablet-mode", "false");
    advance();
}

TEST_F(SurfaceInput, ANotchIsTheWheelsPrecisionInDecibels) {
    open(bands());
    moveTo(2, 0.0);
    const size_t before = steps().size();
    EXPECT_TRUE(input().wheel(1.0));
    advance();
    EXPECT_NEAR(gain(2), 0.5, kRounding);
    EXPECT_TRUE(input().wheel(-3.0));
    EXPECT_TRUE(input().wheel(0.5));
    advance();
    EXPECT_NEAR(gain(2), -0.75, kRounding) << "parts of a notch count";
    EXPECT_EQ(steps().size(), before + 1) << "notches within half a second are one step";
    advance(1.0);
    keys(true, false, false);
    EXPECT_TRUE(input().wheel(1.0));
    advance();
    EXPECT_NEAR(gain(2), -0.75 + 0.5 * globalSettings().shiftKeyPrecision, kRounding);
    EXPECT_EQ(steps().size(), before + 2);
    keys(false, false, false);
    EXPECT_TRUE(input().wheel(1000.0));
    advance();
    EXPECT_EQ(bar(2), 12.0);
    moveToPixel(300, 300);
    EXPECT_FALSE(input().wheel(1.0)) << "beside the surface the host has it";
}

TEST_F(SurfaceInput, ANotchOnAFrequencyIsAPartOfASemitoneAndOnStatesOneState) {
    const auto one = [](const char* name, const char* bridge, int left) {
        return std::string(R"(<ui:control-surface name=")") + name + R"(" placement="overlay" width="60" height="200"
                 image-set="shared::is.csurface" is-slider-mode="true" outer-border="T30 L)" +
               std::to_string(left) + R"(">
                 <ui:control-surface-group name="g" point-count="1">
                   <ui:ui-param name="ui-param-y" bridge=")" +
               bridge + R"("/>
                 </ui:control-surface-group></ui:control-surface>)";
    };
    open(one("frequency", "ui.freqs", 20) + one("states", "ui.count", 200));
    const auto value = [this](const char* param) { return engineParam(param).userData().value(0, 0); };
    const char* const kFreqs = "plugin.modMain.modBrindleXEQ.xeq-freqs";
    const double hertz = value(kFreqs);
    moveToPixel(50, 100);
    input().wheel(2.0);
    advance();
    EXPECT_NEAR(value(kFreqs), hertz * std::exp2(1.0 / 12.0), 1e-6);
    keys(true, false, false);
    input().wheel(-4.0);
    keys(false, false, false);
    advance();
    EXPECT_NEAR(value(kFreqs), hertz, 1e-6) << "half as much with Shift";
    moveToPixel(230, 100);
    EXPECT_EQ(value(kCount), 7.0);
    input().wheel(1.0);
    advance();
    EXPECT_EQ(value(kCount), 8.0);
    input().wheel(-0.5);
    advance();
    EXPECT_EQ(value(kCount), 8.0);
    input().wheel(-0.5);
    advance();
    EXPECT_EQ(value(kCount), 7.0) << "parts of a notch add up to a state";
}

TEST_F(SurfaceInput, NotchesAddUpBeforeTheEngineHasAnswered) {
    open(bands());
    moveTo(2, 0.0);
    for (int i = 0; i < 4; ++i) {
        input().wheel(1.0);
    }
    EXPECT_NEAR(bar(2), 2.0, kRounding);
    advance();
    EXPECT_NEAR(gain(2), 2.0, kRounding);
}

TEST_F(SurfaceInput, ArrowKeysMoveTheBarOnlyAfterAClickOnIt) {
    open(bands());
    moveTo(2, 0.0);
    EXPECT_FALSE(input().tap(kKeyUp)) << "the host's";
    input().click();
    EXPECT_EQ(surface().selectedPoint(), 2);
    EXPECT_TRUE(input().tap(kKeyUp));
    advance();
    EXPECT_NEAR(gain(2), 0.5, kRounding);
    EXPECT_TRUE(input().tap(kKeyRight));
    EXPECT_TRUE(input().tap(kKeyDown));
    advance();
    EXPECT_NEAR(gain(3), -0.5, kRounding);
    for (int i = 0; i < 20; ++i) {
        input().tap(kKeyLeft);
    }
    EXPECT_EQ(surface().selectedPoint(), 0);
    EXPECT_FALSE(input().tap(kKeySpace, u" ")) << "other keys are the host's";
    EXPECT_TRUE(input().tap(kKeyEscape));
    EXPECT_EQ(surface().selectedPoint(), -1);
    EXPECT_FALSE(input().tap(kKeyUp));
    EXPECT_EQ(gain(0), 0.0);
}

TEST_F(SurfaceInput, AClickElsewhereEndsTheKeys) {
    open(bands() + R"(<ui:view name="other" placement="overlay" width="50" height="50" outer-border="L300 T200"
                         is-focusable="true"/>)");
    moveTo(2, 0.0);
    input().click();
    moveToPixel(320, 220);
    input().click();
    EXPECT_EQ(surface().selectedPoint(), -1);
    EXPECT_FALSE(input().tap(kKeyUp));
    EXPECT_EQ(gain(2), 0.0);
}

TEST_F(SurfaceInput, APressMarksNothingWhereNoFocusTakesTheMarkAway) {
    open(bands());
    set("main-window.surface", "is-focusable", "false");
    moveTo(2, 0.0);
    input().click();
    EXPECT_EQ(surface().selectedPoint(), -1);
    EXPECT_FALSE(input().tap(kKeyUp));
}

TEST_F(SurfaceInput, AGroupThatIsNotEditableTakesNoPressAndNoHover) {
    open(bands("", R"(is-editable="false")"));
    EXPECT_FALSE(surface().isInputView());
    moveToPixel(128, 100);
    EXPECT_EQ(surface().hoveredPoint(), -1);
    input().press();
    moveBy(0, 50);
    input().release();
    advance();
    for (int32_t band = 0; band < 7; ++band) {
        EXPECT_EQ(gain(band), 0.0);
    }
    EXPECT_FALSE(input().wheel(1.0));
}

TEST_F(SurfaceInput, TheEditableGroupMayBeNamedOrHidden) {
    open(bands(R"(editable-group="underlays")"));
    EXPECT_EQ(surface().editableGroup(), nullptr) << "it is for show";
    set("main-window.surface", "editable-group", "sliders");
    EXPECT_EQ(surface().editableGroup(), &sliders());
    set("main-window.surface.sliders", "is-visible", "false");
    EXPECT_EQ(surface().editableGroup(), nullptr);
}

TEST_F(SurfaceInput, WithoutAnActiveParameterNothingIsTaken) {
    open(R"(<ui:control-surface name="surface" placement="overlay" width="217" height="200" outer-border="L20 T30"
              image-set="shared::is.csurface" is-slider-mode="true" min-max="ui.range" is-focusable="true">
              <ui:control-surface-group name="sliders" point-count="7" is-balanced="true" is-fixed-x="true">
                <ui:ui-param name="ui-param-y" bridge=""/>
              </ui:control-surface-group>
            </ui:control-surface>)");
    EXPECT_FALSE(sliders().isActive());
    moveTo(2, 3.0);
    EXPECT_EQ(surface().hoveredPoint(), -1);
    input().press();
    moveBy(0, 30);
    input().release();
    EXPECT_EQ(bar(2), 0.0);
    EXPECT_FALSE(input().wheel(1.0));
}

TEST_F(SurfaceInput, WhatIsWrittenDownAsWrongIsRefused) {
    const auto failure = [this](const std::string& views) {
        const std::string text = tryOpen(views);
        return text.substr(0, text.find_first_of("\r\n"));
    };
    EXPECT_EQ(failure("<ui:control-surface-group name=\"g\"/>"), "Parent is not a CControlSurface object.");
    EXPECT_EQ(failure(bands(R"(min-max-x="ui.nothing")")), "Unable to locate min-max object 'ui.nothing'.");
    EXPECT_EQ(failure(R"(<ui:control-surface name="s" color-swatch="ui.nothing"/>)"), "Unable to locate color swatch");
    EXPECT_EQ(failure(R"(<ui:control-surface name="s"><ui:control-surface-group name="g" point-count="1">
                           <ui:ui-param name="ui-param-popup" bridge="ui.out"/>
                         </ui:control-surface-group></ui:control-surface>)"),
              "Control surface popup value list not found");
    EXPECT_EQ(failure(R"(<ui:ruler name="r" min-max="ui.nothing"/>)"), "Unable to locate min-max object 'ui.nothing'.");
    EXPECT_EQ(failure(R"(<ui:ruler name="r" min-max="ui.range" label-tag="ui:nothing"/>)"),
              "Unable to create a label.");
}

TEST_F(SurfaceInput, WithoutWhatItNeedsASurfaceIsNotMade) {
    linesTemplate = "ui:another-name";
    const std::string failure = tryOpen(bands(R"(is-show-hairlines="true")"));
    EXPECT_EQ(failure.substr(0, failure.find_first_of("\r\n")), "Unable to create hairlines object");
    open("");
    delete &at<CObject>("ui.global-settings");
    CControlSurface* made = nullptr;
    const std::string text =
        consumed(at<CView>("ui.main-window").createChildOf(made, "ui:control-surface", "late", false));
    EXPECT_EQ(text.substr(0, text.find_first_of("\r\n")), "Unable to locate global settings object.");
    EXPECT_EQ(made, nullptr);
}

TEST_F(SurfaceInput, ADeclaredTimerDeliversWhatIsDragged) {
    open(bands("update-fps=\"20\"", "", R"(<core:timer name="update-timer" interval="3"/>)"));
    EXPECT_EQ(at<CObject>("ui.main-window.surface.update-timer").getAttrReal("interval"), 0.05);
    moveTo(3, 0.0);
    input().press();
    moveBy(0, 25);
    advance(0.06);
    EXPECT_NEAR(gain(3), 3.0, kRounding) << "before the release";
    input().release();
}

TEST_F(SurfaceInput, AReaderHearsTheValues) {
    open(bands());
    setGain(1, 3.0);
    EXPECT_EQ(surface().role(), CViewRole::Slider);
    EXPECT_EQ(surface().readableValue().toUtf8(), "0.0, 3.0, 0.0, 0.0, 0.0, 0.0, 0.0");
}

TEST_F(SurfaceInput, ASliderOfASettingGrowsToTheRightInSteps) {
    open(R"(<ui:min-max name="parts" min="0.1" max="1.0"/>
            <ui:control-surface name="surface" placement="overlay" width="90" height="16" outer-border="L20 T30"
              image-set="shared::is.csurface" is-slider-mode="true" update-fps="15" min-max="^parts"
              is-focusable="true">
              <ui:control-surface-group name="sliders" point-count="1" is-balanced="true" is-fixed-y="true"
                is-vertical="false" value-step="0.05">
                <ui:ui-param name="ui-param-x" shared-attribute="ui.global-data.drag-precision"/>
              </ui:control-surface-group>
            </ui:control-surface>)");
    EXPECT_EQ(bar(0), 0.7);
    const CIntRect rect = surface().barRect(sliders(), 0);
    EXPECT_EQ(rect.left, 20);
    EXPECT_EQ(rect.right, 80) << "two thirds";
    EXPECT_EQ(rect.height(), 12) << "fills the height";
    moveToPixel(25, 38);
    input().press();
    moveBy(-11, 0);
    EXPECT_EQ(bar(0), 0.6);
    EXPECT_EQ(text("global-data.drag-precision", "drag-precision"), "0.7");
    advance(0.1);
    EXPECT_EQ(globalSettings().dragPrecision, 0.6);
    moveBy(-200, 30);
    input().release();
    advance(0.1);
    EXPECT_EQ(globalSettings().dragPrecision, 0.1);
    advance(1.0);
    moveToPixel(25, 38);
    input().wheel(1.0);
    advance();
    EXPECT_EQ(bar(0), 0.15);
    input().wheel(0.5);
    advance();
    EXPECT_EQ(bar(0), 0.15);
    input().wheel(0.5);
    advance();
    EXPECT_EQ(bar(0), 0.2) << "parts of a notch add up to a step";
    moveToPixel(25, 38);
    keys(false, true, false);
    input().click();
    keys(false, false, false);
    advance();
    EXPECT_EQ(bar(0), 0.7) << "what the setting has without a user";
    input().tap(kKeyRight);
    EXPECT_EQ(bar(0), 0.75);
    set("global-data.drag-precision", "drag-precision", "0.7");
    advance();
}

TEST_F(SurfaceInput, WithACountOfNothingThereIsNothingToTake) {
    // A parameter that may be 0.
    open(R"(<ui:param-bridge name="none" interface-client="ui.interface-client"
              param="plugin.modMain.modBypass.enable"/>
            <ui:control-surface name="surface" placement="overlay" width="217" height="200" outer-border="L20 T30"
              image-set="shared::is.csurface" is-slider-mode="true" min-max="ui.range" is-focusable="true">
              <ui:control-surface-group name="sliders" is-balanced="true" is-fixed-x="true">
                <ui:ui-param name="ui-param-count" bridge="ui.main-window.none"/>
                <ui:ui-param name="ui-param-y" bridge="ui.gains"/>
              </ui:control-surface-group>
            </ui:control-surface>)");
    EXPECT_TRUE(editor.instance()->set("plugin.modMain.modBypass.enable", 0, 0, 1.0));
    advance(0.2);
    EXPECT_EQ(sliders().count(), 1);
    EXPECT_NE(pixel(128, 130), pixel(5, 5)) << "a pit at the least";
    EXPECT_TRUE(editor.instance()->set("plugin.modMain.modBypass.enable", 0, 0, 0.0));
    advance(0.2);
    for (int32_t y = 0; y < 320; ++y) {
        for (int32_t x = 0; x < 400; ++x) {
            ASSERT_EQ(pixel(x, y), pixel(5, 5)) << "only the panel is drawn";
        }
    }
    EXPECT_EQ(sliders().count(), 0);
    moveToPixel(100, 100);
    EXPECT_EQ(surface().hoveredPoint(), -1);
    input().click();
    EXPECT_FALSE(input().tap(kKeyUp));
    EXPECT_FALSE(input().wheel(1.0));
}

}  // namespace
}  // namespace tarv
