#pragma once

#include "UI/Controls/Buttons/CSelector.h"

namespace tarv {

class CParamGroupSelector;

/// The channel group that a part of the editor shows (`ui:selector-group`): `group-selector` is the path of the
/// selector that it sets and follows. With `is-right-click-allowed` a press of the right button sets
/// `group-selector-opposite` to the same group, too. Without titles the buttons have numbers, one for each group of
/// `interface-client` (by default `ui.interface-client`). A dimmed item is a group without a channel, which can be
/// chosen all the same. Each button has the attribute `group-color`: the colour of its group in `color-swatch` (by
/// default `ui.color-swatch`). With `is-outlined` the buttons are outlines, of their ranges `Outline`. Thread: that of
/// the window.
class CSelectorGroup : public CSelector {
public:
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    /// Fails for a path where no selector stands.
    [[nodiscard]] CError* init() override;

protected:
    void readItems(CItems& items) const override;
    int32_t sourceIndex() const override;
    [[nodiscard]] CError* choose(int32_t index) override;
    [[nodiscard]] CError* chooseByRight(int32_t index) override;
    void prepareButton(int32_t index, CAttributeMap& attributes) const override;
    CString buttonHint(int32_t index) const override;

private:
    [[nodiscard]] CError* groupChanged();
    [[nodiscard]] CError* findSelector(const char* attribute, CParamGroupSelector*& selector) const;

    CParamGroupSelector* selector_ = nullptr;
    CParamGroupSelector* opposite_ = nullptr;
};

}  // namespace tarv
