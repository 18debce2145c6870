#pragma once

#include <vector>

#include "Platform/Lock.h"
#include "Platform/WindowSystem.h"

namespace tarv {

/// Timers that run by the clock by hand. As on the system, all timers of a thread belong to one hidden window, which
/// lives while one of them runs; ids count from 1 in each thread. A timer that was served too late fires once and keeps
/// its grid. Any thread; each drives its own timers.
class CTimersByHand {
public:
    /// What an interval below becomes.
    static constexpr int32_t kLeastMilliseconds = 10;

    CTimerId start(CTimerHandler& handler, int32_t milliseconds, CPlatformError& error, bool& isWindow);
    void stop(CTimerId id);

    /// Fires the timer of this thread that is due first, not behind `seconds`, after setting the clock to its time
    /// unless that has passed. False if none is due.
    bool fireNext(double seconds);
    /// The next start fails, with the hidden window or with the timer.
    void failWindow(CPlatformError error) { windowFailure_ = error; }
    void failTimer(CPlatformError error) { timerFailure_ = error; }

    /// Of all threads.
    int32_t count() const;
    int32_t hiddenWindowCount() const;
    /// Milliseconds of a timer of this thread; -1 if it doesn't run.
    int32_t interval(CTimerId id) const;

private:
    struct CThread {
        uint64_t threadId;
        CTimerId lastId;
    };
    struct CTimer {
        uint64_t threadId;
        CTimerId id;
        CTimerHandler* handler;
        int32_t milliseconds;
        double start;
        int64_t fired;  ///< intervals that are over

        double due() const { return start + static_cast<double>((fired + 1) * milliseconds) / 1000.0; }
    };
    CTimer* firstDue(uint64_t threadId, double seconds);

    mutable CLock lock_;
    std::vector<CThread> threads_;
    std::vector<CTimer> timers_;
    CPlatformError windowFailure_ = 0;
    CPlatformError timerFailure_ = 0;
};

}  // namespace tarv
