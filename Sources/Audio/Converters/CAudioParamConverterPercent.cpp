#include "Audio/Converters/CAudioParamConverterPercent.h"

#include "Audio/Converters/ConverterMaths.h"

namespace tarv {

double CAudioParamConverterPercent::textToLimit(const CAudioParamInfo&, int32_t, const CString& text, bool* ok) const {
    return parseDecimal(text, 0.0, ok) * 0.01;
}

void CAudioParamConverterPercent::valueToText(CString& result, const CAudioParamInfo&, int32_t,
                                              const CAudioParamShown& value, CAudioTextMode mode) const {
    result = CString::fromDouble(value.number * 100.0, mode == CAudioTextMode::Short ? 0 : 1);
}

}  // namespace tarv
