#pragma once

#include "UI/Controls/Presets/CPresetCatalog.h"
#include "UI/Text/CDynamicList.h"

namespace tarv {

/// Gives the rows of a menu of presets: the banks, and below each its presets; or presets alone. Rows have the places
/// of what they show as ids. The current program is checked. Thread: that of the editor.
class CDynamicListPresetsListBridge {
public:
    explicit CDynamicListPresetsListBridge(const CPresetCatalog& catalog) : catalog_(catalog) {}

    /// The rows of the first list: banks with `isShowBanks`, otherwise the presets of the first bank.
    void addFirstRows(bool isShowBanks, CDynamicListRows& rows) const;
    /// The presets of the bank with that id; none if the bank is gone meanwhile. False for an id that names no bank.
    [[nodiscard]] bool addRowsBelow(const CString& id, CDynamicListRows& rows) const;

private:
    void addPresets(int32_t bank, CDynamicListRows& rows) const;

    const CPresetCatalog& catalog_;
};

}  // namespace tarv
