#pragma once

#include "Core/CObject.h"

namespace tarv {

/// A further colour of the view above (`ui:view-color-slot`): `color` and `color-state`. The slots of a view are
/// numbered from 1 in child order; 0 is the view's own colour.
class CViewColorSlot : public CObject {
public:
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    const CString& color() const { return getAttrString("color"); }
    const CString& colorState() const { return getAttrString("color-state"); }

private:
    [[nodiscard]] CError* colorChanged();
};

}  // namespace tarv
