#include "UI/Windows/CDrawLoad.h"

#include <algorithm>

namespace tarv {

namespace {

constexpr double kFullCounter = 2000000.0;

}  // namespace

void CDrawLoad::add(int64_t counter) {
    ring_[next_] = std::min(100.0, static_cast<double>(counter) / kFullCounter * 100.0);
    next_ = (next_ + 1) % kTicks;
}

double CDrawLoad::value() const {
    double sum = 0.0;
    double largest = 0.0;
    for (int32_t i = 0; i < kTicks; ++i) {
        const double load = ring_[(next_ + i) % kTicks];
        sum += load;
        largest = i >= kTicks - kLatest ? std::max(largest, load) : largest;
    }
    return std::max(sum / kTicks, largest);
}

}  // namespace tarv
