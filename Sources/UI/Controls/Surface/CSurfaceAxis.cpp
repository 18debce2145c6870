#include "UI/Controls/Surface/CSurfaceAxis.h"

#include <algorithm>

namespace tarv {

void CSurfaceAxis::set(const CMinMax* minMax, double low, double high) {
    minMax_ = minMax;
    low_ = std::min(low, high);
    high_ = std::max(low, high);
}

double CSurfaceAxis::position(double value) const {
    if (minMax_) {
        return minMax_->position(value);
    }
    return high_ > low_ ? std::clamp((value - low_) / (high_ - low_), -1.0, 2.0) : 0.0;
}

double CSurfaceAxis::value(double position) const {
    // The upper end exactly, since rounding would miss it.
    return minMax_ ? minMax_->value(position) : position == 1.0 ? high_ : low_ + position * (high_ - low_);
}

double CSurfaceAxis::clamp(double value) const {
    return std::clamp(value, low(), high());
}

}  // namespace tarv
