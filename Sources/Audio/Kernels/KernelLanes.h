#pragma once

#include <cmath>
#include <cstdint>
#include <utility>

#include "Audio/Context/COperation.h"
#include "Audio/Kernels/CPair.h"

namespace tarv {

/// The greater, the lesser; b when they are equal or when one is not a number.
inline double maxOf(double a, double b) {
    return a > b ? a : b;
}
inline CPair maxOf(CPair a, CPair b) {
    return _mm_max_pd(a.v, b.v);
}
inline double minOf(double a, double b) {
    return a < b ? a : b;
}
inline CPair minOf(CPair a, CPair b) {
    return _mm_min_pd(a.v, b.v);
}
inline double absOf(double a) {
    return std::fabs(a);
}
inline CPair absOf(CPair a) {
    return _mm_andnot_pd(_mm_set1_pd(-0.0), a.v);
}
inline double sqrtOf(double a) {
    return std::sqrt(a);
}
inline CPair sqrtOf(CPair a) {
    return _mm_sqrt_pd(a.v);
}

/// Two neighbouring samples.
inline CPair loadPair(const double* p) {
    return _mm_loadu_pd(p);
}
inline void storePair(double* p, CPair value) {
    _mm_storeu_pd(p, value.v);
}
/// (a0 a1), (b0 b1) to (a0 b0), (a1 b1); its own inverse.
inline void transpose(CPair& a, CPair& b) {
    const __m128d low = _mm_unpacklo_pd(a.v, b.v);
    b.v = _mm_unpackhi_pd(a.v, b.v);
    a.v = low;
}

/// Whether walking both ranges two samples at a time gives what sample by sample gives: they are one or don't touch.
inline bool isApart(const double* destination, const double* source, int32_t count) {
    return destination == source || destination + count <= source || source + count <= destination;
}

/// Destination i = f(operands J at i), where the operands may include the destination.
template <class F, int32_t... J>
inline void mapOperands(COperation& operation, std::integer_sequence<int32_t, J...>, F f) {
    double* const out = operation.signal(0);
    const double* const in[] = {operation.signal(J)...};
    const int32_t count = operation.count;
    int32_t i = 0;
    const auto each = [&]<int32_t... K>(std::integer_sequence<int32_t, K...>) {
        if ((isApart(out, in[K], count) && ...)) {
            for (; i + 2 <= count; i += 2) {
                storePair(out + i, f(loadPair(in[K] + i)...));
            }
        }
        for (; i < count; ++i) {
            out[i] = f(in[K][i]...);
        }
    };
    each(std::make_integer_sequence<int32_t, sizeof...(J)>());
}

}  // namespace tarv
