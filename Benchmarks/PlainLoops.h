#pragma once

#include <cmath>
#include <cstdint>

#include "Audio/Kernels/CTubeBlock.h"

namespace tarv::plain {

/// The product's kernels as plain code: one scalar loop each, one channel, restrict pointers, state and coefficients in
/// locals. The benchmarks measure against them; they are compiled with the product's flags.

using CIn = const double* __restrict;
using COut = double* __restrict;

inline void denorm(COut out, uint32_t& seedPlace, CIn in, int32_t count) {
    uint32_t seed = seedPlace;
    for (int32_t i = 0; i < count; ++i) {
        out[i] = in[i] - 1e-11 + static_cast<double>((seed >> 23) & 1u) * 2e-11;
        seed = seed * 30013u + 30011u;
    }
    seedPlace = seed;
}

inline void mulc(COut out, CIn in, double gain, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        out[i] = in[i] * gain;
    }
}

struct CBiquadState {
    double c0, c1, c2, c3, s1, s2;
};

inline void biquad(COut out, CBiquadState& state, CIn in, double gain, int32_t count) {
    const auto [c0, c1, c2, c3, first, second] = state;
    double s1 = first;
    double s2 = second;
    for (int32_t i = 0; i < count; ++i) {
        const double t = s2;
        s2 = s1;
        s1 = s1 * c2 + c3 * t + in[i];
        out[i] = (c0 * s2 + s1 + c1 * t) * gain;
    }
    state.s1 = s1;
    state.s2 = s2;
}

struct COnePoleState {
    double k, v;
};

inline void highPass(COut out, COnePoleState& state, CIn in, double gain, int32_t count) {
    const double k = state.k;
    double v = state.v;
    for (int32_t i = 0; i < count; ++i) {
        const double x = in[i];
        v += (x - v) * k;
        out[i] = (x - v) * gain;
    }
    state.v = v;
}

inline double curve(double x, double slope, double start, double offset, double end, double radiusSquared) {
    if (!(x > start)) {
        return x;
    }
    if (x >= end) {
        return slope * x;
    }
    const double d = x - start;
    return std::sqrt(radiusSquared - d * d) + x + offset;
}

inline void tube(COut out, CTubeBlock& block, CIn in, CIn feed, int32_t count) {
    const CTubeCurve a = block.curveA;
    const CTubeCurve b = block.curveB;
    const double gainI = block.gainI;
    const double biasI = block.biasI;
    const double gainV = block.gainV;
    const double biasV = block.biasV;
    const double feedCoef = block.feedCoef;
    const double rest = block.restOutput;
    const double autoGain = block.autoGain;
    double s = block.feedState;
    for (int32_t i = 0; i < count; ++i) {
        const double x = in[i] * gainI + biasI;
        const double ya = curve(x, a.slope, a.kneeStart, a.centreOffset, a.kneeEnd, a.radiusSquared);
        const double yb = curve(x, b.slope, b.kneeStart, b.centreOffset, b.kneeEnd, b.radiusSquared);
        const double v = (s + (feed[i] - s) * feedCoef) * gainV + biasV;
        s = (ya - rest) + (yb - ya) * v;
        out[i] = autoGain * s;
    }
    block.feedState = s;
}

inline void interpolate(COut out, CIn in, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        out[2 * i] = 2.0 * in[i];
        out[2 * i + 1] = 0.0;
    }
}

inline void decimate(COut out, CIn in, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        out[i] = in[2 * i];
    }
}

inline void encode(COut mid, COut side, CIn a, CIn b, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        const double d = (b[i] - a[i]) * -0.5;
        mid[i] = b[i] + d;
        side[i] = d;
    }
}

inline void decode(COut left, COut right, CIn a, CIn b, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        left[i] = a[i] + b[i];
        right[i] = a[i] - b[i];
    }
}

struct CRampState {
    double r0, r1, r2;
};

inline void crossfade(COut out, CRampState& state, CIn to, CIn from, int32_t count) {
    double r0 = state.r0;
    double r1 = state.r1;
    const double r2 = state.r2;
    for (int32_t i = 0; i < count; ++i) {
        out[i] = (0.5 - r0) * to[i] + (0.5 + r0) * from[i];
        const double next = r0 * r2 - r1;
        r1 = r0;
        r0 = next;
    }
    state.r0 = r0;
    state.r1 = r1;
}

/// Half-band pair with N coefficients a branch; circular lines of four with one index, as the filter's state has them.
template <int32_t N>
struct CHalfBandState {
    double a[N], b[N];
    double held = 0.0;
    int32_t index = 3;
    double linesA[N + 1][4] = {};
    double linesB[N + 1][4] = {};
};

template <int32_t N>
inline double allpass(double (&lines)[N + 1][4], const double (&c)[N], int32_t write, int32_t read, double x) {
#pragma GCC unroll 8
    for (int32_t k = 0; k < N; ++k) {
        const double y = (x - lines[k + 1][read]) * c[k] + lines[k][read];
        lines[k][write] = x;
        x = y;
    }
    lines[N][write] = x;
    return x;
}

template <int32_t N>
inline void halfBand(COut out, CHalfBandState<N>& state, CIn in, double gain, int32_t count) {
    double held = state.held;
    int32_t index = state.index;
    for (int32_t i = 0; i < count; ++i) {
        const int32_t read = (index + 2) & 3;
        out[i] = (allpass<N>(state.linesA, state.a, index, read, in[i]) + held) * gain;
        held = allpass<N>(state.linesB, state.b, index, read, in[i]);
        index = (index - 1) & 3;
    }
    state.held = held;
    state.index = index;
}

/// The same with two past samples of each line in locals.
template <int32_t N>
inline void halfBandInLocals(COut out, CHalfBandState<N>& state, CIn in, double gain, int32_t count) {
    double a1[N + 1], a2[N + 1], b1[N + 1], b2[N + 1];
#pragma GCC unroll 9
    for (int32_t k = 0; k <= N; ++k) {
        a1[k] = state.linesA[k][(state.index + 1) & 3];
        a2[k] = state.linesA[k][(state.index + 2) & 3];
        b1[k] = state.linesB[k][(state.index + 1) & 3];
        b2[k] = state.linesB[k][(state.index + 2) & 3];
    }
    double held = state.held;
    for (int32_t i = 0; i < count; ++i) {
        double x = in[i];
        double z = in[i];
#pragma GCC unroll 8
        for (int32_t k = 0; k < N; ++k) {
            const double y = (x - a2[k + 1]) * state.a[k] + a2[k];
            a2[k] = a1[k];
            a1[k] = x;
            x = y;
            const double w = (z - b2[k + 1]) * state.b[k] + b2[k];
            b2[k] = b1[k];
            b1[k] = z;
            z = w;
        }
        a2[N] = a1[N];
        a1[N] = x;
        b2[N] = b1[N];
        b1[N] = z;
        out[i] = (x + held) * gain;
        held = z;
    }
    state.index = (state.index - count) & 3;
#pragma GCC unroll 9
    for (int32_t k = 0; k <= N; ++k) {
        state.linesA[k][(state.index + 1) & 3] = a1[k];
        state.linesA[k][(state.index + 2) & 3] = a2[k];
        state.linesB[k][(state.index + 1) & 3] = b1[k];
        state.linesB[k][(state.index + 2) & 3] = b2[k];
    }
    state.held = held;
}

}  // namespace tarv::plain
