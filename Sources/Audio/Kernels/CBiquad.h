#pragma once

#include "Audio/Kernels/CRecursion.h"

namespace tarv {

/// How a biquad's output is formed; see BiquadKernels.h.
enum class CBiquadForm { Common, LowPass, HighPass, BandPass, Notch };

/// State of a biquad for CRecursion: one channel or two side by side.
template <class T, CBiquadForm Form, bool HasGain>
struct CBiquad {
    static constexpr int32_t kInputs = 1;
    T c0, c1, c2, c3, s1, s2, gain;

    template <class... Operation>
    void load(Operation&... from) {
        loadMember(c0, 0, from...);
        loadMember(c1, 1, from...);
        loadMember(c2, 2, from...);
        loadMember(c3, 3, from...);
        loadMember(s1, 4, from...);
        loadMember(s2, 5, from...);
        loadImmediate(gain, from...);
    }
    template <class... Operation>
    void store(Operation&... to) {
        storeMember(s1, 4, to...);
        storeMember(s2, 5, to...);
    }
    T step(T x) {
        const T t = s2;
        s2 = s1;
        s1 = s1 * c2 + c3 * t + x;
        if constexpr (HasGain) {
            return output(t) * gain;
        } else {
            return output(t);
        }
    }
    T output(T t) const {
        if constexpr (Form == CBiquadForm::Common) {
            return c0 * s2 + s1 + c1 * t;
        } else if constexpr (Form == CBiquadForm::LowPass) {
            return s1 + s2 + s2 + t;
        } else if constexpr (Form == CBiquadForm::HighPass) {
            return s1 - s2 - s2 + t;
        } else if constexpr (Form == CBiquadForm::BandPass) {
            return s1 - t;
        } else {
            return s1 + c0 * s2 + t;
        }
    }
};

}  // namespace tarv
