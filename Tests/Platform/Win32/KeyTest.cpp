#include <atomic>
#include <thread>

#include "Tests/Platform/Win32/CTestWindows.h"

namespace tarv {
namespace {

class Win32Keys : public testing::Test {
protected:
    CRealInput input;
    CHostWindow host;
    CNotes notes;
    std::unique_ptr<CPlatformWindow> child = openChild(host, notes);

    void SetUp() override { notes.take(); }
    /// Brings a window of another thread to the front until this thread has noticed it. Threads have separate focuses,
    /// as programs have.
    static void workElsewhere() {
        std::atomic<bool> isOver{false};
        std::thread other([&] {
            CHostWindow window;
            while (!isOver) {
                pump();
                Sleep(1);
            }
        });
        EXPECT_TRUE(pumpUntil([] { return !GetActiveWindow(); }));
        pump();
        isOver = true;
        other.join();
    }
    void comeBack() {
        SetForegroundWindow(host.window());
        SetFocus(host.window());
        pump();
    }
};

TEST_F(Win32Keys, WithoutAGrabTheyAreTheHosts) {
    input.press('A');
    EXPECT_TRUE(notes.take().empty());
    EXPECT_EQ(host.heard(), (CLines{"down 65", "char 97", "up 65"}));
}

TEST_F(Win32Keys, WhileGrabbedTheyComeHereAndStopHere) {
    child->grabKeys(true);
    input.press('A');
    input.press(VK_SPACE);
    input.press(VK_RETURN);
    EXPECT_EQ(notes.take(),
              (CLines{"key 65 down", "key 65 up", "key 32 down", "key 32 up", "key 13 down", "key 13 up"}));
    EXPECT_EQ(notes.typed, u"a ");
    EXPECT_TRUE(host.heard().empty()) << "the focus is the host's, and yet it gets nothing";
    child->grabKeys(false);
    input.press('B');
    EXPECT_TRUE(notes.take().empty());
    EXPECT_EQ(host.heard(), (CLines{"down 66", "char 98", "up 66"}));
}

TEST_F(Win32Keys, CharactersFollowTheLayoutAndTheKeysHeld) {
    child->grabKeys(true);
    input.key(VK_SHIFT, true);
    input.press('A');
    input.press('1');
    input.key(VK_SHIFT, false);
    input.press(VK_OEM_COMMA);
    EXPECT_EQ(notes.typed, u"A!,");
    notes.typed.clear();
    input.key(VK_CONTROL, true);
    input.press('C');
    input.key(VK_CONTROL, false);
    EXPECT_EQ(notes.typed, u"") << "a control character is no text";
    notes.take();
    input.key(VK_CONTROL, true);
    input.press('V');
    input.key(VK_CONTROL, false);
    EXPECT_EQ(notes.take()[1], "key 86 down ctrl");
}

TEST_F(Win32Keys, AKeyThatIsNotTakenGoesOnToTheHost) {
    notes.takesKeys = false;
    child->grabKeys(true);
    input.press(VK_SPACE);
    EXPECT_EQ(notes.take(), (CLines{"key 32 down", "key 32 up"}));
    EXPECT_EQ(host.heard(), (CLines{"down 32", "char 32", "up 32"}));
}

TEST_F(Win32Keys, WithTheFocusHereUntakenKeysStillReachTheHostOnce) {
    child->takeFocus();
    ASSERT_EQ(GetFocus(), reinterpret_cast<HWND>(child->handle()));
    notes.takesKeys = false;
    input.press(VK_SPACE);
    EXPECT_EQ(notes.take(), (CLines{"key 32 down", "key 32 up"}));
    EXPECT_EQ(host.heard(), (CLines{"down 32", "char 32", "up 32"}));
    child->grabKeys(true);
    input.press('A');
    EXPECT_EQ(notes.take(), (CLines{"key 65 down", "key 65 up"})) << "asked once";
    EXPECT_EQ(host.heard(), (CLines{"down 32", "char 32", "up 32", "down 65", "char 97", "up 65"}));
}

TEST_F(Win32Keys, WithTheFocusHereATakenKeyStopsHereWithItsCharacters) {
    child->takeFocus();
    input.press('A');
    EXPECT_EQ(notes.take(), (CLines{"key 65 down", "key 65 up"}));
    EXPECT_EQ(notes.typed, u"a");
    EXPECT_TRUE(host.heard().empty());
    notes.react = [this](const std::string&) { child.reset(); };
    input.key('B', true);
    EXPECT_FALSE(child) << "the window may go inside its key";
    input.key('B', false);
}

TEST_F(Win32Keys, AHostThatSendsKeysBackGetsThemOnce) {
    child->takeFocus();
    notes.takesKeys = false;
    const HWND window = reinterpret_cast<HWND>(child->handle());
    host.onMessage = [window](UINT message, WPARAM wParam, LPARAM lParam) {
        return message == WM_KEYDOWN ? SendMessageW(window, message, wParam, lParam) : 0;
    };
    input.press(VK_SPACE);
    EXPECT_EQ(host.heard(), (CLines{"down 32", "char 32", "up 32"}));
}

TEST_F(Win32Keys, TheFocusGoesBackToWhereItWas) {
    child->takeFocus();
    child->takeFocus();
    child->giveFocusBack();
    EXPECT_EQ(GetFocus(), host.window());
    child->takeFocus();
    SetFocus(nullptr);
    child->giveFocusBack();
    EXPECT_EQ(GetFocus(), nullptr) << "the focus is elsewhere meanwhile";
    const HWND field =
        CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 0, 0, 40, 20, host.window(), nullptr, nullptr, nullptr);
    SetFocus(field);
    child->takeFocus();
    child.reset();
    EXPECT_EQ(GetFocus(), field) << "the system itself would give it to the parent";
}

TEST_F(Win32Keys, OneWindowOfTheProcessOwnsThem) {
    CNotes other;
    const auto second = openChild(host, other);
    child->grabKeys(true);
    second->grabKeys(true);
    pump();
    EXPECT_EQ(notes.take(), (CLines{"keys lost"}));
    input.press('A');
    EXPECT_TRUE(notes.take().empty());
    EXPECT_EQ(other.take().size(), 2u + 1u) << "its first paint, and the key";
    child->grabKeys(false);
    input.press('A');
    EXPECT_EQ(other.take().size(), 2u) << "who does not own the keys gives none back";
    second->grabKeys(false);
    input.press('A');
    EXPECT_EQ(host.heard().size(), 3u);
}

TEST_F(Win32Keys, WhatIsTypedIntoAnotherWindowOfTheHostIsItsOwn) {
    child->grabKeys(true);
    {
        CHostWindow dialog;
        input.press('A');
        EXPECT_EQ(notes.take(), (CLines{"keys lost"}));
        EXPECT_EQ(dialog.heard(), (CLines{"down 65", "char 97", "up 65"}));
    }
    SetForegroundWindow(host.window());
    child->grabKeys(true);
    // Where in the host's window the focus lies makes no difference.
    const HWND field =
        CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 0, 0, 40, 20, host.window(), nullptr, nullptr, nullptr);
    SetFocus(field);
    pump();
    input.press('B');
    EXPECT_EQ(notes.take(), (CLines{"key 66 down", "key 66 up"}));
    EXPECT_EQ(GetWindowTextLengthW(field), 0);
    // A popup of ours is no other window.
    CNotes list;
    const auto popup = openPopup(child->handle(), list, {600, 310, 700, 350});
    ASSERT_EQ(GetActiveWindow(), reinterpret_cast<HWND>(popup->handle()));
    input.press('C');
    EXPECT_EQ(notes.take(), (CLines{"key 67 down", "key 67 up"}));
}

