#include "UI/Controls/Buttons/CScrollerBar.h"

#include "Tests/UI/Controls/ControlEditor.h"

namespace tarv {
namespace {

/// A view of 100 x 100 that shows a quarter of its content of 400, and a bar of 100 beside it.
class CScrollerBarTest : public CControlEditor {
protected:
    CScrollerBarTest() {
        openWindow({{"ui:view",
                     "v",
                     {{"placement", "left"},
                      {"alignment-v", "top"},
                      {"width", "100"},
                      {"height", "100"},
                      {"is-scrollable", "true"},
                      {"ratio-y", "0.25"},
                      {"ratio-x", "0.5"}}}});
    }
    CScrollerBar& add(CTexts more = {}) {
        more.insert(more.end(), {{"placement", "left"},
                                 {"alignment-v", "top"},
                                 {"height", "100"},
                                 {"width", "12"},
                                 {"is-vertical", "true"},
                                 {"scrolled-view", "^v"},
                                 {"color", "ScrollerBar"}});
        load("w", {{"ui:scroller-bar",
                    "bar",
                    std::move(more),
                    {{"ui:view-color-slot", "s", {{"color", "ScrollerButton"}}}}}});
        turn();
        return at<CScrollerBar>("bar");
    }
    double offset(CViewCell cell = CViewCell::OffsetY) { return at<CView>("v").area().value(cell); }
    void deliver(const char* event, const char* name = nullptr, double value = 0.0) {
        CAttributeMap params;
        if (name) {
            params[name] = CAttributeValue::fromReal(value);
        }
        EXPECT_EQ(consumed(deliverEvent(at<CView>("bar"), event, params)), "");
        turn();
    }
    /// From the top of the bar.
    std::string button() {
        const CScrollerBar& bar = at<CScrollerBar>("bar");
        const CViewRect rect = bar.buttonRect();
        return std::to_string(std::lround(rect.y - bar.wholeRect().y)) + "+" + std::to_string(std::lround(rect.height));
    }
};

TEST_F(CScrollerBarTest, ShowsTheOffsetAndTheRatio) {
    add();
    EXPECT_EQ(button(), "0+25");
    set(object("w.v"), "offset-y", "0.75");
    turn();
    EXPECT_EQ(button(), "75+25");
    set(object("w.v"), "ratio-y", "1");
    turn();
    EXPECT_TRUE(at<CScrollerBar>("bar").buttonRect().isEmpty()) << "nothing is hidden";
}

TEST_F(CScrollerBarTest, TheButtonCanBeHeldUnlessTheRealRangeIsWanted) {
    CScrollerBar& bar = add();
    set(object("w.v"), "ratio-y", "0.05");
    EXPECT_EQ(button(), "0+16");
    set(bar, "is-show-real-range", "true");
    EXPECT_EQ(button(), "0+5");
}

TEST_F(CScrollerBarTest, AListenerOfADragMayDestroyTheBar) {
    CScrollerBar& bar = add();
    CScrollerBar* alive = &bar;
    object("heard").listenObject(bar.fullName(), "scroll", "change");
    listen(bar, {"scroll"});
    CHeardEvents::onChange = [&] {
        delete alive;
        alive = nullptr;
    };
    pointAt(bar, 6, 10);
    system_.input().press();
    pointAt(bar, 6, 30);
    EXPECT_EQ(alive, nullptr);
    system_.input().release();
    turn();
}

TEST_F(CScrollerBarTest, ADragThatIsTakenBackScrollsToItsStart) {
    CScrollerBar& bar = add();
    set(object("w.v"), "offset-y", "0.25");
    turn();
    listen(bar, {"scroll-start", "scroll-stop"});
    pointAt(bar, 6, 30);
    system_.input().press();
    pointAt(bar, 6, 50);
    ASSERT_NE(offset(), 0.25);
    system_.input().tap(kKeyEscape);
    turn();
    EXPECT_EQ(offset(), 0.25);
    pointAt(bar, 6, 60);
    system_.input().release();
    turn();
    EXPECT_EQ(offset(), 0.25);
    EXPECT_EQ(heard(), "bar scroll-start, bar scroll-stop");
}

TEST_F(CScrollerBarTest, ADragFollowsThePointerOneToOne) {
    CScrollerBar& bar = add();
    listen(bar, {"scroll-start", "scroll", "scroll-stop"});
    pointAt(bar, 6, 10);
    system_.input().press();
    EXPECT_EQ(offset(), 0.0) << "a press does not make it jump";
    pointAt(bar, 6, 40);
    turn();
    EXPECT_EQ(button(), "30+25");
    EXPECT_NEAR(offset(), 0.3, 1e-6);
    pointAt(bar, 6, 290);
    turn();
    EXPECT_EQ(button(), "75+25");
    pointAt(bar, 6, 10);
    system_.input().release();
    EXPECT_EQ(offset(), 0.0) << "back at its start";
    EXPECT_EQ(heard(), "bar scroll-start, bar scroll, bar scroll, bar scroll, bar scroll-stop");
    EXPECT_EQ(CHeardEvents::last["offset"].asReal(), 0.0);
}

TEST_F(CScrollerBarTest, APressBesideTheButtonGoesOnByWhatIsSeenWhileItIsHeld) {
    CScrollerBar& bar = add();
    pointAt(bar, 6, 80);
    system_.input().press();
    EXPECT_NEAR(offset(), 0.25, 1e-6);
    turn(2.0);
    EXPECT_NEAR(offset(), 0.75, 1e-6) << "up to the pointer";
    system_.input().release();
    pointAt(bar, 6, 2);
    system_.input().click();
    EXPECT_NEAR(offset(), 0.5, 1e-6);
}

TEST_F(CScrollerBarTest, APanDragsTheContent) {
    CScrollerBar& bar = add({{"is-pan", "true"}});
    pointAt(bar, 6, 80);
    system_.input().press();
    pointAt(bar, 6, 40);
    EXPECT_NEAR(offset(), 0.1, 1e-6) << "40 pixels of 400";
    pointAt(bar, 6, 90);
    EXPECT_EQ(offset(), 0.0);
    system_.input().release();
}

TEST_F(CScrollerBarTest, TheWheelGoesOnByATenthOfWhatIsSeen) {
    CScrollerBar& bar = add();
    pointAt(bar);
    EXPECT_TRUE(system_.input().wheel(-2.0));
    EXPECT_NEAR(offset(), 0.05, 1e-6);
    EXPECT_TRUE(system_.input().wheel(5.0));
    EXPECT_EQ(offset(), 0.0);
    set(object("w.v"), "ratio-y", "1");
    EXPECT_FALSE(system_.input().wheel(-1.0));
}

TEST_F(CScrollerBarTest, DataScrollByEvents) {
    add({{"is-resizeable", "true"}});
    deliver("scroll", "offset", 0.5);
    EXPECT_NEAR(offset(), 0.5, 1e-6);
    deliver("scroll-by", "pixels", 40.0);
    EXPECT_NEAR(offset(), 0.6, 1e-6);
    deliver("scroll", "offset", 7.0);
    EXPECT_NEAR(offset(), 0.75, 1e-6) << "held in 0 to 1 - ratio";
    deliver("scroll", "offset", 0.5);
    deliver("change-ratio-by", "factor", 2.0);
    EXPECT_NEAR(at<CView>("v").area().value(CViewCell::RatioY), 0.5, 1e-6);
    EXPECT_NEAR(offset(), 0.375, 1e-6) << "the middle stays";
    deliver("change-ratio-by", "factor", -1.0);
    EXPECT_NEAR(at<CView>("v").area().value(CViewCell::RatioY), 0.5, 1e-6);
    set(object("w.bar"), "is-resizeable", "false");
    deliver("change-ratio-by", "factor", 0.5);
    EXPECT_NEAR(at<CView>("v").area().value(CViewCell::RatioY), 0.5, 1e-6);
}

TEST_F(CScrollerBarTest, ItScrollsFromStartToStopByTheClock) {
    add();
    deliver("scroll-start", "pixels", 100.0);
    turn(1.0);
    const double reached = offset();
    EXPECT_NEAR(reached, 0.25, 0.02) << "a tick may be missing at either end";
    deliver("scroll-stop");
    const double stopped = offset();
    turn(1.0);
    EXPECT_EQ(offset(), stopped);
    deliver("scroll-start", "pixels", -100.0);
    deliver("scroll-timer");
    EXPECT_LT(offset(), stopped);
}

TEST_F(CScrollerBarTest, ADoubleClickSwitchesBetweenTwoPlaces) {
    CScrollerBar& bar = add({{"is-snapshots-enabled", "true"}});
    deliver("scroll", "offset", 0.5);
    pointAt(bar, 6, 60);
    system_.input().click();
    system_.input().click();
    turn();
    EXPECT_EQ(offset(), 0.0);
    deliver("switch-snapshot");
    EXPECT_NEAR(offset(), 0.5, 1e-6);
    set(bar, "is-snapshots-enabled", "false");
    deliver("switch-snapshot");
    EXPECT_NEAR(offset(), 0.5, 1e-6);
}

TEST_F(CScrollerBarTest, ALevelBarScrollsAcross) {
    load("w", {{"ui:scroller-bar",
                "bar",
                {{"placement", "top"},
                 {"alignment-h", "left"},
                 {"width", "100"},
                 {"height", "12"},
                 {"scrolled-view", "^v"}}}});
    turn();
    deliver("scroll", "offset", 0.25);
    EXPECT_NEAR(offset(CViewCell::OffsetX), 0.25, 1e-6);
    EXPECT_EQ(offset(), 0.0);
    EXPECT_EQ(at<CScrollerBar>("bar").buttonRect().width, 50.0);
}

TEST_F(CScrollerBarTest, WithoutAPathItIsThatOfTheViewAboveIt) {
    load("w.v", {{"ui:frame",
                  "scroller-v",
                  {{"placement", "scroller-v"}, {"width", "12"}, {"height", "100%"}},
                  {{"ui:scroller-bar", "bar", {{"is-vertical", "true"}, {"width", "12"}, {"height", "100"}}}}}});
    turn();
    const auto& bar = at<CScrollerBar>("v.scroller-v.bar");
    set(object("w.v"), "offset-y", "0.75");
    turn();
    EXPECT_EQ(bar.buttonRect().bottom(), bar.wholeRect().bottom());
}

TEST_F(CScrollerBarTest, AViewThatDoesNotScrollFails) {
    EXPECT_EQ(tryLoad("w", {{"ui:scroller-bar", "x", {{"scrolled-view", "^nothing"}}}}),
              "Unable to locate scrolled view '^nothing'.");
}

TEST_F(CScrollerBarTest, AtRestNothingIsDrawn) {
    CScrollerBar& bar = add();
    deliver("scroll", "offset", 0.5);
    pointAt(bar);
    turn(1.0);
    CWindowByHand& shown = *system_.desktop().find(window_->handle());
    shown.forgetPresented();
    turn(1.0);
    EXPECT_EQ(shown.presentedPixels(), 0);
    deliver("scroll", "offset", 0.6);
    EXPECT_GT(shown.presentedPixels(), 0);
}

TEST_F(CScrollerBarTest, ADragAWheelAndAHeldPressAllocateNothing) {
    CScrollerBar& bar = add();
    int32_t changes = 0;
    CHeardEvents::onChange = [&] { ++changes; };
    object("heard").listenObject(bar.fullName(), "scroll", "change");
    const auto drag = [&] {
        pointAt(bar, 6, 10);
        system_.input().press();
        for (const int32_t y : {20, 40, 60, 30, 10}) {
            pointAt(bar, 6, y);
            turn();
        }
        system_.input().release();
        turn();
    };
    EXPECT_EQ(allocations(drag), 0u);
    EXPECT_GE(changes, 4 * 5);
    EXPECT_EQ(allocations([&] {
                  EXPECT_TRUE(system_.input().wheel(-2.0));
                  turn();
                  EXPECT_TRUE(system_.input().wheel(2.0));
                  turn();
              }),
              0u);
    EXPECT_EQ(allocations([&] {
                  for (const int32_t y : {90, 2}) {
                      pointAt(bar, 6, y);
                      system_.input().press();
                      turn(1.0);
                      system_.input().release();
                      turn();
                  }
              }),
              0u);
}

}  // namespace
}  // namespace tarv
