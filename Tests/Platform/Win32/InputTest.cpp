#include <atomic>
#include <thread>

#include "Tests/Platform/Win32/CTestWindows.h"

namespace tarv {
namespace {

class Win32Input : public testing::Test {
protected:
    CRealInput input;
    CHostWindow host;
    CNotes notes;
    std::unique_ptr<CPlatformWindow> child = openChild(host, notes);

    void SetUp() override {
        input.moveTo(0, 0);
        notes.take();
    }
    /// The child's own pixels.
    void moveIn(int x, int y) { input.moveTo(150 + x, 150 + y); }
};

TEST_F(Win32Input, MovesPressesAndReleasesComeInPixelsOfTheWindow) {
    moveIn(10, 20);
    EXPECT_EQ(notes.take(), (CLines{"move 10,20"}));
    input.button(MOUSEEVENTF_LEFTDOWN);
    input.button(MOUSEEVENTF_LEFTUP);
    EXPECT_EQ(notes.take(), (CLines{"press L 10,20 +L", "release L 10,20"}));
    input.button(MOUSEEVENTF_RIGHTDOWN);
    input.button(MOUSEEVENTF_RIGHTUP);
    EXPECT_EQ(notes.take(), (CLines{"press R 10,20 +R", "release R 10,20"}));
    input.button(MOUSEEVENTF_MIDDLEDOWN);
    input.button(MOUSEEVENTF_MIDDLEUP);
    EXPECT_EQ(notes.take(), (CLines{"press O 10,20", "release O 10,20"}));
}

TEST_F(Win32Input, TheSecondOfTwoQuickPressesIsADoubleClick) {
    moveIn(10, 20);
    notes.take();
    for (int i = 0; i < 2; ++i) {
        input.button(MOUSEEVENTF_LEFTDOWN);
        input.button(MOUSEEVENTF_LEFTUP);
    }
    EXPECT_EQ(notes.take(),
              (CLines{"press L 10,20 +L", "release L 10,20", "press L 10,20 double +L", "release L 10,20"}));
}

TEST_F(Win32Input, KeysHeldComeWithThePointer) {
    moveIn(10, 20);
    notes.take();
    input.key(VK_SHIFT, true);
    moveIn(11, 20);
    input.key(VK_CONTROL, true);
    moveIn(12, 20);
    input.key(VK_SHIFT, false);
    input.key(VK_CONTROL, false);
    input.key(VK_MENU, true);
    moveIn(13, 20);
    input.key(VK_MENU, false);
    EXPECT_EQ(notes.take(), (CLines{"move 11,20 shift", "move 12,20 shift ctrl", "move 13,20 alt"}));
}

TEST_F(Win32Input, ADragGoesOnBeyondTheEdgesWithSignedCoordinates) {
    bool hasLeft = false;
    notes.react = [&](const std::string& line) {
        if (line.starts_with("press")) {
            child->setCapture();
        } else if (line.starts_with("release")) {
            child->releaseCapture();
        }
        hasLeft = hasLeft || line.starts_with("leave");
    };
    moveIn(5, 5);
    input.button(MOUSEEVENTF_LEFTDOWN);
    moveIn(-130, -120);
    moveIn(500, 300);
    // The system looks for a pointer that left every 400 ms.
    EXPECT_FALSE(pumpUntil([&] { return hasLeft; }, 600));
    input.button(MOUSEEVENTF_LEFTUP);
    EXPECT_TRUE(pumpUntil([&] { return hasLeft; }));
    pumpUntil([] { return false; }, 50);
    EXPECT_EQ(notes.take(), (CLines{"move 5,5", "press L 5,5 +L", "move -130,-120 +L", "move 500,300 +L",
                                    "release L 500,300", "leave 500,300"}))
        << "the leave comes once, after the release";
}

TEST_F(Win32Input, ThePointerThatLeavesIsReportedOnce) {
    moveIn(5, 5);
    input.moveTo(120, 120);
    EXPECT_TRUE(pumpUntil([this] { return !notes.take().empty(); }));
    moveIn(6, 6);
    notes.take();
    input.moveTo(120, 120);
    CLines lines;
    pumpUntil([&] { return !(lines = notes.take()).empty(); });
    EXPECT_EQ(lines, (CLines{"leave 6,6"}));
}

TEST_F(Win32Input, CaptureTakenByAnotherWindowIsReportedAndOurOwnReleaseIsNot) {
    moveIn(5, 5);
    input.button(MOUSEEVENTF_LEFTDOWN);
    child->setCapture();
    notes.take();
    SetCapture(host.window());
    EXPECT_EQ(notes.take(), (CLines{"lost 5,5 +L"}));
    ReleaseCapture();
    child->releaseCapture();
    EXPECT_TRUE(notes.take().empty());
    child->setCapture();
    child->setCapture();
    child->releaseCapture();
    EXPECT_TRUE(notes.take().empty());
    EXPECT_EQ(GetCapture(), nullptr);
    input.button(MOUSEEVENTF_LEFTUP);
}

TEST_F(Win32Input, AModeOfTheSystemThatCancelsTheDragIsALostCapture) {
    moveIn(5, 5);
    child->setCapture();
    notes.take();
    SendMessageW(reinterpret_cast<HWND>(child->handle()), WM_CANCELMODE, 0, 0);
    EXPECT_EQ(notes.take(), (CLines{"lost 5,5"}));
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(Win32Input, AReleaseOfCaptureLeavesThatOfAnotherWindow) {
    child->setCapture();
    SetCapture(host.window());
    child->releaseCapture();
    EXPECT_EQ(GetCapture(), host.window());
    ReleaseCapture();
}

TEST_F(Win32Input, TheWheelComesInNotchesAndFractionsAddUp) {
    moveIn(30, 40);
    notes.take();
    input.wheel(120);
    input.wheel(-240);
    EXPECT_EQ(notes.take(), (CLines{"wheel 30,40 1", "wheel 30,40 -2"}));
    notes.wheelSum = 0.0;
    for (int i = 0; i < 3; ++i) {
        input.wheel(40);
    }
    EXPECT_EQ(notes.wheelSum, 1.0) << "three thirds are a notch, to the bit";
    EXPECT_TRUE(host.heard().empty()) << "a wheel that is taken is not the host's";
}

TEST_F(Win32Input, AWheelThatNobodyTakesGoesToTheHostOnce) {
    notes.takesWheel = false;
    moveIn(30, 40);
    notes.take();
    input.wheel(40);
    EXPECT_EQ(notes.take(), (CLines{"wheel 30,40 0.333333"}));
    EXPECT_EQ(host.heard(), (CLines{"wheel 40"}));
}

TEST_F(Win32Input, AHostThatSendsTheWheelBackGetsItOnce) {
    notes.takesWheel = false;
    const HWND window = reinterpret_cast<HWND>(child->handle());
    host.onMessage = [window](UINT message, WPARAM wParam, LPARAM lParam) {
        return message == WM_MOUSEWHEEL ? SendMessageW(window, message, wParam, lParam) : 0;
    };
    moveIn(30, 40);
    input.wheel(120);
    EXPECT_EQ(host.heard(), (CLines{"wheel 120"}));
    EXPECT_EQ(notes.wheelSum, 1.0);
}

TEST(Win32OtherThread, AHostOnItIsNotWaitedFor) {
    std::atomic<HWND> parent{nullptr};
    std::atomic<int> step{0};
    CLines heard;
    std::thread hostThread([&] {
        CHostWindow host;
        parent = host.window();
        pumpUntil([&] { return step == 1; });
        // Busy, without a look at its messages.
        while (step == 1) {
            Sleep(1);
        }
        EXPECT_TRUE(pumpUntil([&] { return host.heard().size() >= 3; }));
        heard = host.heard();
        pumpUntil([&] { return step == 3; });
    });
    while (!parent) {
        Sleep(1);
    }
    CNotes notes;
    notes.takesWheel = false;
    notes.takesKeys = false;
    CWindowRequest request;
    request.isChild = true;
    request.parent = reinterpret_cast<CWindowHandle>(parent.load());
    request.bounds = {50, 50, 250, 150};
    CPlatformError error = 0;
    auto child = windowSystem()->createWindow(request, notes, error);
    ASSERT_TRUE(child);
    child->show(true);
    pump();
    const HWND window = reinterpret_cast<HWND>(child->handle());
    step = 1;
    SendMessageW(window, WM_MOUSEWHEEL, MAKEWPARAM(0, 120), MAKELPARAM(160, 160));
    SendMessageW(window, WM_KEYDOWN, VK_SPACE, 0);
    SendMessageW(window, WM_CHAR, ' ', 0);
    step = 2;
    child.reset();
    step = 3;
    hostThread.join();
    // The character is made by the host's own loop.
    EXPECT_EQ(heard, (CLines{"wheel 120", "down 32", "char 32"}));
}

TEST_F(Win32Input, ThePointOnTheScreenDecidesWhichWindowTakesTheWheel) {
    CNotes other;
    const auto popup = openPopup(host.handle(), other, {600, 100, 700, 200});
    notes.take();
    other.take();
    // Systems before Windows 10 send it to the window with the focus.
    SendMessageW(reinterpret_cast<HWND>(popup->handle()), WM_MOUSEWHEEL, MAKEWPARAM(0, 120), MAKELPARAM(155, 165));
    EXPECT_EQ(notes.take(), (CLines{"wheel 5,15 1"}));
    EXPECT_TRUE(other.take().empty());
    // Over no window of ours it is the host's.
    SendMessageW(reinterpret_cast<HWND>(child->handle()), WM_MOUSEWHEEL, MAKEWPARAM(0, 120), MAKELPARAM(110, 110));
    EXPECT_TRUE(notes.take().empty());
    EXPECT_EQ(host.heard(), (CLines{"wheel 120"}));
}

TEST_F(Win32Input, AWindowThatIsClosedInsideItsWheelTouchesNothing) {
    notes.takesWheel = false;
    moveIn(30, 40);
    notes.react = [this](const std::string&) { child.reset(); };
    input.wheel(120);
    EXPECT_FALSE(child);
    EXPECT_TRUE(host.heard().empty());
}

TEST_F(Win32Input, TheCursorFollowsTheShapeOverTheWindow) {
    struct CShape {
        CCursorShape shape;
        LPWSTR name;
    };
    moveIn(30, 40);
    for (const CShape& row : {CShape{CCursorShape::Text, reinterpret_cast<LPWSTR>(IDC_IBEAM)},
                              CShape{CCursorShape::Hand, reinterpret_cast<LPWSTR>(IDC_HAND)},
                              CShape{CCursorShape::SizeVertical, reinterpret_cast<LPWSTR>(IDC_SIZENS)},
                              CShape{CCursorShape::SizeHorizontal, reinterpret_cast<LPWSTR>(IDC_SIZEWE)},
                              CShape{CCursorShape::Move, reinterpret_cast<LPWSTR>(IDC_SIZEALL)},
                              CShape{CCursorShape::Arrow, reinterpret_cast<LPWSTR>(IDC_ARROW)}}) {
        child->setCursor(row.shape);
        EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, row.name)) << static_cast<int>(row.shape);
        SetCursor(nullptr);
        moveIn(31, 40);
        EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, row.name)) << static_cast<int>(row.shape);
        moveIn(30, 40);
    }
}

TEST_F(Win32Input, TheSystemKnowsPointerWindowAndModifiers) {
    moveIn(30, 40);
    int32_t x = 0;
    int32_t y = 0;
    windowSystem()->pointerPosition(x, y);
    EXPECT_EQ(x, 180);
    EXPECT_EQ(y, 190);
    EXPECT_EQ(windowSystem()->windowAt(180, 190), child->handle());
    EXPECT_EQ(windowSystem()->windowAt(110, 110), host.handle());
    EXPECT_EQ(windowSystem()->windowAt(-1000, -1000), 0u);
    EXPECT_EQ(windowSystem()->windowAt(900, 700), 0u) << "the desktop is another process's";
    input.key(VK_SHIFT, true);
    EXPECT_TRUE(windowSystem()->modifiers().isShift);
    input.key(VK_SHIFT, false);
    EXPECT_FALSE(windowSystem()->modifiers().isShift);
}

}  // namespace
}  // namespace tarv
