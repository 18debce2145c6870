#pragma once

#include <algorithm>
#include <cstdint>

namespace tarv {

/// What the FIR sections of a filter take.
struct CFirSize {
    int32_t sections = 0;  ///< of type 21 in one list
    int32_t taps = 0;      ///< of the longest of them

    /// Whether there is room for `other`.
    bool holds(const CFirSize& other) const { return other.sections <= sections && other.taps <= taps; }
    /// Grows to hold `other`, too.
    void extend(const CFirSize& other) {
        sections = std::max(sections, other.sections);
        taps = std::max(taps, other.taps);
    }
};

}  // namespace tarv
