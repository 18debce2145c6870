#include "Audio/Converters/CAudioParamConverterText.h"

#include <cmath>

#include "Audio/Parameters/CAudioParamData.h"

namespace tarv {

double CAudioParamConverterText::textToValue(const CAudioParamInfo& info, int32_t index, const CString& text,
                                             bool* ok) const {
    return textToLimit(info, index, text, ok);
}

double CAudioParamConverterText::textToLimit(const CAudioParamInfo&, int32_t, const CString&, bool* ok) const {
    if (ok) {
        *ok = true;
    }
    return 0.0;
}

void CAudioParamConverterText::valueToText(CString& result, const CAudioParamInfo&, int32_t,
                                           const CAudioParamShown& value, CAudioTextMode) const {
    const CString* text = value.data ? value.data->getString(static_cast<int32_t>(std::round(value.number))) : nullptr;
    result = text ? *text : CString();
}

}  // namespace tarv
