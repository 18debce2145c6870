#include "CFormulaText.h"

#include <cmath>
#include <cstdio>
#include <vector>

namespace tarv {

namespace {

constexpr const char* kCellNames[kScrollableViewCells] = {"x",
                                                          "y",
                                                          "width",
                                                          "height",
                                                          "inner-bottom",
                                                          "inner-left",
                                                          "inner-right",
                                                          "inner-top",
                                                          "outer-bottom",
                                                          "outer-left",
                                                          "outer-right",
                                                          "outer-top",
                                                          "child-count",
                                                          "content-width",
                                                          "content-height",
                                                          "min-width",
                                                          "min-height",
                                                          "region-x",
                                                          "region-y",
                                                          "region-width",
                                                          "region-height",
                                                          "base-width",
                                                          "base-height",
                                                          "offset-x",
                                                          "offset-y",
                                                          "ratio-x",
                                                          "ratio-y",
                                                          "scroller-width",
                                                          "scroller-height"};

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.6g", value);
    return text;
}

/// What was pushed, and how strongly it holds together: 2 alone, 1 a product, 0 a sum.
struct COperand {
    std::string text;
    int32_t rank = 2;

    std::string atLeast(int32_t wanted) const { return rank >= wanted ? text : "(" + text + ")"; }
};

class COperands {
public:
    COperand pop() {
        if (stack_.empty()) {
            return {"?", 2};
        }
        COperand top = stack_.back();
        stack_.pop_back();
        return top;
    }
    void push(const std::string& text, int32_t rank = 2) { stack_.push_back({text, rank}); }
    void call(const char* name, int32_t count) {
        std::string text;
        for (int32_t i = 0; i < count; ++i) {
            const std::string argument = pop().text;
            text = text.empty() ? argument : argument + ", " + text;
        }
        push(name + ("(" + text + ")"));
    }
    void infix(const char* sign, int32_t rank, int32_t rightRank) {
        const COperand right = pop();
        const COperand left = pop();
        push(left.atLeast(rank) + sign + right.atLeast(rightRank), rank);
    }
    void apply(CViewToken token);

private:
    std::vector<COperand> stack_;
};

void COperands::apply(CViewToken token) {
    switch (token) {
        case CViewToken::Divide:
            infix(" / ", 1, 2);
            break;
        case CViewToken::SafeDivide:
            call("divide", 3);
            break;
        case CViewToken::Halve:
            push(pop().atLeast(1) + " / 2", 1);
            break;
        case CViewToken::Floor:
            call("floor", 1);
            break;
        case CViewToken::Max:
            call("max", 2);
            break;
        case CViewToken::MaxOf: {
            const auto count = static_cast<int32_t>(std::lround(std::atof(pop().text.c_str())));
            call("max", count);
            break;
        }
        case CViewToken::Subtract:
            infix(" - ", 0, 1);
            break;
        case CViewToken::Multiply:
            infix(" * ", 1, 1);
            break;
        case CViewToken::Add:
            infix(" + ", 0, 0);
            break;
        case CViewToken::Round:
            call("round", 1);
            break;
        case CViewToken::Constant:
        case CViewToken::Cell:
            break;
    }
}

}  // namespace

const char* CFormulaText::nameOf(CViewCell cell) {
    return kCellNames[static_cast<int32_t>(cell)];
}

CFormulaText::CFormulaText(const CView& root) : net_(root.area().net()) {
    enter(root, "");
}

void CFormulaText::enter(const CView& view, const std::string& path) {
    const CViewArea& area = view.area();
    paths_[&view] = path;
    for (int32_t i = 0; i < (area.isScrollable() ? kScrollableViewCells : kViewCells); ++i) {
        names_[area.cell(static_cast<CViewCell>(i))] = {path, kCellNames[i]};
    }
    CViewRowList& rows = const_cast<CViewArea&>(area).rows();
    for (int32_t i = 0; i < rows.count(); ++i) {
        const std::string row = "row" + std::to_string(i + 1);
        names_[rows.row(i).length] = {path, row + "-length"};
        names_[rows.row(i).thickness] = {path, row + "-thickness"};
    }
    for (const CObject* child : view.children()) {
        const auto* below = dynamic_cast<const CView*>(child);
        if (below && below->parentView() == &view) {
            enter(*below, path.empty() ? child->name().toUtf8() : path + "." + child->name().toUtf8());
        }
    }
}

std::string CFormulaText::cellName(CViewCellId cell, const std::string& ownPath) const {
    const auto found = names_.find(cell);
    if (found == names_.end()) {
        return "?" + std::to_string(cell);
    }
    const CName& name = found->second;
    if (name.path == ownPath) {
        return name.cell;
    }
    return (name.path.empty() ? "root" : name.path) + ":" + name.cell;
}

std::string CFormulaText::textOf(CViewCellId cell, const CView& own) const {
    return net_.hasFormula(cell) ? formulaText(cell, paths_.at(&own), 0) : "";
}

std::string CFormulaText::formulaText(CViewCellId cell, const std::string& ownPath, int32_t depth) const {
    const auto& tokens = net_.tokens(cell);
    COperands operands;
    for (int32_t i = 0; i < tokens.count(); ++i) {
        const auto token = static_cast<CViewToken>(tokens[i]);
        if (token == CViewToken::Constant && i + 1 < tokens.count()) {
            operands.push(number(net_.constant(tokens[++i])));
        } else if (token == CViewToken::Cell && i + 1 < tokens.count()) {
            const CViewCellId named = tokens[++i];
            // One between many cells and one belongs to the formula.
            const bool isBetween = names_.find(named) == names_.end() && net_.hasFormula(named) && depth < kMaxDepth;
            operands.push(isBetween ? formulaText(named, ownPath, depth + 1) : cellName(named, ownPath),
                          isBetween ? 0 : 2);
        } else {
            operands.apply(token);
        }
    }
    return operands.pop().text;
}

}  // namespace tarv
