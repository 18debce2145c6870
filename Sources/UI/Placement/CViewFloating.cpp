#include "UI/Placement/CViewFloating.h"

#include "UI/Placement/CViewSpace.h"

namespace tarv {

namespace {

/// The region of a floating child is its base, too.
void setRegionAndBase(CViewArea& child, const CViewSpace& space) {
    setRegion(child, space);
    for (const CViewAxis& a : kViewAxes) {
        CViewFormula formula(child.net());
        child.net().setFormula(child.cell(a.base), formula.cell(child.cell(a.regionSize)));
    }
}

/// `overlay` and `window-overlay`.
void placeOverlay(const CViewArea& area, CViewArea& child) {
    CViewSpace space(area.net());
    if (child.placement() == CViewPlacement::Overlay) {
        space = regionOf(area, false);
    } else {
        for (int32_t axis = 0; axis < 2; ++axis) {
            space.position[axis].cell(area.root().cell(kViewAxes[axis].position));
            space.size[axis].cell(area.root().cell(kViewAxes[axis].size));
        }
    }
    setRegionAndBase(child, space);
    for (const CViewAxis& a : kViewAxes) {
        CViewFormula formula(child.net());
        formula.cell(child.cell(a.region)).cell(child.cell(a.outerLead)).add().round();
        child.net().setFormula(child.cell(a.position), formula);
    }
}

void placeScroller(const CViewArea& area, CViewArea& child) {
    const CViewPlacement bars[2] = {CViewPlacement::ScrollerH, CViewPlacement::ScrollerV};
    const CViewPlacement placement = child.placement();
    CViewSpace space(area.net());
    for (int32_t axis = 0; axis < 2; ++axis) {
        const CViewAxis& a = kViewAxes[axis];
        space.position[axis].cell(area.cell(a.position));
        space.size[axis].cell(area.cell(a.size));
        // A bar leaves the corner to the other one.
        if (placement == bars[axis]) {
            space.size[axis].cell(area.cell(a.scroller)).subtract();
        }
    }
    setRegionAndBase(child, space);
    for (int32_t axis = 0; axis < 2; ++axis) {
        const CViewAxis& a = kViewAxes[axis];
        CViewFormula formula(child.net());
        formula.cell(child.cell(a.region));
        if (placement != bars[axis]) {
            formula.cell(child.cell(a.regionSize)).add().cell(child.cell(a.size)).subtract();
        }
        child.net().setFormula(child.cell(a.position), formula);
    }
}

void placeMatch(CViewArea& child) {
    const CViewArea* target = child.matchTarget();
    if (!target) {
        return;
    }
    for (int32_t axis = 0; axis < 2; ++axis) {
        const CViewAxis& a = kViewAxes[axis];
        const CViewFormula none(child.net());
        for (const CViewCell index : {a.region, a.regionSize, a.base}) {
            child.net().setFormula(child.cell(index), none);
        }
        for (const CViewCell index : {a.position, a.size}) {
            CViewFormula formula(child.net());
            child.net().setFormula(child.cell(index), formula.cell(target->cell(index)));
        }
    }
}

}  // namespace

void placeFloatingChildren(CViewArea& area) {
    for (CViewArea* child : area.children()) {
        if (!child->isEffectivelyVisible() || child->placement() < CViewPlacement::Overlay) {
            continue;
        }
        if (child->placement() == CViewPlacement::Match) {
            placeMatch(*child);
        } else if (child->placement() >= CViewPlacement::ScrollerH) {
            placeScroller(area, *child);
        } else {
            placeOverlay(area, *child);
        }
    }
}

}  // namespace tarv
