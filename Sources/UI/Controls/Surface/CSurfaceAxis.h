#pragma once

#include "UI/Binding/CMinMax.h"

namespace tarv {

/// One axis of a surface: that of a CMinMax, or without one an even axis from `low` to `high`. A position is 0.0 at the
/// lower end and 1.0 at the upper one. Values have the unit that a person reads.
class CSurfaceAxis {
public:
    /// `minMax` may be null and outlives this object.
    void set(const CMinMax* minMax, double low, double high);
    const CMinMax* minMax() const { return minMax_; }

    double position(double value) const;
    /// Also beyond 0.0 to 1.0.
    double value(double position) const;
    double clamp(double value) const;
    /// Where bars begin: at 0, or at the bound next to it.
    double zero() const { return clamp(0.0); }
    double low() const { return minMax_ ? minMax_->lowest() : low_; }
    double high() const { return minMax_ ? minMax_->highest() : high_; }

private:
    const CMinMax* minMax_ = nullptr;
    double low_ = 0.0;
    double high_ = 1.0;
};

}  // namespace tarv
