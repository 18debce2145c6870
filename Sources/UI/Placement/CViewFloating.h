#pragma once

#include "UI/Placement/CViewArea.h"

namespace tarv {

/// Writes the formulas of the visible children that take no space: overlays, scrollers, and those that match another.
void placeFloatingChildren(CViewArea& area);

}  // namespace tarv
