#include "UI/Views/CSectorMap.h"

#include "Core/CHeap.h"
#include "Tests/UI/Views/SectorHelp.h"

namespace tarv {
namespace {

class SectorMap : public CSectorTest {};

TEST_F(SectorMap, HasOneColumnMoreThanWhole128s) {
    const struct {
        double length;
        int32_t cells;
    } kRows[] = {{0, 0},     {0.4, 0},   {-5, 0},  {0.5, 1},   {1, 1},   {127, 1},
                 {127.4, 1}, {127.5, 2}, {128, 2}, {255.4, 2}, {256, 3}, {300, 3}};
    for (const auto& row : kRows) {
        EXPECT_GOOD(win.map.resize(row.length, 128));
        EXPECT_EQ(win.map.columns(), row.cells) << row.length;
        EXPECT_EQ(win.map.rows(), row.cells > 0 ? 2 : 0);
        EXPECT_EQ(win.map.isEmpty(), row.cells == 0);
        EXPECT_GOOD(win.map.resize(128, row.length));
        EXPECT_EQ(win.map.rows(), row.cells) << row.length;
    }
}

TEST_F(SectorMap, DrawsAllOnceAndShowsItInTheWindow) {
    win.resize(300, 200);
    add(10, {0, 0, 300, 200});
    add(20, {100.5, 60.25, 150, 90.5});
    EXPECT_TRUE(win.map.isDirty());
    EXPECT_EQ(win.tick(), 3 * 2 * 128 * 128);
    EXPECT_FALSE(win.map.isDirty());
    EXPECT_EQ(differenceNow(), "");
    EXPECT_EQ(win.tick(), 0);
}

TEST_F(SectorMap, AMoveWithinATileMarksTheOldPlaceAndKeepsTheOrder) {
    win.resize(100, 100);
    CPatternView& lower = add(10, {0, 0, 30, 30});
    add(10, {25, 25, 30, 30});
    win.tick();
    const CViewRect before = lower.visible;
    lower.visible = lower.whole = {10, 10, 30, 30};
    win.map.updateView(lower, before, lower.visible);
    EXPECT_EQ(win.tick(), 30 * 30) << "the old place alone";
    win.look(lower);
    EXPECT_EQ(win.tick(), 30 * 30);
    EXPECT_EQ(differenceNow(), "") << "still below the other one";
}

TEST_F(SectorMap, AMoveIntoAnotherTileLeavesTheFormerOne) {
    win.resize(300, 100);
    CPatternView& view = add(10, {100, 10, 20, 20});
    EXPECT_TRUE(win.map.sector(0, 0).holds(view));
    EXPECT_FALSE(win.map.sector(1, 0).holds(view));
    win.place(view, {110, 10, 20, 20});
    EXPECT_TRUE(win.map.sector(0, 0).holds(view));
    EXPECT_TRUE(win.map.sector(1, 0).holds(view));
    win.place(view, {128, 10, 20, 20});
    EXPECT_FALSE(win.map.sector(0, 0).holds(view));
    win.tick();
    EXPECT_EQ(differenceNow(), "");
    win.remove(view);
    EXPECT_FALSE(win.map.sector(1, 0).holds(view));
    EXPECT_EQ(win.tick(), 20 * 20);
    views.clear();
    EXPECT_EQ(differenceNow(), "");
}

TEST_F(SectorMap, ManyChangesOfATileListItOnce) {
    win.resize(128.4, 100);
    CPatternView& view = add(10, {0, 0, 10, 10});
    win.tick();
    win.window().forgetPresented();
    for (int32_t i = 0; i < 5; ++i) {
        win.look(view);
        win.place(view, {5.0 * i, 0, 10, 10});
    }
    EXPECT_EQ(win.tick(), 30 * 10) << "one rectangle around all";
    EXPECT_EQ(win.window().presentCount(), 1);
}

TEST_F(SectorMap, ViewsThatJoinedBeforeTheGridWasThereAreDrawn) {
    CPatternView& view = add(10, {10, 10, 200, 50});
    EXPECT_FALSE(win.map.isDirty());
    win.resize(100, 100);
    win.tick();
    EXPECT_EQ(differenceNow(), "");
    win.resize(300, 100);
    win.tick();
    EXPECT_EQ(differenceNow(), "") << "the part that was beside the grid";
    EXPECT_TRUE(win.map.sector(1, 0).holds(view));
    win.resize(0, 0);
    EXPECT_EQ(win.tick(), 0);
    win.place(view, {20, 10, 200, 50});
    win.resize(300, 100);
    win.tick();
    EXPECT_EQ(differenceNow(), "");
}

TEST_F(SectorMap, AResizeKeepsTilesAtTheirPlaceAndDrawsAll) {
    win.resize(300, 300);
    add(10, {0, 0, 300, 300});
    win.tick();
    const CSector* kept = &win.map.sector(1, 1);
    win.resize(200, 260);
    EXPECT_EQ(&win.map.sector(1, 1), kept);
    EXPECT_EQ(win.map.columns(), 2);
    EXPECT_EQ(win.tick(), 2 * 3 * 128 * 128);
    EXPECT_EQ(differenceNow(), "");
}

TEST_F(SectorMap, AResizeThatFailsLeavesNoTileAndTheNextOneAll) {
    win.resize(300, 300);
    add(10, {0, 0, 300, 300});
    win.tick();
    system.failSurface(CSurfaceStep::Section, 8);
    EXPECT_EQ(messageOf(win.map.resize(200, 200)), "CreateDIBSection() error 8 (width=128, height=512).");
    EXPECT_TRUE(win.map.isEmpty());
    EXPECT_FALSE(win.map.isDirty());
    win.look(*views[0]);
    win.place(*views[0], {5, 5, 100, 100});
    EXPECT_EQ(win.tick(), 0);
    EXPECT_EQ(win.map.viewAt(50, 50), nullptr);
    win.resize(200, 200);
    win.tick();
    EXPECT_EQ(differenceNow(), "");
    EXPECT_EQ(system.desktop().surfaceCount(), 1);
}

TEST_F(SectorMap, PresentsWhatIsThereAgain) {
    win.resize(300, 200);
    add(10, {0, 0, 300, 200});
    win.tick();
    const CPictureByHand before = win.picture();
    const CIntRect rect{100, 90, 260, 140};
    system.desktop().expose(win.window().handle(), rect);
    EXPECT_NE(win.picture(), before);
    int32_t calls = 0;
    win.map.present(rect, [&](int32_t column, int32_t row, const CIntRect& own, const CSurface& surface, int32_t top) {
        const int32_t x = column * CSector::kSize;
        const int32_t y = row * CSector::kSize;
        win.window().present(surface, x, y - top, own.moved(x, y));
        ++calls;
    });
    EXPECT_EQ(calls, 6);
    EXPECT_EQ(win.picture(), before);
    EXPECT_EQ(views[0]->drawnPixels, 300 * 200) << "nothing was drawn for it";
}

TEST_F(SectorMap, FindsTheTopmostViewAtAPoint) {
    win.resize(300, 200);
    CPatternView& panel = add(10, {0, 0, 300, 200});
    CPatternView& low = add(20, {100, 50, 60, 40});
    CPatternView& high = add(20, {120, 60, 60, 40});
    EXPECT_EQ(win.map.viewAt(50, 50), &panel);
    EXPECT_EQ(win.map.viewAt(130, 70), &high);
    EXPECT_EQ(win.map.viewAt(130, 70, &high), &low);
    EXPECT_EQ(win.map.viewAt(130, 70, &low), &panel);
    EXPECT_EQ(win.map.viewAt(130, 70, &panel), nullptr);
    high.isPassed = true;
    EXPECT_EQ(win.map.viewAt(130, 70), &low);
    low.isOn = false;
    EXPECT_EQ(win.map.viewAt(130, 70), &panel);
    low.isOn = true;
    EXPECT_EQ(win.map.viewAt(100, 50), &low) << "left and top are in";
    EXPECT_EQ(win.map.viewAt(160, 60), &panel) << "right is out";
    EXPECT_EQ(win.map.viewAt(110, 90), &panel) << "bottom is out";
    EXPECT_EQ(win.map.viewAt(99.5, 60), &low) << "half away from zero";
    EXPECT_EQ(win.map.viewAt(99.4, 60), &panel);
    EXPECT_EQ(win.map.viewAt(-0.5, 60), nullptr);
    EXPECT_EQ(win.map.viewAt(-0.4, 60), &panel);
    EXPECT_EQ(win.map.viewAt(10, -1), nullptr);
    EXPECT_EQ(win.map.viewAt(384, 10), nullptr) << "beside the grid";
    EXPECT_EQ(win.map.viewAt(10, 1e12), nullptr);
}

TEST_F(SectorMap, AtRestDrawsNothingAndAllocatesNothing) {
    win.resize(300, 200);
    add(10, {0, 0, 300, 200});
    add(20, {50, 50, 100, 100}, true).opacity = 0.5;
    win.tick();
    forgetDrawn();
    win.window().forgetPresented();
    const uint64_t before = CHeap::counters().allocations;
    for (int32_t i = 0; i < 100; ++i) {
        EXPECT_EQ(win.tick(), 0);
    }
    EXPECT_EQ(CHeap::counters().allocations, before);
    EXPECT_EQ(win.window().presentCount(), 0);
    EXPECT_EQ(views[0]->drawCount + views[1]->drawCount, 0);
}

TEST_F(SectorMap, AMovingViewAllocatesNothing) {
    win.resize(300, 200);
    add(10, {0, 0, 300, 200});
    CPatternView& bar = add(20, {10, 10, 30, 30}, true);
    const auto round = [&] {
        for (int32_t i = 0; i < 100; ++i) {
            win.place(bar, {2.25 * i, 1.5 * i, 30, 30});
            bar.opacity = i % 2 == 0 ? 1.0 : 0.5;
            win.tick();
        }
    };
    round();
    const uint64_t before = CHeap::counters().allocations;
    round();
    EXPECT_EQ(CHeap::counters().allocations, before);
}

}  // namespace
}  // namespace tarv
