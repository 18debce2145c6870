#pragma once

#include "Audio/Parameters/CAudioParamConverter.h"

namespace tarv {

/// Linear gain, shown in dB; logarithmic (`audio:cvt-gain`). Both limits are above 0. `decimals` 0 to 10; `zero-point`
/// and `off-point` are for an editor to read.
class CAudioParamConverterGain : public CAudioParamConverter {
public:
    static CError* initClass(CClassDescriptor& descriptor);
    double textToLimit(const CAudioParamInfo& info, int32_t index, const CString& text, bool* ok) const override;
    void valueToText(CString& result, const CAudioParamInfo& info, int32_t index, const CAudioParamShown& value,
                     CAudioTextMode mode) const override;
    double normToValue(const CAudioParamInfo& info, int32_t index, double norm) const override;
    double valueToNorm(const CAudioParamInfo& info, int32_t index, double value) const override;
    double valueToShown(double value) const override;
    double shownToValue(double shown) const override;

    /// Handlers of the attributes, run when they are set.
    [[nodiscard]] CError* attrDecimals();
    [[nodiscard]] CError* attrZeroPoint();
    [[nodiscard]] CError* attrOffPoint();

    /// Position of 0 dB on a control, 0..1.
    double zeroPoint() const { return zeroPoint_; }
    /// Hundredths; negative for none.
    int32_t offPoint() const { return offPoint_; }

private:
    int32_t decimals_ = 1;
    double zeroPoint_ = 0.5;
    int32_t offPoint_ = -100;
};

}  // namespace tarv
