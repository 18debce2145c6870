#pragma once

#include "Audio/Filters/CAudioFilterFIRGen.h"

namespace tarv {

/// A Hilbert transformer, 90 degrees over the audio band. Design input: [0] length in seconds (at least 4 samples).
/// Delivers one section of type 21, antisymmetric about its middle.
class CAudioFilterFIRHilbGen : public CAudioFilterFIRGen {
public:
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override;
    CFirSize firSize(double sampleRate, const CDesignRange* ranges, int32_t count) const override;
};

}  // namespace tarv
