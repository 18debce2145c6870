#pragma once

#include <cmath>
#include <cstring>
#include <limits>

#include "Audio/Kernels/CPair.h"

namespace tarv {

/// Two neighbouring samples of a host, at any address.
inline CPair loadHostPair(const double* source) {
    return _mm_loadu_pd(source);
}
inline CPair loadHostPair(const float* source) {
    double both = 0.0;
    std::memcpy(&both, source, sizeof(both));
    return _mm_cvtps_pd(_mm_castpd_ps(_mm_set_sd(both)));
}

/// All bits in the lanes of finite numbers.
inline __m128d isFinite(CPair x) {
    const __m128d size = _mm_andnot_pd(_mm_set1_pd(-0.0), x.v);
    return _mm_cmple_pd(size, _mm_set1_pd(std::numeric_limits<double>::max()));
}

/// 0 in place of what is not finite.
inline CPair finiteOf(CPair x) {
    return _mm_and_pd(x.v, isFinite(x));
}
inline double finiteOf(double x) {
    return std::isfinite(x) ? x : 0.0;
}

}  // namespace tarv
