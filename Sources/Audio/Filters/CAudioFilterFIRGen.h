#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tarv {

/// A windowed-sinc low-pass (Blackman), linear phase. Design input: [0] cut-off in Hz, [1] length factor.
/// Delivers one section of type 21 with 2n + 1 taps and the latency n; with `is-absolute` as if the rate were 44100 Hz.
class CAudioFilterFIRLPGen : public CAudioFilterGen {
public:
    [[nodiscard]] CError* init() override;
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override;

private:
    bool isAbsolute_ = false;
};

/// A Hilbert transformer, 90 degrees over the audio band. Design input: [0] length in seconds (at least 4 samples).
/// Delivers one section of type 21, antisymmetric about its middle.
class CAudioFilterFIRHilbGen : public CAudioFilterGen {
public:
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override;
};

/// A smoothing filter for gain curves, of unit gain at DC. Design input: [0] length in seconds.
/// Attribute `type`: the curve of the taps, 0 Hann, 1 Blackman, 2 Nuttall. Delivers one section of type 21 and a
/// latency of one less than its length.
class CAudioFilterFIRLimGen : public CAudioFilterGen {
public:
    [[nodiscard]] CError* init() override;
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override;

private:
    int32_t type_ = 0;
};

}  // namespace tarv
