#pragma once

#include <immintrin.h>

#include <cstdint>

namespace tarv {

namespace {

/// Eight 64-bit floats; as those of LanesSse2.h.
struct CLanes {
    static constexpr int32_t kWidth = 8;
    __m512d v;

    CLanes() = default;
    CLanes(__m512d value) : v(value) {}
    explicit CLanes(double value) : v(_mm512_set1_pd(value)) {}

    template <int32_t C>
    static CLanes gather(const double* const* p, int64_t i) {
        static_assert(C == 8);
        return _mm512_set_pd(p[7][i], p[6][i], p[5][i], p[4][i], p[3][i], p[2][i], p[1][i], p[0][i]);
    }
    template <int32_t C>
    void scatter(double* const* channels, int64_t i, int32_t first) const {
        double lanes[kWidth];
        _mm512_storeu_pd(lanes, v);
#pragma GCC unroll 8
        for (int32_t c = 0; c < C; ++c) {
            channels[c][i] = lanes[first + c];
        }
    }
    template <int32_t C>
    static CLanes follow(CLanes neighbour, CLanes own) {
        if constexpr (C == 8) {
            return neighbour;
        } else {
            return _mm512_castsi512_pd(
                _mm512_alignr_epi64(_mm512_castpd_si512(own.v), _mm512_castpd_si512(neighbour.v), 8 - C));
        }
    }

    static CLanes lastOf(const CLanes& all) {
        return all;
    }
    CLanes behindZeros() const {
        return v;
    }

    static CLanes load(const double* lanes) {
        return _mm512_loadu_pd(lanes);
    }
    void store(double* lanes) const {
        _mm512_storeu_pd(lanes, v);
    }
    static CLanes twice(const double* const* p, int64_t i) {
        return _mm512_set_pd(p[3][i], p[3][i], p[2][i], p[2][i], p[1][i], p[1][i], p[0][i], p[0][i]);
    }
    static CLanes pairs(const double* const* p, int64_t i) {
        const __m256d low = _mm256_set_m128d(_mm_loadu_pd(p[1] + i), _mm_loadu_pd(p[0] + i));
        const __m256d high = _mm256_set_m128d(_mm_loadu_pd(p[3] + i), _mm_loadu_pd(p[2] + i));
        return _mm512_insertf64x4(_mm512_castpd256_pd512(low), high, 1);
    }
    void storePairs(double* const* channels, int64_t i) const {
        double lanes[kWidth];
        store(lanes);
#pragma GCC unroll 4
        for (int32_t c = 0; c < kWidth / 2; ++c) {
            channels[c][i] = lanes[2 * c];
            channels[c][i + 1] = lanes[2 * c + 1];
        }
    }
    void storeFirsts(double* const* channels, int64_t i) const {
        double lanes[kWidth];
        store(lanes);
#pragma GCC unroll 4
        for (int32_t c = 0; c < kWidth / 2; ++c) {
            channels[c][i] = lanes[2 * c];
        }
    }
    CLanes swapped() const {
        return _mm512_permute_pd(v, 0x55);
    }

    friend CLanes operator+(CLanes a, CLanes b) {
        return _mm512_add_pd(a.v, b.v);
    }
    friend CLanes operator-(CLanes a, CLanes b) {
        return _mm512_sub_pd(a.v, b.v);
    }
    friend CLanes operator*(CLanes a, CLanes b) {
        return _mm512_mul_pd(a.v, b.v);
    }
};

template <int32_t N>
struct CNarrowVector {
    using Type = __m128d;
};
template <>
struct CNarrowVector<4> {
    using Type = __m256d;
};

/// N 64-bit floats, 2 or 4: channels that lanes beside them would only make dearer. As CLanes.
template <int32_t N>
struct CNarrowLanes {
    using CVector = typename CNarrowVector<N>::Type;
    static constexpr int32_t kWidth = N;
    CVector v;

    CNarrowLanes() = default;
    CNarrowLanes(CVector value) : v(value) {}

    template <int32_t C>
    static CNarrowLanes gather(const double* const* p, int64_t i) {
        if constexpr (C == 1) {
            return CVector{0.0, p[0][i]};
        } else if constexpr (C == 2) {
            return CVector{p[0][i], p[1][i]};
        } else {
            return CVector{p[0][i], p[1][i], p[2][i], p[3][i]};
        }
    }
    template <int32_t C>
    void scatter(double* const* channels, int64_t i, int32_t first) const {
#pragma GCC unroll 4
        for (int32_t c = 0; c < C; ++c) {
            channels[c][i] = v[first + c];
        }
    }
    static CNarrowLanes lastOf(const CLanes& all) {
        return *reinterpret_cast<const CVector*>(reinterpret_cast<const double*>(&all) + CLanes::kWidth - N);
    }
    CLanes behindZeros() const {
        if constexpr (N == 2) {
            return _mm512_insertf64x2(_mm512_setzero_pd(), v, 3);
        } else {
            return _mm512_insertf64x4(_mm512_setzero_pd(), v, 1);
        }
    }

    friend CNarrowLanes operator+(CNarrowLanes a, CNarrowLanes b) {
        return a.v + b.v;
    }
    friend CNarrowLanes operator-(CNarrowLanes a, CNarrowLanes b) {
        return a.v - b.v;
    }
    friend CNarrowLanes operator*(CNarrowLanes a, CNarrowLanes b) {
        return a.v * b.v;
    }
};

template <int32_t C>
struct CEndLanes {
    using Type = CNarrowLanes<C == 4 ? 4 : 2>;
};
template <>
struct CEndLanes<8> {
    using Type = CLanes;
};

/// One bit a lane.
struct CLaneMask {
    __mmask8 m;

    friend CLaneMask operator&(CLaneMask a, CLaneMask b) { return {static_cast<__mmask8>(a.m & b.m)}; }
};

inline CLanes root(CLanes a) {
    return _mm512_sqrt_pd(a.v);
}
inline CLaneMask isAbove(CLanes a, CLanes b) {
    return {_mm512_cmp_pd_mask(a.v, b.v, _CMP_GT_OQ)};
}
inline CLaneMask isAtLeast(CLanes a, CLanes b) {
    return {_mm512_cmp_pd_mask(a.v, b.v, _CMP_GE_OQ)};
}
inline CLanes select(CLaneMask condition, CLanes a, CLanes b) {
    return _mm512_mask_blend_pd(condition.m, b.v, a.v);
}
inline CLaneMask maskOf(CLanes bits) {
    const __m512i lanes = _mm512_castpd_si512(bits.v);
    return {_mm512_test_epi64_mask(lanes, lanes)};
}
inline bool isAny(CLaneMask condition) {
    return condition.m != 0;
}

}  // namespace

}  // namespace tarv
