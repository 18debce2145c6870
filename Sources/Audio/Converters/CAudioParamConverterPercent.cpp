#include "Audio/Converters/CAudioParamConverterPercent.h"

#include "Audio/Converters/ConverterMaths.h"

namespace tarv {

double CAudioParamConverterPercent::textToLimit(const CAudioParamInfo&, int32_t, const CString& text, bool* ok) const {
    return shownToValue(parseDecimal(text, 0.0, ok));
}

void CAudioParamConverterPercent::valueToText(CString& result, const CAudioParamInfo&, int32_t,
                                              const CAudioParamShown& value, CAudioTextMode mode) const {
    result = CString::fromDouble(valueToShown(value.number), mode == CAudioTextMode::Short ? 0 : 1);
}

double CAudioParamConverterPercent::valueToShown(double value) const {
    return value * 100.0;
}

double CAudioParamConverterPercent::shownToValue(double shown) const {
    return shown * 0.01;
}

}  // namespace tarv
