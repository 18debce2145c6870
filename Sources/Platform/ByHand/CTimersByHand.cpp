// Timers that a test drives.

#include "Platform/ByHand/CTimersByHand.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Platform/Clock.h"
#include "Platform/Posix/ClockByHand.h"
#include "Platform/ThreadId.h"

namespace tarv {

namespace {

// Times are sums of decimal fractions: what lies this near is the same time.
constexpr double kSameTime = 1e-9;

}  // namespace

CTimerId CTimersByHand::start(CTimerHandler& handler, int32_t milliseconds, CPlatformError& error, bool& isWindow) {
    const CLockScope scope(lock_);
    const uint64_t threadId = currentThreadId();
    auto thread =
        std::find_if(threads_.begin(), threads_.end(), [&](const CThread& t) { return t.threadId == threadId; });
    isWindow = thread == threads_.end() && windowFailure_ != 0;
    error = std::exchange(isWindow ? windowFailure_ : timerFailure_, 0);
    if (error != 0) {
        return 0;
    }
    if (thread == threads_.end()) {
        thread = threads_.insert(threads_.end(), {threadId, 0});
    }
    timers_.push_back(
        {threadId, ++thread->lastId, &handler, std::max(milliseconds, kLeastMilliseconds), clockSeconds(), 0});
    return thread->lastId;
}

void CTimersByHand::stop(CTimerId id) {
    const CLockScope scope(lock_);
    const uint64_t threadId = currentThreadId();
    std::erase_if(timers_, [&](const CTimer& timer) { return timer.threadId == threadId && timer.id == id; });
    const bool isLast =
        std::none_of(timers_.begin(), timers_.end(), [&](const CTimer& t) { return t.threadId == threadId; });
    if (isLast) {
        std::erase_if(threads_, [&](const CThread& thread) { return thread.threadId == threadId; });
    }
}

int32_t CTimersByHand::count() const {
    const CLockScope scope(lock_);
    return static_cast<int32_t>(timers_.size());
}

int32_t CTimersByHand::hiddenWindowCount() const {
    const CLockScope scope(lock_);
    return static_cast<int32_t>(threads_.size());
}

int32_t CTimersByHand::interval(CTimerId id) const {
    const CLockScope scope(lock_);
    const auto found = std::find_if(timers_.begin(), timers_.end(), [&](const CTimer& timer) {
        return timer.threadId == currentThreadId() && timer.id == id;
    });
    return found == timers_.end() ? -1 : found->milliseconds;
}

CTimersByHand::CTimer* CTimersByHand::firstDue(uint64_t threadId, double seconds) {
    CTimer* first = nullptr;
    for (CTimer& timer : timers_) {
        if (timer.threadId == threadId && timer.due() <= seconds + kSameTime &&
            (!first || timer.due() < first->due())) {
            first = &timer;
        }
    }
    return first;
}

bool CTimersByHand::fireNext(double seconds) {
    CTimerHandler* handler = nullptr;
    {
        const CLockScope scope(lock_);
        CTimer* timer = firstDue(currentThreadId(), seconds);
        if (!timer) {
            return false;
        }
        const double now = std::max(clockSeconds(), timer->due());
        setClockByHand(now);
        handler = timer->handler;
        const double over = std::floor((now - timer->start + kSameTime) * 1000.0 / timer->milliseconds);
        timer->fired = std::max(timer->fired + 1, static_cast<int64_t>(over));
    }
    // Outside the lock: the handler may start and stop timers.
    handler->onTimer();
    return true;
}

}  // namespace tarv
