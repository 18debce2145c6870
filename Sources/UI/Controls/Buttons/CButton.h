#pragma once

#include "UI/Binding/CUIParamUpdateHandler.h"
#include "UI/Views/CFrame.h"

namespace tarv {

class CUIParam;

/// A button (`ui:button-base`; the template `ui:button` gives it a look and a `label`, which shows its `title`). The
/// label's colour, `label-color`, is by default the button's with `Text` behind it.
///
/// With `bridge` or `shared-attribute` (and `element`, `group-selector`, as CUIParam has them) it is a switch: a
/// release on it makes a value of 0 to 1 and any other to 0, and the state `active` is set while the value is not 0,
/// with `is-inverse` while it is 0. With `is-undo-disabled` that is no step of the history. A button whose own value,
/// or whose declared param `ui-param-activity`, is inactive takes no input and shows itself disabled.
///
/// Events, behind the commands of the mouse's own: `button-released`, `button-pressed-r`, `button-released-r`,
/// `button-cancelled-r`, `button-enter`, `button-exit`, with the parameters of the mouse; `button-drag` with each move
/// while it is held, with `scale`: pixels to the right plus pixels up since the press, and the modifiers. Space and
/// Enter press it while the user works by keys, which the state `temp-pushed` shows for a moment. Thread: that of the
/// window.
class CButton : public CFrame, public CUIParamUpdateHandler {
public:
    ~CButton() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    /// Makes the param of its value. Fails as CUIParam does.
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* finishInit() override;

    /// Null for a button without a value.
    CUIParam* valueParam() const { return param_; }

    [[nodiscard]] CError* onParamChanged(CUIParam& param) override;
    [[nodiscard]] CError* onParamActivity(CUIParam& param) override;
    void onParamRemoved(CUIParam& param) override;

    bool isInputView() const override { return true; }
    /// A switch is a check box.
    CViewRole role() const override;
    /// Of a switch: `on` or `off`.
    CString readableValue() const override;
    [[nodiscard]] CError* mouseEnter(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseExit(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseMove(CAttributeMap& params) override;
    [[nodiscard]] CError* mousePress(CAttributeMap& params) override;
    [[nodiscard]] CError* mousePressR(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseRelease(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseReleaseR(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseCancel(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseCancelR(CAttributeMap& params) override;

protected:
    /// A release on the button, before its commands. Here, toggles the value. May destroy this view.
    [[nodiscard]] virtual CError* released();

private:
    [[nodiscard]] CError* attrElement();
    [[nodiscard]] CError* attrInverse();
    [[nodiscard]] CError* attrShownColor();
    [[nodiscard]] CError* showValue();
    void updateActivity();
    [[nodiscard]] CError* goOn(CError* error, const CObjectWatch& watch, const char* event, CAttributeMap& params);
    bool isHeldByPointer() const;

    CUIParam* param_ = nullptr;
    CAttributeMap dragParams_;
    double pressX_ = 0.0;
    double pressY_ = 0.0;
    bool isPressed_ = false;
    bool hasLabelColor_ = false;
};

}  // namespace tarv
