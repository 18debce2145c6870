#pragma once

#include <algorithm>
#include <cstdint>

namespace tarv {

/// Whole pixels from left, top up to, without, right, bottom.
struct CIntRect {
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;

    bool isEmpty() const { return left >= right || top >= bottom; }
    int32_t width() const { return right - left; }
    int32_t height() const { return bottom - top; }
    CIntRect intersection(const CIntRect& other) const {
        return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
                std::min(bottom, other.bottom)};
    }
    bool operator==(const CIntRect&) const = default;
};

}  // namespace tarv
