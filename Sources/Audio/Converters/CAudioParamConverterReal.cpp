#include "Audio/Converters/CAudioParamConverterReal.h"

#include "Audio/Converters/ConverterMaths.h"

namespace tarv {

CError* CAudioParamConverterReal::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CAudioParamConverterReal::attrDecimals>("decimals");
    return nullptr;
}

CError* CAudioParamConverterReal::attrDecimals() {
    const int32_t decimals = getAttrInt("decimals");
    if (decimals < 0 || decimals > kMaxDecimals) {
        TARV_FAIL("@tarvstr_CAudioParamConverterReal_attrDecimals Invalid decimals %1 specified.",
                  getAttrString("decimals"));
    }
    decimals_ = decimals;
    return nullptr;
}

double CAudioParamConverterReal::textToLimit(const CAudioParamInfo&, int32_t, const CString& text, bool* ok) const {
    return parseDecimal(text, 0.0, ok);
}

void CAudioParamConverterReal::valueToText(CString& result, const CAudioParamInfo&, int32_t,
                                           const CAudioParamShown& value, CAudioTextMode mode) const {
    result = CString::fromDouble(value.number, mode == CAudioTextMode::Short ? 0 : decimals_);
}

}  // namespace tarv
