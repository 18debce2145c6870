#include <unistd.h>

#include "Tests/Platform/X11/CXDesktop.h"

namespace tarv {
namespace {

using CTexts = std::vector<std::string>;

// Numbers of keys on an ordinary keyboard.
constexpr int kA = 38, kE = 26, k1 = 10, k8 = 17, kShiftKey = 50, kCtrlKey = 37, kEqual = 21, kTabKey = 23,
              kLeftKey = 113;

class X11Input : public CXDesktop {
protected:
    X11Input() : window(child(recorder)) {}

    CXRecorder recorder;
    const std::unique_ptr<CPlatformWindow> window;
};

TEST_F(X11Input, PressAndReleaseBearPlaceButtonAndKeys) {
    client.movePointer(110, 70);
    client.key(kShiftKey, true);
    client.button(1, true);
    client.button(3, true);
    EXPECT_TRUE(until([&] { return recorder.events.size() == 2; }));
    EXPECT_TRUE(system.modifiers().isShift && system.modifiers().isLeft && system.modifiers().isRight);
    client.button(3, false);
    client.button(1, false);
    client.key(kShiftKey, false);
    EXPECT_TRUE(until([&] { return recorder.events.size() == 4; }));
    EXPECT_EQ(recorder.events, (CTexts{"press left 10,20 shift L", "press right 10,20 shift L R",
                                       "release right 10,20 shift L", "release left 10,20 shift"}));
    int32_t x = 0, y = 0;
    system.pointerPosition(x, y);
    EXPECT_EQ(x, 110);
    EXPECT_EQ(y, 70);
    EXPECT_FALSE(system.modifiers().isShift || system.modifiers().isLeft);
}

TEST_F(X11Input, TheSecondOfTwoQuickPressesIsDoubleAndTheThirdIsNot) {
    client.movePointer(110, 70);
    for (int i = 0; i < 3; ++i)
        client.click(1);
    client.movePointer(120, 70);
    client.click(1);
    ASSERT_TRUE(until([&] { return recorder.events.size() == 8; }));
    EXPECT_EQ(recorder.events[2], "press left 10,20 double L");
    EXPECT_EQ(recorder.events[4], "press left 10,20 L");
    EXPECT_EQ(recorder.events[6], "press left 20,20 L") << "too far from the third";
}

TEST_F(X11Input, ADragReachesBeyondTheEdgesInBothDirections) {
    recorder.act = [&] {
        if (recorder.events.back().starts_with("press"))
            window->setCapture();
    };
    client.movePointer(110, 70);
    client.button(1, true);
    settle();
    client.movePointer(0, 0);
    settle();
    ASSERT_FALSE(recorder.moves.empty());
    EXPECT_EQ(recorder.moves.back().x, -100);
    EXPECT_EQ(recorder.moves.back().y, -50);
    EXPECT_TRUE(recorder.moves.back().modifiers.isLeft);
    client.movePointer(790, 590);
    settle();
    EXPECT_EQ(recorder.moves.back().x, 690);
    client.button(1, false);
    EXPECT_TRUE(until([&] { return recorder.events.size() >= 3; }));
    EXPECT_EQ(recorder.events, (CTexts{"press left 10,20 L", "release left 690,540", "leave"}));
    // The capture has ended with the release.
    recorder.moves.clear();
    client.movePointer(600, 500);
    settle();
    EXPECT_TRUE(recorder.moves.empty());
}

TEST_F(X11Input, MovesThatWaitCountAsOneMove) {
    client.movePointer(101, 51);
    settle();
    recorder.moves.clear();
    for (int i = 2; i < 60; ++i)
        client.movePointer(100 + i, 50 + i);
    settle();
    ASSERT_FALSE(recorder.moves.empty());
    EXPECT_LT(recorder.moves.size(), 10u);
    EXPECT_EQ(recorder.moves.back().x, 59);
}

TEST_F(X11Input, TheWheelTurnsByNotchesAndWhatIsNotTakenGoesToTheHost) {
    client.movePointer(110, 70);
    client.takeTypes();
    client.click(4);
    client.click(5);
    EXPECT_TRUE(until([&] { return recorder.events.size() == 2; }));
    EXPECT_EQ(recorder.events, (CTexts{"wheel 10,20 up", "wheel 10,20 down"}));
    EXPECT_TRUE(client.takeTypes().empty());
    recorder.isWheelTaken = false;
    client.click(4);
    EXPECT_TRUE(until([&] { return recorder.events.size() == 3; }));
    settle();
    EXPECT_EQ(client.takeTypes(), (std::vector{XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE}));
}

TEST_F(X11Input, ThePointerLeavesAndComesBack) {
    client.movePointer(110, 70);
    settle();
    ASSERT_FALSE(recorder.moves.empty()) << "entering is a move";
    client.movePointer(600, 500);
    EXPECT_TRUE(until([&] { return recorder.events == CTexts{"leave"}; }));
}

TEST_F(X11Input, AnotherWindowTakesTheCapture) {
    CXRecorder other;
    const auto second = child(other, {200, 0, 400, 100});
    window->setCapture();
    second->setCapture();
    EXPECT_EQ(recorder.events, CTexts{"capture lost"});
    second->releaseCapture();
    EXPECT_TRUE(other.events.empty());
}

TEST_F(X11Input, ADragThatTheServerEndsIsLost) {
    recorder.act = [&] {
        if (recorder.events.back().starts_with("press"))
            window->setCapture();
    };
    client.movePointer(110, 70);
    client.button(1, true);
    settle();
    // Nothing that can't be seen keeps a grab.
    xcb_unmap_window(client.connection(), host);
    client.button(1, false);
    xcb_map_window(client.connection(), host);
    client.movePointer(120, 80);
    EXPECT_TRUE(until([&] { return recorder.events.back() == "capture lost"; }));
    EXPECT_EQ(recorder.events.size(), 2u);
}

TEST_F(X11Input, ADragIsLostWhenAnotherProgramTakesTheFocus) {
    window->takeFocus();
    settle();
    recorder.events.clear();
    window->setCapture();
    client.setFocus(host);
    // The pointer is elsewhere and leaves with the end of the capture.
    EXPECT_TRUE(until([&] { return recorder.events.size() == 3; }));
    EXPECT_EQ(recorder.events, (CTexts{"capture lost", "inactive", "leave"}));
}

TEST_F(X11Input, ADragGoesOnWhenTheFocusIsGivenBack) {
    window->takeFocus();
    settle();
    recorder.events.clear();
    window->setCapture();
    window->giveFocusBack();
    settle();
    EXPECT_EQ(client.focus(), host);
    EXPECT_EQ(recorder.events, CTexts{}) << "neither the capture nor the activation ends";
    recorder.moves.clear();
    client.movePointer(700, 500);
    EXPECT_TRUE(until([&] { return !recorder.moves.empty(); }));
}

TEST_F(X11Input, KeysComeOnlyWhileTheyAreGrabbed) {
    client.movePointer(110, 70);
    settle();
    client.takeTypes();
    client.strike(kA);
    settle();
    EXPECT_TRUE(recorder.typed.empty());
    EXPECT_EQ(client.takeTypes(), (std::vector{XCB_KEY_PRESS, XCB_KEY_RELEASE}))
        << "the host's, below the pointer, too";
    window->grabKeys(true);
    settle();
    client.strike(kA);
    client.key(kShiftKey, true);
    client.strike(kA);
    client.strike(k1);
    client.key(kShiftKey, false);
    ASSERT_TRUE(until([&] { return recorder.typed == u"aA!"; }));
    EXPECT_TRUE(client.takeTypes().empty());
    window->grabKeys(false);
    client.sync();
    EXPECT_EQ(client.focus(), host);
    client.strike(kA);
    settle();
    EXPECT_EQ(recorder.typed, u"aA!");
}

TEST_F(X11Input, KeysBearNumbersThatNoLayoutChanges) {
    window->grabKeys(true);
    settle();
    recorder.events.clear();
    client.strike(kA);
    client.key(kShiftKey, true);
    client.strike(k8);
    client.strike(kTabKey);
    client.key(kShiftKey, false);
    client.strike(kLeftKey);
    client.key(kCtrlKey, true);
    client.strike(kA);
    client.key(kCtrlKey, false);
    ASSERT_TRUE(until([&] { return recorder.events.size() == 14; }));
    EXPECT_EQ(recorder.events, (CTexts{"key 65 down a", "key 65 up ", "key 16 down ", "key 56 down *", "key 56 up ",
                                       "key 9 down ", "key 9 up ", "key 16 up ", "key 37 down ", "key 37 up ",
                                       "key 17 down ", "key 65 down ", "key 65 up ", "key 17 up "}));
}

TEST_F(X11Input, AKeyThatIsNotTakenGoesOnToTheHost) {
    window->grabKeys(true);
    settle();
    client.takeTypes();
    recorder.isKeyTaken = false;
    client.strike(kA);
    EXPECT_TRUE(until([&] { return recorder.events.size() >= 2; }));
    settle();
    EXPECT_EQ(client.takeTypes(), (std::vector{XCB_KEY_PRESS, XCB_KEY_RELEASE}));
}

TEST_F(X11Input, AGrabOfAnotherWindowEndsTheFormer) {
    CXRecorder other;
    const auto second = child(other, {200, 0, 400, 100});
    window->grabKeys(true);
    second->grabKeys(true);
    settle();
    EXPECT_EQ(std::count(recorder.events.begin(), recorder.events.end(), "keys lost"), 1);
    EXPECT_EQ(std::count(other.events.begin(), other.events.end(), "keys lost"), 0);
    window->grabKeys(false);
    settle();
    client.strike(kA);
    EXPECT_TRUE(until([&] { return other.typed == u"a"; }));
    EXPECT_TRUE(recorder.typed.empty());
}

TEST_F(X11Input, KeysOfTheFocusComeWithoutAGrabAndGoOnToTheHostIfNotTaken) {
    window->takeFocus();
    settle();
    client.takeTypes();
    client.strike(kA);
    EXPECT_TRUE(until([&] { return recorder.typed == u"a"; }));
    EXPECT_TRUE(client.takeTypes().empty());
    recorder.isKeyTaken = false;
    client.strike(kA);
    EXPECT_TRUE(until([&] { return recorder.typed == u"aa"; }));
    settle();
    EXPECT_EQ(client.takeTypes(), (std::vector{XCB_KEY_PRESS, XCB_KEY_RELEASE}));
}

TEST_F(X11Input, KeysOfAPopupComeToTheWindowThatGrabsThem) {
    CXRecorder list;
    window->grabKeys(true);
    const auto opened = popup(list, window->handle(), {10, 10, 60, 60});
    client.strike(kA);
    EXPECT_TRUE(until([&] { return recorder.typed == u"a"; }));
}

TEST_F(X11Input, AKeyThatTheGrabDoesNotTakeComesToThePopupWithTheFocus) {
    CXRecorder list;
    const auto opened = popup(list, window->handle(), {300, 200, 400, 260});
    window->grabKeys(true);
    settle();
    opened->takeFocus();
    settle();
    client.takeTypes();
    recorder.isKeyTaken = false;
    client.strike(kA);
    EXPECT_TRUE(until([&] { return list.typed == u"a"; }));
    EXPECT_EQ(recorder.typed, u"a") << "asked first";
    EXPECT_TRUE(client.takeTypes().empty());
}

TEST_F(X11Input, CharactersFollowTheLayoutAndDeadKeysJoinTheirLetter) {
    const CScopedVariable language("LC_ALL", "en_US.UTF-8");
    window->grabKeys(true);
    settle();
    client.strike(kA);
    ASSERT_TRUE(until([&] { return recorder.typed == u"a"; }));
    // German: the key right of the ß is a dead acute.
    ASSERT_EQ(runProgram({"setxkbmap", "de"}), 0);
    recorder.typed.clear();
    recorder.events.clear();
    client.strike(48);
    client.strike(kEqual);
    client.strike(kE);
    client.strike(29);
    EXPECT_TRUE(until([&] { return recorder.events.size() == 8; }));
    EXPECT_EQ(recorder.typed, u"\u00e4\u00e9z");
    EXPECT_EQ(recorder.deadKeys, 1);
    EXPECT_EQ(recorder.events[6], "key 90 down z");
    // French: figures need Shift; their keys keep their numbers.
    ASSERT_EQ(runProgram({"setxkbmap", "fr"}), 0);
    recorder.events.clear();
    client.strike(k1);
    EXPECT_TRUE(until([&] { return recorder.events.size() == 2; }));
    EXPECT_EQ(recorder.events[0], "key 49 down &");
    ASSERT_EQ(runProgram({"setxkbmap", "ru,us"}), 0);
    recorder.events.clear();
    client.strike(kA);
    EXPECT_TRUE(until([&] { return recorder.events.size() == 2; }));
    EXPECT_EQ(recorder.events[0], "key 65 down \xd1\x84");
    ASSERT_EQ(runProgram({"setxkbmap", "us"}), 0);
}

TEST_F(X11Input, AKeyThatIsHeldRepeatsItsPressAlone) {
    window->grabKeys(true);
    settle();
    client.key(kA, true);
    EXPECT_TRUE(until([&] { return recorder.typed.size() >= 3; }));
    client.key(kA, false);
    EXPECT_TRUE(until([&] { return recorder.events.back() == "key 65 up "; }));
    for (size_t i = 1; i + 1 < recorder.events.size(); ++i)
        EXPECT_EQ(recorder.events[i], i == 0 ? "active" : recorder.events[1]);
}

}  // namespace
}  // namespace tarv
