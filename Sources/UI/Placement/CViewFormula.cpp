#include "UI/Placement/CViewFormula.h"

#include <algorithm>

#include "UI/Placement/CViewAreaNet.h"

namespace tarv {

CViewFormula& CViewFormula::cell(CViewCellId id) {
    push(static_cast<uint16_t>(CViewToken::Cell));
    push(id);
    return *this;
}

CViewFormula& CViewFormula::number(float value) {
    push(static_cast<uint16_t>(CViewToken::Constant));
    push(net_->constantIndex(value));
    return *this;
}

CViewFormula& CViewFormula::op(CViewToken token) {
    push(static_cast<uint16_t>(token));
    return *this;
}

CViewFormula& CViewFormula::append(const CViewFormula& other) {
    isBroken_ = isBroken_ || other.isBroken_;
    for (int32_t i = 0; i < other.count_; ++i) {
        push(other.tokens_[i]);
    }
    return *this;
}

void CViewFormula::push(uint16_t token) {
    if (count_ == kMaxTokens) {
        isBroken_ = true;
        return;
    }
    tokens_[count_++] = token;
}

}  // namespace tarv
