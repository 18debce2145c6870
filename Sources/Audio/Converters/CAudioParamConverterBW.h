#pragma once

#include "Audio/Parameters/CAudioParamConverter.h"

namespace tarv {

/// Bandwidth in octaves, two decimals; square map (`audio:cvt-bw`).
class CAudioParamConverterBW : public CAudioParamConverter {
public:
    double textToLimit(const CAudioParamInfo& info, int32_t index, const CString& text, bool* ok) const override;
    void valueToText(CString& result, const CAudioParamInfo& info, int32_t index, const CAudioParamShown& value,
                     CAudioTextMode mode) const override;
    double normToValue(const CAudioParamInfo& info, int32_t index, double norm) const override;
    double valueToNorm(const CAudioParamInfo& info, int32_t index, double value) const override;
};

}  // namespace tarv
