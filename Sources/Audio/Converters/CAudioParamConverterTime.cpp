#include "Audio/Converters/CAudioParamConverterTime.h"

#include <cmath>

#include "Audio/Converters/ConverterMaths.h"

namespace tarv {

CError* CAudioParamConverterTime::init() {
    TARV_TRY(CAudioParamConverter::init());
    isLog_ = getAttrBool("is-log");
    scale_ = getAttrRealOr("scale", scale_);
    isExact_ = getAttrBool("is-exact");
    isPrecise_ = getAttrBool("is-precise");
    return nullptr;
}

double CAudioParamConverterTime::textToLimit(const CAudioParamInfo&, int32_t, const CString& text, bool* ok) const {
    return shownToValue(parseDecimal(text, 0.0, ok));
}

CString CAudioParamConverterTime::shortText(double value) const {
    const double units = valueToShown(value);
    const double size = std::round(std::fabs(units));
    if (size < 100.0) {
        return CString::fromDouble(units, size < 10.0 ? 1 : 0);
    }
    // The asterisk marks seconds in a narrow read-out.
    return CString::fromDouble(value * 0.001 / scale_, 1) + "*";
}

CString CAudioParamConverterTime::fullText(double value) const {
    const double units = valueToShown(value);
    const double size = std::round(std::fabs(units));
    const int32_t least = isPrecise_ ? 1 : 0;
    if (isExact_ || size < 10.0) {
        return CString::fromDouble(units, least + 2);
    }
    return CString::fromDouble(units, size >= 100.0 ? least : least + 1);
}

void CAudioParamConverterTime::valueToText(CString& result, const CAudioParamInfo&, int32_t,
                                           const CAudioParamShown& value, CAudioTextMode mode) const {
    result = mode == CAudioTextMode::Short ? shortText(value.number) : fullText(value.number);
}

double CAudioParamConverterTime::normToValue(const CAudioParamInfo& info, int32_t index, double norm) const {
    if (isLog_) {
        return logNormToValue(info, index, norm);
    }
    return isExact_ ? CAudioParamConverter::normToValue(info, index, norm) : squareNormToValue(info, index, norm);
}

double CAudioParamConverterTime::valueToNorm(const CAudioParamInfo& info, int32_t index, double value) const {
    if (isLog_) {
        return logValueToNorm(info, index, value);
    }
    return isExact_ ? CAudioParamConverter::valueToNorm(info, index, value) : squareValueToNorm(info, index, value);
}

double CAudioParamConverterTime::valueToShown(double value) const {
    return value / scale_;
}

double CAudioParamConverterTime::shownToValue(double shown) const {
    return shown * scale_;
}

}  // namespace tarv
