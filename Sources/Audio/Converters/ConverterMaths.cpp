#include "Audio/Converters/ConverterMaths.h"

#include <cmath>

#include "Audio/Parameters/CAudioParamInfo.h"
#include "Platform/Exponential.h"

namespace tarv {

double logNormToValue(const CAudioParamInfo& info, int32_t index, double norm) {
    if (index == 0) {
        return exponential(info.logMinimum() + norm * info.logRatio());
    }
    const double minimum = info.minimum(index);
    return exponential(std::log(minimum) + norm * std::log(info.maximum(index) / minimum));
}

double logValueToNorm(const CAudioParamInfo& info, int32_t index, double value) {
    const double minimum = info.minimum(index);
    return std::log(value / minimum) / std::log(info.maximum(index) / minimum);
}

double squareNormToValue(const CAudioParamInfo& info, int32_t index, double norm) {
    const double minimum = info.minimum(index);
    return minimum + norm * norm * (info.maximum(index) - minimum);
}

double squareValueToNorm(const CAudioParamInfo& info, int32_t index, double value) {
    const double minimum = info.minimum(index);
    return std::sqrt(std::fabs((value - minimum) / (info.maximum(index) - minimum)));
}

double parseDecimal(const CString& text, double failed, bool* ok) {
    bool isOk = false;
    const double value = CString::toDouble(text, &isOk);
    if (ok) {
        *ok = isOk;
    }
    return isOk ? value : failed;
}

}  // namespace tarv
