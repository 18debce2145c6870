// Windows that wait for a popup.

#include "Tests/UI/Windows/PopupTree.h"

namespace tarv {
namespace {

struct CPopupBlock : CPopupTree {};

TEST_F(CPopupBlock, TheOpenersWindowIsBlockedUntilThePopupIsClosed) {
    openButtons();
    moveOnto("panel.a");
    heard();
    openPopup("panel.a", "ui:list");
    EXPECT_EQ(heard(), "list.update-window-bounds a.mouse-exit");
    EXPECT_TRUE(window().isBlocked());
    ASSERT_TRUE(find("main-window.window-blocker"));
    EXPECT_EQ(at("window-blocker").getAttrString("blocked-by"), "ui.list");
    moveTo(90, 4);
    EXPECT_TRUE(system.input().wheel(1.0));
    EXPECT_EQ(heard(), "");
    system.input().press();  // on the blocker
    system.input().release();
    EXPECT_FALSE(popupWindow("list")->isOpen());
    tick();
    EXPECT_FALSE(popupWindow("list"));
    EXPECT_FALSE(find("main-window.window-blocker"));
    EXPECT_FALSE(window().isBlocked());
    EXPECT_EQ(heard().find("a.popup-closed"), 0u);
}

TEST_F(CPopupBlock, AMessageStaysAndFlashesItsTitle) {
    openButtons();
    openPopup("panel.a", "ui:message");
    EXPECT_TRUE(window().isBlocked());
    heard();
    click(200, 150);
    EXPECT_EQ(heard(), "message.flash-title");
    EXPECT_TRUE(popupWindow("message")->isOpen());
    CAttributeMap params;
    EXPECT_EQ(consumed(find("message")->passEvent("close-window", params)), "");
    EXPECT_FALSE(window().isBlocked());
    tick();
    EXPECT_FALSE(popupWindow("message"));
}

TEST_F(CPopupBlock, AHandlerThatOpensAMessageLeavesNothingHoveredOrPressed) {
    // Whatever the handlers of one click open, the rest of the click reaches nobody.
    for (const char* moment : {"a.mouse-enter", "a.mouse-press", "a.mouse-release", "b.mouse-exit"}) {
        openButtons();
        moveOnto("panel.b");
        heard();
        CFilledView::actions.clear();
        CFilledView::actions[moment] = [this](CFilledView&, CAttributeMap&) {
            CFilledView::actions.clear();
            openPopup("panel", "ui:message");
        };
        // As a pen does: the press comes without a move.
        const CIntRect bounds = window().screenBounds();
        system.input().jump(bounds.left + static_cast<int32_t>(rectOf("panel.a").x) + 2,
                            bounds.top + static_cast<int32_t>(rectOf("panel.a").y) + 2);
        system.input().press();
        system.input().release();
        EXPECT_TRUE(window().isBlocked()) << moment;
        EXPECT_EQ(window().router().hovered(), nullptr) << moment;
        EXPECT_FALSE(window().router().drag().isActive()) << moment;
        EXPECT_EQ(system.desktop().capture(), 0u) << moment;
        tick();
        EXPECT_EQ(window().router().hovered(), nullptr) << moment;
    }
}

TEST_F(CPopupBlock, ABlockerThatOpenedAPopupTakesItWithIt) {
    openButtons();
    openPopup("panel.a", "ui:message");
    openPopup("window-blocker", "ui:list");
    // The list adds a second blocker. The first blocker is destroyed with the popups that it opened.
    EXPECT_EQ(window().blockedBy(), popupWindow("message"));
    EXPECT_EQ(at("window-blocker").getAttrString("blocked-by"), "ui.message");
    EXPECT_TRUE(!popupWindow("list") || !popupWindow("list")->isOpen());
    CAttributeMap params;
    EXPECT_EQ(consumed(find("message")->passEvent("close-window", params)), "");
    tick();
    EXPECT_FALSE(popupWindow("message"));
    EXPECT_FALSE(window().isBlocked());
    EXPECT_FALSE(find("main-window.window-blocker"));
}

TEST_F(CPopupBlock, AViewThatGoesTakesItsPopupWithoutAnEvent) {
    openButtons();
    openPopup("panel.a", "ui:list");
    const CIntRect bounds = popupWindow("list")->screenBounds();
    system.input().move(bounds.left + 5, bounds.top + 5);
    system.input().press();
    // A handler that destroyed what is above the view would do so twice.
    CFilledView::actions["row.mouse-cancel"] = [this](CFilledView&, CAttributeMap&) {
        delete find("main-window.panel");
    };
    heard();
    delete &at("panel.a");
    EXPECT_EQ(heard(), "");
    EXPECT_FALSE(popupWindow("list")->isOpen());
    EXPECT_TRUE(find("main-window.panel"));
    tick();
    EXPECT_EQ(heard().find("row.mouse-cancel"), 0u);
    EXPECT_FALSE(popupWindow("list"));
    EXPECT_FALSE(find("main-window.panel"));
}

TEST_F(CPopupBlock, WhatTheSystemReportsWhileAPopupVanishesReachesHandlersAtATick) {
    openButtons();
    openPopup("panel.b", "ui:settings");
    openPopup("panel.a", "ui:list");
    for (const char* event : {"activate-window", "deactivate-window"}) {
        listen("settings.window-renderer", event);
    }
    // A window of the popup that goes before it: at that time the system activates another one.
    struct CPart : CWindowHandler {
        void onPaint(const CIntRect&) override {}
        void onPointer(const CPointerEvent&) override {}
        bool onWheel(const CWheelEvent&) override { return false; }
        bool onKey(const CKeyEvent&) override { return false; }
        void onActivation(bool, CWindowHandle) override {}
        void onCloseRequest() override {}
        void onGone() override { activated->onActivation(true, 0); }
        CWindowHandler* activated = nullptr;
    } part;
    part.activated = system.desktop().find(popupWindow("settings")->handle())->handler();
    CPlatformError error = 0;
    CWindowRequest request;
    request.parent = popupWindow("list")->handle();
    const std::unique_ptr<CPlatformWindow> window = system.createWindow(request, part, error);
    ASSERT_TRUE(window);
    CEventLog::onEvent = [this](const std::string&) { delete find("main-window.panel"); };
    delete &at("panel.a");
    EXPECT_TRUE(CEventLog::heard.empty());
    EXPECT_TRUE(find("main-window.panel"));
    tick();
    EXPECT_EQ(CEventLog::heard, (std::vector<std::string>{"activate-window"}));
    EXPECT_FALSE(find("main-window.panel"));
}

TEST_F(CPopupBlock, UnblockingAWindowWithoutABlockerIsHarmless) {
    openButtons();
    CAttributeMap params;
    EXPECT_EQ(consumed(find("main-window")->passEvent("unblock-window", params)), "");
    EXPECT_FALSE(window().isBlocked());
    openPopup("panel.a", "ui:message");
    EXPECT_EQ(consumed(find("main-window")->passEvent("unblock-window", params)), "");
    EXPECT_FALSE(window().isBlocked());
}

TEST_F(CPopupBlock, AWindowIsBlockedByTheEventToo) {
    openButtons();
    openPopup("panel.a", "ui:settings");
    EXPECT_FALSE(window().isBlocked());
    CAttributeMap params;
    params["blocked-by"] = CAttributeValue::fromString("ui.settings");
    EXPECT_EQ(consumed(find("main-window")->passEvent("block-window", params)), "");
    EXPECT_EQ(window().blockedBy(), popupWindow("settings"));
    EXPECT_EQ(at("window-blocker").getAttrString("blocked-by"), "ui.settings");
    EXPECT_EQ(consumed(find("main-window")->passEvent("unblock-window", params)), "");
    EXPECT_FALSE(window().isBlocked());
    tick();
    EXPECT_FALSE(popupWindow("settings"));
    const CLogCapture log;
    EXPECT_EQ(consumed(find("main-window")->passEvent("block-window", params)), "");
    EXPECT_FALSE(window().isBlocked());
    EXPECT_TRUE(log.has("Target not found: ui.settings // ui.main-window.window-renderer"));
}

TEST_F(CPopupBlock, AHelperNeitherBlocksNorTakesTheActivation) {
    openButtons();
    system.desktop().activate(host);
    openPopup("panel.a", "ui:helper");
    ASSERT_TRUE(popupWindow("helper"));
    EXPECT_FALSE(window().isBlocked());
    EXPECT_EQ(system.desktop().active(), host);
    openPopup("panel.b", "ui:list");
    EXPECT_EQ(system.desktop().active(), popupWindow("list")->handle());
}

TEST_F(CPopupBlock, AHandlerMayDestroyTheWindowThatOpensOrClosesAPopup) {
    for (const std::string moment : {"list.update-window-bounds", "entry.focus-lost", "row.mouse-cancel"}) {
        openButtons();
        openPopup("panel.a", "ui:entries");
        CFilledView* const entries = find("entries");
        CFilledView* const entry = find("entries.entry");
        ASSERT_TRUE(entry);
        CFilledView::actions.clear();
        CFilledView::actions[moment] = [this](CFilledView&, CAttributeMap&) { delete find("entries"); };
        popupWindow("entries")->setKeyFocusView(entry);
        CAttributeMap params;
        EXPECT_EQ(consumed(entries->openPopup("ui:helper", params)), "");
        EXPECT_EQ(consumed(entry->openPopup("ui:list", params)), "");
        if (moment == "row.mouse-cancel") {
            system.input().moveIn(popupWindow("list")->handle(), 5, 5);
            system.input().press();
            popupWindow("entries")->requestClose();
            system.input().release();
        }
        EXPECT_FALSE(find("entries")) << moment;
        tick();
        tick();
        EXPECT_FALSE(popupWindow("list")) << moment << ": destroyed by the window above";
        EXPECT_FALSE(popupWindow("helper")) << moment;
        EXPECT_FALSE(window().isBlocked());
        EXPECT_EQ(window().popups().count(), 0);
    }
}

}  // namespace
}  // namespace tarv
