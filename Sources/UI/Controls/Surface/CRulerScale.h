#pragma once

#include "Core/CArray.h"
#include "Core/CString.h"

namespace tarv {

/// Where a ruler has its ticks: multiples of two steps within a range.
class CRulerScale {
public:
    /// The multiples of `step` in low..high, ascending; none for a step that is not above 0, and at most kMost.
    static void multiples(double low, double high, double step, CArray<double, 16>& values);
    static constexpr int32_t kMost = 1000;
    /// Whether a value is a multiple of `step`.
    static bool isMultiple(double value, double step);
    /// A value in a format of one number, as CNumberFormat. A format that is none counts as "%.0f".
    static CString text(const CString& format, double value);
    /// The same number in thousands, such as "12.5K"; a text that is no number of 1000 or more stays as it is.
    static CString shortText(const CString& text);
};

}  // namespace tarv
