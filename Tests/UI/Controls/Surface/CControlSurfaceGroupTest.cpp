// Lists of points that are no bars, and the rules of groups.

#include "Tests/UI/Controls/Surface/SurfaceTree.h"

namespace tarv {
namespace {

constexpr double kRounding = 1e-9;

/// A plain surface of 200 x 200 pixels from 20, 30 on: x of seven points are the first gains, y those of group 1.
class SurfacePoints : public CSurfaceTest {
protected:
    static std::string points(const std::string& group = "", const std::string& attributes = "") {
        return R"(<ui:control-surface name="surface" placement="overlay" width="200" height="200" outer-border="L20 T30"
                    image-set="shared::is.csurface" min-max-x="ui.range" min-max-y="ui.range" is-dynamic="true"
                    color-swatch="ui.swatch" )" +
               attributes + R"(><ui:control-surface-group name="sliders" point-count="3" )" + group +
               R"(><ui:ui-param name="ui-param-x" bridge="ui.gains" group-selector="ui.edit"/>
                   <ui:ui-param name="ui-param-y" bridge="ui.gains" group-selector="ui.under"/>
                 </ui:control-surface-group></ui:control-surface>)";
    }
    void openPoints(const std::string& group = "", const std::string& attributes = "") {
        open(points(group, attributes));
        const double xs[] = {-6.0, 0.0, 6.0};
        for (int32_t i = 0; i < 3; ++i) {
            setGain(i, xs[i]);
            setGain(i, xs[i] / 2.0, 1);
        }
    }
    void pressAt(double x, double y) {
        moveToPixel(20 + (x + 12.0) / 24.0 * 200.0, 30 + (12.0 - y) / 24.0 * 200.0);
        input().press();
    }
    double x(int32_t point) { return sliders().point(point).x; }
    double y(int32_t point) { return sliders().point(point).y; }
};

TEST_F(SurfacePoints, APointIsTakenWithinItsPictureAndFollowsInBothDirections) {
    openPoints();
    const CSurfacePlace place = surface().placeOf(sliders(), 1);
    EXPECT_EQ(place.x, 120.0);
    EXPECT_EQ(place.y, 130.0);
    pressAt(3.0, 0.0);
    moveBy(50, 50);
    EXPECT_NEAR(x(1), 0.0, kRounding) << "beside the points";
    input().release();
    advance(1.0);
    pressAt(0.0, 0.0);
    EXPECT_EQ(surface().hoveredPoint(), 1);
    moveBy(25, 50);
    EXPECT_NEAR(x(1), 3.0, kRounding);
    EXPECT_NEAR(y(1), 6.0, kRounding);
    input().release();
    advance();
    EXPECT_NEAR(gain(1), 3.0, kRounding);
    EXPECT_NEAR(gain(1, 1), 6.0, kRounding);
}

TEST_F(SurfacePoints, AFixedAxisStays) {
    openPoints("is-fixed-x=\"true\"");
    pressAt(0.0, 0.0);
    moveBy(25, 50);
    input().release();
    EXPECT_NEAR(x(1), 0.0, kRounding);
    EXPECT_NEAR(y(1), 6.0, kRounding);
    set("main-window.surface.sliders", "is-fixed-x", "false");
    set("main-window.surface.sliders", "is-fixed-y", "true");
    advance(1.0);
    pressAt(0.0, 6.0);
    moveBy(25, 50);
    input().release();
    EXPECT_NEAR(x(1), 3.0, kRounding);
    EXPECT_NEAR(y(1), 6.0, kRounding);
}

TEST_F(SurfacePoints, SortedPointsKeepTheirOrderAndTheirDistance) {
    openPoints("is-sorted=\"true\"");
    pressAt(0.0, 0.0);
    moveBy(90, 0);
    EXPECT_NEAR(x(1), 6.0, kRounding) << "as far as its neighbour";
    moveBy(-180, 0);
    EXPECT_NEAR(x(1), -6.0, kRounding);
    input().release();
    set("main-window.surface.sliders", "min-distance", "2");
    advance(1.0);
    pressAt(6.0, 3.0);
    moveBy(-90, 0);
    EXPECT_NEAR(x(2), -4.0, kRounding);
    input().release();
}

TEST_F(SurfacePoints, BetweenTwoPointsAPressTakesBothWhereTheGroupSaysSo) {
    openPoints("is-drag-segments=\"true\"");
    pressAt(3.0, 10.0);
    moveBy(25, 25);
    EXPECT_NEAR(x(0), -6.0, kRounding);
    EXPECT_NEAR(x(1), 3.0, kRounding);
    EXPECT_NEAR(x(2), 9.0, kRounding);
    EXPECT_NEAR(y(1), 3.0, kRounding);
    EXPECT_NEAR(y(2), 6.0, kRounding);
    moveBy(-25, -25);
    EXPECT_NEAR(x(1), 0.0, kRounding);
    input().release();
    set("main-window.surface.sliders", "is-sorted", "true");
    advance(1.0);
    pressAt(3.0, 10.0);
    moveBy(75, 0);
    EXPECT_NEAR(x(1), 9.0, kRounding) << "sorted ones make room for each other";
    input().release();
}

