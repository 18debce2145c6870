// What a host sees of a window: its first picture, its idle calls and wheel reports, an end inside a call.

#include "Core/CGlobalSettings.h"
#include "Tests/UI/Windows/WindowTree.h"

namespace tarv {
namespace {

class CWindowHostTest : public CWindowTree {
protected:
    /// The window of 300 x 200 is filled with 17, and "a" takes the wheel and the keys.
    void openOne() {
        open({view(
            "a",
            {{"placement", "full"}, {"width", "100%"}, {"height", "100%"}, {"fill", "17"}, {"grabs-keys", "true"}})});
    }
    CWindowSharedData& shared() const { return window().sharedData(); }
};

TEST_F(CWindowHostTest, TheFirstPictureIsThereBeforeTheSystemAsksForIt) {
    ASSERT_EQ(tryBuild({view("a", {{"placement", "full"}, {"width", "100%"}, {"height", "100%"}, {"fill", "17"}})}),
              "");
    ASSERT_EQ(consumed(window().open()), "");
    EXPECT_EQ(pixel(0, 0), 17u);
    EXPECT_EQ(pixel(299, 199), 17u);
    EXPECT_EQ(at("a").drawCount, 6) << "3 x 2 tiles, once each";
}

TEST_F(CWindowHostTest, AnIdleCallMakesUpForTicksThatStarved) {
    openOne();
    listen("main-window.window-renderer", "render");
    window().idle();
    EXPECT_EQ(CEventLog::heard.size(), 0u) << "the last tick is not old";
    system.starve(0.049);
    window().idle();
    EXPECT_EQ(CEventLog::heard.size(), 0u);
    system.starve(0.001);
    window().idle();
    window().idle();
    EXPECT_EQ(CEventLog::heard.size(), 1u) << "two ticks of 25 ms have been missed";
    window().shut();
    system.starve(1.0);
    window().idle();
    EXPECT_EQ(CEventLog::heard.size(), 1u);
}

TEST_F(CWindowHostTest, WithTheBuiltInRefreshIdleCallsDrawAndTheTimerWhereTheyCease) {
    openOne();
    globalSettings().isBuiltinRefresh = true;
    listen("main-window.window-renderer", "render");
    system.advance(0.1);
    EXPECT_EQ(CEventLog::heard.size(), 4u) << "this host has never been idle";
    CEventLog::heard.clear();
    system.starve(0.025);
    window().idle();
    window().idle();
    EXPECT_EQ(CEventLog::heard.size(), 1u) << "one tick of 25 ms";
    system.advance(0.2);
    EXPECT_EQ(CEventLog::heard.size(), 1u) << "the timer waits for the host";
    window().idle();
    EXPECT_EQ(CEventLog::heard.size(), 2u);
    system.advance(0.5);
    EXPECT_GE(CEventLog::heard.size(), 10u) << "the host calls no more";
    globalSettings().isBuiltinRefresh = false;
}

TEST_F(CWindowHostTest, AWheelThatTheHostReportsGoesToTheViewAtThePointer) {
    openOne();
    CAttributeMap last;
    CFilledView::actions["a.mouse-wheel"] = [&](CFilledView&, CAttributeMap& params) {
        last = params;
        params["is-handled"] = CAttributeValue::fromBool(true);
    };
    moveTo(20, 30);
    system.input().holdKeys(true, false, false);
    EXPECT_TRUE(window().onHostWheel(-1.0));
    EXPECT_EQ(last["delta"].asReal(), -1.0);
    EXPECT_EQ(last["actual-x"].asReal(), 20.0);
    EXPECT_EQ(last["actual-y"].asReal(), 30.0);
    EXPECT_TRUE(last["is-shift"].asBool());
    CFilledView::actions.clear();
    EXPECT_FALSE(window().onHostWheel(-1.0)) << "no view takes it";
    moveTo(-5, 30);
    EXPECT_FALSE(window().onHostWheel(1.0)) << "the pointer is beside the window";
    moveTo(20, 30);
    window().shut();
    EXPECT_FALSE(window().onHostWheel(1.0));
}

TEST_F(CWindowHostTest, AWheelThatTheHostReportsReachesAPopup) {
    templates = {popup("menu", 100, 60, {{"window-alignment", "bottom"}}, {view("row", {{"placement", "full"}})})};
    openOne();
    openPopup("a", "menu");
    CWindow* menu = popupWindow("menu");
    ASSERT_TRUE(menu);
    system.input().moveIn(menu->handle(), 10, 10);
    double delta = 0.0;
    CFilledView::actions["menu.mouse-wheel"] = [&](CFilledView&, CAttributeMap& params) {
        delta = params["delta"].asReal();
        params["is-handled"] = CAttributeValue::fromBool(true);
    };
    EXPECT_TRUE(window().onHostWheel(1.0));
    EXPECT_EQ(delta, 1.0);
}

TEST_F(CWindowHostTest, APenThatJumpsCountsWhereItStands) {
    openOne();
    std::string places;
    const auto note = [&](CFilledView&, CAttributeMap& params) {
        places += std::to_string(params["actual-x"].asInt()) + "," + std::to_string(params["actual-y"].asInt()) + " ";
    };
    CFilledView::actions["a.mouse-press"] = note;
    CFilledView::actions["a.mouse-move"] = note;
    CFilledView::actions["a.mouse-release"] = note;
    system.input().jump(kHostX + 20, kHostY + 30);
    system.input().press();
    system.input().jump(kHostX + 250, kHostY + 150);
    system.input().move(kHostX + 251, kHostY + 150);
    system.input().jump(kHostX + 3, kHostY + 4);
    system.input().release();
    EXPECT_EQ(system.input().x(), kHostX + 3) << "nothing moves it back";
    EXPECT_EQ(places, "20,30 251,150 3,4 3,4 ");
}

TEST_F(CWindowHostTest, WhatWaitsForTheCallsRunsOnceBehindTheOutermost) {
    openOne();
    EXPECT_FALSE(shared().isBusy());
    int runs = 0;
    int runsInside = -1;
    CFilledView::actions["a.mouse-press"] = [&](CFilledView&, CAttributeMap&) {
        EXPECT_TRUE(shared().isBusy());
        shared().callWhenDone([&] { ++runs; });
        // Another call of the same editor, inside.
        window().tick();
        runsInside = runs;
    };
    click(10, 10);
    EXPECT_EQ(runsInside, 0);
    EXPECT_EQ(runs, 1);
    CFilledView::actions.clear();
    click(10, 10);
    EXPECT_EQ(runs, 1);
}

TEST_F(CWindowHostTest, TheTreeMayEndBehindEachCall) {
    for (const char* moment : {"a.mouse-press", "a.mouse-release", "a.mouse-move", "a.mouse-wheel", "a.key-press"}) {
        openOne();
        CFilledView::actions[moment] = [this](CFilledView&, CAttributeMap&) {
            CFilledView::actions.clear();
            CWindowSharedData& data = shared();
            data.shutWindows();
            EXPECT_FALSE(window().isOpen());
            data.callWhenDone([this] { tree.reset(); });
        };
        moveTo(20, 20);
        system.input().press();
        system.input().release();
        system.input().wheel(1.0);
        if (tree) {
            window().router().setKeyFocus(&at("a"));
            system.input().tap(kKeySpace, u" ");
        }
        EXPECT_FALSE(tree) << moment;
        EXPECT_TRUE(system.isClean()) << moment;
    }
}

TEST_F(CWindowHostTest, AShutWindowTicksWithoutDrawing) {
    openOne();
    window().shut();
    const int32_t drawn = at("a").drawCount;
    at("a").requestRedraw();
    system.advance(0.2);
    EXPECT_EQ(at("a").drawCount, drawn);
    ASSERT_EQ(consumed(window().open()), "");
    EXPECT_GT(at("a").drawCount, drawn);
}

TEST_F(CWindowHostTest, ACallFromElsewhereRunsWhenTheThreadTakesItsEvents) {
    openOne();
    auto* bridge = tree->findObjectOf<CUIEventBridge>("ui");
    std::string order;
    EXPECT_EQ(consumed(bridge->call([&] { order += "a"; })), "");
    EXPECT_EQ(consumed(bridge->call([&] {
                  order += "b";
                  tree.reset();
              })),
              "");
    EXPECT_EQ(order, "");
    system.pump();
    EXPECT_EQ(order, "ab");
    EXPECT_FALSE(tree);
    openOne();
    bridge = tree->findObjectOf<CUIEventBridge>("ui");
    EXPECT_EQ(consumed(bridge->call([&] { order += "c"; })), "");
    tree.reset();
    system.pump();
    EXPECT_EQ(order, "ab") << "it ends with the tree";
}

}  // namespace
}  // namespace tarv
