#pragma once

#include "Core/CArray.h"
#include "UI/Placement/CViewFormula.h"

namespace tarv {

class CViewAreaNet;

/// One run of inline children, by their positions among the children.
struct CViewRow {
    int32_t first = -1;
    int32_t last = -1;
    CViewCellId length = kNoViewCell;     ///< cell: along the inline direction
    CViewCellId thickness = kNoViewCell;  ///< cell: across it
};

/// The rows of one view, and the cells that they and its sums over many children take. A relayout calls begin, takes
/// what it needs and calls end; what it takes in the same order keeps its cells, so that formulas that stay are not
/// written.
class CViewRowList {
public:
    CViewRowList() = default;
    ~CViewRowList();
    CViewRowList(const CViewRowList&) = delete;
    CViewRowList& operator=(const CViewRowList&) = delete;

    void begin(CViewAreaNet& net);
    /// A new row at the end, or null if the network has no cells left.
    CViewRow* addRow();
    /// A cell between many and one; kNoViewCell if the network has none left.
    CViewCellId takeHelper();
    /// Frees what was not taken again.
    void end();

    int32_t count() const { return rowCount_; }
    const CViewRow& row(int32_t index) const { return rows_[index]; }
    CViewRow& row(int32_t index) { return rows_[index]; }

private:
    CViewAreaNet* net_ = nullptr;
    CArray<CViewRow, 2> rows_;
    int32_t rowCount_ = 0;
    CArray<CViewCellId, 2> helpers_;
    int32_t helperCount_ = 0;
};

}  // namespace tarv
