// What windows in memory need of the system below them: a clock that is set, and posts that are taken on demand. The
// system's own queue would cost several calls to its server for each tick.

#include <atomic>
#include <cmath>
#include <limits>

#include "Platform/EventPost.h"
#include "Platform/Posix/ClockByHand.h"

namespace tarv {

// Posix/EventPost.cpp under names that leave those of Windows to the program's other users.
CPlatformError openEventQueue(CEventHandler handler, void* user, CEventWindow& window);
void closeEventQueue(CEventWindow window);
CPlatformError postToQueue(CEventWindow window, uintptr_t cookie);

}  // namespace tarv

// What the linker puts in place of functions of the seam in this program; the library has its own.
extern "C" tarv::CPlatformError wrappedOpen(
    tarv::CEventHandler handler, void* user,
    tarv::CEventWindow& window) __asm__("__wrap__ZN4tarv15openEventWindowEPFvPvyES0_Ry");
extern "C" void wrappedClose(tarv::CEventWindow window) __asm__("__wrap__ZN4tarv16closeEventWindowEy");
extern "C" tarv::CPlatformError wrappedPost(tarv::CEventWindow window,
                                            uintptr_t cookie) __asm__("__wrap__ZN4tarv9postEventEyy");
extern "C" double wrappedClockSeconds() __asm__("__wrap__ZN4tarv12clockSecondsEv");
extern "C" double realClockSeconds() __asm__("__real__ZN4tarv12clockSecondsEv");

namespace {

std::atomic<double> handSeconds{std::numeric_limits<double>::quiet_NaN()};

}  // namespace

double wrappedClockSeconds() {
    const double byHand = handSeconds.load();
    return std::isnan(byHand) ? realClockSeconds() : byHand;
}

tarv::CPlatformError wrappedOpen(tarv::CEventHandler handler, void* user, tarv::CEventWindow& window) {
    return tarv::openEventQueue(handler, user, window);
}

void wrappedClose(tarv::CEventWindow window) {
    tarv::closeEventQueue(window);
}

tarv::CPlatformError wrappedPost(tarv::CEventWindow window, uintptr_t cookie) {
    return tarv::postToQueue(window, cookie);
}

namespace tarv {

void setClockByHand(double seconds) {
    handSeconds.store(seconds);
}

void releaseClock() {
    handSeconds.store(std::numeric_limits<double>::quiet_NaN());
}

}  // namespace tarv
