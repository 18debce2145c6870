#pragma once

#include "Core/CArray.h"
#include "Core/CString.h"

namespace tarv {

/// A rate relative to that of a composite's inputs, as far as it is known before audio runs: a power of two, times
/// factors that parameters choose, each under a name. Two rates are equal if they are equal for all values of the
/// parameters.
class CAudioRate {
public:
    /// Doubles the rate as often as `octaves` says; halves it for negative numbers.
    void shift(int32_t octaves) { octaves_ += octaves; }
    /// Multiplies the rate by the factor of that name, 1 or -1 times.
    void scale(const CString& factor, int32_t times);
    void multiply(const CAudioRate& other);
    bool isOne() const { return *this == CAudioRate(); }
    bool operator==(const CAudioRate& other) const;

private:
    struct CFactor {
        CString name;
        int32_t times;
    };
    int32_t timesOf(const CString& factor) const;

    int32_t octaves_ = 0;
    CArray<CFactor, 2> factors_;
};

}  // namespace tarv
