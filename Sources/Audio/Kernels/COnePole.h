#pragma once

#include "Audio/Kernels/CRecursion.h"

namespace tarv {

/// State of a one-pole cascade for CRecursion: one channel or two side by side; see OnePoleKernels.h.
template <class T, int32_t Stages, bool IsHighPass, bool HasGain>
struct COnePole {
    static constexpr int32_t kInputs = 1;
    T k, gain;
    T v[Stages];

    template <class... Operation>
    void load(Operation&... from) {
        loadMember(k, 0, from...);
#pragma GCC unroll 4
        for (int32_t i = 0; i < Stages; ++i) {
            loadMember(v[i], 1 + i, from...);
        }
        loadImmediate(gain, from...);
    }
    template <class... Operation>
    void store(Operation&... to) {
#pragma GCC unroll 4
        for (int32_t i = 0; i < Stages; ++i) {
            storeMember(v[i], 1 + i, to...);
        }
    }
    T step(T x) {
#pragma GCC unroll 4
        for (int32_t i = 0; i < Stages; ++i) {
            v[i] = v[i] + (x - v[i]) * k;
            x = IsHighPass ? x - v[i] : v[i];
        }
        return HasGain ? x * gain : x;
    }
};

}  // namespace tarv
