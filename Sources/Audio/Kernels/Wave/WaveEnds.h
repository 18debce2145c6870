#pragma once

// The filters before and behind the bands where they stand in vectors of their own. For the file of each instruction
// set alone, as WaveLoop.h: behind `CLanes`.

#include "Audio/Kernels/Wave/CWavePlan.h"

namespace tarv {

namespace {

/// Field `field` of a filter, the last lanes of it.
template <class L>
[[gnu::always_inline]] inline L& lastLanes(double* fields, int32_t field) {
    return *reinterpret_cast<L*>(fields + (field + 1) * CLanes::kWidth - L::kWidth);
}

/// A biquad outside the vectors, with its state in registers. `L`: of CEndLanes.
template <class L>
struct CWaveEnd {
    L s1, s2;

    explicit CWaveEnd(double* e) : s1(lastLanes<L>(e, kWaveEndS1)), s2(lastLanes<L>(e, kWaveEndS2)) {}
    [[gnu::always_inline]] L step(double* e, L x) {
        const L next = s1 * lastLanes<L>(e, kWaveEndC2) + lastLanes<L>(e, kWaveEndC3) * s2 + x;
        const L y = (lastLanes<L>(e, kWaveEndC0) * s1 + next + lastLanes<L>(e, kWaveEndC1) * s2) *
                    lastLanes<L>(e, kWaveEndGain);
        s2 = s1;
        s1 = next;
        return y;
    }
    void store(double* e) const {
        lastLanes<L>(e, kWaveEndS1) = s1;
        lastLanes<L>(e, kWaveEndS2) = s2;
    }
};

/// The whole filter behind the bands.
template <class L>
struct CWaveBehind {
    CWaveEnd<L> filter;
    L highPass;

    explicit CWaveBehind(double* e) : filter(e), highPass(lastLanes<L>(e, kWaveEndHighPassState)) {}
    [[gnu::always_inline]] L step(double* e, L x) {
        const L filtered = filter.step(e, x);
        highPass = highPass + (filtered - highPass) * lastLanes<L>(e, kWaveEndHighPassFactor);
        return (filtered - highPass) * lastLanes<L>(e, kWaveEndHighPassGain) * lastLanes<L>(e, kWaveEndOutGain);
    }
    void store(double* e) const {
        filter.store(e);
        lastLanes<L>(e, kWaveEndHighPassState) = highPass;
    }
};

}  // namespace

}  // namespace tarv
