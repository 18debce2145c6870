#pragma once

#include "UI/Placement/CViewArea.h"

namespace tarv {

/// A sum, or a maximum, of any number of terms: what does not fit into one formula goes through cells of the view's
/// rows.
class CViewTerms {
public:
    /// `token`: Add or Max.
    CViewTerms(CViewArea& area, CViewToken token) : area_(area), token_(token), formula_(area.net()) {}

    void add(const CViewFormula& term);
    void add(CViewCellId cell) { add(CViewFormula(area_.net()).cell(cell)); }
    /// Empty without terms.
    const CViewFormula& formula() const { return formula_; }
    /// A cell of the view that holds the terms; kNoViewCell without terms, and if the network has no cells left.
    CViewCellId toCell();

private:
    CViewArea& area_;
    CViewToken token_;
    CViewFormula formula_;
};

}  // namespace tarv
