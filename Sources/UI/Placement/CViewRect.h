#pragma once

#include <algorithm>
#include <cmath>

namespace tarv {

/// A rectangle in pixels of a window, from x, y up to, without, x + width, y + height.
struct CViewRect {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;

    /// Below this size nothing is left of a rectangle.
    static constexpr double kLeastSize = 1e-5;

    bool isEmpty() const { return width < kLeastSize || height < kLeastSize; }
    double right() const { return x + width; }
    double bottom() const { return y + height; }
    bool holds(double px, double py) const { return px >= x && py >= y && px < right() && py < bottom(); }
    /// What both hold; the rectangle at 0, 0 without a size if that is nothing.
    CViewRect intersection(const CViewRect& other) const {
        if (isEmpty() || other.isEmpty()) {
            return {};
        }
        const double left = std::max(x, other.x);
        const double top = std::max(y, other.y);
        const CViewRect both{left, top, std::min(right(), other.right()) - left,
                             std::min(bottom(), other.bottom()) - top};
        return both.isEmpty() ? CViewRect() : both;
    }
    /// The smallest rectangle that holds both; the other one if one is empty.
    CViewRect unionWith(const CViewRect& other) const {
        if (isEmpty()) {
            return other;
        }
        if (other.isEmpty()) {
            return *this;
        }
        const double left = std::min(x, other.x);
        const double top = std::min(y, other.y);
        return {left, top, std::max(right(), other.right()) - left, std::max(bottom(), other.bottom()) - top};
    }
    bool isNear(const CViewRect& other, double tolerance) const {
        return std::abs(x - other.x) <= tolerance && std::abs(y - other.y) <= tolerance &&
               std::abs(width - other.width) <= tolerance && std::abs(height - other.height) <= tolerance;
    }
    bool operator==(const CViewRect&) const = default;
};

}  // namespace tarv
