#pragma once

#include "Core/CString.h"

namespace tarv {

/// Limits of a condition on a parameter's value, written "[0.5;1]" or "(0;1)".
struct CAudioInterval {
    double low = 1.0;
    double high = 1.0;
    bool includesLow = true;
    bool includesHigh = true;

    bool contains(double value) const {
        return (includesLow ? value >= low : value > low) && (includesHigh ? value <= high : value < high);
    }
    /// False if the text does not start and end with a bracket or has not exactly two limits.
    static bool parse(const CString& text, CAudioInterval& interval);
};

}  // namespace tarv
