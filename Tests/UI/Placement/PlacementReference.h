#pragma once

#include <vector>

#include "Tests/UI/Placement/PlacedView.h"

namespace tarv {

/// Where the rules of placement put one view: plain recursion, without a network.
struct CReferenceView {
    CViewRect box;
    CViewRect whole;
    CViewRect visible;
    // Distance of the unrounded position from the next half: where it is tiny, either neighbour is right.
    double halfDistance = 1.0;
};

/// All views of a tree, in the order of collectNodes. The root stands at 0, 0. What a child takes of its parent's size
/// must not be what the parent's compact size is made of.
std::vector<CReferenceView> placeByRules(const CPlacingNode& root);

}  // namespace tarv
