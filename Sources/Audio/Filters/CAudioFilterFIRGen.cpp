#include "Audio/Filters/CAudioFilterFIRGen.h"

#include <algorithm>
#include <cmath>

namespace tarv {

int32_t CAudioFilterFIRGen::tapCount(double length, int32_t fewest) {
    if (!(length >= 0.0 && length <= kMostTaps)) {
        return 0;
    }
    return std::max(fewest, static_cast<int32_t>(std::floor(length + 0.5)));
}

CFirSize CAudioFilterFIRGen::sizeOfLength(const CDesignRange& seconds, double sampleRate, int32_t fewest) {
    double longest = seconds.high * sampleRate;
    if (!seconds.isPoint()) {
        longest = std::min(longest, static_cast<double>(kMostTaps));
    }
    const int32_t taps = tapCount(longest, fewest);
    return taps > 0 ? CFirSize{1, taps} : CFirSize{};
}

}  // namespace tarv
