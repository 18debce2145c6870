#pragma once

#include "UI/Binding/CParamGesture.h"
#include "UI/Binding/CUIParamUpdateHandler.h"
#include "UI/Controls/Buttons/CWheelSteps.h"
#include "UI/Text/CTextView.h"

namespace tarv {

class CUIParam;

/// Shows a value as a text (`ui:readout`), and edits it if `is-read-only` is false. The value is that of its own
/// `bridge`, `shared-attribute`, `element` and `group-selector`, as CUIParam has them, or of its declared child
/// `ui-param`. Attributes beside those of a text view:
///   accept-chars    characters of a number that may be typed; `+`, the blank and the letters of the unit are added. A
///                   number without it takes figures, point and minus
///   default-value   what an emptied field gets; without it the field keeps its value
///   format          of the number, as CNumberFormat; otherwise by `format-id`: `normal` (default) and `knob-circle`
///                   are the parameter's full and short text, `automation-string` has the unit, too; `brief` is the
///                   short text without the tenths of a whole number of thousands: "1k"
/// What a person types is read as a host's text is (CUIParam::setValueText); what is no number is refused. The wheel
/// moves it by CWheelSteps; Shift multiplies by `shift-key-precision`. Texts are plain. The view `hover-frame`, a child
/// of this view or of its parent, is shown while the pointer is here. Without its value the view is disabled. Thread:
/// that of the window.
class CReadOut : public CTextView, public CUIParamUpdateHandler {
public:
    ~CReadOut() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    /// Fails as CUIParam does.
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* finishInit() override;

    /// Null without a value.
    CUIParam* valueParam() const;

    [[nodiscard]] CError* onParamChanged(CUIParam& param) override;
    [[nodiscard]] CError* onParamActivity(CUIParam& param) override;
    void onParamRemoved(CUIParam& param) override;

    CString editText(int32_t paragraph) const override;
    CTextEditRules editRules() const override;
    [[nodiscard]] CError* acceptText(int32_t paragraph, const CString& text, bool& isAccepted) override;
    const char* editPlacementAttribute() const override { return "editbox-readout-placement"; }
    [[nodiscard]] CError* mouseEnter(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseExit(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseWheel(CAttributeMap& params) override;

private:
    [[nodiscard]] CError* attrElement();
    [[nodiscard]] CError* showValue();
    [[nodiscard]] CError* showHoverFrame(bool isShown);
    CString shownText() const;
    bool isNumber() const;

    CUIParam* param_ = nullptr;
    CParamGesture gesture_;
    CWheelSteps wheel_;
};

}  // namespace tarv
