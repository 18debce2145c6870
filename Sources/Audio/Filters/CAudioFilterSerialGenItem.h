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

}  // namespace tarv
