#pragma once

#include "Audio/Filters/CAudioFilterFIRGen.h"

namespace tarv {

/// A smoothing filter for gain curves, of unit gain at DC. Design input: [0] length in seconds.
/// Attribute `type`: the curve of the taps, 0 Hann, 1 Blackman, 2 Nuttall. Delivers one section of type 21 and a
/// latency of one less than its length.
class CAudioFilterFIRLimGen : public CAudioFilterFIRGen {
public:
    [[nodiscard]] CError* init() override;
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override;
    CFirSize firSize(double sampleRate, const CDesignRange* ranges, int32_t count) const override;

private:
    int32_t type_ = 0;
};

}  // namespace tarv
