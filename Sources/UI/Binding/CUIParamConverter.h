#pragma once

#include "Core/CObject.h"
#include "UI/Binding/CUIParamUpdateHandler.h"

namespace tarv {

/// Writes the value of the `ui:ui-param` below it into the attribute `attr` of the object at `target`, a path from here
/// (`ui:ui-param-converter`): with `is-integer` rounded to a whole number, half away from zero. Without a value the
/// attribute stays as it was. A target that is not there is a failure of the change, not of the start. The editor's
/// thread.
class CUIParamConverter : public CObject, public CUIParamUpdateHandler {
public:
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    [[nodiscard]] CError* onParamChanged(CUIParam& param) override;
    void onParamRemoved(CUIParam& param) override;

private:
    [[nodiscard]] CError* convert();

    CUIParam* param_ = nullptr;  ///< the one that changed last
};

}  // namespace tarv
