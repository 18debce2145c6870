#pragma once

#include "Audio/Parameters/CAudioParamConverter.h"

namespace tarv {

/// The id of a text in the store of the parameter that is shown (`audio:cvt-text`). Typed texts never pass through it.
class CAudioParamConverterText : public CAudioParamConverter {
public:
    double textToValue(const CAudioParamInfo& info, int32_t index, const CString& text, bool* ok) const override;
    double textToLimit(const CAudioParamInfo& info, int32_t index, const CString& text, bool* ok) const override;
    void valueToText(CString& result, const CAudioParamInfo& info, int32_t index, const CAudioParamShown& value,
                     CAudioTextMode mode) const override;
};

}  // namespace tarv
