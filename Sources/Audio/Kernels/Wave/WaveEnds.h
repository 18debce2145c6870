#pragma once

// The filters before and behind the bands where they stand in vectors of their own. For the file of each instruction
// set alone, as WaveLoop.h: behind `CLanes`.

#include "Audio/Kernels/Wave/CWavePlan.h"

namespace tarv {

namespace {

/// A biquad outside the vectors, with its state in registers.
struct CWaveEnd {
    CLanes s1, s2;

    explicit CWaveEnd(const CLanes* e) : s1(e[kWaveEndS1]), s2(e[kWaveEndS2]) {}
    [[gnu::always_inline]] CLanes step(const CLanes* e, CLanes x) {
        const CLanes next = s1 * e[kWaveEndC2] + e[kWaveEndC3] * s2 + x;
        const CLanes y = (e[kWaveEndC0] * s1 + next + e[kWaveEndC1] * s2) * e[kWaveEndGain];
        s2 = s1;
        s1 = next;
        return y;
    }
    void store(CLanes* e) const {
        e[kWaveEndS1] = s1;
        e[kWaveEndS2] = s2;
    }
};

/// The whole filter behind the bands.
struct CWaveBehind {
    CWaveEnd filter;
    CLanes highPass;

    explicit CWaveBehind(const CLanes* e) : filter(e), highPass(e[kWaveEndHighPassState]) {}
    [[gnu::always_inline]] CLanes step(const CLanes* e, CLanes x) {
        const CLanes filtered = filter.step(e, x);
        highPass = highPass + (filtered - highPass) * e[kWaveEndHighPassFactor];
        return (filtered - highPass) * e[kWaveEndHighPassGain] * e[kWaveEndOutGain];
    }
    void store(CLanes* e) const {
        filter.store(e);
        e[kWaveEndHighPassState] = highPass;
    }
};

}  // namespace

}  // namespace tarv
