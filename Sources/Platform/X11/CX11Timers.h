#pragma once

#include <vector>

#include "Platform/WindowSystem.h"

namespace tarv {

/// Timers of one thread, by the clock: whatever serves them calls `run` often enough. One thread.
class CX11Timers {
public:
    CTimerId start(CTimerHandler& handler, int32_t milliseconds);
    /// False if the id does not run.
    bool stop(CTimerId id);
    /// Calls each timer that is due once. A timer that is late by more than its interval has its missed calls dropped.
    /// A handler may start and stop timers; what it starts is not called in the same run.
    void run();

private:
    struct CTimer {
        CTimerId id;
        CTimerHandler* handler;
        double seconds;
        double due;
    };
    std::vector<CTimer> timers_;
};

}  // namespace tarv
