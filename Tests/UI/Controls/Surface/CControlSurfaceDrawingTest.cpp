// What a surface draws, pixel by pixel.

#include <functional>
#include <numeric>

#include "Core/CApplication.h"
#include "Platform/Keyboard.h"
#include "Tests/Core/LogCapture.h"
#include "Tests/UI/Controls/Surface/SurfaceTree.h"
#include "UI/Resources/CDataSetObject.h"

namespace tarv {
namespace {

class SurfaceDrawing : public CSurfaceTest {
protected:
    using CPicture = std::vector<uint32_t>;

    const CColor& color(const char* name) {
        const auto* palette = CApplication::sharedRoot()->findObjectOf<CPaletteObject>("pal.Default");
        return *palette->dataSet().findColor(CString(name));
    }
    CPixel full(const char* name) { return color(name).full(); }
    CPicture picture() {
        CPicture all;
        const CPictureByHand shownNow = shown().picture();
        for (int32_t y = 0; y < shownNow.height; ++y) {
            for (int32_t x = 0; x < shownNow.width; ++x) {
                all.push_back(shownNow.at(x, y));
            }
        }
        return all;
    }
    /// Draws all anew.
    CPicture drawnAtOnce() {
        at<CView>("ui.main-window").requestRedraw();
        advance();
        return picture();
    }
    int32_t middle(int32_t band) { return static_cast<int32_t>(surface().layout().middle(band)); }
    static std::string withLines(const std::string& attributes = "") {
        return bands("is-show-hairlines=\"true\" ruler=\"^ruler\" " + attributes) +
               R"(<ui:ruler name="ruler" placement="left" ruler-size="18" image-set="shared::is.ruler"
                    color="RulerTick" min-max="ui.range" ruled-view="^surface"/>)";
    }
};

TEST_F(SurfaceDrawing, ABarAtZeroShowsItsTwoPixelsAtEveryScale) {
    for (const double scale : {0.8, 1.0, 1.25}) {
        open(bands(), scale);
        const CSurfaceLayout layout = surface().layout();
        EXPECT_EQ(layout.pitch(), scale == 0.8 ? 24 : scale == 1.0 ? 31 : 38);
        EXPECT_EQ(layout.rangeLength(), scale == 0.8 ? 160 : scale == 1.0 ? 200 : 248);
        const int32_t zero = layout.pixel(0.5);
        EXPECT_EQ(pixel(middle(2), zero - 1), full("Custom1")) << scale;
        EXPECT_NE(pixel(middle(2), zero + 1), pixel(middle(2), zero)) << scale;
        const CIntRect bar = surface().barRect(sliders(), 2);
        EXPECT_EQ(bar.height(), 2);
        editor.close();
    }
}

TEST_F(SurfaceDrawing, ABarEndsAtThePixelOfItsValueAndIsBrightestThere) {
    open(bands());
    setGain(1, 6.0);
    setGain(2, -6.0);
    const CIntRect up = surface().barRect(sliders(), 1);
    const CIntRect down = surface().barRect(sliders(), 2);
    EXPECT_EQ(up.top, 30 + 50);
    EXPECT_EQ(up.bottom, 30 + 100);
    EXPECT_EQ(down.top, 30 + 100);
    EXPECT_EQ(down.bottom, 30 + 150);
    EXPECT_EQ(pixel(middle(1), up.top), full("Custom1"));
    EXPECT_EQ(pixel(middle(2), down.bottom - 1), full("Custom1"));
    EXPECT_NE(pixel(middle(1), up.bottom - 1), full("Custom1"));
}

TEST_F(SurfaceDrawing, AnUnderlayIsFlatWithALineAtItsEndAndAsWideAsTheBar) {
    open(bands());
    setGain(3, 6.0, 1);
    const CControlSurfaceGroup& under = group("surface.underlays");
    const CIntRect box = surface().barRect(under, 3);
    EXPECT_EQ(box.left, surface().barRect(sliders(), 3).left);
    EXPECT_EQ(box.right, surface().barRect(sliders(), 3).right);
    const CPixel ground = pixel(middle(3), box.top - 5);
    const CPixel inside = pixel(middle(3), box.top + 10);
    EXPECT_EQ(inside, pixel(middle(3), box.top + 30)) << "flat";
    EXPECT_NE(inside, ground);
    EXPECT_NE(pixel(middle(3), box.top), inside) << "the line";
    // Green of the second group: that part of the way from the pit to its full brightness.
    const auto green = [](CPixel p) { return static_cast<double>(p >> 8 & 255); };
    const double strength = color("CSSliderBarUnderlay").opacity;
    EXPECT_NEAR(green(inside), green(ground) + (green(full("Custom2")) - green(ground)) * strength, 1.01);
    EXPECT_NEAR(green(pixel(middle(3), box.top)), green(inside) + (green(full("Custom2")) - green(inside)) * 0.45,
                1.01);
}

TEST_F(SurfaceDrawing, ColoursFollowTheGroupByTheSwatch) {
    open(bands());
    setGain(1, 6.0);
    const int32_t top = surface().barRect(sliders(), 1).top;
    set("main-window.surface.sliders", "color", "1");
    advance();
    EXPECT_EQ(pixel(middle(1), top), full("Custom2"));
    CLogCapture log;
    set("main-window.surface.sliders", "color", "7");
    advance();
    EXPECT_TRUE(log.has("WRONG COLOR INDEX 7"));
    EXPECT_EQ(pixel(middle(1), top), full("Custom1"));
}

TEST_F(SurfaceDrawing, AGroupThatIsMadeLaterHasItsColour) {
    open(bands());
    delete &sliders();
    advance(0.1);
    CControlSurfaceGroup* late = nullptr;
    EXPECT_EQ(consumed(surface().createChildOf(late, "ui:test-group", "late", true)), "");
    setGain(1, 6.0);
    EXPECT_EQ(surface().editableGroup(), late);
    EXPECT_EQ(pixel(middle(1), surface().barRect(*late, 1).top), full("Custom1"));
}

TEST_F(SurfaceDrawing, TheHoveredBarIsLighterAndTheOthersAreAsBefore) {
    open(bands());
    setGain(1, 6.0);
    setGain(2, 6.0);
    moveTo(1, 3.0);
    advance();
    const int32_t top = surface().barRect(sliders(), 1).top;
    EXPECT_EQ(pixel(middle(1), top), full("Custom1_Hover"));
    EXPECT_EQ(pixel(middle(2), top), full("Custom1"));
    moveTo(2, 3.0);
    advance();
    EXPECT_EQ(pixel(middle(1), top), full("Custom1"));
    EXPECT_EQ(pixel(middle(2), top), full("Custom1_Hover"));
}

TEST_F(SurfaceDrawing, PitsAndTheSelectedColumnHaveTheirColours) {
    open(bands());
    const auto inPit = [this](int32_t band) { return pixel(middle(band), surface().layout().pit(band).top + 40); };
    const auto edge = [this](int32_t band) {
        const CIntRect pit = surface().layout().pit(band);
        return pixel(pit.left, pit.top + 40);
    };
    const CPixel calm = inPit(2);
    const CPixel calmEdge = edge(2);
    moveTo(2, 0.0);
    advance();
    // The picture holds a brightness, which each colour makes its own pixel of.
    const CColor& pit = color("CSSliderBarPit");
    const CColor& lit = color("CSSliderBarPit_Hover");
    EXPECT_NE(inPit(2), calm);
    EXPECT_EQ(
        std::inner_product(std::begin(pit.ramp), std::end(pit.ramp), std::begin(lit.ramp), false, std::logical_or<>(),
                           [&](CPixel former, CPixel now) { return former == calm && now == inPit(2); }),
        true);
    EXPECT_EQ(inPit(3), calm);
    input().click();
    moveToPixel(390, 310);
    advance();
    EXPECT_NE(inPit(2), calm) << "the ground of a selected one";
    EXPECT_NE(edge(2), calmEdge) << "its frame";
    EXPECT_EQ(edge(3), edge(4));
    EXPECT_TRUE(input().tap(kKeyEscape));
    advance();
    EXPECT_EQ(inPit(2), calm);
    EXPECT_EQ(edge(2), calmEdge);
}

TEST_F(SurfaceDrawing, HairlinesStandAtTheMajorStepsBetweenTheBars) {
    open(withLines());
    setGain(1, 9.0);
    const CSurfaceLayout layout = surface().layout();
    const int32_t gap = layout.column(1).left;
    for (const int32_t pixels : {0, 50, 150, 199}) {
        EXPECT_EQ(pixel(gap, 30 + pixels), full("GraphLines")) << pixels;
    }
    EXPECT_EQ(pixel(gap, 30 + 100), full("GraphZero"));
    EXPECT_NE(pixel(gap, 30 + 75), full("GraphLines")) << "a minor step has none";
    EXPECT_NE(pixel(middle(1), 30 + 50), full("GraphLines")) << "a bar hides it";
    set("range", "max", "24");
    advance();
    EXPECT_EQ(pixel(gap, 30 + 133), full("GraphZero")) << "they follow the range";
    set("main-window.ruler", "is-show-hairlines", "false");
    advance();
    EXPECT_NE(pixel(gap, 30 + 133), full("GraphZero"));
    set("main-window.ruler", "is-show-hairlines", "true");
    delete &ruler();
    advance();
    EXPECT_NE(pixel(gap, 30 + 133), full("GraphZero")) << "the ruler has gone";
    EXPECT_EQ(tryOpen(bands("is-show-hairlines=\"false\"")), "");
    EXPECT_EQ(surface().findChild("hairlines"), nullptr);
}

TEST_F(SurfaceDrawing, WithoutPointsOnlyThePanelIsDrawn) {
    open(bands("", R"(point-count="0")"));
    set("main-window.surface.underlays", "point-count", "0");
    advance();
    const CPixel ground = pixel(5, 5);
    for (const uint32_t shownPixel : picture()) {
        EXPECT_EQ(shownPixel, ground);
    }
}

TEST_F(SurfaceDrawing, AnInactiveParameterIsDrawnDisabled) {
    open(R"(<ui:control-surface name="surface" placement="overlay" width="217" height="200" outer-border="L20 T30"
              image-set="shared::is.csurface" is-slider-mode="true" min-max="ui.range">
              <ui:control-surface-group name="sliders" point-count="7" is-balanced="true" is-fixed-x="true">
                <ui:ui-param name="ui-param-y" bridge=""/>
              </ui:control-surface-group>
            </ui:control-surface>)");
    EXPECT_EQ(pixel(middle(2), surface().layout().pixel(0.5) - 1), full("Disabled"));
}

TEST_F(SurfaceDrawing, ADragDrawsItsBarAlone) {
    open(withLines());
    moveTo(3, 0.0);
    input().press();
    moveBy(0, 40);
    advance();
    shown().forgetPresented();
    moveBy(0, 1);
    advance();
    const CIntRect bar = surface().barRect(sliders(), 3);
    EXPECT_GT(shown().presentedPixels(), 0);
    EXPECT_LE(shown().presentedPixels(), int64_t{bar.width() + 8} * (bar.height() + 8));
    shown().forgetPresented();
    advance(1.0);
    EXPECT_EQ(shown().presentedPixels(), 0) << "at rest nothing";
    input().release();
}

TEST_F(SurfaceDrawing, WhatIsDrawnByPartsEqualsOneDrawingOfAll) {
    open(withLines("is-point-number-shown=\"true\""));
    const bool isLong = std::getenv("TARV_LONG") != nullptr;
    std::mt19937 random(11);
    for (int step = 0; step < (isLong ? 3000 : 80); ++step) {
        const auto band = static_cast<int32_t>(random() % 7);
        const double decibels = static_cast<double>(random() % 241) / 10.0 - 12.0;
        switch (random() % 8) {
            case 0:
                setGain(band, decibels, 1);
                break;
            case 1:
                moveTo(band, decibels);
                break;
            case 2:
                moveTo(band, decibels);
                input().click();
                break;
            case 3:
                moveToPixel(390, 310);
                break;
            case 4:
                moveTo(band, decibels);
                input().wheel(random() % 2 == 0 ? 1.0 : -2.0);
                break;
            default:
                setGain(band, decibels);
        }
        advance();
        const CPicture byParts = picture();
        ASSERT_EQ(byParts == drawnAtOnce(), true) << step;
    }
}

TEST_F(SurfaceDrawing, NumbersStandInTheirColumns) {
    open(bands("is-point-number-shown=\"true\""));
    for (int32_t band = 0; band < 7; ++band) {
        const CView* number = nullptr;
        int32_t found = 0;
        for (CObject* child : surface().children()) {
            auto* view = dynamic_cast<CView*>(child);
            if (view && view->tag() == CString("ui:control-surface-point-num") && found++ == band) {
                number = view;
            }
        }
        ASSERT_TRUE(number);
        EXPECT_EQ(number->getAttrString("title").toUtf8(), std::to_string(band + 1));
        EXPECT_EQ(number->area().box().x, surface().layout().column(band).left);
    }
    EXPECT_TRUE(editor.instance()->set(kCount, 0, 0, 5.0));
    advance();
    int32_t count = 0;
    for (CObject* child : surface().children()) {
        count += child->tag() == CString("ui:control-surface-point-num") ? 1 : 0;
    }
    EXPECT_EQ(count, 5);
}

}  // namespace
}  // namespace tarv
