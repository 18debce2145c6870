#pragma once

#include "Core/CObject.h"

namespace tarv {

/// What a state of the view above changes (`ui:view-state`). `state-name` names the state, `color-state` and
/// `image-set-range` change the look, and every other attribute overrides the view's of that name. Overrides are kept
/// as they are written: their expressions are replaced when the state applies.
class CViewState : public CObject {
public:
    const CString& stateName() const { return getAttrString("state-name"); }
    /// Seconds until the state ends by itself; 0: it does not.
    double duration() const { return getAttrReal("duration"); }
    /// Seconds of the change of look; `fallback` is that of the view.
    double morphDuration(double fallback) const { return getAttrRealOr("morph-duration", fallback); }
    /// Whether an attribute of this object is one that it gives to the view.
    static bool isOverride(const CString& name);

protected:
    void prepareAttribute(const CString& name, CAttributeValue& value) override;
};

}  // namespace tarv
