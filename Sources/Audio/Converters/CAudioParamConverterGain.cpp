#include "Audio/Converters/CAudioParamConverterGain.h"

#include <cmath>
#include <limits>

#include "Audio/Converters/ConverterMaths.h"
#include "Platform/Exponential.h"

namespace tarv {

CError* CAudioParamConverterGain::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CAudioParamConverterGain::attrDecimals>("decimals");
    descriptor.addHandler<&CAudioParamConverterGain::attrZeroPoint>("zero-point");
    descriptor.addHandler<&CAudioParamConverterGain::attrOffPoint>("off-point");
    return nullptr;
}

CError* CAudioParamConverterGain::attrDecimals() {
    const int32_t decimals = getAttrInt("decimals");
    if (decimals < 0 || decimals > kMaxDecimals) {
        TARV_FAIL("@tarvstr_CAudioParamConverterGain_attrDecimals Invalid decimals %1 specified.",
                  getAttrString("decimals"));
    }
    decimals_ = decimals;
    return nullptr;
}

CError* CAudioParamConverterGain::attrZeroPoint() {
    const double zeroPoint = getAttrReal("zero-point");
    if (!(zeroPoint >= 0.0 && zeroPoint <= 1.0)) {
        TARV_FAIL("@tarvstr_CAudioParamConverterGain_attrZeroPoint Invalid zero point %1 specified.",
                  getAttrString("zero-point"));
    }
    zeroPoint_ = zeroPoint;
    return nullptr;
}

CError* CAudioParamConverterGain::attrOffPoint() {
    const double hundredths = std::round(getAttrReal("off-point") * 100.0);
    if (!(hundredths <= 100.0)) {
        TARV_FAIL("@tarvstr_CAudioParamConverterGain_attrOffPoint Invalid off-point %1 specified.",
                  getAttrString("off-point"));
    }
    offPoint_ = static_cast<int32_t>(std::fmax(hundredths, std::numeric_limits<int32_t>::min()));
    return nullptr;
}

double CAudioParamConverterGain::textToLimit(const CAudioParamInfo&, int32_t, const CString& text, bool* ok) const {
    return shownToValue(parseDecimal(text, 0.0, ok));
}

void CAudioParamConverterGain::valueToText(CString& result, const CAudioParamInfo&, int32_t,
                                           const CAudioParamShown& value, CAudioTextMode mode) const {
    result = CString::fromDouble(valueToShown(value.number), mode == CAudioTextMode::Short ? 0 : decimals_);
}

double CAudioParamConverterGain::normToValue(const CAudioParamInfo& info, int32_t index, double norm) const {
    return logNormToValue(info, index, norm);
}

double CAudioParamConverterGain::valueToNorm(const CAudioParamInfo& info, int32_t index, double value) const {
    return logValueToNorm(info, index, value);
}

double CAudioParamConverterGain::valueToShown(double value) const {
    return std::log(value) * kDecibelsPerNeper;
}

double CAudioParamConverterGain::shownToValue(double shown) const {
    return exponential(shown / kDecibelsPerNeper);
}

}  // namespace tarv
