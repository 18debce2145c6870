#include "Audio/Converters/CAudioParamConverterBW.h"

#include "Audio/Converters/ConverterMaths.h"

namespace tarv {

namespace {

constexpr double kFailedOctaves = 0.001;
constexpr int32_t kDecimals = 2;

}  // namespace

double CAudioParamConverterBW::textToLimit(const CAudioParamInfo&, int32_t, const CString& text, bool* ok) const {
    return parseDecimal(text, kFailedOctaves, ok);
}

void CAudioParamConverterBW::valueToText(CString& result, const CAudioParamInfo&, int32_t,
                                         const CAudioParamShown& value, CAudioTextMode) const {
    result = CString::fromDouble(value.number, kDecimals);
}

double CAudioParamConverterBW::normToValue(const CAudioParamInfo& info, int32_t index, double norm) const {
    return squareNormToValue(info, index, norm);
}

double CAudioParamConverterBW::valueToNorm(const CAudioParamInfo& info, int32_t index, double value) const {
    return squareValueToNorm(info, index, value);
}

}  // namespace tarv
