#include "Audio/Parameters/CAudioParamConverter.h"

#include "Audio/Parameters/CAudioParamInfo.h"

namespace tarv {

namespace {

constexpr uint16_t kNoBreakBlank = 0xa0;

bool isBlank(uint16_t character) {
    return character == ' ' || character == '\t' || character == kNoBreakBlank;
}

uint16_t lowerOf(uint16_t character) {
    return character >= 'A' && character <= 'Z' ? static_cast<uint16_t>(character - 'A' + 'a') : character;
}

CString trimmed(const CString& text) {
    int32_t first = 0;
    int32_t end = text.length();
    while (first < end && isBlank(text.at(first))) {
        ++first;
    }
    while (end > first && isBlank(text.at(end - 1))) {
        --end;
    }
    return text.substring(first, end - first);
}

}  // namespace

CError* CAudioParamConverter::init() {
    TARV_TRY(CObject::init());
    label_ = getAttrString("label");
    return nullptr;
}

double CAudioParamConverter::textToValue(const CAudioParamInfo& info, int32_t index, const CString& text,
                                         bool* ok) const {
    bool isOk = false;
    const double value = textToLimit(info, index, text, &isOk);
    if (ok) {
        *ok = isOk;
    }
    return isOk ? info.clamp(index, value) : failedValue(info, index);
}

bool CAudioParamConverter::isSameName(const CString& one, const CString& other) {
    bool isSame = one.length() == other.length();
    for (int32_t i = 0; isSame && i < one.length(); ++i) {
        isSame = lowerOf(one.at(i)) == lowerOf(other.at(i));
    }
    return isSame;
}

CString CAudioParamConverter::typedNumber(const CString& text, const CString& unit) {
    CString number = trimmed(text);
    const int32_t unitStart = number.length() - unit.length();
    if (!unit.isEmpty() && unitStart >= 0 && isSameName(number.substring(unitStart), unit)) {
        number = trimmed(number.substring(0, unitStart));
    }
    // "1 kHz" is left with its factor behind a blank.
    const int32_t last = number.length() - 1;
    if (last > 0 && isBlank(number.at(last - 1)) && (number.at(last) < '0' || number.at(last) > '9')) {
        number = trimmed(number.substring(0, last)) + number.substring(last);
    }
    if (!number.isEmpty() && number.at(0) == '+') {
        number = trimmed(number.substring(1));
        // A second sign is none.
        return !number.isEmpty() && number.at(0) == '-' ? CString("+") + number : number;
    }
    return number;
}

bool CAudioParamConverter::typedToValue(const CAudioParamInfo& info, int32_t index, const CString& text,
                                        double& value) const {
    if (findState(info, index, trimmed(text), value)) {
        return true;
    }
    const CString number = typedNumber(text, label_);
    bool isOk = false;
    const double read = textToValue(info, index, number, &isOk);
    if (!isOk || number.isEmpty()) {
        return false;
    }
    value = read;
    return true;
}

bool CAudioParamConverter::findState(const CAudioParamInfo&, int32_t, const CString&, double&) const {
    return false;
}

double CAudioParamConverter::failedValue(const CAudioParamInfo& info, int32_t index) const {
    return info.minimum(index);
}

double CAudioParamConverter::normToValue(const CAudioParamInfo& info, int32_t index, double norm) const {
    return info.minimum(index) + norm * (info.maximum(index) - info.minimum(index));
}

double CAudioParamConverter::valueToNorm(const CAudioParamInfo& info, int32_t index, double value) const {
    return (value - info.minimum(index)) / (info.maximum(index) - info.minimum(index));
}

}  // namespace tarv
