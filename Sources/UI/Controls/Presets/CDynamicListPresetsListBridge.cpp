#include "UI/Controls/Presets/CDynamicListPresetsListBridge.h"

namespace tarv {

void CDynamicListPresetsListBridge::addFirstRows(bool isShowBanks, CDynamicListRows& rows) const {
    if (!isShowBanks || !catalog_.hasFixedBanks()) {
        addPresets(0, rows);
        return;
    }
    for (int32_t bank = 0; bank < catalog_.bankCount(); ++bank) {
        rows.addPlain(CPresetCatalog::shownName(catalog_.bankName(bank)), catalog_.placeOf(bank).toId(),
                      catalog_.presetCount(bank) > 0);
    }
}

bool CDynamicListPresetsListBridge::addRowsBelow(const CString& id, CDynamicListRows& rows) const {
    CPresetPlace place;
    if (!CPresetPlace::fromId(id, place) || !place.isBank()) {
        return false;
    }
    int32_t bank = -1;
    int32_t preset = -1;
    if (catalog_.find(place, bank, preset)) {
        addPresets(bank, rows);
    }
    return true;
}

void CDynamicListPresetsListBridge::addPresets(int32_t bank, CDynamicListRows& rows) const {
    for (int32_t preset = 0; preset < catalog_.presetCount(bank); ++preset) {
        rows.addPlain(CPresetCatalog::shownName(catalog_.presetName(bank, preset)),
                      catalog_.placeOf(bank, preset).toId());
        if (preset == catalog_.currentPreset(bank)) {
            rows.check();
        }
    }
}

}  // namespace tarv
