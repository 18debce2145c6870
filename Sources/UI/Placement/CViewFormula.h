#pragma once

#include <cstdint>

namespace tarv {

class CViewAreaNet;

/// Position of a cell in its network.
using CViewCellId = uint16_t;
/// No cell.
inline constexpr CViewCellId kNoViewCell = 65535;

/// Steps of a formula. Constant and Cell are followed by an index.
enum class CViewToken : uint16_t {
    Constant = 0,    ///< pushes a constant
    Divide = 1,      ///< a / b
    SafeDivide = 2,  ///< a / b, or c where |b| is at most 0.0001
    Halve = 3,
    Floor = 4,
    Max = 5,       ///< the larger of two
    MaxOf = 6,     ///< the largest of n values, with n on top of them; n = 0 gives 0
    Subtract = 7,  ///< a - b
    Multiply = 8,
    Add = 9,
    Round = 10,  ///< half away from zero
    Cell = 11    ///< pushes the value of a cell
};

/// A formula as it is written: tokens of a postfix program, at most kMaxTokens. A program that grows beyond is cut and
/// counts as broken; formulas over many views go through cells in between. The network keeps its own copy.
class CViewFormula {
public:
    static constexpr int32_t kMaxTokens = 256;

    explicit CViewFormula(CViewAreaNet& net) : net_(&net) {}

    CViewFormula& cell(CViewCellId id);
    CViewFormula& number(float value);
    CViewFormula& op(CViewToken token);
    CViewFormula& add() { return op(CViewToken::Add); }
    CViewFormula& subtract() { return op(CViewToken::Subtract); }
    CViewFormula& halve() { return op(CViewToken::Halve); }
    CViewFormula& round() { return op(CViewToken::Round); }
    CViewFormula& max() { return op(CViewToken::Max); }
    CViewFormula& append(const CViewFormula& other);
    void clear() {
        count_ = 0;
        isBroken_ = false;
    }

    int32_t count() const { return count_; }
    bool isEmpty() const { return count_ == 0; }
    bool isBroken() const { return isBroken_; }
    const uint16_t* tokens() const { return tokens_; }

private:
    void push(uint16_t token);

    CViewAreaNet* net_;
    int32_t count_ = 0;
    bool isBroken_ = false;
    uint16_t tokens_[kMaxTokens];
};

}  // namespace tarv
