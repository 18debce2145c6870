#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tarv {

/// Base of the generators that deliver one section of type 21: how long their filters may be.
class CAudioFilterFIRGen : public CAudioFilterGen {
protected:
    /// No design takes more memory than a second and a half at the highest rate does, for any values.
    static constexpr int32_t kMostTaps = 1 << 23;

    /// What designs take whose length is a value in seconds, `fewest` taps and up.
    static CFirSize sizeOfLength(const CDesignRange& seconds, double sampleRate, int32_t fewest);
    /// A length in samples as a count of taps, `fewest` and up; 0 for a length that no filter can have.
    static int32_t tapCount(double length, int32_t fewest);
};

}  // namespace tarv
