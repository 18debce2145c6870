#include "UI/Views/CInputRouter.h"

#include "Platform/Posix/ClockByHand.h"
#include "Tests/UI/Views/RoutedViews.h"

namespace tarv {
namespace {

struct CInputRouterTest : CRouting {
    void buildTwo() { build({view("a", "0 0 50 50"), view("b", "50 0 50 50")}); }
};

TEST_F(CInputRouterTest, HoverEntersAndLeavesWithItsState) {
    buildTwo();
    move(10, 10);
    EXPECT_EQ(heard(), "a.mouse-enter a+hover a.mouse-move");
    move(20, 10);
    EXPECT_EQ(heard(), "a.mouse-move");
    move(60, 10);
    EXPECT_EQ(heard(), "a-hover a.mouse-exit b.mouse-enter b+hover b.mouse-move");
    leave();
    EXPECT_EQ(heard(), "b-hover b.mouse-exit");
    EXPECT_EQ(window.router->hovered(), nullptr);
}

TEST_F(CInputRouterTest, EventsCarryPositionAndModifiers) {
    buildTwo();
    held.isShift = true;
    held.isAlt = true;
    held.isRight = true;
    move(10, 20);
    const CAttributeMap params = at("r.a").params;
    EXPECT_EQ(params.at("actual-x").asReal(), 10.0);
    EXPECT_EQ(params.at("actual-y").asReal(), 20.0);
    EXPECT_TRUE(params.at("is-alt").asBool());
    EXPECT_TRUE(params.at("is-shift").asBool());
    EXPECT_FALSE(params.at("is-ctrl").asBool());
    EXPECT_EQ(params.at("button").asInt(), 0);
    EXPECT_FALSE(params.at("is-button-l").asBool());
    EXPECT_TRUE(params.at("is-button-r").asBool());
    EXPECT_EQ(params.size(), 8u);
}

TEST_F(CInputRouterTest, APressAndItsReleaseSetAndUnsetPushed) {
    buildTwo();
    press(10, 10);
    EXPECT_EQ(heard(), "a.mouse-enter a+hover a.mouse-press a+pushed");
    EXPECT_TRUE(window.isCaptured);
    EXPECT_FALSE(at("r.a").params.at("is-double-click").asBool());
    release(11, 10);
    EXPECT_EQ(heard(), "a-pushed a.mouse-release");
    EXPECT_FALSE(window.isCaptured);
    press(10, 10, CPointerButton::Right);
    release(10, 10, CPointerButton::Right);
    EXPECT_EQ(heard(), "a.mouse-press-r a+pushed a-pushed a.mouse-release-r");
}

TEST_F(CInputRouterTest, ADoubleClickIsThatOfTheSystem) {
    buildTwo();
    CPointerEvent second = event(CPointerKind::Press, CPointerButton::Left, 10, 10);
    second.isDouble = true;
    window.router->pointer(second);
    EXPECT_TRUE(at("r.a").params.at("is-double-click").asBool());
}

TEST_F(CInputRouterTest, HoverDoesNotMoveWhileAButtonIsDown) {
    buildTwo();
    press(10, 10);
    heard();
    move(60, 10);
    EXPECT_EQ(heard(), "a.mouse-move");
    EXPECT_EQ(at("r.a").params.at("button").asInt(), static_cast<int32_t>(CPointerButton::Left));
    EXPECT_TRUE(at("r.a").params.at("is-button-l").asBool());
    EXPECT_EQ(window.router->hovered(), &at("r.a"));
}

TEST_F(CInputRouterTest, AReleaseElsewhereIsACancelOfTheViewThatTookThePress) {
    buildTwo();
    for (const CPointerButton button : {CPointerButton::Left, CPointerButton::Right}) {
        move(10, 10);
        press(10, 10, button);
        heard();
        release(60, 10, button);
        EXPECT_EQ(heard(), std::string("a-pushed a.mouse-cancel") + (button == CPointerButton::Right ? "-r" : "") +
                               " a-hover a.mouse-exit b.mouse-enter b+hover");
    }
}

TEST_F(CInputRouterTest, ADragOutOfAViewAndBackEndsInARelease) {
    buildTwo();
    press(10, 10);
    move(60, 10);
    move(-5, 700);
    move(20, 20);
    heard();
    release(20, 20);
    EXPECT_EQ(heard(), "a-pushed a.mouse-release");
}

TEST_F(CInputRouterTest, APressThatIsTakenBackIsCancelledAndItsReleaseIsNobodys) {
    buildTwo();
    EXPECT_FALSE(window.router->takeBackPress()) << "none is held";
    press(10, 10);
    heard();
    EXPECT_TRUE(window.router->takeBackPress());
    EXPECT_EQ(heard(), "a.mouse-take-back a-pushed a.mouse-cancel");
    EXPECT_FALSE(window.router->takeBackPress());
    move(60, 10);
    EXPECT_EQ(heard(), "") << "the button is still down";
    release(60, 10);
    EXPECT_EQ(heard(), "a-hover a.mouse-exit b.mouse-enter b+hover");
}

TEST_F(CInputRouterTest, ACaptureThatIsLostCancelsAndHoverStartsAnew) {
    buildTwo();
    press(10, 10);
    heard();
    loseCapture();
    EXPECT_EQ(heard(), "a-pushed a.mouse-cancel a-hover a.mouse-exit");
    window.router->update();
    EXPECT_EQ(heard(), "");
    release(10, 10);  // late
    EXPECT_EQ(heard(), "");
    loseCapture();  // without a press
    move(10, 10);
    EXPECT_EQ(heard(), "a.mouse-enter a+hover a.mouse-move");
}

TEST_F(CInputRouterTest, AnotherButtonIsIgnoredUntilAllAreUp) {
    buildTwo();
    press(10, 10);
    heard();
    press(10, 10, CPointerButton::Right);
    EXPECT_EQ(heard(), "");
    release(10, 10);
    EXPECT_EQ(heard(), "a-pushed a.mouse-release");
    press(10, 10);  // the right one is still down
    release(10, 10);
    release(10, 10, CPointerButton::Right);
    EXPECT_EQ(heard(), "");
    press(10, 10);
    EXPECT_EQ(heard(), "a.mouse-press a+pushed");
    // A second press of the same button without a release between.
    press(10, 10);
    EXPECT_EQ(heard(), "");
    release(10, 10, CPointerButton::Right);
    EXPECT_EQ(heard(), "");
}

TEST_F(CInputRouterTest, AReleaseOfTheOtherButtonThatWasMissedBlocksNothing) {
    buildTwo();
    press(10, 10);
    press(10, 10, CPointerButton::Right);
    release(10, 10);
    held.isRight = false;  // let go beyond the window
    heard();
    press(10, 10);
    EXPECT_EQ(heard(), "a.mouse-press a+pushed");
}

TEST_F(CInputRouterTest, OtherButtonsOfTheMouseDoNothing) {
    buildTwo();
    move(10, 10);
    heard();
    window.router->pointer(event(CPointerKind::Press, CPointerButton::Other, 10, 10));
    window.router->pointer(event(CPointerKind::Release, CPointerButton::Other, 10, 10));
    EXPECT_EQ(heard(), "");
}

TEST_F(CInputRouterTest, APressOnNothingTakesTheCaptureToo) {
    buildTwo();
    press(300, 300);
    EXPECT_TRUE(window.isCaptured);
    move(10, 10);
    press(10, 10, CPointerButton::Right);
    EXPECT_EQ(heard(), "");
    release(10, 10, CPointerButton::Right);
    release(10, 10);
    EXPECT_EQ(heard(), "a.mouse-enter a+hover");
}

TEST_F(CInputRouterTest, AViewThatBecomesDisabledLosesHoverAndPress) {
    buildTwo();
    press(10, 10);
    heard();
    set("r.a", "is-disabled", "true");
    EXPECT_EQ(heard(), "a-pushed a.mouse-cancel a-hover a.mouse-exit");
    release(10, 10);
    move(11, 11);
    EXPECT_EQ(heard(), "");
    set("r.a", "is-disabled", "false");
    window.router->update();
    EXPECT_EQ(heard(), "a.mouse-enter a+hover");
}

TEST_F(CInputRouterTest, AViewDisabledByItsOwnPressGetsTheCancelOnceThePressIsThrough) {
    buildTwo();
    CRoutedView::actions["a.mouse-press"] = [this](CRoutedView&, CAttributeMap&) { set("r", "is-disabled", "true"); };
    press(10, 10);
    EXPECT_EQ(heard(),
              "a.mouse-enter a+hover a.mouse-press a+pushed a-pushed a.mouse-cancel a-hover "
              "a.mouse-exit");
    EXPECT_FALSE(at("r.a").isPushed());
    EXPECT_FALSE(at("r.a").isHovered());
}

TEST_F(CInputRouterTest, AHiddenViewLosesHoverAndPress) {
    buildTwo();
    press(10, 10);
    heard();
    at("r").hide(true);
    EXPECT_EQ(heard(), "a-pushed a.mouse-cancel a-hover a.mouse-exit");
    at("r").hide(false);
    // The button is still down: nobody takes the press over.
    press(60, 10, CPointerButton::Right);
    EXPECT_EQ(heard(), "");
}

TEST_F(CInputRouterTest, ARestingPointerEntersWhatMovesUnderIt) {
    buildTwo();
    move(60, 10);
    heard();
    at("r.b").moveTo({300, 0, 50, 50});
    at("r.a").moveTo({0, 0, 100, 50});
    EXPECT_EQ(heard(), "");
    window.router->update();
    EXPECT_EQ(heard(), "b-hover b.mouse-exit a.mouse-enter a+hover");
    window.router->update();
    EXPECT_EQ(heard(), "");
    leave();
    heard();
    window.router->update();
    EXPECT_EQ(heard(), "");
}

TEST_F(CInputRouterTest, WheelThatAViewDoesNotTakeGoesToItsParents) {
    build({view("a", "0 0 80 80", {},
                {view("b", "0 0 50 50", {{"z-index", "1"}},
                      {view("c", "0 0 20 20", {{"z-index", "2"}, {"is-disabled", "true"}})})})});
    EXPECT_FALSE(wheel(10, 10, -1.25));
    EXPECT_EQ(heard(), "b.mouse-wheel a.mouse-wheel r.mouse-wheel");
    EXPECT_EQ(at("r.a.b").params.at("delta").asReal(), -1.25);
    CRoutedView::actions["a.mouse-wheel"] = [](CRoutedView&, CAttributeMap& params) {
        CViewBaseCtlEvents::setHandled(params);
    };
    EXPECT_TRUE(wheel(30, 30, 1.0));
    EXPECT_EQ(heard(), "b.mouse-wheel a.mouse-wheel");
    EXPECT_FALSE(wheel(600, 10, 1.0));
    EXPECT_EQ(heard(), "");
}

TEST_F(CInputRouterTest, WheelIsIgnoredDuringADrag) {
    buildTwo();
    press(10, 10);
    heard();
    EXPECT_TRUE(wheel(10, 10, 1.0));
    EXPECT_EQ(heard(), "");
}

TEST_F(CInputRouterTest, WheelMayDestroyTheView) {
    buildTwo();
    CRoutedView::actions["a.mouse-wheel"] = [](CRoutedView& view, CAttributeMap&) { delete &view; };
    EXPECT_TRUE(wheel(10, 10, 1.0));
    EXPECT_EQ(heard(), "a.mouse-wheel");
}

TEST_F(CInputRouterTest, TheHintIsThatOfTheViewHitOrItsFirstAncestorWithOne) {
    build({view("a", "0 0 80 80", {{"hint", "outer"}},
                {view("b", "0 0 20 20", {{"z-index", "1"}, {"hint", "inner"}, {"is-disabled", "true"}}),
                 view("c", "20 0 20 20", {{"z-index", "1"}, {"is-input", "false"}})}),
           view("d", "200 0 20 20")});
    move(10, 10);
    EXPECT_EQ(window.hint, "inner");  // of a disabled view
    move(30, 10);
    EXPECT_EQ(window.hint, "outer");
    set("r.a.c", "hint", "own");
    EXPECT_EQ(window.hint, "own");
    move(210, 10);
    EXPECT_EQ(window.hint, "");
    move(10, 10);
    leave();
    EXPECT_EQ(window.hint, "");
}

TEST_F(CInputRouterTest, AViewMaySetItsHintWhenItIsAboutToBeShown) {
    build({view("a", "0 0 80 80", {{"hint", "old"}})});
    CRoutedView::actions["a.hint-update"] = [this](CRoutedView&, CAttributeMap&) { set("r.a", "hint", "new"); };
    move(10, 10);
    EXPECT_EQ(window.hint, "new");
}

TEST_F(CInputRouterTest, AutoClickComesWhileThePointerIsOnThePressedView) {
    build({view("a", "100 40 50 50"), view("b", "150 40 50 50")});
    setClockByHand(10.0);
    press(110, 50);
    heard();
    setClockByHand(10.29);
    window.router->autoClick(0.3);
    EXPECT_EQ(heard(), "");
    setClockByHand(10.3);
    window.router->autoClick(0.3);
    EXPECT_EQ(heard(), "a.auto-click");
    EXPECT_EQ(at("r.a").params.at("actual-x").asReal(), 10.0);
    EXPECT_EQ(at("r.a").params.at("actual-y").asReal(), 10.0);
    window.router->autoClick(0.3);  // armed anew
    EXPECT_EQ(heard(), "");
    setClockByHand(20.0);
    move(160, 50);
    heard();
    window.router->autoClick(0.3);
    EXPECT_EQ(heard(), "");
    move(120, 50);
    heard();
    window.router->autoClick(0.3);
    EXPECT_EQ(heard(), "a.auto-click");
    release(120, 50);
    press(120, 50, CPointerButton::Right);
    heard();
    setClockByHand(30.0);
    window.router->autoClick(0.3);
    EXPECT_EQ(heard(), "");
}

/// Adds up what it sees.
class CFollower : public CHIDInfoUpdateHandler {
public:
    CError* onHIDUpdate(const CHIDInfo& info) override {
        seen += std::to_string(info.x) + (info.modifiers.isShift ? "s " : " ");
        return nullptr;
    }
    std::string seen;
};

TEST_F(CInputRouterTest, AViewCanFollowTheMouseWhileItIsPressed) {
    buildTwo();
    CFollower follower;
    window.router->follow(&follower);  // no press: nothing
    CRoutedView::actions["a.mouse-press"] = [&](CRoutedView& view, CAttributeMap&) {
        view.window()->input()->follow(&follower);
    };
    move(5, 5);
    held.isCtrl = true;
    press(10, 10);
    const CDragInfo& drag = at("r.a").window()->input()->drag();
    EXPECT_EQ(drag.view(), &at("r.a"));
    EXPECT_TRUE(drag.start().modifiers.isCtrl);
    EXPECT_EQ(drag.start().x, 10);
    held.isShift = true;
    move(70, 12);
    EXPECT_EQ(drag.last().x, 70);
    EXPECT_EQ(drag.start().x, 10);
    release(71, 12);
    move(72, 12);
    EXPECT_EQ(follower.seen, "70s ");
    EXPECT_FALSE(drag.isActive());
}

TEST_F(CInputRouterTest, ListenersOfAViewGetItsEvents) {
    buildTwo();
    at("r.b").listenObject("ui.r.a", "mouse-press", "receive");
    press(10, 10);
    EXPECT_EQ(heard(), "a.mouse-enter a+hover a.mouse-press b.received a+pushed");
    EXPECT_EQ(at("r.b").params.at("sender").asString(), "ui.r.a");
    release(10, 10);
    // What a handler adds is gone from the next event, of which each delivery writes its own names anew.
    CRoutedView::actions["a.mouse-press"] = [](CRoutedView&, CAttributeMap& params) {
        params["more"] = CAttributeValue::fromInt(1);
    };
    press(10, 10);
    EXPECT_EQ(at("r.a").params.count("more"), 0u);
    EXPECT_EQ(at("r.b").params.count("more"), 1u);
    EXPECT_EQ(at("r.b").params.at("listener").asString(), "ui.r.b");
    CRoutedView::actions.clear();
    release(10, 10);
    press(10, 10);
    EXPECT_EQ(at("r.b").params.count("more"), 0u);
}

}  // namespace
}  // namespace tarv
