#pragma once

// A sample of one vector of a wave, for WaveLoop.h. Expects `CLanes` before it. All arithmetic is that of CBiquad.h,
// COnePole.h and CTube.h in the same order.

#include "Audio/Kernels/Wave/CWavePlan.h"
#include "Audio/Kernels/Wave/WaveEdge.h"
#include "Audio/Kernels/Wave/WaveFades.h"

namespace tarv {

namespace {

/// What a vector carries from sample to sample.
struct CWaveRecursion {
    CLanes s1, s2, highPass, feed;

    explicit CWaveRecursion(const CLanes* f)
        : s1(f[kWaveS1]), s2(f[kWaveS2]), highPass(f[kWaveHighPassState]), feed(f[kWaveFeedState]) {}
    void store(CLanes* f) const {
        f[kWaveS1] = s1;
        f[kWaveS2] = s2;
        f[kWaveHighPassState] = highPass;
        f[kWaveFeedState] = feed;
    }
};

/// Sample `j` of a round of one vector. The statements of the stages alternate, so that what waits and what does not
/// stand close together.
template <int32_t G, int32_t S, bool IsEdge, bool HasPost, class Fade>
[[gnu::always_inline]] inline void stepSample(CLanes* f, const CLanes* e, CWaveRecursion& state, Fade& fade, int32_t j,
                                              CLanes in, const CWaveEdge& edge) {
    CLaneMask isIn;
    CLaneMask isOut;
    if constexpr (IsEdge) {
        isIn = edge.isInside<S>(0, j);
        isOut = edge.isInside<S>(G - 1, j);
    }
    CLanes x;
    CLanes rootA;
    CLanes rootB;
    CLanes feed;
    if constexpr (G == 3) {
        x = f[kWaveX + j];
        rootA = f[kWaveRootA + j];
        rootB = f[kWaveRootB + j];
        feed = f[kWaveFeedBefore + j];
    }
    const CLanes nextX = f[kWavePassed + j] * f[kWaveGainI] + f[kWaveBiasI];
    const CLanes toA = nextX - f[kWaveKneeStartA];
    const CLanes toB = nextX - f[kWaveKneeStartB];
    const CLanes nextA = root(f[kWaveRadiusSquaredA] - toA * toA);
    const CLanes nextB = root(f[kWaveRadiusSquaredB] - toB * toB);
    if constexpr (G == 3) {
        f[kWaveX + j] = nextX;
        f[kWaveRootA + j] = nextA;
        f[kWaveRootB + j] = nextB;
        f[kWaveFeedBefore + j] = f[kWaveFeed + j];
    } else {
        x = nextX;
        rootA = nextA;
        rootB = nextB;
        feed = f[kWaveFeed + j];
    }
    const CLanes before = state.s2;
    const CLanes s1 = state.s1 * f[kWaveC2] + f[kWaveC3] * before + in;
    const CLanes v = (state.feed + (feed - state.feed) * f[kWaveFeedFactor]) * f[kWaveGainV] + f[kWaveBiasV];
    CLanes a = select(isAbove(x, f[kWaveKneeStartA]), rootA + x + f[kWaveCentreOffsetA], x);
    CLanes b = select(isAbove(x, f[kWaveKneeStartB]), rootB + x + f[kWaveCentreOffsetB], x);
    // Few signals are so loud: the lines cost a comparison.
    if (isAny(isAtLeast(x, f[kWaveNearerKneeEnd]))) [[unlikely]] {
        a = select(isAbove(x, f[kWaveKneeStartA]) & isAtLeast(x, f[kWaveKneeEndA]), f[kWaveSlopeA] * x, a);
        b = select(isAbove(x, f[kWaveKneeStartB]) & isAtLeast(x, f[kWaveKneeEndB]), f[kWaveSlopeB] * x, b);
    }
    const CLanes fresh = (f[kWaveC0] * state.s1 + s1 + f[kWaveC1] * before) * f[kWaveFilterGain];
    const CLanes filtered = fade.template step<IsEdge>(e, in, fresh, isIn);
    const CLanes mixed = (a - f[kWaveRestOutput]) + (b - a) * v;
    const CLanes highPass = state.highPass + (filtered - state.highPass) * f[kWaveHighPassFactor];
    if constexpr (HasPost) {
        f[kWaveOut + j] = f[kWaveAutoGain] * select(maskOf(f[kWaveIsPost]), x, mixed);
    } else {
        f[kWaveOut + j] = f[kWaveAutoGain] * mixed;
    }
    f[kWavePassed + j] = (filtered - highPass) * f[kWaveHighPassGain];
    f[kWaveFeed + j] = in;
    state.feed = advance<IsEdge>(isOut, mixed, state.feed);
    state.s2 = advance<IsEdge>(isIn, state.s1, state.s2);
    state.s1 = advance<IsEdge>(isIn, s1, state.s1);
    state.highPass = advance<IsEdge>(isIn, highPass, state.highPass);
}

}  // namespace

}  // namespace tarv
