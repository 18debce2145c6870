#pragma once

#include "Audio/Parameters/CAudioParamConverter.h"

namespace tarv {

/// The ratio b/a of a text "a:b" or "a"; its angle is linear (`audio:cvt-ratio`). A ratio within 0.001 of 1 becomes
/// 0.999, so that none is exactly 1. `decimals` 1 to 10.
class CAudioParamConverterRatio : public CAudioParamConverter {
public:
    static CError* initClass(CClassDescriptor& descriptor);
    /// Runs when `decimals` is set.
    [[nodiscard]] CError* attrDecimals();

    double textToLimit(const CAudioParamInfo& info, int32_t index, const CString& text, bool* ok) const override;
    void valueToText(CString& result, const CAudioParamInfo& info, int32_t index, const CAudioParamShown& value,
                     CAudioTextMode mode) const override;
    double normToValue(const CAudioParamInfo& info, int32_t index, double norm) const override;
    double valueToNorm(const CAudioParamInfo& info, int32_t index, double value) const override;

private:
    int32_t decimals_ = 1;
};

}  // namespace tarv
