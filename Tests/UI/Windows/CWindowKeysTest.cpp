// Keys of a window: when it has them, and where they go otherwise.

#include "Tests/UI/Windows/WindowTree.h"

namespace tarv {
namespace {

/// A field that is edited, two buttons and an open plain.
struct CWindowKeysTest : CWindowTree {
    CWindowKeysTest() {
        const CTestNode edited = view("row", {{"is-focusable", "true"}, {"grabs-keys", "true"}, {"width", "20"}});
        templates = {popup("ui:keys", 80, 50, {}, {view("row", {{"is-focusable", "true"}, {"width", "20"}})}),
                     popup("ui:menu", 80, 50, {{"is-popup-window", "true"}}, {edited}),
                     popup("ui:edits", 80, 50, {}, {edited})};
        open({view("field", {{"width", "50"}, {"height", "200"}, {"is-focusable", "true"}, {"grabs-keys", "true"}}),
              view("a", {{"width", "50"}, {"height", "200"}, {"is-focusable", "true"}}),
              view("b", {{"width", "50"}, {"height", "200"}, {"is-focusable", "true"}})},
             {{"inline-alignment-h", "left"}});
        heard();
    }
    void takeFocus() const {
        EXPECT_EQ(consumed(tree->setAttribute("IsFocusTaken", CAttributeValue::fromBool(true))), "");
    }
    bool isGrabbing() { return system.desktop().keyGrabber() == window().handle(); }
};

TEST_F(CWindowKeysTest, AnEmbeddedWindowGrabsKeysOnlyForAFieldThatIsEdited) {
    click(60, 20);
    EXPECT_EQ(window().keyFocusView(), &at("a"));
    EXPECT_FALSE(isGrabbing());
    EXPECT_FALSE(system.input().tap(kKeySpace, u" "));
    click(20, 20);
    EXPECT_TRUE(isGrabbing());
    EXPECT_FALSE(system.input().tap(kKeySpace, u" "));  // the field does not take it
    EXPECT_EQ(system.input().hostKeys().size(), 4u);
    click(60, 20);
    EXPECT_FALSE(isGrabbing());
    click(20, 20);
    EXPECT_TRUE(isGrabbing());
    click(250, 20);
    EXPECT_FALSE(isGrabbing());
}

TEST_F(CWindowKeysTest, AnotherWindowThatGrabsTheKeysEndsTheFocus) {
    click(20, 20);
    CPlatformError error = 0;
    struct CNone : CWindowHandler {
        void onPaint(const CIntRect&) override {}
        void onPointer(const CPointerEvent&) override {}
        bool onWheel(const CWheelEvent&) override { return false; }
        bool onKey(const CKeyEvent&) override { return true; }
        void onActivation(bool, CWindowHandle) override {}
        void onCloseRequest() override {}
        void onGone() override {}
    } handler;
    const std::unique_ptr<CPlatformWindow> other = system.createWindow({true, host, {0, 0, 9, 9}}, handler, error);
    heard();
    other->grabKeys(true);
    EXPECT_EQ(heard(), "field.focus-lost");
    EXPECT_EQ(window().keyFocusView(), nullptr);
    EXPECT_EQ(system.desktop().keyGrabber(), other->handle());
}

TEST_F(CWindowKeysTest, WorkElsewhereEndsTheFocus) {
    click(20, 20);
    heard();
    const CWindowHandle dialog = system.desktop().openHost({900, 500, 950, 550});
    system.desktop().activate(dialog);
    EXPECT_EQ(heard(), "field.focus-lost");
    EXPECT_FALSE(isGrabbing());
    system.desktop().activate(host);
    click(20, 20);
    EXPECT_TRUE(isGrabbing());
    system.desktop().activate(system.desktop().openHost({900, 500, 950, 550}, false));
    EXPECT_EQ(window().keyFocusView(), nullptr);
}

TEST_F(CWindowKeysTest, APopupOfTheEditorIsNoWorkElsewhere) {
    click(20, 20);
    heard();
    openPopup("a", "ui:keys");
    EXPECT_EQ(window().keyFocusView(), &at("field"));
    EXPECT_TRUE(isGrabbing());
}

TEST_F(CWindowKeysTest, WithTheFocusOfTheSystemAllFocusableViewsAreWorkedByKeys) {
    takeFocus();
    click(250, 20);
    heard();
    EXPECT_FALSE(isGrabbing());
    EXPECT_TRUE(system.input().tap(kKeyTab));
    EXPECT_EQ(window().keyFocusView(), &at("field"));
    EXPECT_TRUE(isGrabbing());
    EXPECT_TRUE(system.input().tap(kKeyTab));
    EXPECT_EQ(window().keyFocusView(), &at("a"));
    EXPECT_FALSE(isGrabbing());
    heard();
    EXPECT_TRUE(system.input().tap(kKeySpace, u" "));
    EXPECT_EQ(heard(), "a.key-press a.mouse-press a.mouse-release a.key-release");
    EXPECT_FALSE(system.input().tap('S', u"s"));
    EXPECT_EQ(system.input().hostKeys().size(), 2u);
    EXPECT_TRUE(system.input().tap(kKeyEscape));
    EXPECT_EQ(system.desktop().focus(), host);
    EXPECT_FALSE(system.input().tap(kKeyTab));
}

TEST_F(CWindowKeysTest, TheFocusGoesBackToTheHostWhenAnEditIsOver) {
    takeFocus();
    click(20, 20);
    EXPECT_EQ(system.desktop().focus(), window().handle());
    window().setKeyFocusView(&at("a"));
    EXPECT_EQ(system.desktop().focus(), host);
    EXPECT_FALSE(system.input().tap(kKeySpace, u" "));
}

TEST_F(CWindowKeysTest, TheFocusGoesBackToWhereItWasWhenAPopupOpened) {
    for (const char* name : {"field", "a"}) {
        for (const char* popupName : {"menu", "edits"}) {
            takeFocus();
            click(name == std::string("a") ? 60 : 20, 20);
            openPopup("b", std::string("ui:") + popupName);
            ASSERT_TRUE(popupWindow(popupName));
            // The popup takes all keys meanwhile.
            popupWindow(popupName)->setKeyFocusView(find(popupName + std::string(".row")));
            EXPECT_FALSE(isGrabbing());
            popupWindow(popupName)->requestClose();
            EXPECT_EQ(window().keyFocusView(), &at(name)) << popupName;
            EXPECT_EQ(system.desktop().focus(), window().handle());
            EXPECT_EQ(isGrabbing(), name == std::string("field"));
            system.advance(0.1);
            EXPECT_EQ(window().keyFocusView(), &at(name)) << popupName;
            // And from there to the host.
            window().setKeyFocusView(nullptr);
            EXPECT_EQ(system.desktop().focus(), host);
        }
    }
}

TEST_F(CWindowKeysTest, AFocusThatTheHostHadGoesBackToTheHost) {
    click(60, 20);
    openPopup("b", "ui:menu");
    popupWindow("menu")->requestClose();
    EXPECT_EQ(window().keyFocusView(), &at("a"));
    EXPECT_EQ(system.desktop().focus(), host);
}

TEST_F(CWindowKeysTest, NoFocusComesBackToWhatIsGoneOrFromElsewhere) {
    takeFocus();
    click(60, 20);
    openPopup("b", "ui:menu");
    delete &at("a");
    popupWindow("menu")->requestClose();
    EXPECT_EQ(window().keyFocusView(), nullptr);
    EXPECT_EQ(system.desktop().focus(), window().handle());
    system.advance(0.1);
    click(20, 20);
    openPopup("b", "ui:menu");
    const CWindowHandle dialog = system.desktop().openHost({900, 500, 950, 550});
    system.desktop().activate(dialog);
    system.advance(0.2);
    ASSERT_FALSE(popupWindow("menu"));
    EXPECT_EQ(window().keyFocusView(), nullptr);
    EXPECT_EQ(system.desktop().focus(), dialog);
}

TEST_F(CWindowKeysTest, APressThatClosesAPopupBringsTheFocusBack) {
    takeFocus();
    click(60, 20);
    openPopup("b", "ui:menu");
    click(250, 150);
    EXPECT_FALSE(popupWindow("menu")->isOpen());
    EXPECT_EQ(window().keyFocusView(), &at("a"));
    EXPECT_EQ(system.desktop().focus(), window().handle());
}

TEST_F(CWindowKeysTest, TheFocusComesBackAtATickWhereAPopupWentWithItsOpener) {
    takeFocus();
    click(60, 20);
    openPopup("b", "ui:menu");
    delete &at("b");
    EXPECT_FALSE(popupWindow("menu")->isOpen());
    EXPECT_EQ(window().keyFocusView(), nullptr);
    system.advance(0.1);
    EXPECT_EQ(window().keyFocusView(), &at("a"));
    EXPECT_EQ(system.desktop().focus(), window().handle());
}

TEST_F(CWindowKeysTest, APopupThatFailsToOpenLeavesTheFocus) {
    takeFocus();
    click(60, 20);
    system.failWindow(8);
    CAttributeMap params;
    EXPECT_NE(consumed(at("b").openPopup("ui:menu", params)), "");
    EXPECT_EQ(window().keyFocusView(), &at("a"));
    window().setKeyFocusView(nullptr);
    EXPECT_EQ(system.desktop().focus(), host);
}

TEST_F(CWindowKeysTest, EscapeClosesAPopupThatDoesNotTakeIt) {
    openPopup("a", "ui:keys");
    EXPECT_TRUE(system.input().tap(kKeyTab));
    EXPECT_EQ(popupWindow("keys")->keyFocusView(), find("keys.row"));
    CFilledView::actions["row.key-press"] = [](CFilledView&, CAttributeMap& params) {
        CViewBaseCtlEvents::setHandled(params);
    };
    EXPECT_TRUE(system.input().tap(kKeyEscape));
    EXPECT_TRUE(popupWindow("keys")->isOpen());
    CFilledView::actions.clear();
    EXPECT_TRUE(system.input().tap(kKeyEscape));  // ends the walk
    EXPECT_TRUE(popupWindow("keys")->isOpen());
    EXPECT_TRUE(system.input().tap(kKeyEscape));
    system.advance(0.1);
    EXPECT_FALSE(popupWindow("keys"));
}

TEST_F(CWindowKeysTest, TheReleaseOfAKeyThatClosesAPopupIsNotTheHosts) {
    for (const int32_t code : {kKeyEnter, kKeyEscape}) {
        for (const bool isFocusTaken : {false, true}) {
            EXPECT_EQ(consumed(tree->setAttribute("IsFocusTaken", CAttributeValue::fromBool(isFocusTaken))), "");
            click(60, 20);
            openPopup("b", "ui:menu");
            popupWindow("menu")->setKeyFocusView(find("menu.row"));
            CFilledView::actions["row.key-press"] = [this](CFilledView&, CAttributeMap& params) {
                if (params["keycode"].asInt() == kKeyEnter) {
                    CViewBaseCtlEvents::setHandled(params);
                    popupWindow("menu")->requestClose();
                }
            };
            const size_t toHost = system.input().hostKeys().size();
            EXPECT_TRUE(system.input().key(code, true));
            EXPECT_FALSE(popupWindow("menu")->isOpen());
            system.advance(0.1);
            EXPECT_EQ(system.input().hostKeys().size(), toHost);
            // Other keys are the host's.
            EXPECT_FALSE(system.input().key('S', true, u"s"));
            EXPECT_TRUE(system.input().key(code, false));
            EXPECT_FALSE(system.input().key('S', false));
            EXPECT_EQ(system.input().hostKeys().size(), toHost + 2);
            EXPECT_FALSE(isGrabbing());
            EXPECT_TRUE(window().router().heldKeys().isEmpty());
        }
    }
}

TEST_F(CWindowKeysTest, AKeyThatIsReleasedInAForeignWindowWorksAgain) {
    openPopup("a", "ui:keys");
    EXPECT_TRUE(system.input().tap(kKeyTab));
    heard();
    EXPECT_TRUE(system.input().key(kKeySpace, true, u" "));
    const CWindowHandle dialog = system.desktop().openHost({900, 500, 950, 550});
    system.desktop().activate(dialog);
    system.input().key(kKeySpace, false);
    system.desktop().activate(popupWindow("keys")->handle());
    EXPECT_TRUE(system.input().tap(kKeyTab));
    heard();
    EXPECT_TRUE(system.input().tap(kKeySpace, u" "));
    EXPECT_EQ(heard(), "row.key-press row.mouse-press row.mouse-release row.key-release");
    // And where the keys were grabbed.
    system.desktop().activate(host);
    click(20, 20);
    CFilledView::actions["field.key-press"] = [](CFilledView&, CAttributeMap& params) {
        CViewBaseCtlEvents::setHandled(params);
    };
    EXPECT_TRUE(system.input().key('S', true, u"s"));
    system.desktop().activate(dialog);
    EXPECT_TRUE(window().router().heldKeys().isEmpty());
}

TEST_F(CWindowKeysTest, AReaderFollowsTheFocusOfAllWindows) {
    struct CReader : CFocusReader {
        std::string names;
        void keyFocusMoved(const CViewBaseCtlEvents* view) override {
            names += (view ? view->name().toUtf8() : "none") + " ";
        }
    } reader;
    window().sharedData().setFocusReader(&reader);
    click(20, 20);
    click(60, 20);
    click(250, 20);
    openPopup("a", "ui:keys");
    EXPECT_TRUE(system.input().tap(kKeyTab));
    window().sharedData().setFocusReader(nullptr);
    EXPECT_EQ(reader.names, "field a none row ");
}

TEST_F(CWindowKeysTest, AKeyThatOpensAPopupWorksAgainThoughItsReleaseWentToThePopup) {
    takeFocus();
    templates.push_back(popup("ui:menu", 80, 50, {{"is-popup-window", "true"}}));
    open({view("a", {{"width", "50"}, {"height", "200"}, {"is-focusable", "true"}})});
    takeFocus();
    CFilledView::actions["a.mouse-press"] = [this](CFilledView&, CAttributeMap&) { openPopup("a", "ui:menu"); };
    click(250, 20);
    EXPECT_TRUE(system.input().tap(kKeyTab));
    for (int32_t round = 0; round < 3; ++round) {
        ASSERT_EQ(window().keyFocusView(), &at("a"));
        EXPECT_TRUE(system.input().key(kKeySpace, true, u" "));
        ASSERT_TRUE(popupWindow("menu")) << round;
        system.input().key(kKeySpace, false);
        EXPECT_TRUE(system.input().tap(kKeyEscape));
        system.advance(0.1);
        ASSERT_FALSE(popupWindow("menu"));
    }
}

}  // namespace
}  // namespace tarv