TEST_F(SurfacePoints, ALineOfTheBrushJoinsThePointsOfSegments) {
    openPoints("is-drag-segments=\"true\"", "brush-set=\"shared::bs.brushes\"");
    const auto between = [this](int32_t point) {
        const CSurfacePlace from = surface().placeOf(sliders(), point);
        const CSurfacePlace to = surface().placeOf(sliders(), point + 1);
        return pixel(static_cast<int32_t>(from.x + to.x) / 2, static_cast<int32_t>(std::lround((from.y + to.y) / 2.0)));
    };
    const uint32_t ground = pixel(5, 5);
    EXPECT_NE(between(0), ground);
    EXPECT_NE(between(1), ground);
    pressAt(0.0, 0.0);
    moveBy(15, 50);
    advance();
    EXPECT_NE(between(0), ground);
    EXPECT_NE(between(1), ground);
    const auto picture = [this] {
        std::vector<uint32_t> all;
        for (int32_t y = 30; y < 230; ++y) {
            for (int32_t x = 20; x < 220; ++x) {
                all.push_back(pixel(x, y));
            }
        }
        return all;
    };
    const auto moved = picture();
    at<CView>("ui.main-window").requestRedraw();
    advance();
    EXPECT_EQ(moved == picture(), true) << "the lines of both neighbours are drawn anew";
    input().release();
    set("main-window.surface.sliders", "is-drag-segments", "false");
    advance();
    EXPECT_EQ(between(0), ground);
}

TEST_F(SurfacePoints, BalancedPointsStandEvenlyOverTheWidth) {
    openPoints("is-balanced=\"true\" is-fixed-x=\"true\"");
    EXPECT_EQ(surface().placeOf(sliders(), 0).x, 21.0 + 33.0);
    EXPECT_EQ(surface().placeOf(sliders(), 1).x, 21.0 + 99.0);
    EXPECT_EQ(surface().placeOf(sliders(), 2).x, 21.0 + 165.0);
}

TEST_F(SurfacePoints, PointsAndAnchorsAreDrawnWhereTheyStand) {
    openPoints();
    const uint32_t ground = pixel(5, 5);
    EXPECT_NE(pixel(120, 130), ground);
    const uint32_t point = pixel(120 - 5, 130);
    set("main-window.surface.sliders", "kind", "anchor");
    advance();
    EXPECT_TRUE(sliders().isAnchor());
    EXPECT_NE(pixel(120, 130), ground);
    EXPECT_NE(pixel(120 - 5, 130), point) << "an anchor is smaller";
    set("main-window.surface", "control-points-alpha", "0");
    advance();
    EXPECT_EQ(pixel(120, 130), ground);
}

TEST_F(SurfacePoints, AnObjectOfTheGivenKeyStandsForEachPoint) {
    open(points("cs-point=\"core:object\"", "is-focusable=\"true\""));
    const auto objects = [this] {
        std::vector<const CObject*> found;
        for (const CObject* child : sliders().children()) {
            if (child->hasAttr("is-hovered")) {
                found.push_back(child);
            }
        }
        return found;
    };
    setGain(1, -3.0);
    setGain(1, 6.0, 1);
    const CSurfacePlace place = surface().placeOf(sliders(), 1);
    moveToPixel(place.x, place.y);
    input().click();
    advance(0.05);
    ASSERT_EQ(objects().size(), 3u);
    const CObject& second = *objects()[1];
    EXPECT_EQ(second.getAttrInt("index"), 1);
    EXPECT_NEAR(second.getAttrReal("x"), -3.0, kRounding);
    EXPECT_NEAR(second.getAttrReal("y"), 6.0, kRounding);
    EXPECT_TRUE(second.getAttrBool("is-hovered"));
    EXPECT_TRUE(second.getAttrBool("is-selected"));
    EXPECT_FALSE(objects()[0]->getAttrBool("is-hovered"));
    set("main-window.surface.sliders", "point-count", "5");
    advance(0.05);
    EXPECT_EQ(objects().size(), 5u);
    EXPECT_EQ(objects()[1], &second);
    set("main-window.surface.sliders", "point-count", "2");
    EXPECT_EQ(objects().size(), 2u);
    delete objects()[0];
    advance(0.05);
    set("main-window.surface.sliders", "cs-point", "");
    EXPECT_EQ(objects().size(), 0u);
}

TEST_F(SurfacePoints, PointsShowThreeQuartersOfTheirStrength) {
    openPoints();
    const auto center = [this] { return pixel(120, 130); };
    const CPixel ground = pixel(5, 5);
    const CPixel byDefault = center();
    set("main-window.surface", "control-points-alpha", "0.75");
    advance();
    EXPECT_EQ(center(), byDefault);
    set("main-window.surface", "control-points-alpha", "1");
    advance();
    const CPixel whole = center();
    EXPECT_NE(whole, byDefault);
    EXPECT_NE(byDefault, ground);
}

}  // namespace
}  // namespace tarv
