#pragma once

#include <cstdint>

namespace tarv {

/// What drawing has cost in the last ticks, in percent: 100 is a counter of 2,000,000.
class CDrawLoad {
public:
    /// The counter of one tick.
    void add(int64_t counter);
    /// The larger of the mean of the last 20 ticks and the largest of the last 5; ticks that have not been are 0.
    double value() const;

private:
    static constexpr int32_t kTicks = 20;
    static constexpr int32_t kLatest = 5;

    double ring_[kTicks] = {};
    int32_t next_ = 0;
};

}  // namespace tarv
