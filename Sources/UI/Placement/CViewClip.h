#pragma once

#include "UI/Placement/CViewArea.h"

namespace tarv {

/// Cuts a rectangle of a view by what its ancestors let through, by `unclip-level`: -1 is cut by the root alone,
/// otherwise so many ancestors do not cut. Brings the rectangles of those that still wait up to date first.
[[nodiscard]] CError* clipByAncestors(CViewArea& area, CViewRect& rect);

}  // namespace tarv
