#pragma once

#include "Core/CError.h"

namespace tarv {

class CObject;
class CUIParam;

/// The param of a control that has the attributes of one itself. Thread: that of the tree.
class CControlParam {
public:
    /// Whether the control names a source.
    static bool isWanted(const CObject& control);
    /// Makes the child `param` by the control's `bridge`, `group-selector`, `shared-attribute` and `element`; paths
    /// begin at the control. Fails as CUIParam does.
    [[nodiscard]] static CError* make(CObject& control, CUIParam*& param);
    /// The control's `element` is another one. `param` may be null.
    [[nodiscard]] static CError* updateElement(const CObject& control, CUIParam* param);
};

}  // namespace tarv
