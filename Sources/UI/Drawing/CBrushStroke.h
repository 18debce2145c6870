#pragma once

#include "UI/Drawing/CLinearBitmap.h"
#include "UI/Resources/CBrushSet.h"

namespace tarv {

/// Draws lines by blending the dots of a brush every half pixel along them. Points are pixels of a window, whole at the
/// top left corner of a pixel; each dot stands at the nearest sixteenth. The dots of a line depend on its points alone,
/// so that tiles of a window fit together. Coverage is the alpha of a pixel, by the formulas of Blend.h. Allocates
/// nothing.
class CBrushStroke {
public:
    static constexpr double kStep = 0.5;
    /// A point farther from the window's corner ends the line in front of it, and so does what is not a number.
    static constexpr double kMaxPosition = 1e6;

    /// The bitmap's top left pixel is that of the window at originX, originY. `clip` is in pixels of the bitmap.
    CBrushStroke(CLinearBitmap& target, int32_t originX, int32_t originY, const CIntRect& clip, const CBrush& brush,
                 const CColor& color, double opacity);

    /// Begins a line; draws nothing.
    void moveTo(double x, double y);
    /// Goes on to a point. A line from a point to itself is one dot. Without a beginning it is one.
    void lineTo(double x, double y);

private:
    void drawDot(double x, double y) const;

    CLinearBitmap& target_;
    int32_t originX_;
    int32_t originY_;
    CIntRect clip_;
    const CBrush& brush_;
    CPixel source_;
    uint32_t alpha_;
    bool isBegun_ = false;
    double x_ = 0.0;
    double y_ = 0.0;
    // From the last point to the next dot.
    double ahead_ = 0.0;
};

}  // namespace tarv
