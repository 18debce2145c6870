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
    /// The smallest rectangle that holds both; the other one if one is empty.
    CIntRect unionWith(const CIntRect& other) const {
        if (isEmpty() || other.isEmpty()) {
            return isEmpty() ? other : *this;
        }
        return {std::min(left, other.left), std::min(top, other.top), std::max(right, other.right),
                std::max(bottom, other.bottom)};
    }
    /// Moved by that many pixels.
    CIntRect moved(int32_t x, int32_t y) const { return {left + x, top + y, right + x, bottom + y}; }
    bool operator==(const CIntRect&) const = default;
};

}  // namespace tarv
