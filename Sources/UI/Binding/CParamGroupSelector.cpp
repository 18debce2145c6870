#include "UI/Binding/CParamGroupSelector.h"

#include <algorithm>

namespace tarv {

CError* CParamGroupSelector::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CParamGroupSelector::attrGroupIndex>("group-index");
    return nullptr;
}

CError* CParamGroupSelector::attrGroupIndex() {
    const int32_t index = std::max(getAttrInt("group-index"), 0);
    if (index == groupIndex_) {
        return nullptr;
    }
    groupIndex_ = index;
    CAttributeMap params;
    params["index"] = CAttributeValue::fromInt(index);
    return sendEvent(kChangeEvent, params, false);
}

}  // namespace tarv
