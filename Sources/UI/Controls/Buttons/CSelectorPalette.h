#pragma once

#include "UI/Controls/Buttons/CSelectorSetting.h"

namespace tarv {

/// The palettes below `shared::pal` (`ui:selector-palette`); by default its buttons are made of the template
/// `ui:selector-palette-button`, which shows an icon in the colours of `palette-name`. A stored name that no palette
/// has counts as `Default`. Thread: that of the window.
class CSelectorPalette : public CSelectorSetting {
public:
    [[nodiscard]] CError* init() override;

protected:
    void readItems(CItems& items) const override;
    void prepareButton(int32_t index, CAttributeMap& attributes) const override;
    CString buttonHint(int32_t index) const override;
    const char* defaultSetting() const override { return "ui.local-data.ui-color-scheme"; }
    int32_t indexOfText(const CString& text) const override;
    CString textOf(int32_t index) const override { return items()[index].title; }
};

}  // namespace tarv
