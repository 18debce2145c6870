#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "Platform/ErrorWindow.h"
#include "Platform/EventPost.h"
#include "Platform/Folders.h"

namespace tarv {
namespace {

using CCookies = std::vector<uintptr_t>;

void noteCookie(void* user, uintptr_t cookie) {
    static_cast<CCookies*>(user)->push_back(cookie);
}

void runMessages() {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageA(&message);
    }
}

TEST(EventPost, ArrivesInOrderOnTheThreadOfTheWindow) {
    CCookies cookies;
    CEventWindow window = 0;
    ASSERT_EQ(openEventWindow(&noteCookie, &cookies, window), 0u);
    std::thread([&] {
        EXPECT_EQ(postEvent(window, 1), 0u);
        EXPECT_EQ(postEvent(window, UINTPTR_MAX), 0u);
        runMessages();
    }).join();
    EXPECT_TRUE(cookies.empty());
    runMessages();
    EXPECT_EQ(cookies, (CCookies{1, UINTPTR_MAX}));
    closeEventWindow(window);
}

TEST(EventPost, ToAClosedWindowFailsAndWhatWaitedIsDropped) {
    CCookies cookies;
    CEventWindow window = 0;
    ASSERT_EQ(openEventWindow(&noteCookie, &cookies, window), 0u);
    EXPECT_EQ(postEvent(window, 1), 0u);
    closeEventWindow(window);
    closeEventWindow(window);
    runMessages();
    EXPECT_TRUE(cookies.empty());
    EXPECT_EQ(postEvent(window, 2), static_cast<CPlatformError>(ERROR_INVALID_WINDOW_HANDLE));
    EXPECT_EQ(postEvent(0, 2), static_cast<CPlatformError>(ERROR_INVALID_WINDOW_HANDLE));
}

TEST(EventPost, TwoWindowsLiveSideBySideAndTheLastTakesTheClassAlong) {
    for (int round = 0; round < 2; ++round) {
        CCookies first;
        CCookies second;
        CEventWindow a = 0;
        CEventWindow b = 0;
        ASSERT_EQ(openEventWindow(&noteCookie, &first, a), 0u);
        ASSERT_EQ(openEventWindow(&noteCookie, &second, b), 0u);
        EXPECT_EQ(postEvent(a, 1), 0u);
        EXPECT_EQ(postEvent(b, 2), 0u);
        runMessages();
        closeEventWindow(a);
        EXPECT_EQ(postEvent(b, 3), 0u);
        runMessages();
        closeEventWindow(b);
        EXPECT_EQ(first, (CCookies{1}));
        EXPECT_EQ(second, (CCookies{2, 3}));
    }
}

std::wstring textOf(HWND window) {
    wchar_t text[2000] = {};
    SendMessageW(window, WM_GETTEXT, 1999, reinterpret_cast<LPARAM>(text));
    return text;
}

TEST(ErrorWindow, ShowsExplanationAndDetailsUntilClosed) {
    std::thread shower([] { showErrorWindow(u"Broken \u0141.\r\nSources/Core/A( 1 )\r\n"); });
    HWND window = nullptr;
    HWND edit = nullptr;
    for (int i = 0; i < 1000 && !edit; ++i) {
        window = FindWindowA("ErrorWindowClass", kErrorTitle);
        edit = window ? FindWindowExA(window, nullptr, "EDIT", nullptr) : nullptr;
        Sleep(10);
    }
    if (!edit) {
        shower.detach();
        FAIL() << "no window came up";
    }
    const HWND explanation = FindWindowExA(window, nullptr, "STATIC", nullptr);
    const std::string known(kErrorExplanation);
    EXPECT_EQ(textOf(explanation), std::wstring(known.begin(), known.end()));
    EXPECT_EQ(textOf(edit), L"Broken \u0141.\r\nSources/Core/A( 1 )\r\n");
    EXPECT_EQ(GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOPMOST, WS_EX_TOPMOST);
    EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(edit, GWL_STYLE)) & (ES_MULTILINE | ES_READONLY),
              static_cast<DWORD>(ES_MULTILINE | ES_READONLY));
    RECT client{};
    RECT place{};
    GetClientRect(window, &client);
    GetWindowRect(explanation, &place);
    EXPECT_LE(place.bottom - place.top, client.bottom / 3);
    PostMessageA(window, WM_CLOSE, 0, 0);
    shower.join();
    WNDCLASSA windowClass;
    EXPECT_FALSE(GetClassInfoA(GetModuleHandleA(nullptr), "ErrorWindowClass", &windowClass));
}

TEST(ErrorWindow, AQuitOfTheHostTakesTheWindowAlongAndComesToTheHost) {
    std::atomic<DWORD> threadId{0};
    bool isQuitThere = false;
    bool isClassThere = true;
    std::thread shower([&] {
        threadId = GetCurrentThreadId();
        showErrorWindow(u"x");
        MSG message;
        isQuitThere = PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) != 0;
        WNDCLASSA windowClass;
        isClassThere = GetClassInfoA(GetModuleHandleA(nullptr), "ErrorWindowClass", &windowClass) != 0;
    });
    HWND window = nullptr;
    for (int i = 0; i < 1000 && !window; ++i) {
        window = FindWindowA("ErrorWindowClass", kErrorTitle);
        Sleep(10);
    }
    if (!window) {
        shower.detach();
        FAIL() << "no window came up";
    }
    PostThreadMessageA(threadId, WM_QUIT, 0, 0);
    shower.join();
    EXPECT_TRUE(isQuitThere);
    EXPECT_FALSE(isClassThere);
}

TEST(Folders, DataRootsAreThoseOfTheSystem) {
    std::u16string user;
    std::u16string common;
    ASSERT_EQ(dataRootPath(CDataRoot::kUser, user), 0u);
    ASSERT_EQ(dataRootPath(CDataRoot::kCommon, common), 0u);
    EXPECT_TRUE(folderExists(user.c_str()));
    EXPECT_NE(user, common);
    EXPECT_EQ(user.find(u'\\'), std::u16string::npos);
    EXPECT_NE(user.back(), u'/');
}

}  // namespace
}  // namespace tarv
