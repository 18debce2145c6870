#include "Audio/Converters/CAudioParamConverterRatio.h"

#include <cmath>

#include "Audio/Converters/ConverterMaths.h"
#include "Audio/Parameters/CAudioParamInfo.h"

namespace tarv {

namespace {

constexpr double kFailedRatio = 0.5;
/// The ratio that replaces 1, and the distance from 1 within which it does.
constexpr double kNearlyOne = 0.999;
constexpr double kNearness = 0.001;

bool parseRatio(const CString& text, double& ratio) {
    const CArray<CString, 4> parts = text.split(':');
    if (parts.isEmpty() || parts.count() > 2) {
        return false;
    }
    bool isAOk = false;
    bool isBOk = true;
    const double a = CString::toDouble(parts[0], &isAOk);
    const double b = parts.count() == 2 ? CString::toDouble(parts[1], &isBOk) : 1.0;
    if (!isAOk || !isBOk || a == 0.0) {
        return false;
    }
    ratio = b / a;
    if (std::fabs(ratio - 1.0) < kNearness) {
        ratio = kNearlyOne;
    }
    return true;
}

}  // namespace

CError* CAudioParamConverterRatio::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CAudioParamConverterRatio::attrDecimals>("decimals");
    return nullptr;
}

CError* CAudioParamConverterRatio::attrDecimals() {
    const int32_t decimals = getAttrInt("decimals");
    if (decimals < 1 || decimals > kMaxDecimals) {
        TARV_FAIL("@tarvstr_CAudioParamConverterRatio_attrDecimals Invalid decimals %1 specified.",
                  getAttrString("decimals"));
    }
    decimals_ = decimals;
    return nullptr;
}

double CAudioParamConverterRatio::textToLimit(const CAudioParamInfo&, int32_t, const CString& text, bool* ok) const {
    double ratio = kFailedRatio;
    const bool isOk = parseRatio(text, ratio);
    if (ok) {
        *ok = isOk;
    }
    return ratio;
}

void CAudioParamConverterRatio::valueToText(CString& result, const CAudioParamInfo&, int32_t,
                                            const CAudioParamShown& value, CAudioTextMode mode) const {
    const int32_t decimals = mode == CAudioTextMode::Short ? 1 : decimals_;
    const double inverse = 1.0 / value.number;
    const double thousandths = std::round(1000.0 * inverse);
    if (thousandths > 1000.0) {
        result = CString::fromDouble(inverse, thousandths >= 10000.0 ? decimals - 1 : decimals) + ":1";
        return;
    }
    const double tenths = std::round(10.0 * value.number);
    result = CString("1:") + CString::fromDouble(value.number, tenths >= 100.0 ? decimals - 1 : decimals);
}

double CAudioParamConverterRatio::normToValue(const CAudioParamInfo& info, int32_t index, double norm) const {
    const double start = std::atan(info.minimum(index));
    return std::tan(start + norm * (std::atan(info.maximum(index)) - start));
}

double CAudioParamConverterRatio::valueToNorm(const CAudioParamInfo& info, int32_t index, double value) const {
    const double start = std::atan(info.minimum(index));
    return (std::atan(value) - start) / (std::atan(info.maximum(index)) - start);
}

}  // namespace tarv
