// What a window sends of itself, and the rates of its timers.

#include "Tests/UI/Windows/WindowTree.h"

namespace tarv {
namespace {

struct CWindowEvents : CWindowTree {
    void openTwo() {
        open({view("a", {{"placement", "left"}, {"width", "50"}, {"height", "full"}, {"fill", "17"}}),
              view("b", {{"placement", "full"}, {"width", "100%"}, {"height", "100%"}, {"fill", "34"}})},
             {{"fill", "1"}});
    }
    CWindowByHand& shown() { return *system.desktop().find(window().handle()); }
};

TEST_F(CWindowEvents, TheRatesOfTheHelpersAreThoseOfTheirAttributes) {
    open({view("a", {{"placement", "left"}, {"width", "50"}, {"height", "full"}})},
         {{"cursor-fps", "2"}, {"auto-click-fps", "100"}, {"auto-click-timeout", "0.1"}});
    moveTo(20, 20);
    system.input().press();
    heard();
    system.advance(0.095);
    EXPECT_EQ(heard(), "");
    system.advance(0.02);  // the first of its ticks behind the timeout
    EXPECT_EQ(heard(), "a.auto-click");
    system.advance(0.33);
    EXPECT_EQ(heard(), "a.auto-click a.auto-click a.auto-click");
    system.input().release();
    heard();
    const auto rateOf = [this](const char* timer) { return 1.0 / window().findChild(timer)->getAttrReal("interval"); };
    EXPECT_NEAR(rateOf("cursor-timer"), 2.0, 1e-9);
    EXPECT_NEAR(rateOf("auto-click-timer"), 100.0, 1e-9);
    EXPECT_NEAR(rateOf("render-timer"), 40.0, 1e-9);
    EXPECT_NEAR(rateOf("deactivate-timer"), 10.0, 1e-9);
}

TEST_F(CWindowEvents, TheRightButtonHasEventsOfItsOwn) {
    openTwo();
    moveTo(20, 20);
    heard();
    system.input().click(CPointerButton::Right);
    EXPECT_EQ(heard(), "a.mouse-press-r a.mouse-release-r");
    system.input().press(CPointerButton::Right);
    moveTo(200, 20);
    heard();
    system.input().release(CPointerButton::Right);
    EXPECT_EQ(heard(), "a.mouse-cancel-r a.mouse-exit b.mouse-enter");
}

TEST_F(CWindowEvents, ActivationIsAnEventOfTheWindow) {
    openTwo();
    for (const char* event : {"activate-window", "deactivate-window", "mouse-button-reset"}) {
        listen("main-window.window-renderer", event);
    }
    auto& handler = static_cast<CWindowHandler&>(*shown().handler());
    handler.onActivation(true, 0);
    EXPECT_EQ(CEventLog::heard, (std::vector<std::string>{"activate-window"}));
    CEventLog::heard.clear();
    handler.onActivation(false, 0);
    EXPECT_EQ(CEventLog::heard, (std::vector<std::string>{"deactivate-window"}));
    // With a button down, the press is cancelled and the windows above are notified of that, too.
    moveTo(20, 20);
    system.input().press();
    CEventLog::heard.clear();
    heard();
    handler.onActivation(false, 0);
    EXPECT_EQ(heard(), "a.mouse-cancel a.mouse-exit");
    EXPECT_EQ(CEventLog::heard, (std::vector<std::string>{"mouse-button-reset", "deactivate-window"}));
}

TEST_F(CWindowEvents, AFocusThatGoesWithItsViewIsReportedAtATick) {
    open({view("panel", {{"placement", "full"}, {"width", "100%"}, {"height", "100%"}},
               {view("a", {{"width", "50"}, {"height", "50"}, {"is-focusable", "true"}}),
                view("b", {{"width", "50"}, {"height", "50"}, {"is-focusable", "true"}})})});
    for (const char* event : {"focus", "blur"}) {
        listen("main-window.window-renderer", event);
    }
    window().setKeyFocusView(&at("panel.a"));
    CEventLog::heard.clear();
    // Another view that gets it meanwhile leaves nothing to report.
    delete &at("panel.a");
    window().setKeyFocusView(&at("panel.b"));
    system.advance(0.1);
    EXPECT_TRUE(CEventLog::heard.empty());
    // Inside the destructor of the view, this would destroy its parent once more.
    CEventLog::onEvent = [this](const std::string&) { delete find("main-window.panel"); };
    delete &at("panel.b");
    EXPECT_TRUE(CEventLog::heard.empty());
    EXPECT_TRUE(find("main-window.panel"));
    system.advance(0.1);
    EXPECT_EQ(CEventLog::heard, (std::vector<std::string>{"blur"}));
    EXPECT_FALSE(find("main-window.panel"));
}

TEST_F(CWindowEvents, TheMainWindowIsFoundByDataWhileItIsOpen) {
    openTwo();
    CObject* ui = tree->findObject("ui");
    EXPECT_EQ(ui->getAttrString("app-main-window"), "ui.main-window");
    listen("main-window.window-renderer", "close-app");
    window().shut();
    EXPECT_EQ(ui->getAttrString("app-main-window"), "");
    EXPECT_EQ(CEventLog::heard, (std::vector<std::string>{"close-app"}));
    window().shut();
    EXPECT_EQ(CEventLog::heard.size(), 1u);
    EXPECT_EQ(consumed(window().open()), "");
    EXPECT_EQ(ui->getAttrString("app-main-window"), "ui.main-window");
    CEventLog::heard.clear();
    tree.reset();
    EXPECT_EQ(CEventLog::heard, (std::vector<std::string>{"close-app"}));
    open({}, {{"is-main-window", "false"}});
    EXPECT_EQ(tree->findObject("ui")->getAttrString("app-main-window"), "");
}

TEST_F(CWindowEvents, TheEndOfTheApplicationMayEndTheTree) {
    openTwo();
    CFilledView::actions["main-window.close-app"] = [this](CFilledView&, CAttributeMap&) { tree.reset(); };
    // A listener of the renderer that destroys everything while the window shuts.
    tree->findObject("ui.main-window")->listenObject("ui.main-window.window-renderer", "close-app", "is-bad");
    window().shut();
    tree.reset();
    EXPECT_TRUE(system.isClean());
}

TEST_F(CWindowEvents, TheWindowIsAsLargeAsTheBoxOfItsRootView) {
    open({}, {{"spread", "20"}});
    EXPECT_EQ(shown().bounds(), (CIntRect{0, 0, 300, 200}));
    EXPECT_EQ(window().sectorMap().columns(), 3);
}

TEST_F(CWindowEvents, AFlagOfAnotherPlatformChangesNothing) {
    open({view("a", {{"fill", "17"}, {"width", "50"}, {"height", "50"}})}, {}, {{"is-mac-window-fix", "true"}});
    EXPECT_EQ(shown().bounds(), (CIntRect{0, 0, 300, 200}));
}

TEST_F(CWindowEvents, AnyButtonIsAnEventOfTheWindow) {
    openTwo();
    listen("main-window.window-renderer", "mouse-button");
    moveTo(20, 20);
    system.input().click(CPointerButton::Other);
    EXPECT_EQ(CEventLog::heard, (std::vector<std::string>(2, "mouse-button")));
    EXPECT_EQ(CEventLog::last.at("button").asInt(), static_cast<int32_t>(CPointerButton::Other));
    EXPECT_FALSE(CEventLog::last.at("is-button-down").asBool());
    EXPECT_FALSE(CEventLog::last.at("is-drop-down-behavior-disabled").asBool());
    EXPECT_EQ(CEventLog::last.at("actual-x").asReal(), 20.0);
    EXPECT_EQ(consumed(window().setAttribute("is-drop-down-behavior-disabled", CString("true"))), "");
    system.input().press();
    EXPECT_EQ(CEventLog::last.at("button").asInt(), static_cast<int32_t>(CPointerButton::Left));
    EXPECT_TRUE(CEventLog::last.at("is-button-down").asBool());
    EXPECT_TRUE(CEventLog::last.at("is-drop-down-behavior-disabled").asBool());
}

}  // namespace
}  // namespace tarv
