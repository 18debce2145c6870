// What parameters do to lists of points, and what is done to the lists by hand: counts, choices, removals.

#include "Tests/UI/Controls/Surface/SurfaceTree.h"

namespace tarv {
namespace {

constexpr double kRounding = 1e-9;

class SurfaceLists : public CSurfaceTest {};

TEST_F(SurfaceLists, ADoubleClickTakesAPointOffAnEraseableGroup) {
    open(R"(<ui:control-surface name="surface" placement="overlay" width="200" height="200" outer-border="L20 T30"
              image-set="shared::is.csurface" min-max-y="ui.range" min-max-x="ui.range">
              <ui:control-surface-group name="sliders" is-eraseable="true" is-balanced="true" is-fixed-x="true">
                <ui:ui-param name="ui-param-count" bridge="ui.count"/>
                <ui:ui-param name="ui-param-y" bridge="ui.gains"/>
              </ui:control-surface-group></ui:control-surface>)");
    for (int32_t band = 0; band < 7; ++band) {
        setGain(band, band);
    }
    const CSurfacePlace place = surface().placeOf(sliders(), 2);
    moveToPixel(place.x, place.y);
    input().click();
    input().click();
    advance();
    EXPECT_EQ(sliders().count(), 6);
    EXPECT_NEAR(gain(1), 1.0, kRounding);
    EXPECT_NEAR(gain(2), 3.0, kRounding);
    EXPECT_NEAR(gain(5), 6.0, kRounding);
}

TEST_F(SurfaceLists, WhatMovesTwoParametersIsOneStep) {
    open(R"(<ui:control-surface name="surface" placement="overlay" width="200" height="200" outer-border="L20 T30"
              image-set="shared::is.csurface" min-max-y="ui.range">
              <ui:control-surface-group name="sliders" is-eraseable="true">
                <ui:ui-param name="ui-param-count" bridge="ui.count"/>
                <ui:ui-param name="ui-param-x" bridge="ui.freqs"/>
                <ui:ui-param name="ui-param-y" bridge="ui.gains"/>
              </ui:control-surface-group></ui:control-surface>)");
    const char* const kFreqs = "plugin.modMain.modBrindleXEQ.xeq-freqs";
    const auto hertz = [&](int32_t band) { return engineParam(kFreqs).userData().value(0, band); };
    const double former[] = {hertz(5), hertz(6)};
    const size_t before = steps().size();
    const CSurfacePlace place = surface().placeOf(sliders(), 6);
    moveToPixel(place.x, place.y);
    input().press();
    for (int i = 0; i < 4; ++i) {
        moveBy(i % 2 == 0 ? 0 : -10, 10);
        advance(0.05);
    }
    input().release();
    advance();
    EXPECT_LT(hertz(6), former[1]);
    EXPECT_NEAR(gain(6), 40.0 * 24.0 / 200.0, kRounding);
    EXPECT_EQ(steps().size(), before + 1);
    EXPECT_EQ(steps().back(), "Point change");
    EXPECT_EQ(consumed(at<CAudioInterfaceClient>("ui.interface-client").undo()), "");
    advance(1.0);
    EXPECT_EQ(hertz(6), former[1]);
    EXPECT_EQ(gain(6), 0.0);
    const CSurfacePlace erased = surface().placeOf(sliders(), 5);
    moveToPixel(erased.x, erased.y);
    input().click();
    input().click();
    advance();
    EXPECT_EQ(sliders().count(), 6);
    EXPECT_EQ(hertz(5), former[1]);
    EXPECT_EQ(steps().size(), before + 1);
    EXPECT_EQ(steps().back(), "Point removal");
    EXPECT_EQ(consumed(at<CAudioInterfaceClient>("ui.interface-client").undo()), "");
    advance();
    EXPECT_EQ(sliders().count(), 7);
    EXPECT_EQ(hertz(5), former[0]);
}

TEST_F(SurfaceLists, NoPointIsTakenOffTheFewestThatThereMayBe) {
    // A count of at least 20, by a parameter that begins there.
    open(R"(<ui:control-surface name="surface" placement="overlay" width="300" height="200" outer-border="L20 T30"
              image-set="shared::is.csurface" min-max-y="ui.range" min-max-x="ui.range">
              <ui:control-surface-group name="sliders" is-eraseable="true" is-balanced="true" is-fixed-x="true">
                <ui:ui-param name="ui-param-count" bridge="ui.freqs"/>
                <ui:ui-param name="ui-param-y" bridge="ui.gains"/>
              </ui:control-surface-group></ui:control-surface>)");
    EXPECT_TRUE(editor.instance()->set("plugin.modMain.modBrindleXEQ.xeq-freqs", 0, 0, 20.0));
    advance();
    ASSERT_EQ(sliders().count(), 20);
    setGain(2, 3.0);
    setGain(3, -3.0);
    const CSurfacePlace place = surface().placeOf(sliders(), 2);
    moveToPixel(place.x, place.y);
    input().click();
    input().click();
    advance();
    EXPECT_NEAR(gain(2), 3.0, kRounding);
    EXPECT_NEAR(gain(3), -3.0, kRounding);
    EXPECT_EQ(sliders().count(), 20);
}

TEST_F(SurfaceLists, TheWheelChangesTheBandWidthWhereThereIsOne) {
    open(R"(<ui:control-surface name="surface" placement="overlay" width="200" height="200" outer-border="L20 T30"
              image-set="shared::is.csurface" min-max-y="ui.range" min-max-x="ui.range">
              <ui:control-surface-group name="sliders" point-count="1">
                <ui:ui-param name="ui-param-y" bridge="ui.gains"/>
                <ui:ui-param name="ui-param-bw" bridge="ui.gains" element="4"/>
                <ui:ui-param name="ui-param-reset" bridge="ui.gains" element="5"/>
              </ui:control-surface-group></ui:control-surface>)");
    setGain(5, 4.0);
    const CSurfacePlace place = surface().placeOf(sliders(), 0);
    moveToPixel(place.x, place.y);
    EXPECT_TRUE(input().wheel(2.0));
    advance();
    EXPECT_NEAR(gain(4), 1.0, kRounding);
    EXPECT_EQ(gain(0), 0.0);
    keys(false, true, false);
    input().click();
    keys(false, false, false);
    advance();
    EXPECT_NEAR(gain(0), 4.0, kRounding) << "what the reset's parameter says";
}

TEST_F(SurfaceLists, TheSelectedPointIsThatOfItsParameter) {
    open(bands("", "", R"(<ui:control-surface-group name="last" is-editable="false" point-count="7">
                            <ui:ui-param name="ui-param-y" bridge="ui.gains"/>
                            <ui:ui-param name="ui-param-sel" bridge="ui.count"/>
                          </ui:control-surface-group>)"));
    EXPECT_EQ(group("surface.last").selectedPoint(), 7);
    EXPECT_TRUE(editor.instance()->set(kCount, 0, 0, 4.0));
    advance();
    EXPECT_EQ(group("surface.last").selectedPoint(), 4);
}

TEST_F(SurfaceLists, APressChoosesAPointByTheParameterAndIsNoStep) {
    open(R"(<ui:control-surface name="surface" placement="overlay" width="217" height="200" outer-border="L20 T30"
              image-set="shared::is.csurface" is-slider-mode="true" min-max="ui.range">
              <ui:control-surface-group name="sliders" point-count="7" is-balanced="true" is-fixed-x="true">
                <ui:ui-param name="ui-param-y" bridge="ui.gains"/>
                <ui:ui-param name="ui-param-sel" bridge="ui.count"/>
              </ui:control-surface-group></ui:control-surface>)");
    const size_t before = steps().size();
    moveTo(4, 0.0);
    input().click();
    moveToPixel(390, 310);
    advance();
    EXPECT_EQ(engineParam(kCount).userData().value(0, 0), 4.0);
    EXPECT_EQ(sliders().selectedPoint(), 4);
    EXPECT_EQ(steps().size(), before);
    const auto isFramed = [this](int32_t band) {
        const CIntRect pit = surface().layout().pit(band);
        return pixel(pit.left + 1, pit.top + 40) != pixel(surface().layout().pit(0).left + 1, pit.top + 40);
    };
    EXPECT_TRUE(isFramed(4));
    EXPECT_TRUE(editor.instance()->set(kCount, 0, 0, 2.0));
    advance();
    EXPECT_TRUE(isFramed(2)) << "whoever sets it";
    EXPECT_FALSE(isFramed(4));
}

TEST_F(SurfaceLists, AGroupNotifiesOfItsCount) {
    open(bands() + "<test:destroyer name=\"listener\"/>");
    at<CObject>("ui.main-window.listener").listenObject(sliders().fullName(), "slider-count-changed", "receive");
    CSurfaceDestroyer::calls = 0;
    EXPECT_TRUE(editor.instance()->set(kCount, 0, 0, 9.0));
    advance();
    EXPECT_EQ(CSurfaceDestroyer::calls, 1);
    setGain(1, 3.0);
    set("main-window.surface.sliders", "is-sorted", "true");
    EXPECT_EQ(CSurfaceDestroyer::calls, 1) << "as many as before";
    EXPECT_EQ(sliders().count(), 9);
    EXPECT_EQ(surface().layout().count(), 9);
    EXPECT_EQ(surface().layout().pitch(), 217 / 9);
    set("main-window.surface.sliders", "point-count", "-4");
    EXPECT_EQ(sliders().count(), 0);
    set("main-window.surface.sliders", "point-count", "1000000000");
    EXPECT_EQ(sliders().count(), CControlSurfaceGroup::kMaxPoints);
    advance();
    set("main-window.surface.sliders", "point-count", "");
    EXPECT_EQ(sliders().count(), 9);
}

TEST_F(SurfaceLists, ACountOfNothingByItsParameterLeavesThePanel) {
    open(R"(<ui:param-bridge name="one" interface-client="ui.interface-client" param="plugin.modMain.modBypass.enable"/>
            <ui:control-surface name="surface" placement="overlay" width="217" height="200" outer-border="L20 T30"
              image-set="shared::is.csurface" is-slider-mode="true" min-max="ui.range" is-focusable="true">
              <ui:control-surface-group name="sliders" is-balanced="true" is-fixed-x="true">
                <ui:ui-param name="ui-param-count" bridge="ui.main-window.one"/>
                <ui:ui-param name="ui-param-y" bridge="ui.gains"/>
              </ui:control-surface-group></ui:control-surface>)");
    const auto drawn = [this] {
        int32_t count = 0;
        for (int32_t y = 0; y < 320; ++y) {
            for (int32_t x = 0; x < 400; ++x) {
                count += pixel(x, y) != pixel(0, 0) ? 1 : 0;
            }
        }
        return count;
    };
    const auto setCount = [this](double count) {
        EXPECT_TRUE(editor.instance()->set("plugin.modMain.modBypass.enable", 0, 0, count));
        advance();
    };
    setCount(1.0);
    EXPECT_EQ(sliders().count(), 1);
    EXPECT_GT(drawn(), 0);
    moveTo(0, 0.0);
    input().press();
    setCount(0.0);
    EXPECT_EQ(sliders().count(), 0);
    EXPECT_EQ(drawn(), 0);
    EXPECT_FALSE(surface().isDragging());
    moveBy(0, 30);
    input().release();
    advance();
    EXPECT_EQ(gain(0), 0.0);
    EXPECT_EQ(surface().hoveredPoint(), -1);
    EXPECT_FALSE(input().wheel(1.0));
}

TEST_F(SurfaceLists, ALinkedGroupMarksTheHoveredPoint) {
    const auto group = [](const char* name, const char* link, const char* y) {
        return std::string(
                   "<ui:control-surface-group point-count=\"3\" is-balanced=\"true\" is-fixed-x=\"true\" name=\"") +
               name + "\" linked-group=\"" + link +
               "\"><ui:ui-param name=\"ui-param-y\" bridge=\"ui.gains\" element=\"" + y +
               "\"/></ui:control-surface-group>";
    };
    open(R"(<ui:control-surface name="surface" placement="overlay" width="200" height="200" outer-border="L20 T30"
              image-set="shared::is.csurface" min-max-y="ui.range" min-max-x="ui.range">)" +
         group("sliders", "", "0") + group("linked", "sliders", "3") + group("other", "", "6") +
         "</ui:control-surface>");
    for (const auto& [element, decibels] : {std::pair{1, 0.0}, {4, 6.0}, {7, -6.0}}) {
        setGain(element, decibels);
    }
    const auto shownAt = [this](const char* name, int32_t index) {
        const CSurfacePlace place = surface().placeOf(this->group(std::string("surface.") + name), index);
        return pixel(static_cast<int32_t>(place.x), static_cast<int32_t>(place.y));
    };
    const uint32_t calm[] = {shownAt("sliders", 1), shownAt("linked", 1), shownAt("other", 1)};
    const CSurfacePlace place = surface().placeOf(sliders(), 1);
    moveToPixel(place.x, place.y);
    advance();
    EXPECT_EQ(surface().hoveredPoint(), 1);
    EXPECT_NE(shownAt("sliders", 1), calm[0]);
    EXPECT_NE(shownAt("linked", 1), calm[1]);
    EXPECT_EQ(shownAt("other", 1), calm[2]);
    moveToPixel(390, 310);
    advance();
    EXPECT_EQ(shownAt("linked", 1), calm[1]);
}

TEST_F(SurfaceLists, AGroupMayGoWhileItIsDragged) {
    open(bands());
    moveTo(3, 0.0);
    input().press();
    moveBy(0, 20);
    delete &sliders();
    moveBy(0, 20);
    advance();
    EXPECT_EQ(surface().editableGroup(), nullptr);
    input().release();
    advance();
    EXPECT_EQ(surface().groupCount(), 1);
}

}  // namespace
}  // namespace tarv
