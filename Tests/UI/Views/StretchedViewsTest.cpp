// Views whose pictures stretch over them: frames, pictures over panels, shades.

#include <gtest/gtest.h>

#include "Tests/UI/Views/ViewTree.h"
#include "UI/Drawing/Blend.h"
#include "UI/Views/CFrame.h"
#include "UI/Views/CGradient.h"

namespace tarv {
namespace {

CTexts boxAt(int32_t x, int32_t y, int32_t width, int32_t height, CTexts more = {}) {
    more.insert(more.begin(), {{"placement", "overlay"},
                               {"width", std::to_string(width)},
                               {"height", std::to_string(height)},
                               {"outer-border", "L" + std::to_string(x) + " T" + std::to_string(y)}});
    return more;
}

CTexts withRange(const std::string& range, CTexts more = {}) {
    more.insert(more.end(), {{"image-set", "shared::is.button"}, {"image-set-range", range}, {"color", "Knob"}});
    return more;
}

class StretchedViews : public CViewTest {
protected:
    StretchedViews()
        : CViewTest({{"ui:frame", &createObject<CFrame>, &CFrame::initClass},
                     {"ui:overlay-gradient", &createObject<CGradient>, &CGradient::initClass},
                     {"ui:picture", &createObject<CPicture>, &CPicture::initClass}}) {}

