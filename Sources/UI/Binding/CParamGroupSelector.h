#pragma once

#include "Core/CObject.h"

namespace tarv {

/// The channel group that a part of the editor shows (`ui:param-group-selector`): `group-index`, from 0; a negative one
/// is 0. Sends `group-change` (`index`) when it becomes another one. The editor's thread.
class CParamGroupSelector : public CObject {
public:
    static constexpr const char* kChangeEvent = "group-change";

    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    int32_t groupIndex() const { return groupIndex_; }

private:
    [[nodiscard]] CError* attrGroupIndex();

    int32_t groupIndex_ = 0;
    CAttributeMap change_;
};

}  // namespace tarv
