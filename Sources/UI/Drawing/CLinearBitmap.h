#pragma once

#include <cstdint>

#include "Core/CCheckedObject.h"
#include "Core/CError.h"
#include "Platform/IntRect.h"
#include "UI/Resources/CImage.h"
#include "UI/Resources/CPalette.h"

namespace tarv {

/// Rows of 32-bit pixels from the top, without gaps: the bytes blue, green, red and an unused one, which is 0 where
/// something was drawn. Rectangles may reach over the edges; what lies outside is not drawn. Drawing allocates nothing.
/// One thread at a time.
///
/// Opacities are held in 0 to 1. From 32640/32768 on, after rounding, drawing is fully opaque. The formulas are those
/// of Blend.h.
class CLinearBitmap : public CCheckedObject {
public:
    CLinearBitmap() = default;

    /// Pixels of that size, all 0. Fails, and leaves the bitmap empty, on a size below 0 and on more than kMaxPixels.
    [[nodiscard]] virtual CError* resize(int32_t width, int32_t height);
    static constexpr int64_t kMaxPixels = int64_t{1} << 26;

    int32_t width() const { return width_; }
    int32_t height() const { return height_; }
    int32_t rowBytes() const { return width_ * static_cast<int32_t>(sizeof(CPixel)); }
    CIntRect bounds() const { return {0, 0, width_, height_}; }
    /// Pixels of a row in 0..height-1.
    CPixel* row(int32_t y) { return pixels_ + int64_t{y} * width_; }
    const CPixel* row(int32_t y) const { return pixels_ + int64_t{y} * width_; }

    /// All pixels 0.
    void clear() { clearRect(bounds()); }
    void clearRect(const CIntRect& rect);
    /// What both have, at the same place. The size stays.
    void copyFrom(const CLinearBitmap& other) { copyRectFrom(other, bounds()); }
    void copyRectFrom(const CLinearBitmap& other, const CIntRect& rect);
    /// As copyRectFrom, with the opacity.
    void blendFrom(const CLinearBitmap& other, double opacity, const CIntRect& rect);
    /// The full brightness of a colour, with the colour's opacity times this one.
    void fillRect(const CIntRect& rect, const CColor& color, double opacity);
    void invertRect(const CIntRect& rect);
    /// A layer, in the version in effect, with its nominal top-left at x, y, and with the colour's opacity times this
    /// one. Gives the pixels of its stored rectangle that are left by the clip, for the load counter.
    int64_t drawImage(const CImageLayer& layer, const CColor& color, int32_t x, int32_t y, double opacity,
                      const CIntRect& clip);
    /// As `count` calls of drawImage side by side, each `step` pixels behind the last one.
    int64_t drawImageRow(const CImageLayer& layer, const CColor& color, int32_t x, int32_t y, int32_t step,
                         int32_t count, double opacity, const CIntRect& clip);

protected:
    /// Lays the bitmap over memory that a subclass owns; null for none.
    void setPixels(CPixel* pixels, int32_t width, int32_t height);

private:
    CPixel* pixels_ = nullptr;
    int32_t width_ = 0;
    int32_t height_ = 0;
    CArray<CPixel, 1> memory_;
};

}  // namespace tarv
