#pragma once

#include "Core/CObject.h"
#include "UI/Binding/CUIParamUpdateHandler.h"

namespace tarv {

class CViewBaseState;

/// Gives the view above it a state by a parameter (`ui:view-state-switch`): the state `state-name` is set while the
/// value of `bridge` at `element`, in the group of `group-selector`, is not 0. Changes show at once. While there is no
/// value, the state is as it was. A param of the class `ui:ui-param` below it follows the value. The editor's thread.
class CViewStateSwitch : public CObject, public CUIParamUpdateHandler {
public:
    /// Fails below an object that is no view, and as CUIParam does.
    [[nodiscard]] CError* init() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    [[nodiscard]] CError* onParamChanged(CUIParam& param) override;
    void onParamRemoved(CUIParam& param) override;

private:
    [[nodiscard]] CError* attrElement();

    CViewBaseState* view_ = nullptr;
    CUIParam* param_ = nullptr;
};

}  // namespace tarv
