#pragma once

#include <cmath>

#include "Audio/Kernels/KernelLanes.h"

namespace tarv {

/// The members of a transfer curve that a sample reads, for one channel or two side by side.
template <class T>
struct CCurveLanes {
    T slope, kneeStart, centreOffset, kneeEnd, radiusSquared;
};

inline double curveAt(const CCurveLanes<double>& curve, double x) {
    if (!(x > curve.kneeStart)) {
        return x;
    }
    if (x >= curve.kneeEnd) {
        return curve.slope * x;
    }
    const double d = x - curve.kneeStart;
    return std::sqrt(curve.radiusSquared - d * d) + x + curve.centreOffset;
}

/// Computes all three pieces and selects one in each lane; a root that is not selected may be not a number.
inline CPair curveAt(const CCurveLanes<CPair>& curve, CPair x) {
    const CPair d = x - curve.kneeStart;
    const CPair arc = sqrtOf(curve.radiusSquared - d * d) + x + curve.centreOffset;
    const CPair line = curve.slope * x;
    const __m128d above = _mm_cmpgt_pd(x.v, curve.kneeStart.v);
    const __m128d beyond = _mm_cmpge_pd(x.v, curve.kneeEnd.v);
    const __m128d bent = _mm_or_pd(_mm_and_pd(beyond, line.v), _mm_andnot_pd(beyond, arc.v));
    return _mm_or_pd(_mm_and_pd(above, bent), _mm_andnot_pd(above, x.v));
}

}  // namespace tarv
