#include "UI/Drawing/CBrushStroke.h"

#include <algorithm>
#include <cmath>

#include "UI/Drawing/Blend.h"

namespace tarv {

namespace {

/// The part of a line, in pixels from its beginning, that lies between two coordinates on one axis.
void limit(double from, double direction, double low, double high, double& first, double& last) {
    if (direction == 0.0) {
        last = from < low || from > high ? -1.0 : last;
        return;
    }
    const double a = (low - from) / direction;
    const double b = (high - from) / direction;
    first = std::max(first, std::min(a, b));
    last = std::min(last, std::max(a, b));
}

[[gnu::always_inline]] inline CPixel blendCover(CPixel target, CPixel source, uint32_t cover, uint32_t alpha) {
    if (alpha >= kOpaqueAlpha) {
        return cover == 255 ? source : blendOwn(target, source, cover);
    }
    return cover == 255 ? blendEffective(target, source, alpha) : blendBoth(target, source, cover, alpha);
}

}  // namespace

CBrushStroke::CBrushStroke(CLinearBitmap& target, int32_t originX, int32_t originY, const CIntRect& clip,
                           const CBrush& brush, const CColor& color, double opacity)
    : target_(target),
      originX_(originX),
      originY_(originY),
      clip_(clip.intersection(target.bounds())),
      brush_(brush),
      source_(color.full()),
      alpha_(effectiveAlpha(color.opacity * opacity)) {}

void CBrushStroke::moveTo(double x, double y) {
    isBegun_ = std::abs(x) <= kMaxPosition && std::abs(y) <= kMaxPosition;
    x_ = x;
    y_ = y;
    ahead_ = 0.0;
}

void CBrushStroke::lineTo(double x, double y) {
    if (!isBegun_ || !(std::abs(x) <= kMaxPosition && std::abs(y) <= kMaxPosition)) {
        moveTo(x, y);
        return;
    }
    const double length = std::hypot(x - x_, y - y_);
    const double directionX = length > 0.0 ? (x - x_) / length : 0.0;
    const double directionY = length > 0.0 ? (y - y_) / length : 0.0;
    // Dots that reach the clip; a dot reaches half a stamp, and a pixel by rounding.
    const double reach = brush_.stampSide() / 2 + 2;
    double first = 0.0;
    double last = clip_.isEmpty() ? -1.0 : length;
    limit(x_, directionX, originX_ + clip_.left - reach, originX_ + clip_.right + reach, first, last);
    limit(y_, directionY, originY_ + clip_.top - reach, originY_ + clip_.bottom + reach, first, last);
    const auto count = length < ahead_ ? 0 : static_cast<int64_t>((length - ahead_) / kStep) + 1;
    const auto from = static_cast<int64_t>(std::max(std::floor((first - ahead_) / kStep), 0.0));
    const auto to = last < first ? from : std::min(count, static_cast<int64_t>(std::ceil((last - ahead_) / kStep)) + 1);
    for (int64_t i = from; i < to; ++i) {
        const double at = ahead_ + static_cast<double>(i) * kStep;
        drawDot(x_ + directionX * at, y_ + directionY * at);
    }
    ahead_ += static_cast<double>(count) * kStep - length;
    x_ = x;
    y_ = y;
}

void CBrushStroke::drawDot(double x, double y) const {
    constexpr int32_t kMask = CBrush::kSubpixels - 1;
    const auto stepX = static_cast<int32_t>(std::floor(x * CBrush::kSubpixels + 0.5));
    const auto stepY = static_cast<int32_t>(std::floor(y * CBrush::kSubpixels + 0.5));
    const int32_t side = brush_.stampSide();
    const int32_t left = (stepX >> CBrush::kSubpixelBits) - side / 2 - originX_;
    const int32_t top = (stepY >> CBrush::kSubpixelBits) - side / 2 - originY_;
    const CIntRect seen = CIntRect{left, top, left + side, top + side}.intersection(clip_);
    if (seen.isEmpty() || alpha_ == 0) {
        return;
    }
    const uint8_t* stamp = brush_.stamp(stepX & kMask, stepY & kMask);
    for (int32_t row = seen.top; row < seen.bottom; ++row) {
        const uint8_t* cover = stamp + (row - top) * side - left;
        CPixel* pixels = target_.row(row);
        for (int32_t column = seen.left; column < seen.right; ++column) {
            if (cover[column] != 0) {
                pixels[column] = blendCover(pixels[column], source_, cover[column], alpha_);
            }
        }
    }
}

}  // namespace tarv
