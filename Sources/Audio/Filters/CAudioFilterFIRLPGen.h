#pragma once

#include "Audio/Filters/CAudioFilterFIRGen.h"

namespace tarv {

/// A windowed-sinc low-pass (Blackman), linear phase. Design input: [0] cut-off in Hz, [1] length factor.
/// Delivers one section of type 21 with 2n + 1 taps and the latency n; with `is-absolute` as if the rate were 44100 Hz.
class CAudioFilterFIRLPGen : public CAudioFilterFIRGen {
public:
    [[nodiscard]] CError* init() override;
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override;
    CFirSize firSize(double sampleRate, const CDesignRange* ranges, int32_t count) const override;

private:
    double designRate(double sampleRate) const { return isAbsolute_ ? 44100.0 : sampleRate; }
    /// Taps on each side of the middle; -1 for a length that no filter can have.
    static int32_t sideLength(double rate, double cutOff, double factor);

    bool isAbsolute_ = false;
};

}  // namespace tarv