    CView& openOne(const std::string& tag, const CTexts& attributes, std::vector<CTestNode> children = {}) {
        open({{"palette", "A"}}, {{tag, "a", attributes, std::move(children)}});
        tick();
        return at("a");
    }
    /// Pixels of a row, as far as they differ from 0: "from-to:step" with the step of the ramp.
    std::string row(int32_t y) const {
        std::string text;
        for (int32_t x = 0; x < 100; ++x) {
            const CPixel value = pixel(x, y);
            if (value == 0) {
                continue;
            }
            int32_t end = x;
            while (end + 1 < 100 && pixel(end + 1, y) == value) {
                ++end;
            }
            text += (text.empty() ? "" : " ") + std::to_string(x) + "-" + std::to_string(end) + ":" +
                    std::to_string(value & 255);
            x = end;
        }
        return text;
    }
    static std::string rectText(const CViewRect& rect) {
        const auto whole = [](double value) { return std::to_string(std::lround(value)); };
        return whole(rect.x) + "," + whole(rect.y) + " " + whole(rect.width) + "x" + whole(rect.height);
    }
};

TEST_F(StretchedViews, ARangeOfNineIsDrawnAsAFrameByEveryView) {
    for (const char* tag : {"ui:view", "ui:frame", "ui:picture"}) {
        openOne(tag, withRange("Frame", boxAt(10, 10, 20, 12)));
        EXPECT_EQ(row(7), "") << tag;
        EXPECT_EQ(row(8), "9-13:10 14-25:11 26-32:12") << tag;
        EXPECT_EQ(row(13), "9-13:10 14-25:11 26-32:12") << tag;
        EXPECT_EQ(row(14), "9-13:13 14-25:14 26-32:15") << tag;
        EXPECT_EQ(row(18), "9-13:16 14-25:17 26-32:18") << tag;
        EXPECT_EQ(row(25), "9-13:16 14-25:17 26-32:18") << tag;
        EXPECT_EQ(row(26), "") << tag;
    }
}

TEST_F(StretchedViews, WhatReachesBeyondTheBoxWidensTheSpread) {
    CView& a = openOne("ui:frame", withRange("Frame", boxAt(10, 10, 20, 12)));
    EXPECT_EQ(box("a"), "10,10 20x12");
    EXPECT_EQ(rectText(a.visibleRect()), "9,8 24x18");
    // The larger one counts, side by side.
    set(a, "spread", "L7 B1");
    tick();
    EXPECT_EQ(rectText(a.visibleRect()), "3,8 30x18");
    EXPECT_EQ(row(8), "9-13:10 14-25:11 26-32:12");
    set(a, "image-set-range", "Glow");
    tick();
    EXPECT_EQ(rectText(a.visibleRect()), "3,9 28x14");
    set(a, "image-set", "");
    tick();
    EXPECT_EQ(rectText(a.visibleRect()), "3,10 27x13");
}

TEST_F(StretchedViews, ARangeOfAStateHasItsOwnOverhang) {
    CView& a = openOne("ui:frame", withRange("Box", boxAt(10, 10, 20, 12)),
                       {{"ui:view-state", "s", {{"state-name", "active"}, {"image-set-range", "Frame"}}}});
    EXPECT_EQ(rectText(a.visibleRect()), "10,10 20x12");
    EXPECT_EQ(consumed(a.setState("active")), "");
    tick();
    EXPECT_EQ(rectText(a.visibleRect()), "9,8 24x18");
    EXPECT_EQ(row(8), "9-13:10 14-25:11 26-32:12");
    EXPECT_EQ(consumed(a.unsetState("active")), "");
    tick();
    EXPECT_EQ(rectText(a.visibleRect()), "10,10 20x12");
    EXPECT_EQ(row(8), "");
}

TEST_F(StretchedViews, NothingOfARootViewLiesBesideItsWindow) {
    open(withRange("Frame", {{"palette", "A"}}), {});
    EXPECT_EQ(rectText(rootView_->wholeRect()), "0,0 300x200");
    tick();
    EXPECT_EQ(pixel(0, 0), 10u);
    EXPECT_EQ(pixel(299, 199), 18u);
}

TEST_F(StretchedViews, AFrameWithoutBordersIsItsMiddle) {
    CView& a = openOne("ui:frame", withRange("Frame", boxAt(10, 10, 20, 12, {{"has-borders", "false"}})));
    EXPECT_EQ(row(9), "");
    EXPECT_EQ(row(10), "10-29:14");
    EXPECT_EQ(row(21), "10-29:14");
    set(a, "has-borders", "true");
    tick();
    EXPECT_EQ(row(10), "9-13:10 14-25:11 26-32:12");
}

TEST_F(StretchedViews, OnePictureIsRepeatedByWhatStretchesAndDrawnOnceByAPlainView) {
    openOne("ui:frame", withRange("Wheel", boxAt(10, 10, 22, 5)));
    EXPECT_EQ(row(10), "10-31:40");
    EXPECT_EQ(row(14), "10-31:40");
    EXPECT_EQ(row(15), "");
    openOne("ui:picture", withRange("Wheel", boxAt(10, 10, 22, 5)));
    EXPECT_EQ(row(14), "10-31:40");
    openOne("ui:view", withRange("Wheel", boxAt(10, 10, 22, 6)));
    EXPECT_EQ(row(11), "");
    EXPECT_EQ(row(12), "19-22:40");
    openOne("ui:picture", withRange("Wheel", boxAt(10, 10, 22, 6, {{"image-alignment", "right-bottom"}})));
    EXPECT_EQ(row(13), "");
    EXPECT_EQ(row(14), "28-31:40");
}

TEST_F(StretchedViews, APictureIsAsLargeAsTheFirstImageOfItsRange) {
    const CTexts compact = {{"placement", "overlay"}};
    CView& a =
        openOne("ui:picture", withRange("Box", compact),
                {{"ui:view-state", "s", {{"state-name", "active"}, {"image-set-range", "{image-set-range}Active"}}}});
    EXPECT_EQ(box("a"), "0,0 4x2");
    EXPECT_EQ(consumed(a.setState("active")), "");
    flush();
    EXPECT_EQ(box("a"), "0,0 6x6");
    EXPECT_EQ(consumed(a.unsetState("active")), "");
    flush();
    EXPECT_EQ(box("a"), "0,0 4x2");
    set(a, "compact-width", "9");
    flush();
    EXPECT_EQ(box("a"), "0,0 9x2");
    set(a, "compact-width", "");
    set(a, "image-set", "");
    flush();
    EXPECT_EQ(box("a"), "0,0 0x0");
}

TEST_F(StretchedViews, APictureIsPassedByTheHitTestUnlessItSaysOtherwise) {
    CView& a = openOne("ui:picture", withRange("Box", boxAt(10, 10, 20, 20)));
    EXPECT_TRUE(a.isDecorative());
    EXPECT_EQ(window_.map.viewAt(12, 12), rootView_);
    set(a, "is-decorative", "false");
    EXPECT_EQ(window_.map.viewAt(12, 12), &a);
    openOne("ui:view", boxAt(10, 10, 20, 20, {{"is-decorative", "true"}}), {view("b", boxAt(0, 0, 5, 5))});
    EXPECT_TRUE(at("a.b").isDecorative());
    EXPECT_EQ(window_.map.viewAt(11, 11), rootView_);
}

TEST_F(StretchedViews, AShadeGrowsFromNothingAtTheTopToTheColourAtTheBottom) {
    // Across the edge of two tiles.
    open({{"palette", "A"}}, {view("ground", boxAt(0, 0, 300, 200, {{"color", "Text"}})),
                              {"ui:overlay-gradient", "a", boxAt(10, 100, 20, 50, {{"color", "Glass"}})}});
    tick();
    EXPECT_TRUE(at("a").isDecorative());
    constexpr CPixel kGround = 0x010203;
    EXPECT_EQ(pixel(15, 99), kGround);
    EXPECT_EQ(pixel(15, 150), kGround);
    CLinearBitmap row;
    EXPECT_GOOD(row.resize(1, 1));
    const CColor& glass = *at("a").color(0);
    for (int32_t i = 0; i < 50; ++i) {
        row.row(0)[0] = kGround;
        row.fillRect({0, 0, 1, 1}, glass, (i + 0.5) / 50.0);
        EXPECT_EQ(pixel(10, 100 + i), row.row(0)[0]) << i;
        EXPECT_EQ(pixel(29, 100 + i), row.row(0)[0]) << i;
    }
    EXPECT_EQ(pixel(9, 140), kGround);
    EXPECT_EQ(pixel(30, 140), kGround);
}

TEST_F(StretchedViews, AShadeWithAPictureDrawsThePicture) {
    openOne("ui:overlay-gradient", withRange("Wheel", boxAt(10, 10, 8, 2)));
    EXPECT_EQ(row(10), "10-17:40");
}

TEST_F(StretchedViews, FramesBeyondTheFirstAreAnAnimation) {
    CView& a =
        openOne("ui:frame",
                withRange("Frames", boxAt(10, 10, 20, 12, {{"is-gradient-animated", "true"}, {"gradient-fps", "10"}})));
    EXPECT_EQ(row(10), "9-13:10 14-25:11 26-32:12");
    EXPECT_EQ(tick(0.05), 0);
    tick(0.06);
    EXPECT_EQ(row(10), "9-13:19 14-25:20 26-32:21");
    EXPECT_EQ(row(15), "9-13:22 14-25:23 26-32:24");
    tick(0.1);
    EXPECT_EQ(row(10), "9-13:10 14-25:11 26-32:12");
    set(a, "is-gradient-animated", "false");
    tick(0.1);
    EXPECT_EQ(tick(1.0), 0);
    openOne("ui:view",
            withRange("Wheel", boxAt(10, 10, 4, 2, {{"is-gradient-animated", "true"}, {"gradient-fps", "10"}})));
    tick(0.11);
    EXPECT_EQ(row(10), "10-13:41");
    tick(0.2);
    EXPECT_EQ(row(10), "10-13:40");
}

TEST_F(StretchedViews, EachPieceCounts) {
    open({{"palette", "A"}}, {{"ui:frame", "a", withRange("Frame", boxAt(10, 10, 8, 8))}});
    window_.map.resetLoad();
    tick();
    // Four corners with what they reach beyond the box: 12 x 14 pixels.
    EXPECT_EQ(window_.map.load(), 4 * 500 + 12 * 14);
}

}  // namespace
}  // namespace tarv
