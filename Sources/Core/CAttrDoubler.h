#pragma once

#include "Core/CObject.h"

namespace tarv {

/// Copies its `value` to the attribute `attr` of other objects at each change, beginning with the value that it is
/// loaded with (`core:attr-doubler`). `target` holds their paths, separated by blanks. Thread: that of the tree.
class CAttrDoubler : public CObject {
public:
    /// Fails without a target and with one that is not there. A target that goes later is left out.
    [[nodiscard]] CError* init() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

private:
    [[nodiscard]] CError* valueChanged();

    CArray<CString, 4> targets_;
    bool isCopying_ = false;
};

}  // namespace tarv
