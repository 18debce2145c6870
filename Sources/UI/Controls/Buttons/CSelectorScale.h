#pragma once

#include "UI/Controls/Buttons/CSelectorSetting.h"

namespace tarv {

/// The scale of the editor, which takes effect when it is opened anew (`ui:selector-scale`). `scale` has the scales
/// that are offered, by default "0.8;1.0;1.25", in the order of the titles. A stored text that is no number is 1.0.
/// Thread: that of the window.
class CSelectorScale : public CSelectorSetting {
protected:
    void readItems(CItems& items) const override { readTitles(items, "80%;100%;125%"); }
    const char* defaultSetting() const override { return "ui.local-data.ui-scale"; }
    int32_t indexOfText(const CString& text) const override;
    CString textOf(int32_t index) const override;

private:
    CArray<CString, 4> scales() const;
};

}  // namespace tarv
