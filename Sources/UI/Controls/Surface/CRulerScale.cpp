#include "UI/Controls/Surface/CRulerScale.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace tarv {

namespace {

// Of a step: what rounding takes from a multiple.
constexpr double kTolerance = 1e-6;

/// One conversion of a double, with flags, width and precision, and any text around it.
bool isFormat(const char* text) {
    int conversions = 0;
    for (const char* c = text; *c; ++c) {
        if (*c != '%') {
            continue;
        }
        if (c[1] == '%') {
            ++c;
            continue;
        }
        c += 1 + std::strspn(c + 1, "+-# 0");
        for (int digits = 0; *c >= '0' && *c <= '9'; ++c) {
            if (++digits > 2) {
                return false;
            }
        }
        if (*c == '.') {
            const size_t digits = std::strspn(++c, "0123456789");
            if (digits > 2) {
                return false;
            }
            c += digits;
        }
        if (!*c || !std::strchr("aAeEfFgG", *c)) {
            return false;
        }
        ++conversions;
    }
    return conversions == 1;
}

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
    const std::string given = format.toUtf8();
    char text[400];
    snprintf(text, sizeof text, isFormat(given.c_str()) ? given.c_str() : "%.0f", value);
    // What rounds to nothing, too, such as -0.04 in "%.1f".
    const bool isZero = std::strpbrk(text, "123456789") == nullptr;
    if (isZero) {
        snprintf(text, sizeof text, isFormat(given.c_str()) ? given.c_str() : "%.0f", 0.0);
    }
    return CString(text);
}

CString CRulerScale::shortText(const CString& text) {
    bool isNumber = false;
    const double value = CString::toDouble(text, &isNumber);
    if (!isNumber || !(std::fabs(value) >= 1000.0) || std::fabs(value) >= 1e9) {
        return text;
    }
    char number[64];
    snprintf(number, sizeof number, "%.3gK", value / 1000.0);
    return CString(number);
}

}  // namespace tarv
