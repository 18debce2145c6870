#include "UI/Binding/CParamGroupSelector.h"

#include <algorithm>

#include "Core/CKeptParams.h"

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
    CKeptParams change(*this, change_, 1);
    change.params["index"] = CAttributeValue::fromInt(index);
    return sendEvent(kChangeEvent, change.params, false);
}

}  // namespace tarv
