// Handlers that fail, destroy what is around them, or run a message loop.

#include "Tests/UI/Views/RoutedViews.h"

namespace tarv {
namespace {

struct CInputHandlersTest : CRouting {
    void buildTwo() { build({view("a", "0 0 50 50"), view("b", "50 0 50 50")}); }
};

TEST_F(CInputHandlersTest, AFailingHandlerStopsNothing) {
    buildTwo();
    move(60, 10);
    heard();
    CRoutedView::failing = "b.mouse-exit";
    move(10, 10);
    EXPECT_EQ(heard(), "b-hover a.mouse-enter a+hover a.mouse-move");
    ASSERT_EQ(window.failures.size(), 1u);
    EXPECT_NE(window.failures[0].find("Asked to fail."), std::string::npos);
    CRoutedView::failing = "a.mouse-press";
    press(10, 10);
    release(10, 10);
    EXPECT_EQ(heard(), "a+pushed a-pushed a.mouse-release");
    EXPECT_EQ(window.failures.size(), 2u);
}

TEST_F(CInputHandlersTest, AViewThatItsHandlerDestroysGetsNothingMore) {
    for (const char* moment : {"a.mouse-enter", "a+hover", "a.mouse-press", "a+pushed", "a-pushed", "a.mouse-release",
                               "a.mouse-move", "a.hint-update"}) {
        build({view("a", "0 0 50 50", {{"hint", "text"}})});
        CRoutedView::actions[moment] = [](CRoutedView& view, CAttributeMap&) { delete &view; };
        move(10, 10);
        press(10, 10);
        release(10, 10);
        EXPECT_FALSE(find("r.a")) << moment;
        EXPECT_EQ(CRoutedView::heard.back(), moment);
        EXPECT_EQ(window.router->hovered(), nullptr);
        EXPECT_FALSE(window.router->drag().isActive());
        CRoutedView::actions.clear();
        leave();
        heard();
        root.reset();
    }
}

TEST_F(CInputHandlersTest, TheNextViewMayBeDestroyedWhileTheFormerOneIsLeft) {
    buildTwo();
    move(10, 10);
    CRoutedView::actions["a.mouse-exit"] = [this](CRoutedView&, CAttributeMap&) { delete find("r.b"); };
    heard();
    move(60, 10);
    EXPECT_EQ(heard(), "a-hover a.mouse-exit");
    EXPECT_EQ(window.router->hovered(), nullptr);
}

TEST_F(CInputHandlersTest, TheWindowMayGoInsideAnyHandler) {
    for (const char* moment : {"a.mouse-enter", "a+hover", "a.mouse-press", "a+pushed", "a-pushed", "a.mouse-release",
                               "a.mouse-move", "a-hover", "a.mouse-exit", "b.mouse-enter"}) {
        window.router = std::make_unique<CInputRouter>(window, window);
        buildTwo();
        CRoutedView::actions[moment] = [this](CRoutedView&, CAttributeMap&) {
            at("r").setWindow(nullptr);
            window.router.reset();
        };
        const auto alive = [this] { return window.router != nullptr; };
        if (alive())
            move(10, 10);
        if (alive())
            press(10, 10);
        if (alive())
            release(10, 10);
        if (alive())
            move(60, 10);
        EXPECT_FALSE(alive()) << moment;
        EXPECT_EQ(CRoutedView::heard.back(), moment);
        heard();
        CRoutedView::actions.clear();
        at("r").setWindow(&window);
        root.reset();
        held = {};
    }
}

TEST_F(CInputHandlersTest, AMessageLoopInsideAPressMayBringItsRelease) {
    buildTwo();
    CRoutedView::actions["a.mouse-press"] = [this](CRoutedView&, CAttributeMap&) { release(10, 10); };
    press(10, 10);
    EXPECT_EQ(heard(), "a.mouse-enter a+hover a.mouse-press a-pushed a.mouse-release");
    EXPECT_FALSE(at("r.a").isPushed());
    EXPECT_FALSE(window.router->drag().isActive());
}

TEST_F(CInputHandlersTest, TheRootViewsEndCancelsAPressWhileAllViewsAreWhole) {
    buildTwo();
    press(10, 10);
    heard();
    root.reset();
    EXPECT_EQ(heard(), "a-pushed a.mouse-cancel a-hover a.mouse-exit");
    EXPECT_FALSE(window.isCaptured);
}

TEST_F(CInputHandlersTest, WhatFollowsTheHintMayDestroyTheRouter) {
    build({view("a", "0 0 50 50", {{"hint", "text"}})});
    window.onHint = [this] { window.router.reset(); };
    move(10, 10);
    EXPECT_EQ(heard(), "a.mouse-enter a+hover a.hint-update");
    EXPECT_FALSE(window.router);
    root.reset();
}

}  // namespace
}  // namespace tarv
