#pragma once

#include "UI/Placement/CViewArea.h"

namespace tarv {

/// Writes the width (axis 0) or the height (1) of a view as a formula, not below the least one.
void writeViewSize(CViewArea& area, const CViewLength& length, int32_t axis);
/// Writes the least width or height of a view.
void writeViewMinimum(CViewArea& area, const CViewLength& length, int32_t axis);

}  // namespace tarv
