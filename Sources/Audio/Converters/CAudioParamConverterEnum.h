#pragma once

#include "Audio/Parameters/CAudioParamConverter.h"

namespace tarv {

/// A state number (`audio:cvt-enum`). `state-names` lists the names of the states, separated by ";", each with an
/// optional short form behind "|". Texts of definitions are read as numbers only; typed ones may be names.
class CAudioParamConverterEnum : public CAudioParamConverter {
public:
    static CError* initClass(CClassDescriptor& descriptor);
    /// Runs when `state-names` is set.
    [[nodiscard]] CError* attrStateNames();

    double textToLimit(const CAudioParamInfo& info, int32_t index, const CString& text, bool* ok) const override;
    void valueToText(CString& result, const CAudioParamInfo& info, int32_t index, const CAudioParamShown& value,
                     CAudioTextMode mode) const override;
    double normToValue(const CAudioParamInfo& info, int32_t index, double norm) const override;

    int32_t stateCount() const { return longNames_.count(); }

protected:
    double failedValue(const CAudioParamInfo& info, int32_t index) const override;
    bool findState(const CAudioParamInfo& info, int32_t index, const CString& name, double& value) const override;

private:
    CArray<CString, 4> longNames_;
    CArray<CString, 4> shortNames_;
};

}  // namespace tarv
