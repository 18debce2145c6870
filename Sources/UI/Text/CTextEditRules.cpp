#include "UI/Text/CTextEditRules.h"

namespace tarv {

namespace {

constexpr uint16_t kNextLine = 0x85;
constexpr uint16_t kTrueMinus = 0x2212;
constexpr uint16_t kByteOrderMark = 0xFEFF;
constexpr uint16_t kFirstSpecial = 0xFFF0;  ///< no characters of a text from here on

bool isFigure(uint16_t unit) {
    return unit >= '0' && unit <= '9';
}

bool isLetter(uint16_t unit) {
    return (unit >= 'A' && unit <= 'Z') || (unit >= 'a' && unit <= 'z') || unit >= 0xC0;
}

bool isLineBreak(uint16_t unit) {
    return unit == '\n' || unit == '\r' || unit == kNextLine || unit == 0x2028 || unit == 0x2029;
}

/// Neither control characters, nor halves of characters beyond 16 bits, nor what Unicode keeps for other ends.
bool isText(uint16_t unit) {
    const bool isControl = unit < 32 || (unit >= 127 && unit < 160);
    const bool isHalf = unit >= 0xD800 && unit <= 0xDFFF;
    return !isControl && !isHalf && unit != kByteOrderMark && unit < kFirstSpecial;
}

}  // namespace

bool CTextEditRules::isNumber() const {
    int32_t figures = 0;
    int32_t letters = 0;
    for (int32_t i = 0; i < acceptChars.length(); ++i) {
        figures += isFigure(acceptChars.at(i)) ? 1 : 0;
        letters += isLetter(acceptChars.at(i)) ? 1 : 0;
    }
    return figures == 10 && letters < figures && acceptChars.indexOf('.') >= 0;
}

uint16_t CTextEditRules::converted(uint16_t unit, bool isOfNumber) const {
    if (unit == '\t' && !isAcceptTab) {
        return ' ';
    }
    if (isOfNumber && unit == ',') {
        return '.';
    }
    return isOfNumber && unit == kTrueMinus ? '-' : unit;
}

bool CTextEditRules::takes(uint16_t unit) const {
    return (unit == '\t' && isAcceptTab) || (isText(unit) && (acceptChars.isEmpty() || acceptChars.indexOf(unit) >= 0));
}

CString CTextEditRules::filter(const CString& text) const {
    const bool isOfNumber = isNumber();
    CString result;
    result.widen();
    for (int32_t i = 0; i < text.length(); ++i) {
        if (!isLineBreak(text.at(i))) {
            const uint16_t unit = converted(text.at(i), isOfNumber);
            if (takes(unit)) {
                result.appendChar(unit);
            }
            continue;
        }
        if (text.at(i) == '\r' && i + 1 < text.length() && text.at(i + 1) == '\n') {
            ++i;
        }
        if (isAcceptEnter) {
            result.appendChar('\n');
        } else if (!result.isEmpty()) {
            break;
        }
    }
    return result;
}

}  // namespace tarv
