// The clock of POSIX systems.

#include "Platform/Clock.h"

#include <time.h>

#include <atomic>
#include <cmath>
#include <limits>

#include "Platform/Posix/ClockByHand.h"

namespace tarv {

namespace {

// Not a number while the system's clock runs.
std::atomic<double> handSeconds{std::numeric_limits<double>::quiet_NaN()};

}  // namespace

double clockSeconds() {
    const double byHand = handSeconds.load();
    if (!std::isnan(byHand)) {
        return byHand;
    }
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

void setClockByHand(double seconds) {
    handSeconds.store(seconds);
}

void releaseClock() {
    handSeconds.store(std::numeric_limits<double>::quiet_NaN());
}

}  // namespace tarv
