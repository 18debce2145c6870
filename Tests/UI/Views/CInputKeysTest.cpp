#include "Tests/UI/Views/RoutedViews.h"

namespace tarv {
namespace {

/// Two fields and a view that takes no focus.
struct CInputKeysTest : CRouting {
    CInputKeysTest() {
        build({view("a", "0 0 50 50", {{"is-focusable", "true"}}),
               view("b", "50 0 50 50", {{"is-focusable", "true"}}, {view("in", "60 0 10 10", {{"z-index", "1"}})}),
               view("c", "100 0 50 50")});
    }
    /// A press and a release that is not written down.
    void click(int32_t x, int32_t y) {
        press(x, y);
        release(x, y);
    }
    void take(const char* moment) {
        CRoutedView::actions[moment] = [](CRoutedView&, CAttributeMap& params) {
            CViewBaseCtlEvents::setHandled(params);
        };
    }
    CViewBaseCtlEvents* focus() const { return window.router->keyFocus(); }
};

TEST_F(CInputKeysTest, APressTakesFocusOnWhatIsFocusable) {
    EXPECT_FALSE(window.areKeysWanted);
    click(10, 10);
    EXPECT_EQ(focus(), &at("r.a"));
    EXPECT_TRUE(window.areKeysWanted);
    click(65, 5);  // below a focusable view
    EXPECT_EQ(focus(), &at("r.b"));
    click(110, 10);
    EXPECT_EQ(focus(), nullptr);
    EXPECT_FALSE(window.areKeysWanted);
}

TEST_F(CInputKeysTest, APressInADisabledViewFocusesNothing) {
    set("r.b", "is-disabled", "true");
    click(70, 40);
    EXPECT_EQ(focus(), nullptr);
    window.router->setKeyFocus(&at("r.b"));
    EXPECT_EQ(focus(), nullptr);
}

TEST_F(CInputKeysTest, AFieldLosesTheFocusBeforeAPressElsewhereActs) {
    click(10, 10);
    move(110, 10);
    heard();
    press(110, 10);
    EXPECT_EQ(heard(), "a.focus-lost c.mouse-press c+pushed");
}

TEST_F(CInputKeysTest, AViewThatTheLossOfFocusDisablesGetsNoPress) {
    click(10, 10);
    CRoutedView::actions["a.focus-lost"] = [this](CRoutedView&, CAttributeMap&) { set("r.c", "is-disabled", "true"); };
    move(110, 10);
    heard();
    press(110, 10);
    EXPECT_EQ(heard(), "a.focus-lost c-hover c.mouse-exit");
    release(110, 10);
    EXPECT_EQ(heard(), "");
}

TEST_F(CInputKeysTest, AViewThatTheLossOfFocusDestroysGetsNoPress) {
    click(10, 10);
    CRoutedView::actions["a.focus-lost"] = [this](CRoutedView&, CAttributeMap&) { delete find("r.b"); };
    move(70, 40);
    heard();
    press(70, 40);
    EXPECT_EQ(heard(), "a.focus-lost");
    EXPECT_EQ(focus(), nullptr);
    EXPECT_FALSE(window.areKeysWanted);
}

TEST_F(CInputKeysTest, KeysGoToTheViewWithFocusAlone) {
    EXPECT_FALSE(key('A'));
    EXPECT_EQ(heard(), "");
    window.router->setKeyFocus(&at("r.a"));
    EXPECT_FALSE(key('A'));
    EXPECT_FALSE(key('A', false));
    EXPECT_EQ(heard(), "a.key-press a.key-release");
    take("a.key-press");
    EXPECT_TRUE(key('B'));
    const CAttributeMap& params = at("r.a").params;
    EXPECT_EQ(params.at("keycode").asInt(), 'B');
    EXPECT_EQ(params.at("characters").asString(), "b");
    EXPECT_FALSE(params.at("is-tab").asBool());
}

TEST_F(CInputKeysTest, TheReleaseOfATakenKeyIsTakenToo) {
    window.router->setKeyFocus(&at("r.a"));
    take("a.key-press");
    EXPECT_TRUE(key(kKeyEnter));
    EXPECT_TRUE(key(kKeyEnter));  // repeated by the system
    window.router->setKeyFocus(nullptr);
    EXPECT_TRUE(key(kKeyEnter, false));
    EXPECT_FALSE(key(kKeyEnter, false));
}

TEST_F(CInputKeysTest, ATabThatTheViewDoesNotTakeMovesTheFocus) {
    window.router->setKeyFocus(&at("r.a"));
    EXPECT_TRUE(key(kKeyTab));
    EXPECT_EQ(focus(), &at("r.b"));
    EXPECT_EQ(heard(), "a.key-press a.focus-lost b+focus");
    EXPECT_TRUE(at("r.a").params.count("actual-x"));
    EXPECT_TRUE(key(kKeyTab));
    EXPECT_EQ(focus(), &at("r.a"));
    EXPECT_TRUE(key(kKeyTab, true, true));
    EXPECT_EQ(focus(), &at("r.b"));
    take("b.key-press");
    EXPECT_TRUE(key(kKeyTab));
    EXPECT_EQ(focus(), &at("r.b"));
}

TEST_F(CInputKeysTest, ATabWithNowhereToGoGoesToTheHost) {
    window.router->setKeyFocus(&at("r.a"));
    set("r.b", "is-disabled", "true");
    EXPECT_FALSE(key(kKeyTab));
    EXPECT_EQ(focus(), &at("r.a"));
}

TEST_F(CInputKeysTest, ATabWithoutAFocusGoesToTheFirstOrTheLastView) {
    EXPECT_TRUE(key(kKeyTab));
    EXPECT_EQ(focus(), &at("r.a"));
    EXPECT_TRUE(key(kKeyTab, false));
    window.router->setKeyFocus(nullptr);
    EXPECT_TRUE(key(kKeyTab, true, true));
    EXPECT_EQ(focus(), &at("r.b"));
    set("r.a", "is-disabled", "true");
    set("r.b", "is-disabled", "true");
    EXPECT_EQ(focus(), nullptr);
    EXPECT_FALSE(key(kKeyTab, false, true) && key(kKeyTab));
}

TEST_F(CInputKeysTest, BehindATabSpaceAndEnterPressAndReleaseTheView) {
    EXPECT_TRUE(key(kKeyTab));
    EXPECT_TRUE(window.router->isKeyMode());
    heard();
    for (const int32_t code : {kKeySpace, kKeyEnter}) {
        EXPECT_TRUE(key(code));
        EXPECT_EQ(heard(), "a.key-press a.mouse-press a.mouse-release");
        EXPECT_EQ(at("r.a").params.at("actual-x").asReal(), 25.0);
        EXPECT_TRUE(key(code));  // repeated while it is held
        EXPECT_EQ(heard(), "a.key-press");
        EXPECT_TRUE(key(code, false));
        EXPECT_EQ(heard(), "a.key-release");
    }
    take("a.key-press");
    EXPECT_TRUE(key(kKeySpace));
    EXPECT_EQ(heard(), "a.key-press");
}

TEST_F(CInputKeysTest, BehindAPressTheHostHasSpaceAndEnter) {
    EXPECT_TRUE(key(kKeyTab));
    heard();
    press(10, 10);
    EXPECT_EQ(heard(), "a.mouse-enter a+hover a-focus a.mouse-press a+pushed");
    release(10, 10);
    heard();
    EXPECT_EQ(focus(), &at("r.a"));
    EXPECT_FALSE(key(kKeySpace));
    EXPECT_FALSE(key(kKeyEnter));
    EXPECT_FALSE(key(kKeyEscape));
    EXPECT_EQ(heard(), "a.key-press a.key-press a.key-press");
}

TEST_F(CInputKeysTest, EscapeTakesTheFocusOfWhoWorksByKeys) {
    EXPECT_TRUE(key(kKeyTab));
    heard();
    EXPECT_TRUE(key(kKeyEscape));
    EXPECT_EQ(heard(), "a.key-press a-focus a.focus-lost");
    EXPECT_EQ(focus(), nullptr);
    EXPECT_FALSE(window.router->isKeyMode());
    EXPECT_TRUE(key(kKeyEscape, false));
    EXPECT_FALSE(key(kKeyEscape));
}

TEST_F(CInputKeysTest, AViewMayGoUnderItsKey) {
    EXPECT_TRUE(key(kKeyTab));
    CRoutedView::actions["a.mouse-press"] = [](CRoutedView& view, CAttributeMap&) { delete &view; };
    EXPECT_TRUE(key(kKeySpace));
    EXPECT_EQ(focus(), nullptr);
    EXPECT_TRUE(key(kKeySpace, false));
    EXPECT_TRUE(key(kKeyTab));
    CRoutedView::actions["b.mouse-press"] = [this](CRoutedView&, CAttributeMap&) { set("r.b", "is-disabled", "true"); };
    heard();
    EXPECT_TRUE(key(kKeySpace));
    EXPECT_EQ(heard(), "b.key-press b.mouse-press b.mouse-cancel b-focus b.focus-lost");
}

TEST_F(CInputKeysTest, AFieldThatIsHiddenOrDisabledLosesTheFocus) {
    window.router->setKeyFocus(&at("r.a"));
    at("r.a").hide(true);
    EXPECT_EQ(heard(), "a.focus-lost");
    EXPECT_EQ(focus(), nullptr);
    window.router->setKeyFocus(&at("r.b"));
    set("r.b", "is-disabled", "true");
    EXPECT_EQ(heard(), "b.focus-lost");
    EXPECT_FALSE(window.areKeysWanted);
}

TEST_F(CInputKeysTest, AFieldThatAKeyDestroysEndsTheFocus) {
    window.router->setKeyFocus(&at("r.a"));
    CRoutedView::actions["a.key-press"] = [](CRoutedView& view, CAttributeMap& params) {
        CViewBaseCtlEvents::setHandled(params);
        delete &view;
    };
    EXPECT_TRUE(key(kKeyEscape));
    EXPECT_EQ(focus(), nullptr);
    EXPECT_FALSE(window.areKeysWanted);
}

TEST_F(CInputKeysTest, FocusMayMoveOnWhileItIsLost) {
    window.router->setKeyFocus(&at("r.a"));
    CRoutedView::actions["a.focus-lost"] = [this](CRoutedView&, CAttributeMap&) {
        window.router->setKeyFocus(&at("r.b"));
    };
    window.router->setKeyFocus(nullptr);
    EXPECT_EQ(focus(), &at("r.b"));
    EXPECT_TRUE(window.areKeysWanted);
}

TEST_F(CInputKeysTest, TheRootViewsEndTakesTheFocusWhileAllViewsAreWhole) {
    window.router->setKeyFocus(&at("r.b"));
    root.reset();
    EXPECT_EQ(heard(), "b.focus-lost");
    EXPECT_FALSE(window.areKeysWanted);
}

}  // namespace
}  // namespace tarv
