#pragma once

#include "UI/Placement/CViewArea.h"
#include "UI/Placement/CViewSpace.h"

namespace tarv {

/// Writes the formulas by which a view places its children: rows, content size, then the children in the order docked,
/// inline, floating. For one run.
class CViewRelayout {
public:
    explicit CViewRelayout(CViewArea& area);
    void run();

private:
    void makeRows();
    void writeRows();
    void writeContent();
    void writeChildCount();
    void writeDocked();
    void placeDocked(CViewArea& child);
    void writeInline();
    void placeRow(const CViewRow& row);
    void placeInline(CViewArea& child, const CViewRow& row);
    void clear(CViewArea& child);

    void set(CViewCellId cell, const CViewFormula& formula) { net_.setFormula(cell, formula); }
    void addAlignment(CViewFormula& formula, CViewArea& child, int32_t axis, int32_t alignment) const;
    CViewFormula extent(CViewArea& child, int32_t axis) const;
    int32_t mainAxis() const { return area_.isInlineVertical() ? 1 : 0; }

    CViewArea& area_;
    CViewAreaNet& net_;
    CViewSpace running_;  ///< what the children so far have left
    CViewFormula base_[2];
    CViewArea* lastDocked_ = nullptr;
};

}  // namespace tarv
