#pragma once

#include "Audio/Parameters/CAudioParamConverter.h"

namespace tarv {

/// A fraction, shown as a percentage; linear (`audio:cvt-percent`).
class CAudioParamConverterPercent : public CAudioParamConverter {
public:
    double textToLimit(const CAudioParamInfo& info, int32_t index, const CString& text, bool* ok) const override;
    void valueToText(CString& result, const CAudioParamInfo& info, int32_t index, const CAudioParamShown& value,
                     CAudioTextMode mode) const override;
    double valueToShown(double value) const override;
    double shownToValue(double shown) const override;
};

}  // namespace tarv
