#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tarv {

/// A chain of six first-order all-pass sections. Attribute `type`: 0 or 1, the two sides of a pair whose phases differ
/// by 90 degrees over the audio band. Design input: none is read. Delivers one section of type 23.
class CAudioFilterAPF1Gen : public CAudioFilterGen {
public:
    [[nodiscard]] CError* init() override;
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override;

private:
    int32_t type_ = 0;
};

}  // namespace tarv
