#pragma once

#include "Audio/Parameters/CAudioParamConverter.h"

namespace tarv {

/// Seconds, typed and shown in units of `scale` seconds (`audio:cvt-time`). The map is logarithmic with `is-log`,
/// linear with `is-exact`, otherwise square. `is-precise` shows a decimal more.
class CAudioParamConverterTime : public CAudioParamConverter {
public:
    [[nodiscard]] CError* init() override;
    double textToLimit(const CAudioParamInfo& info, int32_t index, const CString& text, bool* ok) const override;
    void valueToText(CString& result, const CAudioParamInfo& info, int32_t index, const CAudioParamShown& value,
                     CAudioTextMode mode) const override;
    double normToValue(const CAudioParamInfo& info, int32_t index, double norm) const override;
    double valueToNorm(const CAudioParamInfo& info, int32_t index, double value) const override;
    double valueToShown(double value) const override;
    double shownToValue(double shown) const override;

private:
    CString shortText(double value) const;
    CString fullText(double value) const;

    double scale_ = 0.001;
    bool isLog_ = false;
    bool isExact_ = false;
    bool isPrecise_ = false;
};

}  // namespace tarv
