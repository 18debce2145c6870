#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tarv {

/// One part of a serial set: the generator at the path `fltgen`, and in `adjust` the factors for its design values.
class CAudioFilterSerialGenItem : public CObject {
public:
    [[nodiscard]] CError* init() override;

    /// Null until initialised.
    const CAudioFilterGen* generator() const { return generator_; }
    /// The factor for a design value, 1 where the list is shorter.
    double factor(int32_t index) const { return index < adjust_.count() ? adjust_[index] : 1.0; }

private:
    const CAudioFilterGen* generator_ = nullptr;
    CArray<double, 8> adjust_;
};

/// Lines up the designs of its items, each called with the design values times the item's factors.
/// With `is-parallel` they run side by side and the list's latency stays 0.
class CAudioFilterSerialGen : public CAudioFilterGen {
public:
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* childAdded(CObject* child) override;
    void removeChild(CObject* child) override;
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override;
    bool uses(const CAudioFilterGen& other) const override;

private:
    CArray<const CAudioFilterSerialGenItem*, 4> items_;
    bool isParallel_ = false;
};

}  // namespace tarv
