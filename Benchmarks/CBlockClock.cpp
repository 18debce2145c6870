#include "Benchmarks/CBlockClock.h"

#include <linux/perf_event.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>

namespace tarv::bench {

namespace {

int openCycleCounter() {
    perf_event_attr event = {};
    event.size = sizeof event;
    event.type = PERF_TYPE_HARDWARE;
    event.config = PERF_COUNT_HW_CPU_CYCLES;
    event.exclude_kernel = 1;
    event.exclude_hv = 1;
    return static_cast<int>(syscall(SYS_perf_event_open, &event, 0, -1, -1, 0));
}

int64_t readCounter(int file) {
    int64_t value = 0;
    return read(file, &value, sizeof value) == sizeof value ? value : 0;
}

}  // namespace

CBlockClock::CBlockClock(CKind kind) : file_(kind == kBest ? openCycleCounter() : -1) {
    // Some virtual machines have a counter that stands still.
    if (file_ >= 0 && readCounter(file_) == readCounter(file_)) {
        close(file_);
        file_ = -1;
    }
    int64_t least = INT64_MAX;
    for (int32_t i = 0; i < 1000; ++i) {
        const int64_t before = now();
        least = std::min(least, now() - before);
    }
    overhead_ = least;
}

CBlockClock::~CBlockClock() {
    if (file_ >= 0) {
        close(file_);
    }
}

int64_t CBlockClock::now() const {
    return file_ >= 0 ? readCounter(file_)
                      : std::chrono::duration_cast<std::chrono::nanoseconds>(
                            std::chrono::steady_clock::now().time_since_epoch())
                            .count();
}

}  // namespace tarv::bench
