#include <algorithm>

#include "Platform/EventPost.h"
#include "Tests/Platform/Win32/CTestWindows.h"

namespace tarv {
namespace {

HWND asWindow(const std::unique_ptr<CPlatformWindow>& window) {
    return reinterpret_cast<HWND>(window->handle());
}

std::wstring classNameOf(HWND window) {
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    return name;
}

bool isRegistered(const std::wstring& name) {
    WNDCLASSW found;
    return GetClassInfoW(GetModuleHandleW(nullptr), name.c_str(), &found) != 0;
}

TEST(Win32Window, AChildStandsInItsParentAndAPopupOnTheScreen) {
    CHostWindow host;
    CNotes notes;
    const auto child = openChild(host, notes);
    EXPECT_EQ(GetParent(asWindow(child)), host.window());
    const LONG_PTR childStyle = GetWindowLongPtrW(asWindow(child), GWL_STYLE);
    EXPECT_EQ(childStyle & (WS_CHILD | WS_CLIPSIBLINGS | WS_CAPTION), WS_CHILD | WS_CLIPSIBLINGS);
    EXPECT_EQ(child->screenBounds(), (CIntRect{150, 150, 350, 250}));
    child->setBounds({10, 20, 40, 60});
    EXPECT_EQ(child->screenBounds(), (CIntRect{110, 120, 140, 160}));

    const auto popup = openPopup(child->handle(), notes, {300, 310, 400, 350});
    EXPECT_EQ(GetWindow(asWindow(popup), GW_OWNER), host.window()) << "a child cannot own";
    EXPECT_NE(GetWindowLongPtrW(asWindow(popup), GWL_STYLE) & WS_POPUP, 0);
    EXPECT_EQ(popup->screenBounds(), (CIntRect{300, 310, 400, 350}));
    EXPECT_TRUE(IsWindowVisible(asWindow(popup)));
    popup->show(false);
    EXPECT_FALSE(IsWindowVisible(asWindow(popup)));
}

TEST(Win32Window, TitlesAreUnicode) {
    CHostWindow host;
    CNotes notes;
    const auto popup = openPopup(host.handle(), notes, {300, 310, 400, 350});
    wchar_t title[32] = {};
    GetWindowTextW(asWindow(popup), title, 32);
    EXPECT_EQ(std::wstring(title), L"Popup");
    popup->setTitle(u"\u0141\u00e9");
    GetWindowTextW(asWindow(popup), title, 32);
    EXPECT_EQ(std::wstring(title), L"\u0141\u00e9");
}

TEST(Win32Window, AWindowThatCannotBeMadeGivesTheSystemsNumberAndLeavesNoClass) {
    CNotes notes;
    CWindowRequest request;
    request.isChild = true;
    request.bounds = {0, 0, 10, 10};
    CPlatformError error = 0;
    EXPECT_FALSE(windowSystem()->createWindow(request, notes, error));
    EXPECT_EQ(error, static_cast<CPlatformError>(ERROR_TLW_WITH_WSCHILD));
    request.parent = 0x12345678;
    EXPECT_FALSE(windowSystem()->createWindow(request, notes, error));
    EXPECT_EQ(error, static_cast<CPlatformError>(ERROR_INVALID_WINDOW_HANDLE));
}

TEST(Win32Window, TheClassHoldsTheModulesAddressAndGoesWithTheLastWindow) {
    CHostWindow host;
    CNotes notes;
    auto first = openChild(host, notes);
    auto second = openChild(host, notes);
    const std::wstring name = classNameOf(asWindow(first));
    wchar_t expected[64];
    swprintf(expected, 64, L"TarveloWindow-%p", static_cast<void*>(GetModuleHandleW(nullptr)));
    EXPECT_EQ(name, expected);
    EXPECT_EQ(classNameOf(asWindow(second)), expected);
    EXPECT_EQ(reinterpret_cast<HMODULE>(GetClassLongPtrW(asWindow(first), GCLP_HMODULE)), GetModuleHandleW(nullptr));
    first.reset();
    EXPECT_TRUE(isRegistered(name));
    second.reset();
    EXPECT_FALSE(isRegistered(name));
}

TEST(Win32Window, TheHostMayDestroyTheParentFirst) {
    CHostWindow host;
    CNotes notes;
    auto child = openChild(host, notes);
    const std::wstring name = classNameOf(asWindow(child));
    child->grabKeys(true);
    child->setCapture();
    notes.take();
    host.destroy();
    EXPECT_EQ(notes.take(), (CLines{"gone"}));
    EXPECT_EQ(child->handle(), 0u);
    // All of it is harmless now.
    child->show(true);
    child->setBounds({0, 0, 10, 10});
    child->setTitle(u"x");
    child->invalidate({0, 0, 10, 10});
    child->setCapture();
    child->releaseCapture();
    child->setCursor(CCursorShape::Hand);
    child->takeFocus();
    child->giveFocusBack();
    child->grabKeys(true);
    child->grabKeys(false);
    child->finishPresenting();
    EXPECT_EQ(child->screenBounds(), (CIntRect{}));
    child.reset();
    EXPECT_TRUE(notes.take().empty());
    EXPECT_FALSE(isRegistered(name));
}

TEST(Win32Window, AWindowMayBeDestroyedInItsLastCall) {
    CNotes notes;
    std::unique_ptr<CPlatformWindow> child;
    notes.react = [&](const std::string&) { child.reset(); };
    {
        CHostWindow host;
        notes.react = nullptr;
        child = openChild(host, notes);
        notes.react = [&](const std::string& line) {
            EXPECT_EQ(line, "gone");
            child.reset();
        };
        host.destroy();
    }
    EXPECT_FALSE(child);
    // The class could not go inside the call; with the next window it does.
    CHostWindow host;
    notes.react = nullptr;
    child = openChild(host, notes);
    const std::wstring name = classNameOf(asWindow(child));
    child.reset();
    EXPECT_FALSE(isRegistered(name));
}

TEST(Win32Window, APopupGoesWithItsOwner) {
    CNotes notes;
    CHostWindow host;
    const auto popup = openPopup(host.handle(), notes, {300, 310, 400, 350});
    host.destroy();
    const CLines lines = notes.take();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "gone"), 1);
    EXPECT_EQ(popup->handle(), 0u);
}

