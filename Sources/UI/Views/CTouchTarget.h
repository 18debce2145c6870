#pragma once

#include <cstdint>

namespace tarv {

class CSectorMap;
class CViewBaseCtlEvents;

/// Which view a finger means. A control that is smaller than kSize across takes presses beside it, up to half of what
/// it lacks at each side, where no other control is: what lies under the finger keeps its press, of several the nearest
/// one takes it. A view that is kSize or more both ways, such as a window that is dragged by its ground, gives way to
/// the controls in it. Thread: that of the window. Allocates nothing.
class CTouchTarget {
public:
    /// In pixels of the screen at every scale, since fingers do not scale: 10 mm at 96 dots an inch.
    static constexpr int32_t kSize = 40;

    /// At a point of the window. `view` may be disabled, and is null where a press meets nothing.
    static CTouchTarget at(const CSectorMap& map, int32_t x, int32_t y);
    /// Whether a point is on the view, or beside it where a finger would still mean it; neighbours do not count.
    static bool reaches(const CViewBaseCtlEvents& view, int32_t x, int32_t y);

    CViewBaseCtlEvents* view = nullptr;
    /// The point that the press counts at: the given one, or for a press beside `view` a point in it close by.
    int32_t x = 0;
    int32_t y = 0;
};

}  // namespace tarv
