#pragma once

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
// worth of the unit: below 2^16, 2^31 and 2^23. That is why channels can be summed side by side in one word.
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

/// Red and blue in the two halves of a word.
[[gnu::always_inline]] inline uint64_t spreadRedBlue(CPixel pixel) {
    return (pixel & 0xff) | static_cast<uint64_t>(pixel & 0xff0000) << 16;
}

/// With a weight in 0..2^kBits, which is at most 2^23.
template <int32_t kBits>
[[gnu::always_inline]] inline CPixel blendWeighted(CPixel target, CPixel source, uint32_t weight) {
    static_assert(kBits <= 23, "a channel has 31 bits");
    const uint32_t kept = (1u << kBits) - weight;
    const uint64_t redBlue = (spreadRedBlue(target) * kept + spreadRedBlue(source) * weight) >> kBits;
    const uint32_t green = ((target >> 8 & 0xff) * kept + (source >> 8 & 0xff) * weight) >> kBits;
    return static_cast<uint32_t>(redBlue & 0xff) | (static_cast<uint32_t>(redBlue >> 16) & 0xff0000) | green << 8;
}

/// By the pixel's own alpha in 0..255 and an effective alpha below kOpaqueAlpha.
[[gnu::always_inline]] inline CPixel blendBoth(CPixel target, CPixel source, uint32_t alpha, uint32_t effective) {
    return blendWeighted<23>(target, source, alpha * effective);
}

/// An opaque pixel by an effective alpha.
[[gnu::always_inline]] inline CPixel blendEffective(CPixel target, CPixel source, uint32_t effective) {
    return blendWeighted<15>(target, source, effective);
}

}  // namespace tarv