TEST(Win32Window, ItMayCloseInsideAnyOfItsCalls) {
    CHostWindow host;
    for (const char* when : {"paint", "press", "move", "lost", "close", "leave"}) {
        CNotes notes;
        auto child = openChild(host, notes);
        const HWND window = asWindow(child);
        child->setCapture();
        bool isClosed = false;
        notes.react = [&](const std::string& line) {
            EXPECT_FALSE(isClosed) << line;
            if (line.starts_with(when)) {
                isClosed = true;
                child.reset();
            }
        };
        child->invalidate({0, 0, 10, 10});
        UpdateWindow(window);
        SendMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
        SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        SendMessageW(window, WM_CANCELMODE, 0, 0);
        SendMessageW(window, WM_MOUSELEAVE, 0, 0);
        SendMessageW(window, WM_CLOSE, 0, 0);
        EXPECT_TRUE(isClosed) << when;
        EXPECT_FALSE(IsWindow(window)) << when;
        notes.react = nullptr;
    }
}

TEST(Win32Window, ACloseIsAskedForAndNotDone) {
    CHostWindow host;
    CNotes notes;
    const auto popup = openPopup(host.handle(), notes, {300, 310, 400, 350});
    notes.take();
    SendMessageW(asWindow(popup), WM_CLOSE, 0, 0);
    EXPECT_EQ(notes.take(), (CLines{"close"}));
    EXPECT_TRUE(IsWindow(asWindow(popup)));
}

TEST(Win32Window, ActivationGoesWithTheWindowsThatItOwns) {
    CHostWindow host;
    CNotes list;
    CNotes submenu;
    const auto popup = openPopup(host.handle(), list, {300, 310, 400, 350});
    EXPECT_EQ(list.take()[0], "active");
    const auto inner = openPopup(popup->handle(), submenu, {400, 310, 500, 350});
    CLines lines = list.take();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "inactive"), 0) << "its submenu has the activation";
    EXPECT_EQ(submenu.take()[0], "active");
    SetActiveWindow(host.window());
    pump();
    EXPECT_EQ(list.take(), (CLines{"inactive"}));
    EXPECT_EQ(list.lastActive, host.handle());
    EXPECT_EQ(submenu.take(), (CLines{"inactive"}));
    EXPECT_EQ(submenu.lastActive, host.handle());
}

TEST(Win32Window, AnActiveWindowThatClosesLeavesItsOwnerWithTheRightState) {
    CHostWindow host;
    for (const bool isHostNext : {false, true}) {
        CNotes list;
        CNotes submenu;
        const auto popup = openPopup(host.handle(), list, {300, 310, 400, 350});
        auto inner = openPopup(popup->handle(), submenu, {400, 310, 500, 350});
        list.take();
        submenu.take();
        if (isHostNext) {
            // The system gives no activation to what is disabled.
            EnableWindow(asWindow(popup), FALSE);
        }
        inner.reset();
        pump();
        CLines lines = list.take();
        EXPECT_EQ(std::count(lines.begin(), lines.end(), "inactive"), GetActiveWindow() == asWindow(popup) ? 0 : 1);
        EXPECT_EQ(GetActiveWindow() == asWindow(popup), !isHostNext);
        EXPECT_TRUE(submenu.take().empty()) << "a window that is destroyed calls nobody";
    }
}

