#pragma once

#include <immintrin.h>

#include <cstdint>

namespace tarv {

namespace {

/// Four 64-bit floats; as those of LanesSse2.h.
struct CLanes {
    static constexpr int32_t kWidth = 4;
    __m256d v;

    CLanes() = default;
    CLanes(__m256d value) : v(value) {}
    explicit CLanes(double value) : v(_mm256_set1_pd(value)) {}

    template <int32_t C>
    static CLanes gather(const double* const* channels, int64_t i) {
        if constexpr (C == 1) {
            return _mm256_set_pd(channels[0][i], 0.0, 0.0, 0.0);
        } else if constexpr (C == 2) {
            return _mm256_set_pd(channels[1][i], channels[0][i], 0.0, 0.0);
        } else {
            return _mm256_set_pd(channels[3][i], channels[2][i], channels[1][i], channels[0][i]);
        }
    }
    template <int32_t C>
    void scatter(double* const* channels, int64_t i, int32_t first) const {
        if constexpr (C == 4) {
            scatterHalf<2>(_mm256_castpd256_pd128(v), channels, i, 0);
            scatterHalf<2>(_mm256_extractf128_pd(v, 1), channels + 2, i, 0);
        } else {
            const __m128d half = first < 2 ? _mm256_castpd256_pd128(v) : _mm256_extractf128_pd(v, 1);
            scatterHalf<C>(half, channels, i, first & 1);
        }
    }
    template <int32_t C>
    static CLanes follow(CLanes neighbour, CLanes own) {
        if constexpr (C == 4) {
            return neighbour;
        } else {
            const __m256d middle = _mm256_permute2f128_pd(neighbour.v, own.v, 0x21);
            return C == 2 ? middle : _mm256_shuffle_pd(middle, own.v, 5);
        }
    }

    static CLanes lastOf(CLanes all) { return all; }
    CLanes behindZeros() const { return v; }

    static CLanes load(const double* lanes) { return _mm256_loadu_pd(lanes); }
    void store(double* lanes) const { _mm256_storeu_pd(lanes, v); }
    static CLanes twice(const double* const* channels, int64_t i) {
        return join(_mm_load1_pd(channels[0] + i), _mm_load1_pd(channels[1] + i));
    }
    static CLanes pairs(const double* const* channels, int64_t i) {
        return join(_mm_loadu_pd(channels[0] + i), _mm_loadu_pd(channels[1] + i));
    }
    void storePairs(double* const* channels, int64_t i) const {
        _mm_storeu_pd(channels[0] + i, _mm256_castpd256_pd128(v));
        _mm_storeu_pd(channels[1] + i, _mm256_extractf128_pd(v, 1));
    }
    void storeFirsts(double* const* channels, int64_t i) const {
        _mm_storel_pd(channels[0] + i, _mm256_castpd256_pd128(v));
        _mm_storel_pd(channels[1] + i, _mm256_extractf128_pd(v, 1));
    }
    CLanes swapped() const { return _mm256_permute_pd(v, 5); }

    friend CLanes operator+(CLanes a, CLanes b) { return _mm256_add_pd(a.v, b.v); }
    friend CLanes operator-(CLanes a, CLanes b) { return _mm256_sub_pd(a.v, b.v); }
    friend CLanes operator*(CLanes a, CLanes b) { return _mm256_mul_pd(a.v, b.v); }
    friend CLanes operator&(CLanes a, CLanes b) { return _mm256_and_pd(a.v, b.v); }

private:
    static CLanes join(__m128d first, __m128d second) {
        return _mm256_insertf128_pd(_mm256_castpd128_pd256(first), second, 1);
    }
    template <int32_t C>
    static void scatterHalf(__m128d half, double* const* channels, int64_t i, int32_t first) {
        if constexpr (C == 1) {
            _mm_store_sd(channels[0] + i, first == 0 ? half : _mm_unpackhi_pd(half, half));
        } else {
            _mm_storel_pd(channels[0] + i, half);
            _mm_storeh_pd(channels[1] + i, half);
        }
    }
};

template <int32_t C>
struct CEndLanes {
    using Type = CLanes;
};

/// A condition: all bits of a lane, or none.
using CLaneMask = CLanes;

inline CLanes root(CLanes a) {
    return _mm256_sqrt_pd(a.v);
}
inline CLaneMask isAbove(CLanes a, CLanes b) {
    return _mm256_cmp_pd(a.v, b.v, _CMP_GT_OQ);
}
inline CLaneMask isAtLeast(CLanes a, CLanes b) {
    return _mm256_cmp_pd(a.v, b.v, _CMP_GE_OQ);
}
inline CLanes select(CLaneMask condition, CLanes a, CLanes b) {
    return _mm256_blendv_pd(b.v, a.v, condition.v);
}
/// The condition that stands in a field.
inline CLaneMask maskOf(CLanes bits) {
    return bits;
}
inline bool isAny(CLaneMask condition) {
    return _mm256_movemask_pd(condition.v) != 0;
}

}  // namespace

}  // namespace tarv
