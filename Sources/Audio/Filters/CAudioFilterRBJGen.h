#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tarv {

/// The cookbook biquads (R. Bristow-Johnson, "Cookbook formulae for audio equalizer biquad filter coefficients").
/// Attribute `type`: 0 low-pass, 1 high-pass, 2 band-pass of 0 dB peak, 3 band-pass of constant skirt, 4 notch,
/// 5 all-pass, 6 peak, 7 low shelf, 8 high shelf, 9 all-pass by pole radius. `is-inverted` turns types 0 and 1 over.
/// Design input: [0] frequency in Hz, [1] linear gain, [2] the bandwidth: Q with `is-q`, octaves of the analogue
/// prototype with `is-type2`, otherwise octaves. With `is-heq` six more values: p, q, r, t of the level-dependent
/// biquad and the frequencies in Hz of its two followers. Delivers one section of type 0 to 4, with `is-heq` of
/// type 22.
class CAudioFilterRBJGen : public CAudioFilterGen {
public:
    [[nodiscard]] CError* init() override;
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override;

private:
    int32_t type_ = 0;
    bool isQ_ = false;
    bool isType2_ = false;
    bool isInverted_ = false;
    bool isHeq_ = false;
};

}  // namespace tarv
