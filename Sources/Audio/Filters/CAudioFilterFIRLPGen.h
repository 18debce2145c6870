#pragma once

#include "Audio/Filters/CAudioFilterFIRGen.h"

namespace tarv {

/// A windowed-sinc low-pass (Blackman), linear phase. Design input: [0] cut-off in Hz, [1] length factor.
/// Delivers one section of type 21 with 2n + 1 taps and the latency n; with `is-absolute` as if the rate were 44100 Hz.
class CAudioFilterFIRLPGen : public CAudioFilterFIRGen {
public:
    [[nodiscard]] CError* init() override;
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override;

private:
    bool isAbsolute_ = false;
};

}  // namespace tarv
