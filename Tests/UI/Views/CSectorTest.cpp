#include "UI/Views/CSector.h"

#include "Tests/UI/Views/SectorHelp.h"

namespace tarv {
namespace {

class Sector : public CSectorTest {};

TEST_F(Sector, ViewsOfOneNumberStandInTheOrderOfTheirJoining) {
    win.resize(100, 100);
    add(10, {0, 0, 50, 50});
    add(10, {20, 20, 50, 50});
    add(5, {30, 30, 50, 50});
    win.tick();
    EXPECT_EQ(differenceNow(), "");
    // The first one leaves the tile and comes back: it is the last now.
    win.place(*views[0], {});
    win.place(*views[0], {0, 0, 50, 50});
    std::swap(views[0], views[1]);
    win.tick();
    EXPECT_EQ(differenceNow(), "");
}

TEST_F(Sector, OpacityDecidesOnTheTarget) {
    win.resize(100, 100);
    CPatternView& view = add(10, {0, 0, 30, 30});
    const struct {
        double opacity;
        bool isDrawn;
        bool isDirect;
    } kRows[] = {{1.0, true, true},  {0.9995, true, true}, {0.999, true, true},    {0.998, true, false},
                 {0.5, true, false}, {0.001, true, false}, {0.0009, false, false}, {0.0, false, false}};
    win.tick();
    const CLinearBitmap* direct = view.lastTarget;
    for (const auto& row : kRows) {
        view.opacity = row.opacity;
        forgetDrawn();
        win.look(view);
        win.tick();
        EXPECT_EQ(view.drawCount, row.isDrawn ? 1 : 0) << row.opacity;
        if (row.isDrawn) {
            EXPECT_EQ(view.lastTarget == direct, row.isDirect) << row.opacity;
        }
        EXPECT_EQ(differenceNow(), "") << row.opacity;
    }
}

TEST_F(Sector, WhatIsThinOrNotShownIsNotDrawn) {
    win.resize(100, 100);
    CPatternView& view = add(10, {0, 0, 30, 30});
    for (const CViewRect& whole : {CViewRect{0, 0, 0.1, 30}, CViewRect{0, 0, 30, 0.1}}) {
        view.whole = whole;
        forgetDrawn();
        win.look(view);
        win.tick();
        EXPECT_EQ(view.drawCount, 0);
    }
    view.whole = {0, 0, 0.11, 0.11};
    win.look(view);
    win.tick();
    EXPECT_EQ(view.drawCount, 1);
    // A view that its hidden parent does not clip has a rectangle, and is hidden all the same.
    view.whole = view.visible;
    view.isOn = false;
    forgetDrawn();
    win.look(view);
    win.tick();
    EXPECT_EQ(view.drawCount, 0);
    EXPECT_EQ(differenceNow(), "");
}

TEST_F(Sector, AViewDrawsWhatTheClipLeaves) {
    win.resize(100, 100);
    CPatternView& view = add(10, {0, 0, 50, 50});
    win.tick();
    forgetDrawn();
    win.map.invalidate({10, 20, 5, 6}, &view);
    EXPECT_EQ(win.tick(), 30);
    EXPECT_EQ(view.drawnPixels, 30);
}

TEST_F(Sector, AMovingViewLeavesThePanelBelowInTheCache) {
    win.resize(512, 300);
    CPatternView& panel = add(10, {0, 0, 512, 300});
    CPatternView& bar = add(20, {40, 30, 20, 80}, true);
    CPatternView& cap = add(30, {0, 0, 100, 20});
    win.tick();
    for (int32_t i = 0; i < 10; ++i) {
        forgetDrawn();
        win.place(bar, {40, 30.0 + 4 * i, 20, 80});
        const int64_t shown = win.tick();
        EXPECT_EQ(panel.drawnPixels, 0) << "below the lowest dynamic view";
        EXPECT_EQ(cap.drawnPixels, 0) << "not touched";
        EXPECT_LE(bar.drawnPixels, 3 * 20 * 80);
        EXPECT_EQ(shown, 20 * (80 + (i > 0 ? 4 : 0))) << "the old place and the new one";
        EXPECT_EQ(differenceNow(), "");
    }
}

TEST_F(Sector, AStaticViewAboveADynamicOneDirtiesTheTileOnly) {
    win.resize(100, 100);
    CPatternView& panel = add(10, {0, 0, 100, 100});
    CPatternView& bar = add(20, {10, 10, 60, 60}, true);
    CPatternView& label = add(30, {20, 20, 30, 10});
    win.tick();
    forgetDrawn();
    win.look(label);
    EXPECT_EQ(win.tick(), 300);
    EXPECT_EQ(panel.drawnPixels, 0);
    EXPECT_EQ(bar.drawnPixels, 300);
    EXPECT_EQ(label.drawnPixels, 300);
    forgetDrawn();
    win.map.invalidate({0, 0, 30, 30}, &panel);
    EXPECT_EQ(win.tick(), 900);
    EXPECT_EQ(panel.drawnPixels, 900) << "below, so in the cache";
    EXPECT_EQ(bar.drawnPixels, 400);
    EXPECT_EQ(differenceNow(), "");
}

TEST_F(Sector, ADynamicViewEntersAndLeavesATileWithoutItsPanel) {
    win.resize(300, 100);
    CPatternView& panel = add(10, {0, 0, 300, 100});
    CPatternView& bar = add(20, {40, 30, 20, 20}, true);
    win.tick();
    forgetDrawn();
    for (const double x : {118.0, 140.0, 120.0, 40.0, 250.0}) {
        win.place(bar, {x, 30, 20, 20});
        win.tick();
        EXPECT_EQ(panel.drawnPixels, 0) << x;
        EXPECT_EQ(differenceNow(), "") << x;
    }
}

TEST_F(Sector, ViewsGoBetweenCacheAndTileByTheirOwnRectangles) {
    win.resize(100, 100);
    CPatternView& panel = add(10, {0, 0, 100, 100});
    CPatternView& bar = add(20, {10, 10, 20, 20}, true);
    CPatternView& label = add(30, {50, 50, 30, 10});
    win.tick();
    forgetDrawn();
    bar.isOn = false;
    win.look(bar);
    EXPECT_EQ(win.tick(), 20 * 20);
    EXPECT_EQ(panel.drawnPixels, 70 * 50) << "around the bar and the label";
    EXPECT_EQ(label.drawnPixels, 300);
    EXPECT_EQ(differenceNow(), "");
    forgetDrawn();
    win.map.invalidate({0, 0, 100, 100}, &label);
    win.tick();
    EXPECT_EQ(label.drawnPixels, 300) << "in the cache now, as is all";
    EXPECT_EQ(panel.drawnPixels, 100 * 100);
    // The flag alone, then a move before the next tick: the cache must not keep what it holds of the view.
    bar.isOn = true;
    bar.isMoving = false;
    win.look(bar);
    win.tick();
    bar.isMoving = true;
    win.place(bar, {});
    win.tick();
    EXPECT_EQ(differenceNow(), "");
}

TEST_F(Sector, AViewThatFailsIsLeftOutAndTriedAgain) {
    win.resize(200, 100);
    add(10, {0, 0, 200, 100});
    CPatternView& bad = add(20, {50, 50, 100, 40});
    add(30, {60, 20, 30, 60});
    bad.isFailing = true;
    win.tick();
    EXPECT_EQ(win.failures, 2) << "once for each tile";
    bad.isOn = false;
    EXPECT_EQ(differenceNow(), "") << "the others are drawn";
    bad.isOn = true;
    win.tick();
    EXPECT_EQ(win.failures, 4);
    bad.isFailing = false;
    win.tick();
    EXPECT_EQ(differenceNow(), "");
    EXPECT_EQ(win.tick(), 0);
    EXPECT_EQ(win.failures, 4);
    bad.opacity = 0.5;
    bad.isFailing = true;
    win.look(bad);
    win.tick();
    bad.isFailing = false;
    win.tick();
    EXPECT_EQ(differenceNow(), "");
}

}  // namespace
}  // namespace tarv
