#pragma once

#include "UI/Controls/Buttons/CSelectorSetting.h"

namespace tarv {

/// The oversampling that `Auto` takes while audio is bounced (`ui:selector-oversampling`): "2X", "4X", "8X", stored as
/// 1, 2, 3; any other text shows as "2X". Thread: that of the window.
class CSelectorOversampling : public CSelectorSetting {
protected:
    void readItems(CItems& items) const override { readTitles(items, "2X;4X;8X"); }
    const char* defaultSetting() const override { return "ui.global-data.oversampling-level"; }
    int32_t indexOfText(const CString& text) const override;
    CString textOf(int32_t index) const override { return CString::fromInt(index + 1); }
};

}  // namespace tarv
