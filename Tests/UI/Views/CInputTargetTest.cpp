#include "UI/Views/CInputTarget.h"

#include "Tests/UI/Views/RoutedViews.h"

namespace tarv {
namespace {

/// Which view gets a press at 10, 10.
struct CInputTargetTest : CRouting {
    std::string takerAt(int32_t x, int32_t y) {
        heard();
        press(x, y);
        release(x, y);
        std::string taker;
        for (const std::string& line : CRoutedView::heard) {
            const size_t at = line.find(".mouse-press");
            taker = at == std::string::npos ? taker : line.substr(0, at);
        }
        return taker;
    }
};

TEST_F(CInputTargetTest, TheTopmostViewAtThePointTakesAPress) {
    build({view("a", "0 0 50 50"), view("b", "20 20 50 50", {{"z-index", "1"}})});
    EXPECT_EQ(takerAt(10, 10), "a");
    EXPECT_EQ(takerAt(30, 30), "b");
    EXPECT_EQ(takerAt(100, 100), "");
    EXPECT_EQ(takerAt(-1, 10), "");
    EXPECT_EQ(takerAt(10, 600), "");
}

TEST_F(CInputTargetTest, TheRightEdgePixelBelongsToWhatLiesToTheRight) {
    build({view("a", "0 0 50 50"), view("b", "50 0 50 50")});
    EXPECT_EQ(takerAt(0, 0), "a");
    EXPECT_EQ(takerAt(49, 49), "a");
    EXPECT_EQ(takerAt(50, 0), "b");
    EXPECT_EQ(takerAt(0, 50), "");
}

TEST_F(CInputTargetTest, AClickThroughViewPassesThePressOnToAnotherBranch) {
    build({view("p", "0 0 100 100", {{"is-input", "false"}}, {view("a", "0 0 50 50")}),
           view("q", "0 0 100 100", {{"is-input", "false"}, {"z-index", "5"}, {"is-click-through", "true"}},
                {view("b", "0 0 30 30", {{"z-index", "6"}, {"is-click-through", "true"}})})});
    EXPECT_EQ(takerAt(10, 10), "a");
}

TEST_F(CInputTargetTest, ChildrenInheritClickThroughUnlessTheySayOtherwise) {
    build({view("under", "0 0 100 100"),
           view("p", "0 0 100 100",
                {{"is-child-click-through", "true"},
                 {"is-click-through", "true"},
                 {"is-input", "false"},
                 {"z-index", "1"}},
                {view("a", "0 0 20 20", {{"z-index", "2"}}),
                 view("b", "20 0 20 20", {{"z-index", "2"}, {"is-click-through", "false"}}),
                 view("m", "40 0 40 40", {{"z-index", "2"}, {"is-click-through", "false"}, {"is-input", "false"}},
                      {view("c", "40 0 20 20", {{"z-index", "3"}}),
                       view("n", "60 0 20 20", {{"z-index", "3"}, {"is-child-click-through", "false"}},
                            {view("d", "60 0 10 10", {{"z-index", "4"}})})})})});
    EXPECT_EQ(takerAt(10, 10), "under");  // a inherits
    EXPECT_EQ(takerAt(30, 10), "b");
    EXPECT_EQ(takerAt(65, 5), "d");  // its parent n gives nothing on
    // c and n inherit from p, over m; m itself stops the press, and nothing above it takes input.
    EXPECT_EQ(takerAt(50, 10), "");
    EXPECT_EQ(takerAt(90, 90), "under");
    // The view itself is not click-through by what it gives its children.
    set("r.p", "is-click-through", "");
    EXPECT_EQ(takerAt(90, 90), "");
    EXPECT_EQ(takerAt(10, 10), "");
}

TEST_F(CInputTargetTest, AChangedFlagCountsAtOnce) {
    build({view("a", "0 0 50 50"), view("b", "0 0 50 50", {{"z-index", "1"}})});
    EXPECT_EQ(takerAt(10, 10), "b");
    set("r.b", "is-click-through", "true");
    EXPECT_EQ(takerAt(10, 10), "a");
}

TEST_F(CInputTargetTest, ADecorativeViewIsPassedThrough) {
    build({view("a", "0 0 50 50"), view("b", "0 0 50 50", {{"z-index", "1"}, {"is-decorative", "true"}})});
    EXPECT_EQ(takerAt(10, 10), "a");
}

TEST_F(CInputTargetTest, APressClimbsToTheNearestInputView) {
    build({view("a", "0 0 80 80", {},
                {view("b", "0 0 50 50", {{"is-input", "false"}, {"z-index", "1"}},
                      {view("c", "0 0 20 20", {{"is-input", "false"}, {"z-index", "2"}})})}),
           view("f", "100 0 80 80", {{"is-input", "false"}, {"is-focusable", "true"}},
                {view("g", "100 0 20 20", {{"is-input", "false"}, {"z-index", "1"}})})});
    EXPECT_EQ(takerAt(10, 10), "a");
    EXPECT_EQ(takerAt(110, 10), "f");
    move(10, 10);
    EXPECT_EQ(window.router->hovered(), &at("r.a"));
}

TEST_F(CInputTargetTest, TheTopmostInterceptingAncestorTakesWhatIsAimedBelowIt) {
    build({view("a", "0 0 80 80", {{"is-intercepting", "true"}, {"is-input", "false"}},
                {view("b", "0 0 50 50", {{"is-intercepting", "true"}, {"z-index", "1"}},
                      {view("c", "0 0 20 20", {{"z-index", "2"}})})})});
    EXPECT_EQ(takerAt(10, 10), "a");
    set("r.a", "is-intercepting", "false");
    EXPECT_EQ(takerAt(10, 10), "b");
    set("r.a.b", "is-intercepting", "false");
    EXPECT_EQ(takerAt(10, 10), "c");
}

TEST_F(CInputTargetTest, AnInterceptingViewThatAllowsChildsLeavesInputViewsTheirs) {
    for (const char* other : {"true", "false"}) {
        build({view("a", "0 0 80 80",
                    {{"is-intercepting", other}, {"is-intercepting-allow-childs", "true"}, {"is-input", "false"}},
                    {view("b", "0 0 20 20", {{"z-index", "1"}}),
                     view("c", "20 0 20 20", {{"z-index", "1"}, {"is-input", "false"}})})});
        EXPECT_EQ(takerAt(10, 10), "b") << other;
        EXPECT_EQ(takerAt(30, 10), "a") << other;
        root.reset();
    }
}

TEST_F(CInputTargetTest, ADisabledViewOrAncestorEndsTheRouting) {
    build({view("under", "0 0 100 100"), view("a", "0 0 50 50", {{"z-index", "1"}, {"is-disabled", "true"}},
                                              {view("b", "0 0 20 20", {{"z-index", "2"}})})});
    EXPECT_EQ(takerAt(40, 40), "");
    EXPECT_EQ(takerAt(10, 10), "");
    set("r.a", "is-disabled", "false");
    EXPECT_EQ(takerAt(10, 10), "b");
}

TEST_F(CInputTargetTest, TheFocusWalksInTheOrderOfTheChildren) {
    build({view("a", "0 0 10 10", {{"is-focusable", "true"}}, {view("b", "0 0 5 5", {{"is-focusable", "true"}})}),
           view("c", "0 0 10 10"), view("d", "0 0 10 10", {{"is-focusable", "true"}, {"is-disabled", "true"}}),
           view("e", "0 0 10 10", {{"is-focusable", "true"}})});
    CRoutedView& r = at("r");
    EXPECT_EQ(CInputTarget::nextFocus(r, nullptr, false), &at("r.a"));
    EXPECT_EQ(CInputTarget::nextFocus(r, &at("r.a"), false), &at("r.a.b"));
    EXPECT_EQ(CInputTarget::nextFocus(r, &at("r.a.b"), false), &at("r.e"));
    EXPECT_EQ(CInputTarget::nextFocus(r, &at("r.e"), false), &at("r.a"));
    EXPECT_EQ(CInputTarget::nextFocus(r, &at("r.a"), true), &at("r.e"));
    EXPECT_EQ(CInputTarget::nextFocus(r, &at("r.e"), true), &at("r.a.b"));
    EXPECT_EQ(CInputTarget::nextFocus(r, nullptr, true), &at("r.e"));
    // From a view that may not have it, too.
    EXPECT_EQ(CInputTarget::nextFocus(r, &at("r.c"), false), &at("r.e"));
    at("r.a").hide(true);
    EXPECT_EQ(CInputTarget::nextFocus(r, &at("r.e"), false), nullptr);
}

}  // namespace
}  // namespace tarv