TEST_F(Win32Keys, AGrabOnAnotherThreadEndsTheFormerOne) {
    child->grabKeys(true);
    std::thread([] {
        CHostWindow otherHost;
        CNotes other;
        const auto window = openChild(otherHost, other);
        window->grabKeys(true);
    }).join();
    SetForegroundWindow(host.window());
    SetFocus(host.window());
    pump();
    EXPECT_EQ(notes.take(), (CLines{"keys lost"}));
    input.press('A');
    EXPECT_TRUE(notes.take().empty());
    EXPECT_EQ(host.heard(), (CLines{"down 65", "char 97", "up 65"}));
}

TEST_F(Win32Keys, AChildWithTheFocusLosesThemToAnotherProgram) {
    child->takeFocus();
    workElsewhere();
    EXPECT_EQ(notes.take(), (CLines{"keys lost"})) << "a key that is held would stay so";
    comeBack();
    child->grabKeys(true);
    child->takeFocus();
    workElsewhere();
    EXPECT_EQ(notes.take(), (CLines{"keys lost"}));
    comeBack();
    input.press('A');
    EXPECT_TRUE(notes.take().empty()) << "the grab is over";
    EXPECT_EQ(host.heard(), (CLines{"down 65", "char 97", "up 65"}));
}

TEST_F(Win32Keys, AChildThatTheHookServesLosesThemToAnotherProgram) {
    child->grabKeys(true);
    ASSERT_EQ(GetFocus(), host.window());
    workElsewhere();
    EXPECT_EQ(notes.take(), (CLines{"keys lost"})) << "the focus is the host's";
    comeBack();
    input.press('B');
    EXPECT_TRUE(notes.take().empty());
    EXPECT_EQ(host.takeHeard(), (CLines{"down 66", "char 98", "up 66"}));
    child->grabKeys(true);
    input.press('C');
    EXPECT_EQ(notes.take(), (CLines{"key 67 down", "key 67 up"})) << "for the next field it is there again";
}

