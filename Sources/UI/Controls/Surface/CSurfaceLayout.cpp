// Columns of a surface in whole pixels.

#include "UI/Controls/Surface/CSurfaceLayout.h"

#include <algorithm>
#include <cmath>

namespace tarv {

namespace {

// A hairline stands on a whole pixel at each eighth of the range.
constexpr int32_t kRangeParts = 8;
constexpr double kPitOfPitch = 0.75;
// From pit to bar, at scale 1.0.
constexpr double kInset = 2.0;

}  // namespace

CSurfaceLayout::CSurfaceLayout(const CIntRect& box, bool isVertical, int32_t count, bool isFilling, double scale)
    : box_(box), isVertical_(isVertical), isFilling_(isFilling), count_(std::max(count, 0)) {
    const int32_t width = std::max(box.width(), 0);
    const int32_t height = std::max(box.height(), 0);
    const int32_t across = isVertical ? width : height;
    pitch_ = count_ > 0 ? across / count_ : 0;
    first_ = (isVertical ? box.left : box.top) + (across - pitch_ * count_) / 2;
    rangeLength_ = isVertical ? height / kRangeParts * kRangeParts : width;
    rangeStart_ = isVertical ? box.top + (height - rangeLength_) / 2 + rangeLength_ : box.left;
    const int32_t pitWidth = isFilling ? pitch_ : static_cast<int32_t>(pitch_ * kPitOfPitch);
    inset_ = std::clamp(static_cast<int32_t>(std::lround(kInset * scale)), 0, std::max((pitWidth - 1) / 3, 0));
}

CIntRect CSurfaceLayout::rect(int32_t acrossStart, int32_t acrossEnd, int32_t alongStart, int32_t alongEnd) const {
    return isVertical_ ? CIntRect{acrossStart, alongStart, acrossEnd, alongEnd}
                       : CIntRect{alongStart, acrossStart, alongEnd, acrossEnd};
}

CIntRect CSurfaceLayout::column(int32_t index) const {
    const int32_t start = first_ + index * pitch_;
    return isVertical_ ? rect(start, start + pitch_, box_.top, box_.bottom)
                       : rect(start, start + pitch_, box_.left, box_.right);
}

CIntRect CSurfaceLayout::pit(int32_t index) const {
    const int32_t width = isFilling_ ? pitch_ : static_cast<int32_t>(pitch_ * kPitOfPitch);
    const int32_t start = first_ + index * pitch_ + (pitch_ - width) / 2;
    return isVertical_ ? rect(start, start + width, rangeStart_ - rangeLength_, rangeStart_)
                       : rect(start, start + width, rangeStart_, rangeStart_ + rangeLength_);
}

CIntRect CSurfaceLayout::bar(int32_t index, int32_t from, int32_t to) const {
    const CIntRect behind = pit(index);
    int32_t start = std::min(from, to);
    int32_t end = std::max(from, to);
    if (end - start < kCap) {
        // The end at the value stays where the value is.
        start = to > from ? to - kCap : to < from ? to : from - kCap / 2;
        end = start + kCap;
    }
    // Within the range, also at its ends.
    const int32_t low = isVertical_ ? behind.top : behind.left;
    const int32_t high = isVertical_ ? behind.bottom : behind.right;
    const int32_t shift = std::max(low - start, 0) - std::max(end - high, 0);
    start += shift;
    end += shift;
    return isVertical_ ? rect(behind.left + inset_, behind.right - inset_, start, end)
                       : rect(behind.top + inset_, behind.bottom - inset_, start, end);
}

int32_t CSurfaceLayout::columnAt(int32_t x, int32_t y) const {
    const bool isInside = x >= box_.left && x < box_.right && y >= box_.top && y < box_.bottom;
    const int32_t offset = across(x, y) - first_;
    if (!isInside || pitch_ <= 0 || offset < 0 || offset / pitch_ >= count_) {
        return -1;
    }
    return offset / pitch_;
}

int32_t CSurfaceLayout::nearestColumn(int32_t x, int32_t y) const {
    if (pitch_ <= 0 || count_ <= 0) {
        return -1;
    }
    return std::clamp((across(x, y) - first_ < 0 ? 0 : across(x, y) - first_) / pitch_, 0, count_ - 1);
}

double CSurfaceLayout::middle(int32_t index) const {
    return first_ + (index + 0.5) * pitch_;
}

int32_t CSurfaceLayout::pixel(double position) const {
    const auto pixels = static_cast<int32_t>(std::lround(std::clamp(position, -1.0, 2.0) * rangeLength_));
    return isVertical_ ? rangeStart_ - pixels : rangeStart_ + pixels;
}

int32_t CSurfaceLayout::linePixel(double position) const {
    const int32_t first = isVertical_ ? rangeStart_ - rangeLength_ : rangeStart_;
    return std::clamp(pixel(position), first, std::max(first, first + rangeLength_ - 1));
}

double CSurfaceLayout::position(double pixel) const {
    if (rangeLength_ <= 0) {
        return 0.0;
    }
    return (isVertical_ ? rangeStart_ - pixel : pixel - rangeStart_) / rangeLength_;
}

}  // namespace tarv
