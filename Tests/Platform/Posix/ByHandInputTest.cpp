#include "Tests/Platform/Posix/ByHandHelp.h"

namespace tarv {
namespace {

class ByHandInput : public testing::Test {
protected:
    CWindowSystemByHand system;
    const CWindowHandle host = system.desktop().openHost({100, 50, 500, 350});
    std::unique_ptr<CNotingWindow> child = CNotingWindow::child(system, host, {10, 20, 110, 70});
    CInputByHand& input = system.input();
};

TEST_F(ByHandInput, GoesToTheWindowAtThePointer) {
    input.move(110, 70);
    EXPECT_EQ(child->take(), "move(0,0)");
    input.moveIn(child->handle(), 99, 49);
    EXPECT_EQ(child->take(), "move(99,49)");
    int32_t x = 0;
    int32_t y = 0;
    system.pointerPosition(x, y);
    EXPECT_EQ(x, 209);
    EXPECT_EQ(y, 119);
    input.move(210, 119);
    EXPECT_EQ(child->take(), "leave");
    input.press();
    input.release();
    EXPECT_EQ(child->take(), "");
    EXPECT_EQ(input.hostPresses(), 1);
}

TEST_F(ByHandInput, ComesToTheCaptureAlsoFromOutside) {
    input.move(120, 80);
    child->window->setCapture();
    child->take();
    input.press();
    input.move(0, 0);
    EXPECT_EQ(child->take(), "press-l(10,10) move(-110,-70)");
    EXPECT_TRUE(child->modifiers.isLeft);
    child->meanwhile = [&](const std::string& word) {
        if (word.rfind("release", 0) == 0) {
            child->window->releaseCapture();
        }
    };
    input.release();
    EXPECT_EQ(child->take(), "release-l(-110,-70) leave") << "the pointer is elsewhere, as the release shows";
    EXPECT_FALSE(child->modifiers.isLeft);
}

TEST_F(ByHandInput, TheCaptureCanBeTakenAway) {
    const auto other = CNotingWindow::popup(system, host, {300, 200, 350, 250});
    child->window->setCapture();
    child->window->setCapture();
    EXPECT_EQ(child->take(), "");
    other->take();
    other->window->setCapture();
    EXPECT_EQ(child->take(), "lost");
    system.desktop().takeCapture();
    EXPECT_EQ(other->take(), "lost");
    other->window->setCapture();
    other->window->releaseCapture();
    EXPECT_EQ(other->take(), "") << "who gives it up is not called";
    child->window->releaseCapture();
    EXPECT_EQ(system.desktop().capture(), 0u);
}

TEST_F(ByHandInput, TwoPressesNearInTimeAndPlaceAreADoubleClick) {
    input.move(120, 80);
    child->take();
    input.click();
    input.click();
    input.click();
    EXPECT_EQ(child->take(),
              "press-l(10,10) release-l(10,10) press-l(10,10)! release-l(10,10) press-l(10,10) release-l(10,10)");
    system.advance(1.0);
    child->take();
    input.click();
    system.advance(0.6);
    input.click();
    input.click(CPointerButton::Right);
    input.move(125, 80);
    input.click(CPointerButton::Right);
    EXPECT_EQ(child->take().find('!'), std::string::npos) << "late, another button, another place";
}

TEST_F(ByHandInput, APressMakesItsWindowActiveFirst) {
    const auto list = CNotingWindow::popup(system, host, {300, 200, 350, 250});
    list->take();
    std::string order;
    list->meanwhile = [&](const std::string& word) { order += word + ' '; };
    child->meanwhile = [&](const std::string& word) { order += word + ' '; };
    input.move(120, 80);
    order.clear();
    input.press();
    EXPECT_EQ(order, "inactive press-l(10,10) ");
    EXPECT_EQ(system.desktop().active(), host);
}

TEST_F(ByHandInput, AWindowThatClosesUnderThePressGivesItToTheOneBelow) {
    auto list = CNotingWindow::popup(system, host, {110, 70, 150, 100});
    const auto other = CNotingWindow::popup(system, 0, {600, 400, 650, 450});
    input.move(120, 80);
    list->meanwhile = [&](const std::string& word) {
        if (word == "active") {
            list.reset();
        }
    };
    child->take();
    input.press();
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(child->take(), "press-l(10,10)");
    input.release();
    EXPECT_EQ(child->take(), "release-l(10,10) move(10,10)") << "the pointer is over this window now";
}

TEST_F(ByHandInput, WheelsGoToThePointerAndOtherwiseToTheHost) {
    input.move(120, 80);
    input.holdKeys(true, false, false);
    EXPECT_TRUE(input.wheel(-0.25));
    EXPECT_EQ(child->wheel.x, 10);
    EXPECT_EQ(child->wheel.delta, -0.25);
    EXPECT_TRUE(child->wheel.modifiers.isShift);
    child->takes = false;
    EXPECT_FALSE(input.wheel(1.0));
    input.move(400, 300);
    EXPECT_FALSE(input.wheel(2.0));
    EXPECT_EQ(input.hostWheel(), 3.0);
}

TEST_F(ByHandInput, KeysGoToTheGrabberAndOtherwiseToTheHost) {
    EXPECT_FALSE(input.tap(kKeySpace, u" "));
    EXPECT_EQ(input.hostKeys().size(), 2u);
    child->window->grabKeys(true);
    child->take();
    EXPECT_EQ(input.type(u"a9 ,"), 4);
    EXPECT_EQ(child->take(), "down65 up65 down57 up57 down32 up32 down0 up0");
    EXPECT_TRUE(input.key(kKeyLeft, true, u"abcdef"));
    EXPECT_EQ(child->key.characterCount, CKeyEvent::kMaxCharacters);
    EXPECT_EQ(child->key.characters[3], u'd');
    child->takes = false;
    EXPECT_FALSE(input.key(kKeyEnter, true));
    EXPECT_EQ(input.hostKeys().back().code, kKeyEnter);
    const auto popup = CNotingWindow::popup(system, host, {300, 200, 350, 250});
    popup->window->grabKeys(true);
    child->take();
    child->window->grabKeys(false);
    EXPECT_TRUE(input.key(kKeyTab, true)) << "who has no keys gives none up";
    popup->window->grabKeys(false);
    EXPECT_EQ(child->take(), "");
}

TEST_F(ByHandInput, WithoutAGrabberTheKeysAreThoseOfTheFocus) {
    const auto popup = CNotingWindow::popup(system, host, {300, 200, 350, 250});
    popup->take();
    EXPECT_TRUE(input.key(kKeyTab, true));
    EXPECT_EQ(popup->take(), "down9");
    system.desktop().activate(host);
    popup->take();
    EXPECT_FALSE(input.key(kKeyTab, false));
    child->window->takeFocus();
    EXPECT_TRUE(input.key(kKeyEnter, true));
    EXPECT_EQ(child->take(), "down13");
    EXPECT_EQ(popup->take(), "");
}

TEST_F(ByHandInput, AGrabberIsNotifiedWhenTheKeysGoElsewhere) {
    const auto popup = CNotingWindow::popup(system, host, {300, 200, 350, 250});
    system.desktop().activate(host);
    child->window->grabKeys(true);
    child->take();
    popup->window->grabKeys(true);
    EXPECT_EQ(child->take(), "keys-lost");
    popup->take();
    child->window->grabKeys(true);
    EXPECT_EQ(popup->take(), "keys-lost");
    system.desktop().activate(popup->window->handle());  // owned by the host's window
    EXPECT_EQ(child->take(), "");
    system.desktop().activate(system.desktop().openHost({500, 500, 550, 550}));
    EXPECT_EQ(child->take(), "keys-lost");
    EXPECT_EQ(system.desktop().keyGrabber(), 0u);
}

TEST_F(ByHandInput, FocusGoesBackWhereItWas) {
    system.desktop().activate(host);
    EXPECT_EQ(system.desktop().focus(), host);
    child->window->takeFocus();
    child->window->takeFocus();
    EXPECT_EQ(system.desktop().focus(), child->handle());
    child->window->giveFocusBack();
    EXPECT_EQ(system.desktop().focus(), host);
    child->window->giveFocusBack();
    EXPECT_EQ(system.desktop().focus(), host);
}

TEST_F(ByHandInput, AHandlerMayDestroyItsOwnWindow) {
    input.move(120, 80);
    child->meanwhile = [&](const std::string& word) {
        if (word.rfind("press", 0) == 0) {
            system.desktop().destroy(host);
            child->window.reset();
        }
    };
    input.press();
    input.release();
    input.move(121, 80);
    system.pump();
    EXPECT_EQ(child->take(), "move(10,10) press-l(10,10) gone");
    EXPECT_TRUE(system.isClean());
}

}  // namespace
}  // namespace tarv
