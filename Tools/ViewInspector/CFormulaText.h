#pragma once

#include <map>
#include <string>

#include "UI/Placement/CViewArea.h"
#include "UI/Views/CView.h"

namespace tarv {

/// Formulas of a window's network as texts, with the names of views and cells in the place of numbers.
class CFormulaText {
public:
    /// Enters the cells of a view and of all views below it; names are paths from `root`.
    explicit CFormulaText(const CView& root);

    /// "0.5 * (c.region-width - width)"; empty for a cell without a formula. Cells of `own` are named without its path.
    std::string textOf(CViewCellId cell, const CView& own) const;
    /// Name of one of a view's cells, such as "outer-left".
    static const char* nameOf(CViewCell cell);

private:
    void enter(const CView& view, const std::string& path);
    static constexpr int32_t kMaxDepth = 32;
    std::string formulaText(CViewCellId cell, const std::string& ownPath, int32_t depth) const;
    std::string cellName(CViewCellId cell, const std::string& ownPath) const;

    const CViewAreaNet& net_;
    struct CName {
        std::string path;
        std::string cell;
    };
    std::map<CViewCellId, CName> names_;
    std::map<const CView*, std::string> paths_;
};

}  // namespace tarv
