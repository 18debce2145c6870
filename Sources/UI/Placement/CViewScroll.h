#pragma once

#include <cstdint>

#include "UI/Placement/CViewRect.h"

namespace tarv {

class CViewArea;

/// Keeps the scroll cells of a view in their ranges, by axis: 0 horizontal, 1 vertical. Does nothing for a view that
/// does not scroll.
class CViewScroll {
public:
    /// Held in 0 to 1 - ratio.
    static void setOffset(CViewArea& area, int32_t axis, double offset);
    /// Held in the least ratio to 1; an offset behind the new end moves to it.
    void setRatio(CViewArea& area, int32_t axis, double ratio) const;
    void setMinRatio(CViewArea& area, int32_t axis, double ratio);
    /// Of the scroll bar, in pixels.
    static void setThickness(CViewArea& area, int32_t axis, double thickness);
    /// The whole content of a view as it is scrolled now; the box of one that does not scroll.
    static CViewRect contentOf(const CViewArea& area);

private:
    static constexpr double kLeastRatio = 0.0001;
    double minRatio_[2] = {kLeastRatio, kLeastRatio};
};

}  // namespace tarv
