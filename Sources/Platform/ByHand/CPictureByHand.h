#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Platform/IntRect.h"

namespace tarv {

/// Pixels as a surface has them: rows from the top without gaps.
struct CPictureByHand {
    CPictureByHand() = default;
    CPictureByHand(int32_t pictureWidth, int32_t pictureHeight, uint32_t fill)
        : width(pictureWidth),
          height(pictureHeight),
          pixels(static_cast<size_t>(pictureWidth) * static_cast<size_t>(pictureHeight), fill) {}

    uint32_t& at(int32_t x, int32_t y) { return pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + x]; }
    uint32_t at(int32_t x, int32_t y) const { return const_cast<CPictureByHand*>(this)->at(x, y); }
    CIntRect bounds() const { return {0, 0, width, height}; }
    bool operator==(const CPictureByHand&) const = default;

    int32_t width = 0;
    int32_t height = 0;
    std::vector<uint32_t> pixels;
};

}  // namespace tarv