TEST_F(Win32Keys, AChildThatTheHookServesMayGoWhenItLosesThem) {
    child->grabKeys(true);
    notes.react = [this](const std::string& line) {
        if (line == "keys lost") {
            child.reset();
        }
    };
    workElsewhere();
    EXPECT_FALSE(child);
}

TEST_F(Win32Keys, AChildThatGivesTheFocusToAWindowOfTheHostLosesNone) {
    child->grabKeys(true);
    child->takeFocus();
    CHostWindow dialog;
    EXPECT_NE(GetFocus(), reinterpret_cast<HWND>(child->handle()));
    EXPECT_TRUE(notes.take().empty());
    child->takeFocus();
    child->giveFocusBack();
    SetFocus(host.window());
    input.press('A');
    EXPECT_EQ(notes.take(), (CLines{"key 65 down", "key 65 up"}));
}

TEST_F(Win32Keys, AWindowMayGoWhenItLosesThem) {
    child->takeFocus();
    notes.react = [this](const std::string& line) {
        if (line == "keys lost") {
            child.reset();
        }
    };
    workElsewhere();
    EXPECT_FALSE(child);
}

TEST_F(Win32Keys, AWindowThatGoesLeavesNoHook) {
    child->grabKeys(true);
    child.reset();
    input.press('A');
    EXPECT_EQ(host.heard(), (CLines{"down 65", "char 97", "up 65"}));
}

TEST_F(Win32Keys, AWindowMayGoInsideItsKey) {
    child->grabKeys(true);
    notes.react = [this](const std::string&) { child.reset(); };
    input.key('A', true);
    EXPECT_FALSE(child);
    input.key('A', false);
    EXPECT_EQ(host.heard(), (CLines{"up 65"})) << "the key that closed the window was taken";
}

TEST_F(Win32Keys, ALookAtTheQueueIsNoKey) {
    child->grabKeys(true);
    INPUT key{};
    key.type = INPUT_KEYBOARD;
    key.ki.wVk = 'A';
    ASSERT_EQ(SendInput(1, &key, sizeof(key)), 1u);
    MSG message;
    for (int i = 0; i < 3; ++i) {
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
    }
    EXPECT_TRUE(notes.take().empty());
    pump();
    EXPECT_EQ(notes.take(), (CLines{"key 65 down"}));
    input.key('A', false);
}

TEST_F(Win32Keys, CharactersWithoutAKeyAreTyped) {
    child->takeFocus();
    child->grabKeys(true);
    input.packet(u'\u0141');
    EXPECT_EQ(notes.typed, u"\u0141");
    EXPECT_TRUE(host.heard().empty());
}

}  // namespace
}  // namespace tarv
