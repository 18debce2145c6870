#pragma once

#include <cstdio>

#include "CFormulaText.h"

namespace tarv {

/// Prints the views of a window: one line each, in the order of the tree. Name, tag, box, what of it is seen where that
/// is less, stacking number, states, and what else makes a view draw differently.
class CViewPrinter {
public:
    explicit CViewPrinter(FILE* out) : out_(out) {}
    /// With `hasFormulas` the formulas of each view's cells stand below it.
    void print(const CView& root, bool hasFormulas);
    /// The line of one view, without its indent.
    static std::string lineOf(const CView& view);

private:
    void printView(const CView& view, const CFormulaText* formulas, int32_t depth);
    void printFormulas(const CView& view, const CFormulaText& formulas, int32_t depth);

    FILE* out_;
};

}  // namespace tarv
