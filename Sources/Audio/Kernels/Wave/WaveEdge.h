#pragma once

// Where a block begins and ends, for WaveLoop.h. Expects `CLanes` before it.

#include <cstdint>

namespace tarv {

namespace {

/// Which samples of a block a lane is at. Only where a block begins and ends: in between all are inside.
struct CWaveEdge {
    CLanes group;  ///< sample group of the first stage
    CLanes count;  ///< samples of the block

    /// All bits in the lanes whose sample lies in the block, `rounds` behind the first stage.
    template <int32_t S>
    CLaneMask isInside(int32_t rounds, int32_t j) const {
        const CLanes sample = (group - CLanes(rounds)) * CLanes(S) + CLanes(j);
        return isAtLeast(sample, CLanes(0.0)) & isAbove(count, sample);
    }
};

/// What is carried from sample to sample: at a block's ends only in lanes that are inside.
template <bool IsEdge>
[[gnu::always_inline]] inline CLanes advance(CLaneMask inside, CLanes next, CLanes old) {
    if constexpr (IsEdge) {
        return select(inside, next, old);
    } else {
        return next;
    }
}

}  // namespace

}  // namespace tarv
