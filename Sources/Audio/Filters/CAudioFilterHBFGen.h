#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tarv {

/// Half-band pairs of all-pass branches with coefficients from the attributes `a` and `b` (lists of one length).
/// Attribute `type`: 0 a half-band filter with gain 0.5 (1 to 8 coefficients a branch, section types 13 to 20), 1 a
/// chain of six first-order all-passes (3 a branch, section type 23), 2 as 0 with gain 1.
/// Design input: none is read. `order` is twice the least length of a branch; no design reads it.
class CAudioFilterHBFGen : public CAudioFilterGen {
public:
    [[nodiscard]] CError* init() override;
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override;

private:
    int32_t type_ = 0;
    CArray<double, 8> a_;
    CArray<double, 8> b_;
};

}  // namespace tarv
