#pragma once

#include "Audio/Parameters/CAudioParamConverter.h"

namespace tarv {

/// A number as it is typed; linear (`audio:cvt-real`). `decimals` 0 to 10.
class CAudioParamConverterReal : public CAudioParamConverter {
public:
    static CError* initClass(CClassDescriptor& descriptor);
    /// Runs when `decimals` is set.
    [[nodiscard]] CError* attrDecimals();

    double textToLimit(const CAudioParamInfo& info, int32_t index, const CString& text, bool* ok) const override;
    void valueToText(CString& result, const CAudioParamInfo& info, int32_t index, const CAudioParamShown& value,
                     CAudioTextMode mode) const override;

private:
    int32_t decimals_ = 7;
};

}  // namespace tarv
