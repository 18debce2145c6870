#pragma once

#include "UI/Placement/CViewAxis.h"

namespace tarv {

/// Formulas of a space in a window, by axis: 0 horizontal, 1 vertical.
struct CViewSpace {
    explicit CViewSpace(CViewAreaNet& net)
        : position{CViewFormula(net), CViewFormula(net)}, size{CViewFormula(net), CViewFormula(net)} {}
    CViewFormula position[2];
    CViewFormula size[2];
};

/// The space that a view offers its children: its box, or all that it scrolls; with `isInner` less its inner borders.
CViewSpace regionOf(const CViewArea& area, bool isInner);

/// Makes a space the region of a child.
void setRegion(const CViewArea& child, const CViewSpace& space);

}  // namespace tarv
