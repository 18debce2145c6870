#pragma once

#include <emmintrin.h>

#include <cmath>
#include <cstdint>

#include "UI/Resources/CPalette.h"

// The arithmetic of drawing, one pixel at a time. d and s are a channel of target and source:
//
//   alpha a of the pixel alone   d := (d * 256 + (s - d) * a) >> 8
//   a and the effective alpha A  d := ((d << 23) + (s - d) * a * A) >> 23
//   A alone                      d := ((d << 15) + (s - d) * A) >> 15
//
// Each sum equals d * (1 - w) + s * w with the weight w in whole steps, so it is never negative and at most 255 steps'
// worth of the unit: below 2^16, 2^31 and 2^23. That is why channels can be summed side by side.
//
// In line, whatever the compiler thinks of the size: a loop has its weight or its source in common.

namespace tarv {

/// Effective alpha of full strength.
inline constexpr uint32_t kFullAlpha = 32768;
/// From here on drawing is fully opaque, and the effective alpha is left out.
inline constexpr uint32_t kOpaqueAlpha = 32640;

inline constexpr CPixel kRedBlue = 0x00ff00ff;
inline constexpr CPixel kGreen = 0x0000ff00;
inline constexpr CPixel kChannels = kRedBlue | kGreen;

/// round(opacity * 32768) in 0..32768; what is not a number draws nothing.
inline uint32_t effectiveAlpha(double opacity) {
    return !(opacity > 0.0) ? 0
           : opacity >= 1.0 ? kFullAlpha
                            : static_cast<uint32_t>(std::lround(opacity * kFullAlpha));
}

/// By the pixel's own alpha in 0..255.
[[gnu::always_inline]] inline CPixel blendOwn(CPixel target, CPixel source, uint32_t alpha) {
    const uint32_t kept = 256 - alpha;
    const uint32_t redBlue = ((target & kRedBlue) * kept + (source & kRedBlue) * alpha) >> 8;
    const uint32_t green = ((target & kGreen) * kept + (source & kGreen) * alpha) >> 8;
    return (redBlue & kRedBlue) | (green & kGreen);
}

/// With a weight in 0..2^kBits, which is at most 2^23. The four bytes of a pixel stand in four lanes of 32 bits.
template <int32_t kBits>
[[gnu::always_inline]] inline CPixel blendWeighted(CPixel target, CPixel source, uint32_t weight) {
    static_assert(kBits <= 23, "a channel has 31 bits");
    // Differences have 9 bits, products of a lane 16 by 16: the weight goes in two parts, of 12 bits and what is above.
    constexpr int kPart = 12;
    const __m128i zero = _mm_setzero_si128();
    const __m128i from = _mm_unpacklo_epi8(_mm_cvtsi32_si128(static_cast<int>(target)), zero);
    const __m128i to = _mm_unpacklo_epi8(_mm_cvtsi32_si128(static_cast<int>(source)), zero);
    const __m128i difference = _mm_unpacklo_epi16(_mm_sub_epi16(to, from), zero);
    const __m128i low = _mm_set1_epi32(static_cast<int>(weight & ((1u << kPart) - 1)));
    const __m128i high = _mm_set1_epi32(static_cast<int>(weight >> kPart));
    const __m128i product =
        _mm_add_epi32(_mm_madd_epi16(difference, low), _mm_slli_epi32(_mm_madd_epi16(difference, high), kPart));
    const __m128i sum = _mm_add_epi32(_mm_slli_epi32(_mm_unpacklo_epi16(from, zero), kBits), product);
    const __m128i words = _mm_packs_epi32(_mm_srli_epi32(sum, kBits), zero);
    return static_cast<CPixel>(_mm_cvtsi128_si32(_mm_packus_epi16(words, zero))) & kChannels;
}

/// By the pixel's own alpha in 0..255 and an effective alpha below kOpaqueAlpha.
[[gnu::always_inline]] inline CPixel blendBoth(CPixel target, CPixel source, uint32_t alpha, uint32_t effective) {
    return blendWeighted<23>(target, source, alpha * effective);
}

/// Opaque pixels by an effective alpha in 1..kOpaqueAlpha - 1: `sources(i)` gives four from index i on. Gives how many
/// it has drawn, a multiple of 4. The same bits as blendEffective gives: d * (2^15 - A) + s * A in one multiplication,
/// since both factors have 15 bits.
template <class Sources>
[[gnu::always_inline]] inline int32_t blendFours(CPixel* target, int32_t count, Sources&& sources, uint32_t effective) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i factors = _mm_set1_epi32(static_cast<int>(effective << 16 | (kFullAlpha - effective)));
    const __m128i channels = _mm_set1_epi32(static_cast<int>(kChannels));
    const auto two = [&](__m128i pairs) {
        const __m128i low = _mm_srli_epi32(_mm_madd_epi16(_mm_unpacklo_epi8(pairs, zero), factors), 15);
        const __m128i high = _mm_srli_epi32(_mm_madd_epi16(_mm_unpackhi_epi8(pairs, zero), factors), 15);
        return _mm_packs_epi32(low, high);
    };
    int32_t i = 0;
    for (; count - i >= 4; i += 4) {
        const __m128i from = _mm_loadu_si128(reinterpret_cast<const __m128i*>(target + i));
        const __m128i to = sources(i);
        const __m128i mixed = _mm_packus_epi16(two(_mm_unpacklo_epi8(from, to)), two(_mm_unpackhi_epi8(from, to)));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(target + i), _mm_and_si128(mixed, channels));
    }
    return i;
}

/// An opaque pixel by an effective alpha.
[[gnu::always_inline]] inline CPixel blendEffective(CPixel target, CPixel source, uint32_t effective) {
    return blendWeighted<15>(target, source, effective);
}

}  // namespace tarv
