#pragma once

// The filters of a band while they are faded, for WaveLoop.h. Expects `CLanes` before it. The arithmetic is that of
// CBiquad.h and CrossfadeKernels.cpp in the same order.

#include "Audio/Kernels/Wave/CWavePlan.h"
#include "Audio/Kernels/Wave/WaveEdge.h"

namespace tarv {

namespace {

/// The filter of the old values and the ramp, in a vector with a fade: in all lanes or in some.
template <bool IsWhole>
struct CWaveFade {
    CLanes s1, s2, ramp, rampBefore;

    explicit CWaveFade(const CLanes* e)
        : s1(e[kWaveOldS1]), s2(e[kWaveOldS2]), ramp(e[kWaveRamp]), rampBefore(e[kWaveRampBefore]) {}
    void store(CLanes* e) const {
        e[kWaveOldS1] = s1;
        e[kWaveOldS2] = s2;
        e[kWaveRamp] = ramp;
        e[kWaveRampBefore] = rampBefore;
    }
    /// What the filters give together in the lanes that are faded, for an input and the output of the new one.
    template <bool IsEdge>
    [[gnu::always_inline]] CLanes step(const CLanes* e, CLanes in, CLanes filtered, CLaneMask inside) {
        const CLanes before = s2;
        const CLanes next = s1 * e[kWaveOldC2] + e[kWaveOldC3] * before + in;
        const CLanes old = (e[kWaveOldC0] * s1 + next + e[kWaveOldC1] * before) * e[kWaveOldGain];
        const CLanes mixed = (CLanes(0.5) - ramp) * filtered + (CLanes(0.5) + ramp) * old;
        const CLanes nextRamp = ramp * e[kWaveRampFactor] - rampBefore;
        s2 = advance<IsEdge>(inside, s1, s2);
        s1 = advance<IsEdge>(inside, next, s1);
        rampBefore = advance<IsEdge>(inside, ramp, rampBefore);
        ramp = advance<IsEdge>(inside, nextRamp, ramp);
        if constexpr (IsWhole) {
            return mixed;
        } else {
            return select(maskOf(e[kWaveIsFaded]), mixed, filtered);
        }
    }
};

/// A vector without a fade.
struct CNoWaveFade {
    explicit CNoWaveFade(const CLanes*) {}
    void store(CLanes*) const {}
    template <bool IsEdge>
    [[gnu::always_inline]] CLanes step(const CLanes*, CLanes, CLanes filtered, CLaneMask) {
        return filtered;
    }
};

}  // namespace

}  // namespace tarv
