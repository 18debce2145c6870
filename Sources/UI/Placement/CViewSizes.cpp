#include "UI/Placement/CViewSizes.h"

#include "UI/Placement/CViewAxis.h"

namespace tarv {

namespace {

/// The size that a length stands for, before the least one is looked at.
CViewFormula lengthFormula(const CViewArea& area, const CViewLength& length, const CViewAxis& cells) {
    CViewFormula formula(area.net());
    switch (length.mode) {
        case CViewLengthMode::Fixed:
            return formula.number(static_cast<float>(length.value));
        case CViewLengthMode::Compact:
            formula.cell(area.cell(cells.content)).cell(area.cell(cells.innerLead)).add();
            formula.cell(area.cell(cells.innerTrail)).add();
            return area.isScrollable() ? formula.cell(area.cell(cells.scroller)).add() : formula;
        case CViewLengthMode::Percentage:
            formula.cell(area.cell(cells.base)).number(static_cast<float>(length.value)).op(CViewToken::Multiply);
            break;
        case CViewLengthMode::Balanced:
            if (!area.parent()) {
                return formula.number(0.0f);
            }
            formula.cell(area.cell(cells.base)).cell(area.parent()->cell(CViewCell::LayoutChildCount));
            formula.cell(area.cell(cells.base)).op(CViewToken::SafeDivide);
            break;
    }
    formula.cell(area.cell(cells.outerLead)).subtract().cell(area.cell(cells.outerTrail)).subtract();
    return formula;
}

}  // namespace

void writeViewSize(CViewArea& area, const CViewLength& length, int32_t axis) {
    const CViewAxis& cells = kViewAxes[axis];
    CViewFormula formula = lengthFormula(area, length, cells);
    formula.cell(area.cell(cells.least)).max();
    area.net().setFormula(area.cell(cells.size), formula);
}

void writeViewMinimum(CViewArea& area, const CViewLength& length, int32_t axis) {
    const CViewAxis& cells = kViewAxes[axis];
    area.net().setFormula(area.cell(cells.least), lengthFormula(area, length, cells));
}

}  // namespace tarv
