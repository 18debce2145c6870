#include "UI/Placement/CViewRelayout.h"

#include "UI/Placement/CViewFloating.h"
#include "UI/Placement/CViewTerms.h"

namespace tarv {

namespace {

bool isDocked(CViewPlacement placement) {
    return placement >= CViewPlacement::Full && placement <= CViewPlacement::Right;
}

/// Docked at the side where the axis begins (low), where it ends (high), or along it.
bool isLow(CViewPlacement placement, int32_t axis) {
    return placement == (axis == 0 ? CViewPlacement::Left : CViewPlacement::Top);
}

bool isHigh(CViewPlacement placement, int32_t axis) {
    return placement == (axis == 0 ? CViewPlacement::Right : CViewPlacement::Bottom);
}

bool isVisibleDocked(const CViewArea& child) {
    return child.isEffectivelyVisible() && isDocked(child.placement());
}

bool isVisibleInline(const CViewArea& child) {
    return child.isEffectivelyVisible() && child.placement() == CViewPlacement::Inline;
}

int32_t alignmentOf(const CViewArea& child, int32_t axis) {
    return axis == 0 ? child.alignmentH() : child.alignmentV();
}

}  // namespace

CViewRelayout::CViewRelayout(CViewArea& area)
    : area_(area), net_(area.net()), running_(net_), base_{CViewFormula(net_), CViewFormula(net_)} {}

void CViewRelayout::run() {
    area_.rows().begin(net_);
    makeRows();
    writeRows();
    writeContent();
    writeChildCount();
    for (CViewArea* child : area_.children()) {
        if (!child->isEffectivelyVisible()) {
            clear(*child);
        }
    }
    writeDocked();
    writeInline();
    placeFloatingChildren(area_);
    area_.rows().end();
}

void CViewRelayout::makeRows() {
    CViewRow* row = nullptr;
    for (int32_t i = 0; i < area_.children().count(); ++i) {
        const CViewArea& child = *area_.children()[i];
        if (child.placement() != CViewPlacement::Inline) {
            continue;
        }
        // A hidden child ends the row, too.
        if (child.isNewInlineRow()) {
            row = nullptr;
        }
        if (!child.isEffectivelyVisible()) {
            continue;
        }
        if (!row) {
            row = area_.rows().addRow();
            if (!row) {
                return;
            }
            row->first = i;
        }
        row->last = i;
    }
}

CViewFormula CViewRelayout::extent(CViewArea& child, int32_t axis) const {
    const CViewAxis& a = kViewAxes[axis];
    CViewFormula formula(net_);
    formula.cell(child.cell(a.size)).cell(child.cell(a.outerLead)).add().cell(child.cell(a.outerTrail)).add();
    return formula;
}

void CViewRelayout::writeRows() {
    const int32_t main = mainAxis();
    for (int32_t i = 0; i < area_.rows().count(); ++i) {
        const CViewRow row = area_.rows().row(i);
        CViewTerms length(area_, CViewToken::Add);
        CViewTerms thickness(area_, CViewToken::Max);
        for (int32_t k = row.first; k <= row.last; ++k) {
            CViewArea& child = *area_.children()[k];
            if (isVisibleInline(child)) {
                length.add(extent(child, main));
                thickness.add(extent(child, 1 - main));
            }
        }
        set(row.length, length.formula());
        set(row.thickness, thickness.formula());
    }
}

void CViewRelayout::writeContent() {
    CViewRowList& rows = area_.rows();
    CViewArea* lastDocked = nullptr;
    for (CViewArea* child : area_.children()) {
        if (rows.count() == 0 && isVisibleDocked(*child)) {
            lastDocked = child;
        }
    }
    for (int32_t axis = 0; axis < 2; ++axis) {
        if (!(axis == 0 ? area_.isContentWidthAuto() : area_.isContentHeightAuto())) {
            continue;
        }
        const bool isAlong = axis == mainAxis();
        CViewTerms inlineSize(area_, isAlong ? CViewToken::Max : CViewToken::Add);
        for (int32_t i = 0; i < rows.count(); ++i) {
            inlineSize.add(isAlong ? rows.row(i).length : rows.row(i).thickness);
        }
        CViewTerms sum(area_, CViewToken::Add);
        const CViewCellId inlineCell = inlineSize.toCell();
        if (inlineCell != kNoViewCell) {
            sum.add(inlineCell);
        }
        CViewTerms largest(area_, CViewToken::Max);
        for (CViewArea* child : area_.children()) {
            if (!isVisibleDocked(*child)) {
                continue;
            }
            const CViewPlacement placement = child->placement();
            const bool isAcross = isLow(placement, 1 - axis) || isHigh(placement, 1 - axis);
            if (!isAcross || child == lastDocked) {
                sum.add(extent(*child, axis));
            }
            if (isAcross) {
                largest.add(extent(*child, axis));
            }
        }
        const CViewCellId sumCell = sum.toCell();
        if (sumCell != kNoViewCell) {
            largest.add(sumCell);
        }
        set(area_.cell(kViewAxes[axis].content), largest.formula());
    }
}

void CViewRelayout::writeChildCount() {
    int32_t count = 0;
    for (const CViewArea* child : area_.children()) {
        if (child->isEffectivelyVisible() && child->placement() <= CViewPlacement::Right) {
            ++count;
        }
    }
    net_.setValue(area_.cell(CViewCell::LayoutChildCount), static_cast<float>(count));
}

void CViewRelayout::writeDocked() {
    running_ = regionOf(area_, true);
    for (CViewArea* child : area_.children()) {
        if (isVisibleDocked(*child)) {
            placeDocked(*child);
        }
    }
}

void CViewRelayout::placeDocked(CViewArea& child) {
    const CViewPlacement placement = child.placement();
    const bool isNewBase = !lastDocked_ || placement == CViewPlacement::Full || placement != lastDocked_->placement() ||
                           child.widthMode() != lastDocked_->widthMode() ||
                           child.heightMode() != lastDocked_->heightMode();
    setRegion(child, running_);
    for (int32_t axis = 0; axis < 2; ++axis) {
        const CViewAxis& a = kViewAxes[axis];
        if (isNewBase) {
            base_[axis] = running_.size[axis];
        }
        set(child.cell(a.base), base_[axis]);
        // Later formulas refer to this child instead of repeating the whole way.
        base_[axis].clear();
        base_[axis].cell(child.cell(a.base));

        CViewFormula position(net_);
        position.cell(child.cell(a.region)).cell(child.cell(a.outerLead)).add();
        if (isHigh(placement, axis)) {
            position.cell(child.cell(a.regionSize)).append(extent(child, axis).round()).subtract().add();
        } else if (!isLow(placement, axis)) {
            addAlignment(position, child, axis, alignmentOf(child, axis));
        }
        set(child.cell(a.position), position.round());

        running_.position[axis].clear();
        running_.position[axis].cell(child.cell(a.region));
        running_.size[axis].clear();
        running_.size[axis].cell(child.cell(a.regionSize));
        if (isLow(placement, axis)) {
            running_.position[axis].append(extent(child, axis)).add();
        }
        if (isLow(placement, axis) || isHigh(placement, axis)) {
            running_.size[axis].append(extent(child, axis)).subtract();
        }
    }
    lastDocked_ = &child;
}

/// Adds the free space of a child's region, or half of it, by an alignment of -1, 0 or 1.
void CViewRelayout::addAlignment(CViewFormula& formula, CViewArea& child, int32_t axis, int32_t alignment) const {
    if (alignment == -1) {
        return;
    }
    formula.cell(child.cell(kViewAxes[axis].regionSize)).append(extent(child, axis)).subtract();
    if (alignment == 0) {
        formula.halve();
    }
    formula.add();
}

void CViewRelayout::writeInline() {
    CViewRowList& rows = area_.rows();
    if (rows.count() == 0) {
        return;
    }
    const int32_t cross = 1 - mainAxis();
    base_[0] = running_.size[0];
    base_[1] = running_.size[1];
    const int32_t alignment = cross == 1 ? area_.inlineAlignmentV() : area_.inlineAlignmentH();
    if (alignment != -1) {
        CViewTerms thickness(area_, CViewToken::Add);
        for (int32_t i = 0; i < rows.count(); ++i) {
            thickness.add(rows.row(i).thickness);
        }
        const CViewCellId helper = thickness.toCell();
        if (helper != kNoViewCell) {
            CViewFormula& start = running_.position[cross];
            start.append(running_.size[cross]).cell(helper).subtract();
            if (alignment == 0) {
                start.halve().round();
            }
            start.add();
        }
    }
    for (int32_t i = 0; i < rows.count(); ++i) {
        placeRow(rows.row(i));
    }
}

void CViewRelayout::placeRow(const CViewRow& row) {
    const int32_t main = mainAxis();
    const int32_t cross = 1 - main;
    // Each row begins where the first one did.
    const CViewFormula mainStart = running_.position[main];
    const int32_t alignment = main == 0 ? area_.inlineAlignmentH() : area_.inlineAlignmentV();
    if (alignment != -1) {
        CViewFormula& start = running_.position[main];
        start.append(running_.size[main]).cell(row.length).subtract();
        if (alignment == 0) {
            start.halve();
        }
        start.add();
    }
    for (int32_t i = row.first; i <= row.last; ++i) {
        CViewArea& child = *area_.children()[i];
        if (isVisibleInline(child)) {
            placeInline(child, row);
        }
    }
    running_.position[main] = mainStart;
    const CViewArea& last = *area_.children()[row.last];
    running_.position[cross].clear();
    running_.position[cross].cell(last.cell(kViewAxes[cross].region)).cell(row.thickness).add();
    running_.size[cross].clear();
    running_.size[cross].cell(last.cell(kViewAxes[cross].regionSize)).cell(row.thickness).subtract();
}

void CViewRelayout::placeInline(CViewArea& child, const CViewRow& row) {
    const int32_t main = mainAxis();
    const CViewAxis& along = kViewAxes[main];
    const CViewAxis& across = kViewAxes[1 - main];
    setRegion(child, running_);
    set(child.cell(kViewAxes[0].base), base_[0]);
    set(child.cell(kViewAxes[1].base), base_[1]);

    CViewFormula position(net_);
    position.cell(child.cell(along.region)).cell(child.cell(along.outerLead)).add().round();
    set(child.cell(along.position), position);

    position.clear();
    position.cell(child.cell(across.region)).cell(child.cell(across.outerLead)).add();
    const int32_t alignment = alignmentOf(child, 1 - main);
    if (alignment != -1) {
        position.cell(row.thickness).append(extent(child, 1 - main)).subtract();
        if (alignment == 0) {
            position.halve();
        }
        position.add();
    }
    set(child.cell(across.position), position.round());

    CViewFormula& next = running_.position[main];
    next.clear();
    next.cell(child.cell(along.position)).cell(child.cell(along.size)).add().cell(child.cell(along.outerTrail)).add();
}

void CViewRelayout::clear(CViewArea& child) {
    const CViewFormula none(net_);
    if (child.placement() == CViewPlacement::Match) {
        child.writeOwnSize();
    }
    for (const CViewAxis& a : kViewAxes) {
        for (const CViewCell index : {a.position, a.region, a.regionSize, a.base}) {
            set(child.cell(index), none);
        }
    }
}

}  // namespace tarv
