#pragma once

#include "Core/CArray.h"

namespace tarv {

class CRuler;

/// Lines that a ruler puts across the view that it rules, by the values at which they stand.
struct CSurfaceLines {
    CArray<double, 16> values;
    bool isVertical = false;  ///< upright lines, of a ruler above or below the view
};

/// Those of one ruler each.
struct CSurfaceLineSet {
    const CRuler* ruler = nullptr;
    CSurfaceLines lines;
};
using CSurfaceLineSets = CArray<CSurfaceLineSet, 2>;

}  // namespace tarv
