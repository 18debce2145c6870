#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

namespace tarv {

/// The scales that everything is drawn for, ascending.
constexpr double kGfxScales[] = {0.8, 1.0, 1.25};
constexpr int kGfxScaleCount = 3;

/// A length in device pixels: half a pixel goes up. The least bit is given for lengths that decimals can't hold.
inline int devicePixels(double length) {
    return static_cast<int>(std::floor(length + 0.5 + 1e-9));
}

/// One picture as it was drawn at one scale: all of its pixels, row by row. In device pixels.
struct CRaster {
    int width = 0;         ///< nominal
    int height = 0;        ///< nominal
    double advance = 0.0;  ///< of a glyph
    int x = 0;             ///< of the drawn rectangle, from the nominal top left
    int y = 0;
    int drawnWidth = 0;
    int drawnHeight = 0;
    int bytesPerPixel = 0;        ///< 1: alpha; 2: step of the ramp, alpha; 4: blue, green, red, alpha
    std::vector<uint8_t> pixels;  ///< drawnWidth * drawnHeight * bytesPerPixel
};

}  // namespace tarv