TEST(Win32Window, AHostThatIsWrittenFromTheRightMirrorsNothing) {
    CHostWindow host(WS_EX_LAYOUTRTL);
    CNotes notes;
    const auto child = openChild(host, notes);
    EXPECT_EQ(GetWindowLongPtrW(asWindow(child), GWL_EXSTYLE) & WS_EX_LAYOUTRTL, 0);
}

TEST(Win32Window, APopupWithoutActivationLeavesItToTheHost) {
    CHostWindow host;
    CNotes notes;
    const auto popup = openPopup(host.handle(), notes, {300, 310, 400, 350}, false);
    EXPECT_TRUE(IsWindowVisible(asWindow(popup)));
    EXPECT_EQ(GetActiveWindow(), host.window());
    EXPECT_EQ(SendMessageW(asWindow(popup), WM_MOUSEACTIVATE, 0, MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN)), MA_NOACTIVATE);
    const CLines lines = notes.take();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "active"), 0);
}

TEST(Win32Window, TheMonitorsWorkAreaIsThatOfTheNearestOne) {
    const CIntRect area = windowSystem()->monitorArea(10, 10);
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    EXPECT_EQ(area, (CIntRect{work.left, work.top, work.right, work.bottom}));
    EXPECT_EQ(windowSystem()->monitorArea(-5000, 9000), area);
}

/// The highest of some handles that the system gives now: it grows with those in use.
template <typename CMake, typename CFree>
size_t highestHandle(CMake make, CFree free) {
    size_t highest = 0;
    decltype(make()) made[16];
    for (auto& handle : made) {
        handle = make();
        // The lower half is the place in the table.
        highest = std::max(highest, reinterpret_cast<size_t>(handle) & 0xffff);
    }
    for (auto& handle : made) {
        free(handle);
    }
    return highest;
}

size_t highestPen() {
    return highestHandle([] { return CreatePen(PS_SOLID, 1, 0); }, [](HPEN pen) { DeleteObject(pen); });
}

size_t highestWindow() {
    return highestHandle(
        [] { return CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr); },
        [](HWND window) { DestroyWindow(window); });
}

BOOL CALLBACK countWindow(HWND, LPARAM count) {
    ++*reinterpret_cast<size_t*>(count);
    return TRUE;
}

/// Of this thread, hidden ones too.
size_t ownWindows() {
    size_t count = 0;
    EnumThreadWindows(GetCurrentThreadId(), &countWindow, reinterpret_cast<LPARAM>(&count));
    for (HWND at = nullptr; (at = FindWindowExW(HWND_MESSAGE, at, nullptr, nullptr));) {
        count += GetWindowThreadProcessId(at, nullptr) == GetCurrentThreadId();
    }
    return count;
}

class CNoTicks final : public CTimerHandler {
    void onTimer() override {}
};

void receiveNothing(void*, uintptr_t) {}

void openAndClose(const CHostWindow& host) {
    CNotes notes;
    CNoTicks ticks;
    CSurfaceStep step;
    CPlatformError error = 0;
    bool isWindow = false;
    CEventWindow events = 0;
    EXPECT_EQ(openEventWindow(&receiveNothing, nullptr, events), 0u);
    auto child = openChild(host, notes);
    const auto surface = windowSystem()->createSurface(128, 128, step, error);
    ASSERT_TRUE(surface);
    const CTimerId timer = windowSystem()->startTimer(ticks, 25, error, isWindow);
    const auto popup = openPopup(child->handle(), notes, {300, 310, 400, 350});
    child->present(*surface, 0, 0, {0, 0, 128, 128});
    child->finishPresenting();
    child->takeFocus();
    child->grabKeys(true);
    child->setCapture();
    pump();
    windowSystem()->stopTimer(timer);
    closeEventWindow(events);
}

TEST(Win32Window, TwoHundredOpeningsLeaveNoHandlesBehind) {
    CHostWindow host;
    openAndClose(host);
    const size_t pens = highestPen();
    const size_t windows = highestWindow();
    const size_t own = ownWindows();
    const DWORD gdi = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    const DWORD user = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    for (int i = 0; i < 200; ++i) {
        openAndClose(host);
    }
    EXPECT_LE(highestPen(), pens);
    // Other programs have places in this table, too. One hook or window left by each opening would be 200.
    EXPECT_LT(highestWindow(), windows + 100);
    EXPECT_EQ(ownWindows(), own);
    // 0 on a system that does not count.
    EXPECT_EQ(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), gdi);
    EXPECT_EQ(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS), user);
}

}  // namespace
}  // namespace tarv
