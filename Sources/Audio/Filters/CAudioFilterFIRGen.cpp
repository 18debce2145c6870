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

}  // namespace tarv
