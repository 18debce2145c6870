#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tarv {

/// One-pole cascades: attribute `type` 0 to 3 is one to four low-pass stages, 4 to 7 one to four high-pass stages.
/// Design input: [0] frequency of the cascade's -3 dB point in Hz, [1] linear gain (read only with `use-gain`).
/// Delivers one section of type 5 to 12.
class CAudioFilterLPHP1Gen : public CAudioFilterGen {
public:
    [[nodiscard]] CError* init() override;
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override;

private:
    int32_t type_ = 0;
    bool useGain_ = false;
};

}  // namespace tarv
