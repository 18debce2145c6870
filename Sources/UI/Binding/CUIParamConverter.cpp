#include "UI/Binding/CUIParamConverter.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "UI/Binding/CUIParam.h"

namespace tarv {

namespace {

CAttributeValue wholeNumber(double value) {
    constexpr double kLeast = std::numeric_limits<int32_t>::min();
    constexpr double kMost = std::numeric_limits<int32_t>::max();
    return CAttributeValue::fromInt(static_cast<int32_t>(std::clamp(std::round(value), kLeast, kMost)));
}

}  // namespace

CError* CUIParamConverter::initClass(CClassDescriptor& descriptor) {
    for (const char* name : {"target", "attr", "is-integer"}) {
        descriptor.addHandler<&CUIParamConverter::convert>(name);
    }
    return nullptr;
}

CError* CUIParamConverter::onParamChanged(CUIParam& param) {
    param_ = &param;
    return convert();
}

void CUIParamConverter::onParamRemoved(CUIParam& param) {
    if (param_ == &param) {
        param_ = nullptr;
    }
}

CError* CUIParamConverter::convert() {
    if (!param_ || !param_->isActive()) {
        return nullptr;
    }
    const CString& path = getAttrString("target");
    CObject* const target = findObject(path);
    if (!target) {
        TARV_FAIL("@tarvstr_CUIParamConverter_convert_NoTarget Invalid target object '%1'.", path);
    }
    const double value = param_->getValue();
    return target->setAttribute(getAttrString("attr"),
                                getAttrBool("is-integer") ? wholeNumber(value) : CAttributeValue::fromReal(value));
}

}  // namespace tarv
