#pragma once

#include "Core/CString.h"

namespace tarv {

/// Numbers as texts by a format of C's printf, as definitions give it.
class CNumberFormat {
public:
    /// `%` with the flags `+` and `0`, a width, a precision up to 15 and one of `f`, `g`, `d`, `i`, `u` is the value;
    /// `d`, `i` and `u` round it, `g` has no zeros at the end. `%%` is a percent sign. Text around it stays. A format
    /// without a number gives its text.
    static CString text(const CString& format, double value);
    /// Whether a format has one number and no other "%" than of `%%`.
    static bool isOfOneNumber(const CString& format);
};

}  // namespace tarv
