#pragma once

#include <cstdint>

namespace tarv {

/// Kinds of runs of a coded row.
inline constexpr uint32_t kRunTransparent = 0;
inline constexpr uint32_t kRunAlpha = 1;   ///< each pixel with its own alpha
inline constexpr uint32_t kRunOpaque = 2;  ///< pixels without their alpha, which is full
inline constexpr uint32_t kRunTypeCount = 3;

/// Low two bits: the type. This bit: the header goes on in the next byte. The length stands above.
inline constexpr uint32_t kLongRun = 4;
inline constexpr uint32_t kRunLengthShift = 3;
inline constexpr uint32_t kLongestShortRun = 31;
inline constexpr uint32_t kLongestRun = 8191;

struct CRun {
    uint32_t type;
    uint32_t length;  ///< pixels
};

/// The header that stands at `bytes`, which moves behind it.
inline CRun takeRun(const uint8_t*& bytes) {
    uint32_t header = *bytes++;
    if (header & kLongRun) {
        header |= static_cast<uint32_t>(*bytes++) << 8;
    }
    return {header & 3, header >> kRunLengthShift};
}

/// Bytes that a pixel takes in a run of a layer with so many bytes per pixel.
inline uint32_t runPixelBytes(uint32_t type, uint32_t bytesPerPixel) {
    return type == kRunTransparent ? 0 : type == kRunAlpha ? bytesPerPixel : bytesPerPixel - 1;
}

}  // namespace tarv
