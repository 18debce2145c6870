#pragma once

#include <vector>

#include "Tests/UI/Placement/PlacedView.h"

namespace tarv {

inline constexpr int kH = 0;
inline constexpr int kV = 1;

/// A view while the reference places it.
struct CItem {
    const CPlacing* p = nullptr;
    std::vector<CItem*> children;
    CItem* parent = nullptr;
    bool isShown = true;
    float pos[2] = {0, 0};
    float size[2] = {0, 0};
    double halfDistance = 1.0;
    bool isScrollerPart = false;
    CViewRect whole;
    CViewRect visible;
};

float lead(const CViewBorders& b, int axis);
float trail(const CViewBorders& b, int axis);
float both(const CViewBorders& b, int axis);
bool isDocked(const CItem& item);
/// Docked at either end of an axis.
bool isAtEnd(const CItem& item, int axis);
/// Room that the scroll bar takes on an axis.
float scroller(const CItem& item, int axis);
/// Visible inline children, row by row.
std::vector<std::vector<CItem*>> rowsOf(const CItem& item);
/// The size of a view on one axis, with the base that its parent gives.
float sizeOf(const CItem& item, int axis, float base);

}  // namespace tarv
