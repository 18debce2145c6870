#include "UI/Windows/CWindow.h"

#include "Tests/UI/Windows/WindowTree.h"

namespace tarv {
namespace {

struct CWindowTest : CWindowTree {
    void openTwo() {
        open({view("a", {{"placement", "left"}, {"width", "50"}, {"height", "full"}, {"fill", "17"}}),
              view("b", {{"placement", "full"}, {"width", "100%"}, {"height", "100%"}, {"fill", "34"}})},
             {{"fill", "1"}});
    }
    CWindowByHand& shown() { return *system.desktop().find(window().handle()); }
};

TEST_F(CWindowTest, TheFirstPictureIsThereWhenTheWindowIsSeen) {
    openTwo();
    ASSERT_TRUE(window().isOpen());
    EXPECT_TRUE(shown().isChild());
    EXPECT_EQ(shown().container(), host);
    EXPECT_EQ(shown().bounds(), (CIntRect{0, 0, 300, 200}));
    EXPECT_EQ(pixel(0, 0), 17u);
    EXPECT_EQ(pixel(49, 199), 17u);
    EXPECT_EQ(pixel(50, 0), 34u);
    EXPECT_EQ(pixel(299, 199), 34u);
    EXPECT_EQ(shown().title(), u"Untitled");
}

TEST_F(CWindowTest, ATickDrawsWhatHasChangedAndNothingAtRest) {
    openTwo();
    system.advance(0.1);
    shown().forgetPresented();
    at("a").drawCount = 0;
    system.advance(2.5);  // 100 ticks
    EXPECT_EQ(shown().presentCount(), 0);
    EXPECT_EQ(at("a").drawCount, 0);
    EXPECT_EQ(consumed(at("a").setAttribute("fill", CString("99"))), "");
    at("a").requestRedraw();
    system.advance(0.03);
    EXPECT_EQ(pixel(10, 10), 99u);
    EXPECT_EQ(shown().presentedPixels(), 50 * 200);
}

TEST_F(CWindowTest, AWindowThatLosesItsPixelsGetsThemAgain) {
    openTwo();
    system.desktop().expose(window().handle(), {40, 0, 60, 150});
    listen("main-window.window-renderer", "paint");
    system.pump();
    EXPECT_EQ(pixel(45, 140), 17u);
    EXPECT_EQ(pixel(55, 140), 34u);
    EXPECT_EQ(CEventLog::heard, (std::vector<std::string>{"paint"}));
}

TEST_F(CWindowTest, TheWindowFollowsTheSizeOfItsRootView) {
    openTwo();
    EXPECT_EQ(consumed(find("main-window")->setAttribute("width", CString("350"))), "");
    EXPECT_EQ(consumed(find("main-window")->setAttribute("height", CString("256"))), "");
    system.advance(0.05);
    EXPECT_EQ(shown().bounds(), (CIntRect{0, 0, 350, 256}));
    EXPECT_EQ(pixel(349, 255), 34u);
    EXPECT_EQ(window().sectorMap().columns(), 3);
    EXPECT_EQ(window().sectorMap().rows(), 3);
}

TEST_F(CWindowTest, TimeIsThatOfTheTick) {
    openTwo();
    system.advance(0.025);
    EXPECT_NEAR(window().now(), CWindowSystemByHand::kFirstSecond + 0.025, 1e-9);
}

TEST_F(CWindowTest, EventsOfTheTickComeWhereSomeoneListens) {
    openTwo();
    listen("main-window.window-renderer", "render");
    system.advance(0.1);
    EXPECT_EQ(CEventLog::heard, (std::vector<std::string>(4, "render")));
    CEventLog::heard.clear();
    listen("main-window.window-renderer", "static-view-update");
    system.advance(2.0);
    EXPECT_EQ(std::count(CEventLog::heard.begin(), CEventLog::heard.end(), "static-view-update"), 2);
}

TEST_F(CWindowTest, TheRateIsThatOfTheAttribute) {
    open({}, {{"fps", "10"}});
    listen("main-window.window-renderer", "render");
    system.advance(1.0);
    EXPECT_EQ(CEventLog::heard.size(), 10u);
}

TEST_F(CWindowTest, AViewThatFailsToDrawIsLoggedOnceASecondAndLeftOut) {
    open({view("a", {{"placement", "left"}, {"width", "50"}, {"height", "full"}, {"is-bad", "true"}}),
          view("b", {{"placement", "full"}, {"width", "100%"}, {"height", "100%"}, {"fill", "34"}})},
         {{"fill", "1"}});
    const CLogCapture log;
    for (int tick = 0; tick < 80; ++tick) {  // 2 s
        at("a").requestRedraw();
        at("b").requestRedraw();
        system.advance(0.025);
    }
    const auto isBad = [](const std::string& line) { return line.find("Bad view.") != std::string::npos; };
    EXPECT_EQ(std::count_if(log.lines.begin(), log.lines.end(), isBad), 2);
    EXPECT_EQ(pixel(10, 10), 1u);
    EXPECT_EQ(pixel(60, 10), 34u);
    EXPECT_GT(at("a").drawCount, 80);
}

TEST_F(CWindowTest, InputReachesTheViewsInPixelsOfTheWindow) {
    openTwo();
    moveTo(20, 30);
    system.input().press();
    EXPECT_EQ(at("a").params.at("actual-x").asReal(), 20.0);
    EXPECT_EQ(at("a").params.at("actual-y").asReal(), 30.0);
    EXPECT_EQ(system.desktop().capture(), window().handle());
    moveTo(200, 30);
    system.input().release();
    EXPECT_EQ(system.desktop().capture(), 0u);
    EXPECT_EQ(heard(),
              "main-window.update-window-bounds a.mouse-enter a.mouse-move a.mouse-press a.mouse-move "
              "a.mouse-cancel a.mouse-exit b.mouse-enter");
    EXPECT_EQ(window().sharedData().hoveredView(), &at("b"));
    EXPECT_EQ(window().sharedData().viewAt(kHostX + 10, kHostY + 10), &at("a"));
    EXPECT_EQ(window().sharedData().viewAt(5, 5), nullptr);
    EXPECT_EQ(window().sharedData().findWindow(window().handle()), &window());
    EXPECT_EQ(window().sharedData().mainWindow(), &window());
}

TEST_F(CWindowTest, ACaptureThatIsTakenAwayCancels) {
    openTwo();
    moveTo(20, 30);
    system.input().press();
    heard();
    system.desktop().takeCapture();
    EXPECT_EQ(heard(), "a.mouse-cancel a.mouse-exit");
}

TEST_F(CWindowTest, AnUntakenWheelGoesToTheHost) {
    openTwo();
    moveTo(20, 30);
    EXPECT_FALSE(system.input().wheel(1.0));
    CFilledView::actions["a.mouse-wheel"] = [](CFilledView&, CAttributeMap& params) {
        CViewBaseCtlEvents::setHandled(params);
    };
    EXPECT_TRUE(system.input().wheel(1.0));
    EXPECT_EQ(system.input().hostWheel(), 1.0);
}

TEST_F(CWindowTest, KeysReachAViewWithFocusAloneAndStopThereIfTaken) {
    open({view("a", {{"placement", "left"},
                     {"width", "50"},
                     {"height", "full"},
                     {"is-focusable", "true"},
                     {"grabs-keys", "true"}})});
    EXPECT_FALSE(system.input().tap('A', u"a"));
    EXPECT_EQ(system.desktop().keyGrabber(), 0u);
    listen("main-window.window-renderer", "focus");
    listen("main-window.window-renderer", "blur");
    click(20, 20);
    EXPECT_EQ(system.desktop().keyGrabber(), window().handle());
    EXPECT_EQ(window().sharedData().keyFocusView(), &at("a"));
    EXPECT_FALSE(system.input().tap(kKeySpace, u" "));  // still the host's
    CFilledView::actions["a.key-press"] = [](CFilledView&, CAttributeMap& params) {
        CViewBaseCtlEvents::setHandled(params);
    };
    EXPECT_TRUE(system.input().tap('A', u"a"));
    EXPECT_EQ(at("a").params.at("keycode").asInt(), 'A');
    click(200, 20);
    EXPECT_EQ(system.desktop().keyGrabber(), 0u);
    EXPECT_EQ(CEventLog::heard, (std::vector<std::string>{"focus", "blur"}));
    EXPECT_EQ(window().sharedData().keyFocusView(), nullptr);
}

TEST_F(CWindowTest, TheAttributeMovesTheKeyFocus) {
    open({view("a", {{"is-focusable", "true"}})});
    EXPECT_EQ(consumed(window().setAttribute("key-focus-view", CString("^.a"))), "");
    EXPECT_EQ(window().keyFocusView(), &at("a"));
    EXPECT_EQ(consumed(window().setAttribute("key-focus-view", CString(""))), "");
    EXPECT_EQ(window().keyFocusView(), nullptr);
}

TEST_F(CWindowTest, ThePressTakesTheFocusOfTheSystemOnlyWhereThatIsWanted) {
    openTwo();
    click(20, 20);
    EXPECT_NE(system.desktop().focus(), window().handle());
    EXPECT_EQ(consumed(tree->setAttribute("IsFocusTaken", CAttributeValue::fromBool(true))), "");
    click(20, 20);
    EXPECT_EQ(system.desktop().focus(), window().handle());
}

TEST_F(CWindowTest, AutoClickRepeatsAPressThatIsHeld) {
    openTwo();
    moveTo(20, 20);
    system.input().press();
    heard();
    system.advance(0.35);
    EXPECT_EQ(heard(), "");
    system.advance(0.1);
    EXPECT_EQ(heard(), "a.auto-click");
    system.advance(0.9);
    EXPECT_EQ(heard(), "a.auto-click a.auto-click");
}

TEST_F(CWindowTest, APointerThatVanishesIsNoticed) {
    openTwo();
    moveTo(20, 20);
    listen("main-window.window-renderer", "mouse-top-exit");
    heard();
    system.input().jump(1500, 900);
    for (int i = 0; i < 11; ++i) {
        system.starve(0.0);
        system.timers().fireNext(CWindowSystemByHand::kFirstSecond + 10.0);
    }
    EXPECT_EQ(heard(), "a.mouse-exit");
    EXPECT_EQ(CEventLog::heard, (std::vector<std::string>{"mouse-top-exit"}));
}

TEST_F(CWindowTest, AMoveDrawsAFrameThatIsOverdue) {
    openTwo();
    CFilledView::actions["a.mouse-move"] = [](CFilledView& view, CAttributeMap&) {
        EXPECT_EQ(consumed(view.setAttribute("fill", CString("77"))), "");
        view.requestRedraw();
    };
    moveTo(20, 20);
    EXPECT_EQ(pixel(10, 10), 17u);
    system.starve(0.06);  // timers wait under a flood of moves
    moveTo(21, 20);
    EXPECT_EQ(pixel(10, 10), 77u);
}

TEST_F(CWindowTest, TheHintIsShownInTheStatusLine) {
    open({view("a", {{"placement", "left"}, {"width", "50"}, {"height", "full"}, {"hint", "Help"}}),
          view("window-status", {{"placement", "bottom"}, {"height", "20"}}, {view("label", {{"title", "-"}})})},
         {{"window-status-path", ".window-status"}});
    moveTo(20, 20);
    EXPECT_EQ(at("window-status.label").getAttrString("title"), "Help");
    CObject* shared = tree->findObject("ui.window-shared-data");
    EXPECT_EQ(consumed(shared->setAttribute("is-show-hints", CString("false"))), "");
    EXPECT_EQ(at("window-status.label").getAttrString("title"), "");
    EXPECT_EQ(consumed(shared->setAttribute("is-show-hints", CString("true"))), "");
    EXPECT_EQ(at("window-status.label").getAttrString("title"), "Help");
}

TEST_F(CWindowTest, AHintThatWasSetPlainIsShownPlain) {
    open({view("a", {{"placement", "left"}, {"width", "50"}, {"height", "full"}, {"hint", "[B]x"}}),
          view("window-status", {{"placement", "bottom"}, {"height", "20"}}, {view("label", {{"title", "-"}})})},
         {{"window-status-path", ".window-status"}});
    const auto isPlain = [this] { return at("window-status.label").attributes().at("title").isPlain(); };
    moveTo(20, 20);
    EXPECT_FALSE(isPlain());
    EXPECT_EQ(consumed(at("a").setAttributePlain("hint", "[B]x")), "");
    EXPECT_TRUE(isPlain());
    EXPECT_EQ(consumed(at("a").setAttributePlain("hint", "{y}")), "");
    EXPECT_EQ(at("window-status.label").getAttrString("title"), "{y}");
    EXPECT_EQ(consumed(at("a").setAttribute("hint", CString("[B]x"))), "");
    EXPECT_FALSE(isPlain());
}

TEST_F(CWindowTest, TheTitleFollowsTheRootView) {
    open({}, {{"title", "Main"}});
    EXPECT_EQ(shown().title(), u"Main");
    EXPECT_EQ(consumed(find("main-window")->setAttribute("title", CString("Other"))), "");
    EXPECT_EQ(shown().title(), u"Other");
}

TEST_F(CWindowTest, TheDrawLoadIsExportedWhereItIsWanted) {
    open({}, {}, {{"is-export-draw-load", "true"}});
    system.advance(0.1);
    EXPECT_EQ(window().getAttrString("draw-load"), "0.0000");
    window().sectorMap().addLoad(1000000);
    system.advance(0.025);
    EXPECT_EQ(window().getAttrString("draw-load"), "50.0000");
    // Set only where it is another one.
    system.advance(1.0);
    EXPECT_EQ(window().getAttrString("draw-load"), "0.0000");
    window().linkObserver(*tree->findObject("ui.log"), "draw-load", "receive");
    system.advance(0.5);
    EXPECT_TRUE(CEventLog::heard.empty());
}

TEST_F(CWindowTest, WhatAWindowNeedsMustBeThere) {
    const CTestNode settings{"core:global-settings", "global-settings"};
    const CTestNode shared{"ui:window-shared-data", "window-shared-data"};
    const CTestNode renderer{"ui:window-renderer", "window-renderer"};
    const CTestNode main = view("main-window", {{"is-root-view", "true"}}, {renderer});
    const CTestNode bare{"core:object", "main-window", {}, {renderer}};
    const CTestNode twice = view("main-window", {{"is-root-view", "true"}}, {renderer, renderer});
    struct CCase {
        std::vector<CTestNode> nodes;
        const char* message;
    };
    const CCase cases[] = {{{shared, main}, "Unable to locate global settings object."},
                           {{settings, shared, bare}, "Unable to find root view."},
                           {{settings, shared, twice}, "Unable to find sector map."},
                           {{settings, main}, "Unable to find window shared data object."}};
    for (const CCase& one : cases) {
        EXPECT_EQ(tryBuild({}), "");
        tree.reset();
        CObject* root = nullptr;
        EXPECT_EQ(consumed(CApplication::initRootObject(root)), "");
        tree.reset(root);
        const std::string failure = consumed(loadTree(*root, {{"ui:ui-event-bridge", "ui", {}, one.nodes}}));
        EXPECT_NE(failure.find(one.message), std::string::npos) << failure;
    }
    EXPECT_EQ(tryBuild({}), "");
    tree.reset();
    CObject* root = nullptr;
    EXPECT_EQ(consumed(CApplication::initRootObject(root)), "");
    tree.reset(root);
    const std::string failure = consumed(loadTree(*root, {{"core:object", "ui", {}, {settings, shared, main}}}));
    EXPECT_NE(failure.find("Unable to locate a suitable event bridge."), std::string::npos) << failure;
}

TEST_F(CWindowTest, OpeningFailsWithAMessage) {
    ASSERT_EQ(tryBuild({}), "");
    EXPECT_EQ(consumed(tree->setAttribute("ParentWindow", CAttributeValue::fromPointer(nullptr))), "");
    EXPECT_NE(consumed(window().open()).find("Unable to locate parent window."), std::string::npos);
    EXPECT_FALSE(window().isOpen());
    ASSERT_EQ(tryBuild({}), "");
    system.failWindow(8);
    EXPECT_NE(consumed(window().open()).find("Unable to create window (error 8)."), std::string::npos);
    ASSERT_EQ(tryBuild({}, {}, {{"is-plugin-vst", "false"}, {"window-alignment", "above"}}), "");
    EXPECT_NE(consumed(window().open()).find("Invalid window alignment 'above'"), std::string::npos);
    EXPECT_EQ(consumed(window().open()).empty(), false);
    close();
    EXPECT_TRUE(system.isClean());
}

TEST_F(CWindowTest, NothingOfTheSystemIsLeftBehind) {
    openTwo();
    moveTo(20, 20);
    system.input().press();
    heard();
    tree.reset();
    EXPECT_EQ(heard(), "a.mouse-cancel a.mouse-exit");
    EXPECT_TRUE(system.isClean());
    system.input().release();
    system.advance(1.0);
}

TEST_F(CWindowTest, TheHostMayDestroyTheParentFirst) {
    openTwo();
    moveTo(20, 20);
    system.input().press();
    heard();
    system.desktop().destroy(host);
    EXPECT_FALSE(window().isOpen());
    EXPECT_EQ(heard(), "a.mouse-cancel a.mouse-exit");
    system.advance(1.0);
    tree.reset();
    EXPECT_TRUE(system.isClean());
}

TEST_F(CWindowTest, AnOpenWindowStaysAndAShutOneOpensAgain) {
    openTwo();
    const CWindowHandle handle = window().handle();
    EXPECT_EQ(consumed(window().open()), "");
    EXPECT_EQ(window().handle(), handle);
    window().shut();
    window().shut();
    EXPECT_FALSE(window().isOpen());
    EXPECT_TRUE(window().sharedData().windows().isEmpty());
    EXPECT_EQ(consumed(window().open()), "");
    system.pump();
    EXPECT_EQ(pixel(10, 10), 17u);
}

TEST_F(CWindowTest, TheTreeMayGoInsideAHandler) {
    for (const char* moment : {"a.mouse-press", "a.mouse-release", "a.mouse-enter", "a.mouse-move"}) {
        openTwo();
        CFilledView::actions[moment] = [this](CFilledView&, CAttributeMap&) {
            CFilledView::actions.clear();
            tree.reset();
        };
        system.input().move(5, 5);
        system.input().move(kHostX + 20, kHostY + 20);
        system.input().press();
        system.input().release();
        EXPECT_FALSE(tree) << moment;
        EXPECT_TRUE(system.isClean()) << moment;
    }
}

}  // namespace
}  // namespace tarv
