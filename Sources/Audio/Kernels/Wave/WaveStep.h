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

/// The fields of a vector in one round.
struct CWaveTurn {
    CLanes* all;
    CLanes* now;         ///< of what is kept for later rounds that of this one, with the same field numbers
    const CLanes* last;  ///< that of the round before

    /// With two stages nothing is kept so long that turns are needed.
    template <int32_t G>
    [[gnu::always_inline]] static CWaveTurn of(CLanes* fields, int32_t round) {
        constexpr int32_t kTurn = G == 3 ? kWaveOtherTurn - kWaveFeed : 0;
        return {fields, fields + (round & 1) * kTurn, fields + (~round & 1) * kTurn};
    }
};

/// Stage R of S samples up to the roots, which would wait for it if it stood right before them.
template <int32_t S>
[[gnu::always_inline]] inline void prepareRoots(const CWaveTurn& turn) {
    CLanes* const f = turn.all;
    const CLanes gain = f[kWaveGainI];
    const CLanes bias = f[kWaveBiasI];
    const CLanes kneeA = f[kWaveKneeStartA];
    const CLanes kneeB = f[kWaveKneeStartB];
    const CLanes squareA = f[kWaveRadiusSquaredA];
    const CLanes squareB = f[kWaveRadiusSquaredB];
    CLanes x[S];
#pragma GCC unroll 2
    for (int32_t j = 0; j < S; ++j) {
        x[j] = f[kWavePassed + j] * gain + bias;
        turn.now[kWaveX + j] = x[j];
    }
#pragma GCC unroll 2
    for (int32_t j = 0; j < S; ++j) {
        const CLanes a = x[j] - kneeA;
        f[kWaveRadicandA + j] = squareA - a * a;
    }
#pragma GCC unroll 2
    for (int32_t j = 0; j < S; ++j) {
        const CLanes b = x[j] - kneeB;
        f[kWaveRadicandB + j] = squareB - b * b;
    }
}

/// Sample `j` of a round of one vector; with IsPrepared behind prepareRoots of this round. The statements of the stages
/// alternate, so that what waits and what does not stand close together.
template <int32_t G, int32_t S, bool IsEdge, bool HasPost, bool IsPrepared, class Fade>
[[gnu::always_inline]] inline void stepSample(const CWaveTurn& turn, const CLanes* e, CWaveRecursion& state, Fade& fade,
                                              int32_t j, CLanes in, const CWaveEdge& edge) {
    static_assert(G == 3 || !IsPrepared);
    CLanes* const f = turn.all;
    CLaneMask isIn;
    CLaneMask isOut;
    if constexpr (IsEdge) {
        isIn = edge.isInside<S>(0, j);
        isOut = edge.isInside<S>(G - 1, j);
    }
    CLanes nextX;
    CLanes nextA;
    CLanes nextB;
    if constexpr (IsPrepared) {
        nextA = root(f[kWaveRadicandA + j]);
        nextB = root(f[kWaveRadicandB + j]);
    } else {
        nextX = f[kWavePassed + j] * f[kWaveGainI] + f[kWaveBiasI];
        const CLanes a = nextX - f[kWaveKneeStartA];
        const CLanes b = nextX - f[kWaveKneeStartB];
        nextA = root(f[kWaveRadiusSquaredA] - a * a);
        nextB = root(f[kWaveRadiusSquaredB] - b * b);
    }
    if constexpr (G == 3) {
        if constexpr (!IsPrepared) {
            turn.now[kWaveX + j] = nextX;
        }
        turn.now[kWaveRootA + j] = nextA;
        turn.now[kWaveRootB + j] = nextB;
    }
    const CLanes x = G == 3 ? turn.last[kWaveX + j] : nextX;
    const CLanes rootA = G == 3 ? turn.last[kWaveRootA + j] : nextA;
    const CLanes rootB = G == 3 ? turn.last[kWaveRootB + j] : nextB;
    // Of G - 1 rounds ago: it is read before this round's takes its place.
    const CLanes feed = turn.now[kWaveFeed + j];
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
    turn.now[kWaveFeed + j] = in;
    state.feed = advance<IsEdge>(isOut, mixed, state.feed);
    state.s2 = advance<IsEdge>(isIn, state.s1, state.s2);
    state.s1 = advance<IsEdge>(isIn, s1, state.s1);
    state.highPass = advance<IsEdge>(isIn, highPass, state.highPass);
}

}  // namespace

}  // namespace tarv
