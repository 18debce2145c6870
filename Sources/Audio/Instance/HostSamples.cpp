#include "Audio/Instance/HostSamples.h"

#include <cmath>
#include <cstring>
#include <limits>

#include "Audio/Kernels/HostPairs.h"

namespace tarv {

namespace {

void storeTwo(float* target, __m128 values) {
    const double both = _mm_cvtsd_f64(_mm_castps_pd(values));
    std::memcpy(target, &both, sizeof(both));
}

template <class Sample>
void widenAny(double* target, const Sample* source, int32_t frames) {
    int32_t i = 0;
    for (; i + 2 <= frames; i += 2) {
        _mm_storeu_pd(target + i, finiteOf(loadHostPair(source + i)).v);
    }
    for (; i < frames; ++i) {
        target[i] = finiteOf(static_cast<double>(source[i]));
    }
}

/// Whether all numbers are finite; `store` takes two of them, `storeOne` one.
template <class Store, class StoreOne>
bool areAllFinite(const double* source, int32_t frames, Store store, StoreOne storeOne) {
    __m128d areFit = isFinite(0.0);
    int32_t i = 0;
    for (; i + 2 <= frames; i += 2) {
        const __m128d values = _mm_loadu_pd(source + i);
        store(i, values);
        areFit = _mm_and_pd(areFit, isFinite(values));
    }
    bool areRest = true;
    for (; i < frames; ++i) {
        storeOne(i, source[i]);
        areRest = areRest && std::isfinite(source[i]);
    }
    return areRest && _mm_movemask_pd(areFit) == 3;
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
    return areAllFinite(
        source, frames, [=](int32_t i, __m128d values) { _mm_storeu_pd(target + i, values); },
        [=](int32_t i, double value) { target[i] = value; });
}

bool areFinite(const double* source, int32_t frames) {
    return areAllFinite(
        source, frames, [](int32_t, __m128d) {}, [](int32_t, double) {});
}

}  // namespace tarv
