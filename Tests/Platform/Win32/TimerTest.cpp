#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <thread>

#include "Platform/WindowSystem.h"
#include "Tests/Platform/Win32/CTestWindows.h"

namespace tarv {
namespace {

class CTicks final : public CTimerHandler {
public:
    void onTimer() override {
        ++count;
        if (react) {
            react();
        }
    }
    int count = 0;
    std::function<void()> react;
};

CTimerId start(CTicks& ticks, int32_t milliseconds) {
    CPlatformError error = 1;
    bool isWindow = true;
    const CTimerId id = windowSystem()->startTimer(ticks, milliseconds, error, isWindow);
    EXPECT_EQ(error, 0u);
    EXPECT_FALSE(isWindow);
    return id;
}

void stop(CTimerId id) {
    windowSystem()->stopTimer(id);
}

size_t hiddenWindows() {
    size_t count = 0;
    for (HWND at = nullptr; (at = FindWindowExW(HWND_MESSAGE, at, nullptr, nullptr));) {
        wchar_t name[64] = {};
        GetClassNameW(at, name, 64);
        const bool isOurs = GetWindowThreadProcessId(at, nullptr) == GetCurrentThreadId();
        count += isOurs && std::wstring(name).starts_with(L"TarveloTimers-");
    }
    return count;
}

TEST(Win32Timers, TickUntilTheyStop) {
    CTicks ticks;
    const CTimerId id = start(ticks, 10);
    EXPECT_TRUE(pumpUntil([&] { return ticks.count >= 3; }));
    stop(id);
    const int last = ticks.count;
    Sleep(50);
    pump();
    EXPECT_EQ(ticks.count, last);
    stop(id);
}

TEST(Win32Timers, AnIntervalOf0IsTheSystemsLeastOne) {
    CTicks ticks;
    const CTimerId id = start(ticks, 0);
    EXPECT_TRUE(pumpUntil([&] { return ticks.count >= 3; }));
    stop(id);
}

TEST(Win32Timers, IdsBeginAt1AndOneHiddenWindowCarriesThemAll) {
    ASSERT_EQ(hiddenWindows(), 0u);
    CTicks ticks;
    EXPECT_EQ(start(ticks, 1000), 1u);
    EXPECT_EQ(start(ticks, 1000), 2u);
    EXPECT_EQ(hiddenWindows(), 1u);
    stop(1);
    EXPECT_EQ(start(ticks, 1000), 3u);
    EXPECT_EQ(hiddenWindows(), 1u);
    stop(2);
    stop(3);
    EXPECT_EQ(hiddenWindows(), 0u) << "the last timer takes the window along";
    stop(3);
    stop(0);
}

TEST(Win32Timers, ThreadsHaveTimersOfTheirOwn) {
    CTicks here;
    const CTimerId id = start(here, 1000);
    std::thread([&] {
        CTicks there;
        const CTimerId other = start(there, 10);
        EXPECT_EQ(other, 1u);
        EXPECT_TRUE(pumpUntil([&] { return there.count >= 2; }));
        stop(other);
        // The same number runs on the other thread.
        stop(id);
    }).join();
    EXPECT_EQ(hiddenWindows(), 1u);
    stop(id);
    EXPECT_EQ(hiddenWindows(), 0u);
}

TEST(Win32Timers, AThreadThatEndsWithRunningTimersDisturbsNone) {
    CTicks lost;
    for (int i = 0; i < 20; ++i) {
        std::thread([&] { start(lost, 10); }).join();
    }
    const int count = lost.count;
    for (int i = 0; i < 20; ++i) {
        std::thread([&] {
            CTicks ticks;
            const CTimerId id = start(ticks, 10);
            EXPECT_EQ(id, 1u);
            EXPECT_TRUE(pumpUntil([&] { return ticks.count >= 1; }));
            stop(id);
        }).join();
    }
    EXPECT_EQ(lost.count, count);
    wchar_t name[64];
    swprintf(name, 64, L"TarveloTimers-%p", static_cast<void*>(GetModuleHandleW(nullptr)));
    WNDCLASSW found;
    EXPECT_FALSE(GetClassInfoW(GetModuleHandleW(nullptr), name, &found)) << "no timer runs, so the class is gone";
}

TEST(Win32Timers, ATickMayStopItsTimerAndStartAnother) {
    CTicks first;
    CTicks second;
    CTimerId id = start(first, 10);
    CTimerId next = 0;
    first.react = [&] {
        stop(id);
        next = start(second, 10);
    };
    EXPECT_TRUE(pumpUntil([&] { return second.count >= 2; }));
    EXPECT_EQ(first.count, 1);
    stop(next);
    EXPECT_EQ(hiddenWindows(), 0u);
}

TEST(Win32Timers, ATickThatWaitsWhenItsTimerStopsFindsNobody) {
    CTicks ticks;
    const CTimerId id = start(ticks, 10);
    const CTimerId other = start(ticks, 100000);
    HWND hidden = nullptr;
    wchar_t name[64] = {};
    while ((hidden = FindWindowExW(HWND_MESSAGE, hidden, nullptr, nullptr))) {
        GetClassNameW(hidden, name, 64);
        if (std::wstring(name).starts_with(L"TarveloTimers-") &&
            GetWindowThreadProcessId(hidden, nullptr) == GetCurrentThreadId()) {
            break;
        }
    }
    ASSERT_TRUE(hidden);
    PostMessageW(hidden, WM_TIMER, id, 0);
    stop(id);
    pump();
    EXPECT_EQ(ticks.count, 0);
    stop(other);
}

}  // namespace
}  // namespace tarv
