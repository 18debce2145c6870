#include "UI/Controls/Lists/CNumberFormat.h"

#include <algorithm>
#include <cmath>

namespace tarv {

namespace {

constexpr int32_t kMaxDecimals = 15;
constexpr int32_t kMaxWidth = 32;
constexpr int32_t kDefaultDecimals = 6;

/// A number's place in a format.
struct CPlace {
    bool hasPlus = false;
    bool hasZeros = false;
    int32_t width = 0;
    int32_t decimals = kDefaultDecimals;
    char kind = 0;
};

bool isDigit(uint16_t unit) {
    return unit >= '0' && unit <= '9';
}

int32_t readNumber(const CString& format, int32_t& at, int32_t limit) {
    int32_t number = 0;
    for (; at < format.length() && isDigit(format.at(at)); ++at) {
        number = std::min(number * 10 + format.at(at) - '0', limit);
    }
    return number;
}

/// Reads the place whose "%" is before `at`; false where there is none.
bool readPlace(const CString& format, int32_t& at, CPlace& place) {
    for (; at < format.length() && (format.at(at) == '+' || format.at(at) == '0'); ++at) {
        (format.at(at) == '+' ? place.hasPlus : place.hasZeros) = true;
    }
    place.width = readNumber(format, at, kMaxWidth);
    if (at < format.length() && format.at(at) == '.') {
        ++at;
        place.decimals = readNumber(format, at, kMaxDecimals);
    }
    const uint16_t kind = at < format.length() ? format.at(at) : uint16_t{0};
    if (kind != 'f' && kind != 'g' && kind != 'd' && kind != 'i' && kind != 'u') {
        return false;
    }
    place.kind = static_cast<char>(kind);
    ++at;
    return true;
}

CString numberAt(const CPlace& place, double value) {
    const bool isWhole = place.kind != 'f' && place.kind != 'g';
    CString digits = CString::fromDouble(std::fabs(value), isWhole ? 0 : place.decimals);
    if (place.kind == 'g' && digits.indexOf('.') >= 0) {
        while (digits.endsWith("0")) {
            digits = digits.substring(0, digits.length() - 1);
        }
        digits = digits.endsWith(".") ? digits.substring(0, digits.length() - 1) : digits;
    }
    // No sign on a zero.
    const bool isZero = CString::toDouble(digits) == 0.0;
    CString sign(isZero ? "" : value < 0.0 ? "-" : place.hasPlus ? "+" : "");
    CString padding;
    for (int32_t i = sign.length() + digits.length(); i < place.width; ++i) {
        padding.appendChar(place.hasZeros ? '0' : ' ');
    }
    return place.hasZeros ? sign + padding + digits : padding + sign + digits;
}

}  // namespace

bool CNumberFormat::isOfOneNumber(const CString& format) {
    int32_t numbers = 0;
    for (int32_t i = 0; i < format.length();) {
        if (format.at(i) != '%') {
            ++i;
            continue;
        }
        CPlace place;
        int32_t behind = i + 1;
        if (behind < format.length() && format.at(behind) == '%') {
            ++behind;
        } else if (readPlace(format, behind, place)) {
            ++numbers;
        } else {
            return false;
        }
        i = behind;
    }
    return numbers == 1;
}

CString CNumberFormat::text(const CString& format, double value) {
    CString text;
    bool isNumberDone = false;
    for (int32_t i = 0; i < format.length();) {
        const bool isPercent = format.at(i) == '%';
        int32_t behind = i + 1;
        CPlace place;
        if (isPercent && behind < format.length() && format.at(behind) == '%') {
            text += "%";
            i = behind + 1;
        } else if (isPercent && !isNumberDone && readPlace(format, behind, place)) {
            text += numberAt(place, value);
            isNumberDone = true;
            i = behind;
        } else {
            text += format.substring(i, 1);
            ++i;
        }
    }
    return text;
}

}  // namespace tarv
