#include "Audio/Converters/CAudioParamConverterFreq.h"

#include <cmath>

#include "Audio/Converters/ConverterMaths.h"

namespace tarv {

namespace {

CString shortText(double hertz) {
    const double tenths = std::round(10.0 * hertz);
    if (tenths < 10000.0) {
        return CString::fromDouble(hertz, 0);
    }
    return CString::fromDouble(hertz / 1000.0, tenths >= 100000.0 ? 0 : 1) + "k";
}

CString fullText(double hertz) {
    if (std::round(10.0 * hertz) < 1000.0) {
        return CString::fromDouble(hertz, 1);
    }
    if (std::round(hertz) < 1000.0) {
        return CString::fromDouble(hertz, 0);
    }
    return CString::fromDouble(hertz / 1000.0, std::round(hertz / 10.0) >= 1000.0 ? 1 : 2) + "k";
}

}  // namespace

double CAudioParamConverterFreq::textToLimit(const CAudioParamInfo&, int32_t, const CString& text, bool* ok) const {
    const int32_t last = text.length() - 1;
    if (last >= 0 && (text.at(last) == 'k' || text.at(last) == 'K')) {
        return parseDecimal(text.substring(0, last), 0.0, ok) * 1000.0;
    }
    return parseDecimal(text, 0.0, ok);
}

void CAudioParamConverterFreq::valueToText(CString& result, const CAudioParamInfo&, int32_t,
                                           const CAudioParamShown& value, CAudioTextMode mode) const {
    result = mode == CAudioTextMode::Short ? shortText(value.number) : fullText(value.number);
}

double CAudioParamConverterFreq::normToValue(const CAudioParamInfo& info, int32_t index, double norm) const {
    return logNormToValue(info, index, norm);
}

double CAudioParamConverterFreq::valueToNorm(const CAudioParamInfo& info, int32_t index, double value) const {
    return logValueToNorm(info, index, value);
}

}  // namespace tarv
