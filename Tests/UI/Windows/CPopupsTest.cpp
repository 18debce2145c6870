#include "UI/Windows/CPopups.h"

#include "Tests/UI/Windows/PopupTree.h"

namespace tarv {
namespace {

struct CPopupsTest : CPopupTree {};

TEST_F(CPopupsTest, APopupStandsBelowItsOpenerAndShowsItself) {
    openButtons();
    openPopup("panel.a", "ui:list");
    CWindow* list = popupWindow("list");
    ASSERT_TRUE(list);
    ASSERT_TRUE(list->isOpen());
    const CViewRect opener = rectOf("panel.a");
    const int32_t x = kHostX + static_cast<int32_t>(opener.x);
    const int32_t y = kHostY + static_cast<int32_t>(opener.bottom());
    EXPECT_EQ(list->screenBounds(), (CIntRect{x, y, x + 80, y + 50}));
    CWindowByHand& shown = *system.desktop().find(list->handle());
    EXPECT_FALSE(shown.isChild());
    EXPECT_EQ(shown.owner(), host);
    EXPECT_EQ(shown.picture().at(5, 5), 6u);
    EXPECT_EQ(shown.picture().at(5, 45), 5u);
    EXPECT_EQ(find("list")->getAttrString("opener"), "ui.main-window.panel.a");
    EXPECT_EQ(system.desktop().active(), list->handle());
}

TEST_F(CPopupsTest, AnOpenerPressedAgainClosesItsPopup) {
    openButtons();
    openPopup("panel.a", "ui:list");
    openPopup("panel.a", "ui:list");
    tick();
    EXPECT_FALSE(popupWindow("list"));
    openPopup("panel.a", "ui:list");
    EXPECT_TRUE(popupWindow("list"));
    // By the hand: the press reaches the blocker and opens nothing.
    CFilledView::actions["a.mouse-press"] = [this](CFilledView&, CAttributeMap&) { openPopup("panel.a", "ui:list"); };
    clickOn("panel.a");
    tick();
    EXPECT_FALSE(popupWindow("list"));
    clickOn("panel.a");
    EXPECT_TRUE(popupWindow("list"));
}

TEST_F(CPopupsTest, ThatWhichAlwaysCreatesOpensAnotherOne) {
    openButtons();
    openPopup("panel.a", "ui:list", {{"is-popup-toggle-always-create", "true"}, {"list-id", "1"}});
    openPopup("panel.a", "ui:list", {{"is-popup-toggle-always-create", "true"}, {"list-id", "2"}});
    EXPECT_EQ(window().popups().count(), 2);
    tick();
    EXPECT_EQ(window().popups().count(), 1);
    EXPECT_EQ(find("list#1")->getAttrString("list-id"), "2");
    EXPECT_TRUE(window().isBlocked());
}

TEST_F(CPopupsTest, APopupThatLosesActivationClosesAMomentLater) {
    openButtons();
    openPopup("panel.a", "ui:list");
    listen("list", "popup-deactivated");
    system.advance(1.0);
    EXPECT_TRUE(popupWindow("list")->isOpen());
    system.desktop().activate(host);
    EXPECT_TRUE(popupWindow("list")->isOpen());
    system.advance(0.2);
    EXPECT_FALSE(popupWindow("list"));
    EXPECT_EQ(CEventLog::heard, (std::vector<std::string>{"popup-deactivated"}));
}

TEST_F(CPopupsTest, OtherWindowsStayUntilTheyAreClosed) {
    openButtons();
    openPopup("panel.a", "ui:settings");
    EXPECT_FALSE(window().isBlocked());
    system.desktop().activate(host);
    system.advance(1.0);
    ASSERT_TRUE(popupWindow("settings"));
    system.desktop().requestClose(popupWindow("settings")->handle());
    system.advance(0.1);
    EXPECT_FALSE(popupWindow("settings"));
}

TEST_F(CPopupsTest, AWindowOfAUniqueNameIsNotOpenedTwice) {
    openButtons();
    openPopup("panel.a", "ui:settings");
    const CWindowHandle handle = popupWindow("settings")->handle();
    openPopup("panel.b", "ui:settings");
    EXPECT_EQ(window().popups().count(), 1);
    EXPECT_EQ(popupWindow("settings")->handle(), handle);
    EXPECT_FALSE(popupWindow("settings#1"));
    EXPECT_EQ(system.desktop().windowCount(), 2);
}

TEST_F(CPopupsTest, AWindowOfAUniqueNameStaysWhenThatOfItsOpenerCloses) {
    openButtons();
    openPopup("panel.a", "ui:settings");
    CAttributeMap params;
    ASSERT_EQ(consumed(find("settings")->openPopup("ui:global", params)), "");
    tick();
    ASSERT_TRUE(popupWindow("global"));
    EXPECT_EQ(popupWindow("global")->screenBounds().left, popupWindow("settings")->screenBounds().left)
        << "placed by its opener";
    ASSERT_EQ(consumed(find("settings")->openPopup("ui:global", params)), "");
    tick();
    EXPECT_FALSE(popupWindow("global")) << "a second press closes it";
    const std::string closed = "settings.popup-closed";
    const std::string events = heard();
    EXPECT_EQ(events.substr(events.size() - std::min(events.size(), closed.size())), closed);
    ASSERT_EQ(consumed(find("settings")->openPopup("ui:global", params)), "");
    popupWindow("settings")->requestClose();
    system.advance(0.5);
    EXPECT_FALSE(popupWindow("settings"));
    ASSERT_TRUE(popupWindow("global"));
    EXPECT_TRUE(popupWindow("global")->isOpen());
    EXPECT_EQ(window().popups().count(), 1);
    popupWindow("global")->requestClose();
    tick();
    EXPECT_FALSE(popupWindow("global"));
    EXPECT_EQ(system.desktop().windowCount(), 1);
}

TEST_F(CPopupsTest, WhatBlocksAWindowClosesWithIt) {
    openButtons();
    openPopup("panel.a", "ui:settings");
    CAttributeMap params;
    ASSERT_EQ(consumed(find("settings")->openPopup("ui:message", params)), "");
    tick();
    EXPECT_TRUE(popupWindow("settings")->isBlocked());
    EXPECT_FALSE(window().isBlocked());
    popupWindow("settings")->requestClose();
    system.advance(0.5);
    EXPECT_FALSE(popupWindow("message"));
    EXPECT_EQ(system.desktop().windowCount(), 1);
}

TEST_F(CPopupsTest, AWindowMayHaveAnEntryInTheTaskbar) {
    openButtons();
    openPopup("panel.a", "ui:entry");
    EXPECT_TRUE(system.desktop().find(popupWindow("entry")->handle())->isTaskbar());
    openPopup("panel.b", "ui:settings");
    EXPECT_FALSE(system.desktop().find(popupWindow("settings")->handle())->isTaskbar());
}

TEST_F(CPopupsTest, OnlyWhatClosesByItselfStandsAboveTheWindowsOfOtherPrograms) {
    openButtons();
    openPopup("panel.a", "ui:settings");
    EXPECT_TRUE(system.desktop().find(popupWindow("settings")->handle())->isLasting());
    openPopup("panel.b", "ui:list");
    EXPECT_FALSE(system.desktop().find(popupWindow("list")->handle())->isLasting());
}

TEST_F(CPopupsTest, APlaceMayStandInTheTemplate) {
    openButtons();
    openPopup("panel.a", "ui:placed");
    EXPECT_EQ(boundsOf("placed"), (CIntRect{500, 60, 560, 90}));
    openPopup("panel.b", "ui:placed", {{"window-x", "510"}, {"constrain-y", "0"}});
    EXPECT_EQ(boundsOf("placed#1"), (CIntRect{510, 40, 570, 70}));
}

TEST_F(CPopupsTest, APopupStandsByTheBoxOfItsOpener) {
    openButtons();
    EXPECT_EQ(consumed(at("panel.a").setAttribute("spread", CString("5"))), "");
    tick();
    const CViewRect box = at("panel.a").area().box();
    openPopup("panel.a", "ui:list", {{"is-same-width", "true"}});
    const int32_t x = kHostX + static_cast<int32_t>(box.x);
    const int32_t y = kHostY + static_cast<int32_t>(box.bottom());
    EXPECT_EQ(boundsOf("list"), (CIntRect{x, y, x + 60, y + 50}));
}

TEST_F(CPopupsTest, AnEventOpensAndClosesThePopupOfAView) {
    openButtons();
    CAttributeMap params;
    EXPECT_EQ(consumed(deliverEvent(at("panel.a"), "popup-toggle", params)), "");
    EXPECT_EQ(window().popups().count(), 0);
    EXPECT_EQ(consumed(at("panel.a").setAttribute("popup-template", CString("ui:settings"))), "");
    EXPECT_EQ(consumed(deliverEvent(at("panel.a"), "popup-toggle", params)), "");
    ASSERT_TRUE(popupWindow("settings"));
    EXPECT_EQ(consumed(deliverEvent(at("panel.a"), "popup-toggle", params)), "");
    tick();
    EXPECT_FALSE(popupWindow("settings"));
    params["popup-template"] = CAttributeValue::fromString("ui:list");
    params["list-id"] = CAttributeValue::fromInt(7);
    EXPECT_EQ(consumed(deliverEvent(at("panel.a"), "popup-toggle", params)), "");
    ASSERT_TRUE(popupWindow("list"));
    EXPECT_EQ(find("list")->getAttrString("list-id"), "7");
    EXPECT_FALSE(find("list")->hasAttr("popup-template"));
}

TEST_F(CPopupsTest, WidthAndPlaceByParameters) {
    openButtons();
    openPopup("panel.a", "ui:list", {{"is-same-width", "true"}, {"width-modif", "6"}});
    EXPECT_EQ(boundsOf("list").width(), static_cast<int32_t>(rectOf("panel.a").width) + 6);
    openPopup("panel.b", "ui:list",
              {{"popup-width", "33"},
               {"is-manual-coords", "true"},
               {"actual-x", "40"},
               {"actual-y", "30"},
               {"shift-x", "1"},
               {"shift-y", "2"}});
    EXPECT_EQ(boundsOf("list#1"), (CIntRect{kHostX + 41, kHostY + 32, kHostX + 74, kHostY + 82}));
    openPopup("panel", "ui:list", {{"window-x", "700"}, {"window-y", "20"}, {"constrain-y", "30"}});
    EXPECT_EQ(boundsOf("list#2"), (CIntRect{700, 30, 780, 80}));
}

TEST_F(CPopupsTest, AnAnswerMayHaveAnEventOfItsOwn) {
    openButtons();
    openPopup("panel.a", "ui:list");
    CAttributeMap params;
    params["event"] = CAttributeValue::fromString("bank-delete");
    heard();
    EXPECT_EQ(consumed(find("list")->passEvent("popup-result", params)), "");
    EXPECT_EQ(heard(), "list.popup-result a.bank-delete");
    EXPECT_EQ(at("panel.a").params.count("event"), 0u);
    EXPECT_EQ(at("panel.a").params.at("source").asString(), "ui.list");
    params["event"] = CAttributeValue::fromString("");
    EXPECT_EQ(consumed(find("list")->passEvent("popup-result", params)), "");
    EXPECT_EQ(heard(), "list.popup-result a.popup-result");
}

TEST_F(CPopupsTest, AnswersGoToTheOpenerOrTheirTarget) {
    openButtons();
    openPopup("panel.a", "ui:list");
    CAttributeMap params;
    params["index"] = CAttributeValue::fromInt(3);
    heard();
    EXPECT_EQ(consumed(find("list")->passEvent("popup-result", params)), "");
    EXPECT_EQ(heard(), "list.popup-result a.popup-result");
    EXPECT_EQ(at("panel.a").params.at("index").asInt(), 3);
    EXPECT_EQ(at("panel.a").params.at("source").asString(), "ui.list");
    EXPECT_EQ(consumed(find("list")->passEvent("popup-changed", params)), "");
    EXPECT_EQ(heard(), "list.popup-changed a.popup-changed");
    EXPECT_TRUE(popupWindow("list")->isOpen());
    EXPECT_EQ(consumed(find("list")->passEvent("popup-close", params)), "");
    EXPECT_FALSE(popupWindow("list")->isOpen());
    tick();
    EXPECT_EQ(consumed(at("panel.b").setAttribute("popup-result-target", CString("^.^.panel"))), "");
    openPopup("panel.a", "ui:list", {{"popup-result-target", "/ui.main-window.panel.b"}});
    heard();
    const std::string failure = consumed(find("list")->passEvent("popup-result", params));
    EXPECT_EQ(failure, "");
    EXPECT_EQ(heard(), "list.popup-result panel.popup-result");
}

TEST_F(CPopupsTest, ACircleOfTargetsFails) {
    openButtons();
    openPopup("panel.a", "ui:list", {{"popup-result-target", "/ui.main-window.panel.b"}});
    EXPECT_EQ(consumed(at("panel.b").setAttribute("popup-result-target", CString("/ui.list"))), "");
    CAttributeMap params;
    EXPECT_NE(
        consumed(find("list")->passEvent("popup-result", params)).find("Infinite loop caused by popup-result-target"),
        std::string::npos);
    EXPECT_EQ(consumed(at("panel.b").setAttribute("popup-result-target", CString("^"))), "");
    EXPECT_EQ(consumed(at("panel").setAttribute("popup-result-target", CString(".b"))), "");
    EXPECT_NE(consumed(find("list")->passEvent("popup-result", params)).find("Infinite loop"), std::string::npos);
}

TEST_F(CPopupsTest, FailuresLeaveNothingOpen) {
    openButtons();
    CAttributeMap params;
    EXPECT_NE(consumed(at("panel.a").openPopup("ui:missing", params)), "");
    EXPECT_NE(consumed(at("panel.a").openPopup("ui:plain", params)).find("Template 'ui:plain' has no window."),
              std::string::npos);
    system.failWindow(8);
    EXPECT_NE(consumed(at("panel.a").openPopup("ui:list", params)).find("Unable to create window (error 8)."),
              std::string::npos);
    EXPECT_EQ(window().popups().count(), 0);
    EXPECT_FALSE(window().isBlocked());
    EXPECT_FALSE(find("list"));
    EXPECT_FALSE(find("plain"));
}

TEST_F(CPopupsTest, APopupClosesWithItsOpener) {
    openButtons();
    openPopup("panel.a", "ui:list");
    delete &at("panel.a");
    EXPECT_FALSE(popupWindow("list")->isOpen());
    tick();
    EXPECT_FALSE(popupWindow("list"));
    EXPECT_FALSE(window().isBlocked());
}

TEST_F(CPopupsTest, APopupMayOpenAnotherOneAndStaysActiveWithIt) {
    openButtons();
    openPopup("panel.a", "ui:list");
    CAttributeMap params;
    ASSERT_EQ(consumed(find("list.row")->openPopup("ui:list", params)), "");
    system.advance(1.0);
    ASSERT_TRUE(popupWindow("list"));
    ASSERT_TRUE(popupWindow("list#1"));
    EXPECT_TRUE(popupWindow("list")->isOpen());
    EXPECT_TRUE(popupWindow("list")->isBlocked());
    system.desktop().activate(host);
    system.advance(0.5);
    EXPECT_FALSE(popupWindow("list"));
    EXPECT_FALSE(popupWindow("list#1"));
    EXPECT_FALSE(window().isBlocked());
}

TEST_F(CPopupsTest, ThePopupMayBeClosedByItsHandlerInsideAPress) {
    openButtons();
    openPopup("panel.a", "ui:list");
    CFilledView::actions["row.mouse-press"] = [this](CFilledView&, CAttributeMap&) {
        CAttributeMap params;
        EXPECT_EQ(consumed(find("list")->passEvent("close-window", params)), "");
        system.advance(0.5);  // a message loop: the opener's window ticks meanwhile
        EXPECT_TRUE(popupWindow("list"));
    };
    const CIntRect bounds = boundsOf("list");
    system.input().move(bounds.left + 5, bounds.top + 5);
    system.input().click();
    tick();
    EXPECT_FALSE(popupWindow("list"));
}

TEST_F(CPopupsTest, TheEditorTakesItsPopupsWithIt) {
    openButtons();
    openPopup("panel.a", "ui:settings");
    openPopup("panel.b", "ui:list");
    tree.reset();
    EXPECT_TRUE(system.isClean());
}

TEST_F(CPopupsTest, TheHostsWindowTakesThePopupsWithIt) {
    openButtons();
    openPopup("panel.a", "ui:list");
    system.desktop().destroy(host);
    EXPECT_FALSE(window().isOpen());
    system.advance(0.5);
    tree.reset();
    EXPECT_TRUE(system.isClean());
}

TEST_F(CPopupsTest, WhatFollowsTheStatusLinesMayOpenAndCloseWindows) {
    templates = {popup("ui:page", 80, 50, {{"window-status-path", ".status"}}, {view("status")})};
    open({view("a"), view("b"), view("c"), view("d")});
    const char* const pages[] = {"page", "page#1", "page#2"};
    const char* const openers[] = {"a", "b", "c"};
    for (int32_t i = 0; i < 3; ++i) {
        openPopup(openers[i], "ui:page");
        popupWindow(pages[i])->setHint("Help");
        ASSERT_EQ(find(std::string(pages[i]) + ".status")->getAttrString("title"), "Help");
    }
    // The first one closes while those behind it are still to be visited, and opens another one.
    find("page.status")->linkObserver(*tree->findObject("ui.log"), "title", "receive");
    CEventLog::onEvent = [this](const std::string&) {
        popupWindow("page")->requestClose();
        openPopup("d", "ui:page");
    };
    CObject* shared = tree->findObject("ui.window-shared-data");
    EXPECT_EQ(consumed(shared->setAttribute("is-show-hints", CString("false"))), "");
    EXPECT_FALSE(popupWindow("page")->isOpen());
    EXPECT_EQ(find("page#1.status")->getAttrString("title"), "");
    EXPECT_EQ(find("page#2.status")->getAttrString("title"), "");
    EXPECT_TRUE(popupWindow("page#3"));
}

TEST_F(CPopupsTest, NoWindowOpensWhileAllAreShut) {
    templates = {popup("ui:page", 80, 50, {}, {view("row", {{"width", "20"}, {"is-focusable", "true"}})})};
    open({view("a")});
    CWindowSharedData& shared = window().sharedData();
    int32_t ends = 0;
    const auto openPage = [&] {
        openPopup("a", "ui:page", {{"is-popup-toggle-always-create", "true"}});
        CWindow& last = *shared.windows()[shared.windows().count() - 1];
        last.setKeyFocusView(dynamic_cast<CViewBase*>(last.view().findChild("row")));
    };
    openPage();
    CFilledView::actions["row.focus-lost"] = [&](CFilledView&, CAttributeMap&) {
        if (++ends < 5) {
            openPage();
        }
    };
    shared.shutWindows();
    EXPECT_EQ(ends, 1);
    EXPECT_TRUE(shared.windows().isEmpty());
    EXPECT_FALSE(shared.isShutting());

    EXPECT_EQ(consumed(window().open()), "");
    EXPECT_TRUE(window().isOpen());
    // The page that is left over loses the focus when the tree ends, behind this test.
    CFilledView::actions.clear();
}

TEST_F(CPopupsTest, APopupThatIsTooTallKeepsItsTopInTheMonitor) {
    openButtons();
    openPopup("panel.a", "ui:tall");
    EXPECT_EQ(boundsOf("tall").top, 0);
}

}  // namespace
}  // namespace tarv
