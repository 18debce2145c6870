#pragma once

#include "UI/Controls/Buttons/CButton.h"

namespace tarv {

/// Shows which of the states A and B is live (`ui:button-ab`): the button has the state `b-state` while B is, and the
/// label of the live one, `.labels.a` or `.labels.b`, has the state `live`. It follows the attribute `is-alternate` of
/// the object at `plugin-control` (by default `ui.plugin-control`), which only the engine sets; without that object A
/// is live. What a release does is up to its commands. Thread: that of the window.
class CButtonAB : public CButton {
public:
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    [[nodiscard]] CError* init() override;
    /// Fails without the labels.
    [[nodiscard]] CError* finishInit() override;
    /// `A` or `B`.
    CString readableValue() const override;

private:
    [[nodiscard]] CError* initChilds();
    [[nodiscard]] CError* showLive();
};

}  // namespace tarv
