#include "Audio/Converters/CAudioParamConverterEnum.h"

#include <cmath>

#include "Audio/Parameters/CAudioParamInfo.h"

namespace tarv {

namespace {

/// The text of a state that has no name.
constexpr const char* kNoName = "Reserve";

}  // namespace

CError* CAudioParamConverterEnum::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CAudioParamConverterEnum::attrStateNames>("state-names");
    return nullptr;
}

CError* CAudioParamConverterEnum::attrStateNames() {
    longNames_.clear();
    shortNames_.clear();
    const CString& names = getAttrString("state-names");
    // An empty attribute means no states, not one state with an empty name.
    for (const CString& state : names.split(';', !names.isEmpty())) {
        const int32_t bar = state.indexOf('|');
        longNames_.append(bar < 0 ? state : state.substring(0, bar));
        shortNames_.append(bar < 0 ? state : state.substring(bar + 1));
    }
    return nullptr;
}

double CAudioParamConverterEnum::textToLimit(const CAudioParamInfo&, int32_t, const CString& text, bool* ok) const {
    bool isOk = false;
    const int32_t state = CString::toInt(text, &isOk);
    if (ok) {
        *ok = isOk;
    }
    return isOk ? state : 0.0;
}

double CAudioParamConverterEnum::failedValue(const CAudioParamInfo& info, int32_t index) const {
    return std::round(info.minimum(index));
}

bool CAudioParamConverterEnum::findState(const CAudioParamInfo& info, int32_t index, const CString& name,
                                         double& value) const {
    for (int32_t i = 0; i < longNames_.count(); ++i) {
        const double state = std::round(info.minimum(index)) + i;
        if ((isSameName(longNames_[i], name) || isSameName(shortNames_[i], name)) &&
            info.clamp(index, state) == state) {
            value = state;
            return true;
        }
    }
    return false;
}

void CAudioParamConverterEnum::valueToText(CString& result, const CAudioParamInfo& info, int32_t index,
                                           const CAudioParamShown& value, CAudioTextMode mode) const {
    const double state = std::round(value.number) - std::round(info.minimum(index));
    const CArray<CString, 4>& names = mode == CAudioTextMode::ShortNames ? shortNames_ : longNames_;
    const bool hasName = state >= 0.0 && state < names.count();
    result = hasName ? names[static_cast<int32_t>(state)] : CString(kNoName);
}

double CAudioParamConverterEnum::normToValue(const CAudioParamInfo& info, int32_t index, double norm) const {
    return std::round(CAudioParamConverter::normToValue(info, index, norm));
}

}  // namespace tarv
