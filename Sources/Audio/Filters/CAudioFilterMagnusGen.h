#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tarv {

/// Second-order peaks and band-passes with a prescribed gain at Nyquist, so that a peak is not cramped towards the top
/// of the band (after S. J. Orfanidis, "Digital Parametric Equalizer Design with Prescribed Nyquist-Frequency Gain",
/// JAES 45/6, 1997). Attribute `type`: 0, 1, 2 are peaks of design A, B, C; 3, 4, 5 the band-passes of the same
/// designs. Design input: [0] frequency in Hz, [1] linear gain (peaks only; a gain within 0.001 of 1 counts as 0.999),
/// [2] bandwidth in octaves, at the edges of which a peak has half its gain in dB. Delivers one section of type 0.
class CAudioFilterMagnusGen : public CAudioFilterGen {
public:
    [[nodiscard]] CError* init() override;
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override;

private:
    int32_t type_ = 0;
};

}  // namespace tarv
