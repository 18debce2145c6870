#include "Audio/Parameters/CAudioParamConverter.h"

#include "Audio/Parameters/CAudioParamInfo.h"

namespace tarv {

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
