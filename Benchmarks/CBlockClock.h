#pragma once

#include <cstdint>

namespace tarv::bench {

/// What a piece of work takes of this thread: cycles in user mode where the processor counts them for us, otherwise
/// nanoseconds of a clock that never goes back, less what reading that clock takes. Use on the thread that made it.
class CBlockClock {
public:
    enum CKind { kBest, kWall };

    /// With kWall nanoseconds always.
    explicit CBlockClock(CKind kind = kBest);
    ~CBlockClock();
    CBlockClock(const CBlockClock&) = delete;
    CBlockClock& operator=(const CBlockClock&) = delete;

    bool countsCycles() const { return file_ >= 0; }
    void start() { start_ = now(); }
    /// Since start(), 0 and up.
    double stop() const {
        const int64_t taken = now() - start_ - overhead_;
        return taken > 0 ? static_cast<double>(taken) : 0.0;
    }

private:
    int64_t now() const;

    int file_ = -1;
    int64_t start_ = 0;
    int64_t overhead_ = 0;
};

}  // namespace tarv::bench
