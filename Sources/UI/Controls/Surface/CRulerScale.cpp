#include "UI/Controls/Surface/CRulerScale.h"

#include <cmath>

#include "UI/Controls/Lists/CNumberFormat.h"

namespace tarv {

namespace {

// Of a step: what rounding takes from a multiple.
constexpr double kTolerance = 1e-6;

}  // namespace

void CRulerScale::multiples(double low, double high, double step, CArray<double, 16>& values) {
    values.clear();
    if (!(step > 0.0) || !(low <= high)) {
        return;
    }
    const double first = std::ceil(low / step - kTolerance);
    const double last = std::floor(high / step + kTolerance);
    if (!(last - first < kMost)) {
        return;
    }
    for (double i = first; i <= last; i += 1.0) {
        values.append(i * step + 0.0);
    }
}

bool CRulerScale::isMultiple(double value, double step) {
    return step > 0.0 && std::fabs(value / step - std::round(value / step)) < kTolerance;
}

CString CRulerScale::text(const CString& format, double value) {
    return CNumberFormat::text(CNumberFormat::isOfOneNumber(format) ? format : CString("%.0f"), value);
}

CString CRulerScale::shortText(const CString& text) {
    bool isNumber = false;
    const double value = CString::toDouble(text, &isNumber);
    if (!isNumber || !(std::fabs(value) >= 1000.0) || std::fabs(value) >= 1e9) {
        return text;
    }
    // Three digits say enough.
    const double thousands = value / 1000.0;
    const bool isOneDigit = std::fabs(thousands) < 10.0;
    return CNumberFormat::text(isOneDigit ? "%.2gK" : std::fabs(thousands) < 100.0 ? "%.1gK" : "%.0gK", thousands);
}

}  // namespace tarv
