#include "Audio/Instance/HostSamples.h"

#include <emmintrin.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace tarv {

namespace {

/// All bits in the lanes of finite numbers.
__m128d isFinite(__m128d x) {
    const __m128d size = _mm_andnot_pd(_mm_set1_pd(-0.0), x);
    return _mm_cmple_pd(size, _mm_set1_pd(std::numeric_limits<double>::max()));
}

__m128d loadTwo(const double* source) {
    return _mm_loadu_pd(source);
}
__m128d loadTwo(const float* source) {
    double both = 0.0;
    std::memcpy(&both, source, sizeof(both));
    return _mm_cvtps_pd(_mm_castpd_ps(_mm_set_sd(both)));
}

void storeTwo(double* target, __m128d values) {
    _mm_storeu_pd(target, values);
}
void storeTwo(float* target, __m128 values) {
    const double both = _mm_cvtsd_f64(_mm_castps_pd(values));
    std::memcpy(target, &both, sizeof(both));
}

template <class Sample>
void widenAny(double* target, const Sample* source, int32_t frames) {
    int32_t i = 0;
    for (; i + 2 <= frames; i += 2) {
        const __m128d values = loadTwo(source + i);
        _mm_storeu_pd(target + i, _mm_and_pd(values, isFinite(values)));
    }
    for (; i < frames; ++i) {
        const double value = source[i];
        target[i] = std::isfinite(value) ? value : 0.0;
    }
}

}  // namespace

void widen(double* target, const float* source, int32_t frames) {
    widenAny(target, source, frames);
}

void widen(double* target, const double* source, int32_t frames) {
    widenAny(target, source, frames);
}

bool round(float* target, const double* source, int32_t frames) {
    const __m128 most = _mm_set1_ps(std::numeric_limits<float>::max());
    __m128 isFit = _mm_cmpeq_ps(most, most);
    int32_t i = 0;
    for (; i + 2 <= frames; i += 2) {
        const __m128 values = _mm_cvtpd_ps(_mm_loadu_pd(source + i));
        storeTwo(target + i, values);
        isFit = _mm_and_ps(isFit, _mm_cmple_ps(_mm_andnot_ps(_mm_set1_ps(-0.0f), values), most));
    }
    bool areRest = true;
    for (; i < frames; ++i) {
        target[i] = static_cast<float>(source[i]);
        areRest = areRest && std::isfinite(target[i]);
    }
    return areRest && _mm_movemask_ps(isFit) == 15;
}

bool round(double* target, const double* source, int32_t frames) {
    __m128d isFit = isFinite(_mm_setzero_pd());
    int32_t i = 0;
    for (; i + 2 <= frames; i += 2) {
        const __m128d values = _mm_loadu_pd(source + i);
        storeTwo(target + i, values);
        isFit = _mm_and_pd(isFit, isFinite(values));
    }
    bool areRest = true;
    for (; i < frames; ++i) {
        target[i] = source[i];
        areRest = areRest && std::isfinite(source[i]);
    }
    return areRest && _mm_movemask_pd(isFit) == 3;
}

}  // namespace tarv
