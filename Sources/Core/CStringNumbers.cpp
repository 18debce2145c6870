// Conversions between texts and numbers.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "Core/CString.h"

namespace tarv {

namespace {

constexpr uint64_t kPowersOfTen[] = {1,
                                     10,
                                     100,
                                     1000,
                                     10000,
                                     100000,
                                     1000000,
                                     10000000,
                                     100000000,
                                     1000000000,
                                     10000000000,
                                     100000000000,
                                     1000000000000,
                                     10000000000000,
                                     100000000000000,
                                     1000000000000000,
                                     10000000000000000,
                                     100000000000000000,
                                     1000000000000000000};
constexpr int32_t kMaxFractionDigits = 18;
constexpr int32_t kMaxDecimals = 15;
// From here on a double has no fraction that could be rounded.
constexpr double kExactIntegers = 9007199254740992.0;

constexpr uint16_t kNoDigit = 0xffff;

uint16_t digitOf(uint16_t unit) {
    if (unit >= '0' && unit <= '9') {
        return static_cast<uint16_t>(unit - '0');
    }
    if (unit >= 'A' && unit <= 'F') {
        return static_cast<uint16_t>(unit - 'A' + 10);
    }
    if (unit >= 'a' && unit <= 'f') {
        return static_cast<uint16_t>(unit - 'a' + 10);
    }
    return kNoDigit;
}

/// A text read unit by unit; 0 behind its end.
class CUnitReader {
public:
    explicit CUnitReader(const CString& text) : text_(text) {}
    uint16_t peek(int32_t ahead = 0) const { return pos_ + ahead < text_.length() ? text_.at(pos_ + ahead) : 0; }
    bool isAtEnd() const { return pos_ >= text_.length(); }
    void skip(int32_t count) { pos_ += count; }
    bool accept(uint16_t a, uint16_t b) {
        const bool isThere = !isAtEnd() && (peek() == a || peek() == b);
        pos_ += isThere;
        return isThere;
    }

private:
    const CString& text_;
    int32_t pos_ = 0;
};

template <class T>
T outcome(bool isGood, T value, bool* ok) {
    if (ok) {
        *ok = isGood;
    }
    return isGood ? value : T();
}

/// Base that a prefix announces; moves behind the prefix. A lone "0" is left to be read as a digit.
uint16_t acceptBase(CUnitReader& reader) {
    if (reader.accept('#', '$')) {
        return 16;
    }
    if (reader.peek() == '0' && (reader.peek(1) == 'x' || reader.peek(1) == 'X')) {
        reader.skip(2);
        return 16;
    }
    return reader.peek() == '0' ? 8 : 10;
}

}  // namespace

int32_t CString::toInt(const CString& text, bool* ok) {
    CUnitReader reader(text);
    const bool isNegative = reader.accept('-', '-');
    const uint16_t base = acceptBase(reader);
    if (reader.isAtEnd()) {
        return outcome(false, int32_t{0}, ok);
    }
    uint32_t value = 0;
    for (; !reader.isAtEnd(); reader.skip(1)) {
        const uint16_t digit = digitOf(reader.peek());
        if (digit >= base) {
            return outcome(false, int32_t{0}, ok);
        }
        value = value * base + digit;
    }
    return outcome(true, static_cast<int32_t>(isNegative ? 0u - value : value), ok);
}

double CString::toDouble(const CString& text, bool* ok) {
    constexpr uint64_t kLimit = std::numeric_limits<int64_t>::max();
    CUnitReader reader(text);
    const bool isNegative = reader.accept('-', '-');
    uint64_t whole = 0;
    for (; !reader.isAtEnd() && digitOf(reader.peek()) < 10; reader.skip(1)) {
        const uint64_t digit = digitOf(reader.peek());
        whole = whole > (kLimit - digit) / 10 ? kLimit : whole * 10 + digit;
    }
    uint64_t fraction = 0;
    int32_t fractionDigits = 0;
    if (reader.accept('.', ',')) {
        for (; !reader.isAtEnd() && digitOf(reader.peek()) < 10; reader.skip(1)) {
            if (fractionDigits < kMaxFractionDigits) {
                fraction = fraction * 10 + digitOf(reader.peek());
                ++fractionDigits;
            }
        }
    }
    // Both runs and the power are exact in the wide format: a text of 16 or more digits gives the double next to it.
    const auto value = static_cast<double>(static_cast<long double>(whole) +
                                           static_cast<long double>(fraction) / kPowersOfTen[fractionDigits]);
    return outcome(reader.isAtEnd(), isNegative ? -value : value, ok);
}

bool CString::toBool(const CString& text, bool* ok) {
    const bool isTrue = text == "1" || text == "true";
    return outcome(isTrue || text == "0" || text == "false", isTrue, ok);
}

CString CString::fromInt(int64_t value, int32_t width, int32_t radix) {
    char digits[65];
    const uint64_t magnitude = value < 0 ? 0u - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
    const char* end = std::to_chars(digits, digits + sizeof(digits), magnitude, radix).ptr;
    CString text(value < 0 ? "-" : "");
    for (auto missing = width - (end - digits); missing > 0; --missing) {
        text.appendChar('0');
    }
    for (const char* digit = digits; digit < end; ++digit) {
        text.appendChar(static_cast<uint16_t>(*digit >= 'a' ? *digit - 'a' + 'A' : *digit));
    }
    return text;
}

CString CString::fromDouble(double value, int32_t decimals) {
    decimals = std::clamp(decimals, 0, kMaxDecimals);
    const double scaled = std::round(value * static_cast<double>(kPowersOfTen[decimals]));
    if (!(std::fabs(scaled) < kExactIntegers)) {
        char digits[384];
        const auto result = std::to_chars(digits, digits + sizeof(digits), value, std::chars_format::fixed, decimals);
        return CString(digits, static_cast<int32_t>(result.ptr - digits));
    }
    const auto units = static_cast<int64_t>(scaled);
    const auto unit = static_cast<int64_t>(kPowersOfTen[decimals]);
    CString text(units < 0 ? "-" : "");
    text.append(fromInt(std::abs(units / unit)));
    if (decimals > 0) {
        text.appendChar('.');
        text.append(fromInt(std::abs(units % unit), decimals));
    }
    return text;
}

}  // namespace tarv
