// What windows in memory need of the system below them: a clock that is set, and posts that are taken on demand.

#include <windows.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <vector>

#include "Platform/Posix/ClockByHand.h"
#include "Platform/Posix/EventQueue.h"

// What the linker puts in place of tarv::clockSeconds in this program; the library has its own.
extern "C" double wrappedClockSeconds() __asm__("__wrap__ZN4tarv12clockSecondsEv");
extern "C" double realClockSeconds() __asm__("__real__ZN4tarv12clockSecondsEv");

namespace {

std::atomic<double> handSeconds{std::numeric_limits<double>::quiet_NaN()};

}  // namespace

double wrappedClockSeconds() {
    const double byHand = handSeconds.load();
    return std::isnan(byHand) ? realClockSeconds() : byHand;
}

namespace tarv {

void setClockByHand(double seconds) {
    handSeconds.store(seconds);
}

void releaseClock() {
    handSeconds.store(std::numeric_limits<double>::quiet_NaN());
}

/// Of the windows that this program itself has for posts; those of a library belong to its editor.
int pumpEvents() {
    std::vector<HWND> windows;
    for (HWND at = nullptr; (at = FindWindowExW(HWND_MESSAGE, at, nullptr, nullptr));) {
        const auto module = reinterpret_cast<HMODULE>(GetWindowLongPtrW(at, GWLP_HINSTANCE));
        if (GetWindowThreadProcessId(at, nullptr) == GetCurrentThreadId() && module == GetModuleHandleW(nullptr)) {
            windows.push_back(at);
        }
    }
    int delivered = 0;
    for (const HWND window : windows) {
        MSG message;
        while (IsWindow(window) && PeekMessageW(&message, window, 0, 0, PM_REMOVE)) {
            DispatchMessageW(&message);
            ++delivered;
        }
    }
    return delivered;
}

}  // namespace tarv
