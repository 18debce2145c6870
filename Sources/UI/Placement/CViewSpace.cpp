#include "UI/Placement/CViewSpace.h"

namespace tarv {

CViewSpace regionOf(const CViewArea& area, bool isInner) {
    CViewSpace space(area.net());
    for (int32_t axis = 0; axis < 2; ++axis) {
        const CViewAxis& a = kViewAxes[axis];
        CViewFormula& position = space.position[axis];
        CViewFormula& size = space.size[axis];
        position.cell(area.cell(a.position));
        size.cell(area.cell(a.size));
        if (area.isScrollable()) {
            size.cell(area.cell(a.scroller)).subtract();
            position.cell(area.cell(a.offset)).append(size).op(CViewToken::Multiply);
            position.cell(area.cell(a.ratio)).op(CViewToken::Divide).subtract();
            size.cell(area.cell(a.ratio)).op(CViewToken::Divide);
        }
        if (isInner) {
            position.cell(area.cell(a.innerLead)).add();
            size.cell(area.cell(a.innerLead)).subtract().cell(area.cell(a.innerTrail)).subtract();
        }
    }
    return space;
}

void setRegion(const CViewArea& child, const CViewSpace& space) {
    for (int32_t axis = 0; axis < 2; ++axis) {
        child.net().setFormula(child.cell(kViewAxes[axis].region), space.position[axis]);
        child.net().setFormula(child.cell(kViewAxes[axis].regionSize), space.size[axis]);
    }
}

}  // namespace tarv
