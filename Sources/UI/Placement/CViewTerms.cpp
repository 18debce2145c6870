#include "UI/Placement/CViewTerms.h"

namespace tarv {

namespace {

// Room that a sum keeps for one more term.
constexpr int32_t kTermRoom = 24;

}  // namespace

void CViewTerms::add(const CViewFormula& term) {
    if (formula_.count() > CViewFormula::kMaxTokens - kTermRoom) {
        const CViewCellId sum = toCell();
        formula_.clear();
        if (sum == kNoViewCell) {
            return;
        }
        formula_.cell(sum);
    }
    const bool isFirst = formula_.isEmpty();
    formula_.append(term);
    if (!isFirst) {
        formula_.op(token_);
    }
}

CViewCellId CViewTerms::toCell() {
    const CViewCellId helper = formula_.isEmpty() ? kNoViewCell : area_.rows().takeHelper();
    if (helper != kNoViewCell) {
        area_.net().setFormula(helper, formula_);
    }
    return helper;
}

}  // namespace tarv
