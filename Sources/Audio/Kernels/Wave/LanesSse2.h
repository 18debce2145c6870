#pragma once

#include <emmintrin.h>

#include <cstdint>

namespace tarv {

namespace {

/// Two 64-bit floats; each operation gives in each lane the bits of the scalar one.
struct CLanes {
    static constexpr int32_t kWidth = 2;
    __m128d v;

    CLanes() = default;
    CLanes(__m128d value) : v(value) {}
    explicit CLanes(double value) : v(_mm_set1_pd(value)) {}

    /// Sample `i` of C channels in the last lanes.
    template <int32_t C>
    static CLanes gather(const double* const* channels, int64_t i) {
        if constexpr (C == 1) {
            return _mm_set_pd(channels[0][i], 0.0);
        } else {
            return _mm_set_pd(channels[1][i], channels[0][i]);
        }
    }
    /// Sample `i` of C channels from lane `first` on.
    template <int32_t C>
    void scatter(double* const* channels, int64_t i, int32_t first) const {
        if constexpr (C == 1) {
            _mm_store_sd(channels[0] + i, first == 0 ? v : _mm_unpackhi_pd(v, v));
        } else {
            _mm_storel_pd(channels[0] + i, v);
            _mm_storeh_pd(channels[1] + i, v);
        }
    }
    /// The last C lanes of `neighbour`, then the others of `own`.
    template <int32_t C>
    static CLanes follow(CLanes neighbour, CLanes own) {
        if constexpr (C == 1) {
            return _mm_shuffle_pd(neighbour.v, own.v, 1);
        } else {
            return neighbour;
        }
    }

    /// Between CEndLanes and CLanes: the last lanes of `all`; these lanes as the last ones of CLanes.
    static CLanes lastOf(CLanes all) { return all; }
    CLanes behindZeros() const { return v; }

    static CLanes load(const double* lanes) { return _mm_loadu_pd(lanes); }
    void store(double* lanes) const { _mm_storeu_pd(lanes, v); }
    /// Sample `i` of each of kWidth / 2 channels in two lanes.
    static CLanes twice(const double* const* channels, int64_t i) { return _mm_load1_pd(channels[0] + i); }
    /// Samples `i` and `i` + 1 of each.
    static CLanes pairs(const double* const* channels, int64_t i) { return load(channels[0] + i); }
    void storePairs(double* const* channels, int64_t i) const { store(channels[0] + i); }
    /// The first lane of each channel as its sample `i`.
    void storeFirsts(double* const* channels, int64_t i) const { _mm_storel_pd(channels[0] + i, v); }
    /// The two lanes of each channel in the other order.
    CLanes swapped() const { return _mm_shuffle_pd(v, v, 1); }

    friend CLanes operator+(CLanes a, CLanes b) { return _mm_add_pd(a.v, b.v); }
    friend CLanes operator-(CLanes a, CLanes b) { return _mm_sub_pd(a.v, b.v); }
    friend CLanes operator*(CLanes a, CLanes b) { return _mm_mul_pd(a.v, b.v); }
    friend CLanes operator&(CLanes a, CLanes b) { return _mm_and_pd(a.v, b.v); }
};

/// What the filters at both ends of a wave of C channels work on: vectors with the channels in the last lanes.
template <int32_t C>
struct CEndLanes {
    using Type = CLanes;
};

/// A condition: all bits of a lane, or none.
using CLaneMask = CLanes;

inline CLanes root(CLanes a) {
    return _mm_sqrt_pd(a.v);
}
/// All bits where a > b; none where one is not a number.
inline CLaneMask isAbove(CLanes a, CLanes b) {
    return _mm_cmpgt_pd(a.v, b.v);
}
inline CLaneMask isAtLeast(CLanes a, CLanes b) {
    return _mm_cmpge_pd(a.v, b.v);
}
inline CLanes select(CLaneMask condition, CLanes a, CLanes b) {
    return _mm_or_pd(_mm_and_pd(condition.v, a.v), _mm_andnot_pd(condition.v, b.v));
}
/// The condition that stands in a field.
inline CLaneMask maskOf(CLanes bits) {
    return bits;
}
inline bool isAny(CLaneMask condition) {
    return _mm_movemask_pd(condition.v) != 0;
}

}  // namespace

}  // namespace tarv
