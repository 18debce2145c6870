#pragma once

#include <emmintrin.h>

namespace tarv {

/// Two 64-bit floats side by side: two samples of one channel, or one sample of two channels. Each operation gives in
/// each lane the bits of the scalar one, so a kernel written once for `double` and `CPair` gives the same bits in both.
struct CPair {
    __m128d v;
    CPair() = default;
    CPair(__m128d value) : v(value) {}
    CPair(double value) : v(_mm_set1_pd(value)) {}
    CPair(double first, double second) : v(_mm_set_pd(second, first)) {}
    friend CPair operator+(CPair a, CPair b) { return _mm_add_pd(a.v, b.v); }
    friend CPair operator-(CPair a, CPair b) { return _mm_sub_pd(a.v, b.v); }
    friend CPair operator*(CPair a, CPair b) { return _mm_mul_pd(a.v, b.v); }
    double first() const { return _mm_cvtsd_f64(v); }
    double second() const { return _mm_cvtsd_f64(_mm_unpackhi_pd(v, v)); }
};

}  // namespace tarv
