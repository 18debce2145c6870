#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "Tests/UI/Resources/DataSetHelp.h"
#include "UI/Drawing/CLinearBitmap.h"

namespace tarv {

// The formulas of drawing as they are stated, one channel, in whole numbers that can't overflow.
inline int64_t ownFormula(int64_t d, int64_t s, int64_t a) {
    return (d * 256 + (s - d) * a) >> 8;
}
inline int64_t bothFormula(int64_t d, int64_t s, int64_t a, int64_t effective) {
    return ((d << 23) + (s - d) * a * effective) >> 23;
}
inline int64_t effectiveFormula(int64_t d, int64_t s, int64_t effective) {
    return ((d << 15) + (s - d) * effective) >> 15;
}
inline int64_t alphaFormula(double opacity) {
    return opacity > 0.0 ? std::min<int64_t>(std::llround(opacity * 32768), 32768) : 0;
}

/// A pixel whose three channels went through `channel(target, source)`; the unused byte is 0.
template <class F>
CPixel eachChannel(CPixel target, CPixel source, const F& channel) {
    CPixel result = 0;
    for (const int32_t shift : {0, 8, 16}) {
        const int64_t value = channel(target >> shift & 255, source >> shift & 255);
        result |= static_cast<CPixel>(value) << shift;
    }
    return result;
}

/// One stored pixel (alpha last) drawn on another, by the stated rules.
inline CPixel drawnFormula(CPixel target, CPixel source, int64_t a, double opacity) {
    const int64_t effective = alphaFormula(opacity);
    if (a == 0 || effective == 0) {
        return target;
    }
    if (effective >= 32640) {
        return a == 255 ? source
                        : eachChannel(target, source, [a](int64_t d, int64_t s) { return ownFormula(d, s, a); });
    }
    return eachChannel(target, source, [a, effective](int64_t d, int64_t s) {
        return a == 255 ? effectiveFormula(d, s, effective) : bothFormula(d, s, a, effective);
    });
}

inline void fillWithNoise(CLinearBitmap& bitmap, uint32_t seed) {
    for (int32_t y = 0; y < bitmap.height(); ++y) {
        for (int32_t x = 0; x < bitmap.width(); ++x) {
            seed = seed * 1664525u + 1013904223u;
            bitmap.row(y)[x] = seed >> 8;
        }
    }
}

inline std::vector<CPixel> pixelsOf(const CLinearBitmap& bitmap) {
    return {bitmap.row(0), bitmap.row(bitmap.height())};
}

/// A ramp in which no two entries share a channel's value.
inline CColor noiseColor(double opacity, uint32_t seed = 1) {
    CColor color;
    color.opacity = opacity;
    for (CPixel& entry : color.ramp) {
        seed = seed * 1664525u + 1013904223u;
        entry = seed >> 8;
    }
    return color;
}

/// A layer of one version with these pixels, its top-left at x, y from the nominal one.
inline std::unique_ptr<CImageLayer> layerOf(const CBytes& pixels, int32_t width, int32_t bytesPerPixel, int32_t x = 0,
                                            int32_t y = 0) {
    auto layer = std::make_unique<CImageLayer>(bytesPerPixel);
    auto* version = new CImageVersion;
    const auto height = static_cast<int32_t>(pixels.size()) / bytesPerPixel / width;
    EXPECT_GOOD(version->encode(pixels.data(), width, height, bytesPerPixel, x, y));
    EXPECT_GOOD(layer->addVersion(1.0, version));
    return layer;
}

/// Colour of a pixel of a layer by its stored bytes.
inline CPixel sourceFormula(const uint8_t* pixel, int32_t bytesPerPixel, const CColor& color) {
    return bytesPerPixel == 1   ? color.ramp[255]
           : bytesPerPixel == 2 ? color.ramp[pixel[0]]
                                : static_cast<CPixel>(pixel[0] | pixel[1] << 8 | pixel[2] << 16);
}

}  // namespace tarv
