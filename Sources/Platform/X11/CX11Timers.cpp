#include "Platform/X11/CX11Timers.h"

#include <algorithm>
#include <atomic>

#include "Platform/Clock.h"

namespace tarv {

namespace {

/// The least interval, which an interval of 0 means.
constexpr int32_t kLeastMilliseconds = 10;

CTimerId nextId() {
    static std::atomic<CTimerId> last{0};
    CTimerId id = ++last;
    return id ? id : ++last;
}

}  // namespace

CTimerId CX11Timers::start(CTimerHandler& handler, int32_t milliseconds) {
    const double seconds = std::max(milliseconds, kLeastMilliseconds) / 1000.0;
    timers_.push_back({nextId(), &handler, seconds, clockSeconds() + seconds});
    return timers_.back().id;
}

bool CX11Timers::stop(CTimerId id) {
    return std::erase_if(timers_, [id](const CTimer& timer) { return timer.id == id; }) > 0;
}

void CX11Timers::run() {
    const double now = clockSeconds();
    for (;;) {
        // The list may be another one behind each call: the timer that is due for longest is looked for anew.
        const auto next = std::min_element(timers_.begin(), timers_.end(),
                                           [](const CTimer& a, const CTimer& b) { return a.due < b.due; });
        if (next == timers_.end() || next->due > now) {
            return;
        }
        next->due += next->seconds;
        if (next->due <= now) {
            next->due = now + next->seconds;
        }
        next->handler->onTimer();
    }
}

}  // namespace tarv
