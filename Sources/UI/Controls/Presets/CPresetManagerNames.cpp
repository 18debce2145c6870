// Renaming in a preset manager's lists, and their keys.

#include <algorithm>
#include <utility>

#include "Platform/Keyboard.h"
#include "UI/Controls/Presets/CPresetManager.h"

namespace tarv {

CString CPresetManager::trimmedName(const CString& text) {
    int32_t begin = 0;
    int32_t end = std::min(text.length(), kMaxName);
    while (begin < end && text.at(begin) == ' ') {
        ++begin;
    }
    while (end > begin && (text.at(end - 1) == ' ' || (text.at(end - 1) & 0xfc00) == 0xd800)) {
        --end;
    }
    return text.substring(begin, end - begin);
}

void CPresetManager::cutName(CAudioPreset& preset) {
    const CString name = preset.displayName();
    if (name.length() > kMaxName) {
        preset.setDisplayName(trimmedName(name));
    }
}

/// Where a row of an event stands, as it is listed.
CPresetPlace CPresetManager::rowPlace(bool isBank, const CAttributeMap& params) const {
    const auto index = params.find("index");
    const int32_t row = index == params.end() ? -1 : index->second.asInt();
    const int32_t bank = isBank ? row : selectedBank();
    const bool isThere =
        bank >= 0 && bank < catalog_.bankCount() && row >= 0 && (isBank || row < catalog_.presetCount(bank));
    return isThere ? catalog_.placeOf(bank, isBank ? -1 : row) : CPresetPlace();
}

CError* CPresetManager::bankCanRename(CAttributeMap& params) {
    edited_ = rowPlace(true, params);
    if (edited_.kind != CPresetBankKind::Stored) {
        edited_ = {};
        params["is-refused"] = CAttributeValue::fromBool(true);
    }
    return nullptr;
}

CError* CPresetManager::presetCanRename(CAttributeMap& params) {
    edited_ = rowPlace(false, params);
    if (edited_.isBank() || edited_.kind == CPresetBankKind::Rom) {
        edited_ = {};
        params["is-refused"] = CAttributeValue::fromBool(true);
    }
    return nullptr;
}

/// The row that the edit began with, wherever it stands by now.
CError* CPresetManager::bankRename(CAttributeMap& params) {
    const CPresetPlace place = edited_.bankName.isEmpty() ? rowPlace(true, params) : edited_;
    edited_ = {};
    const CString name = trimmedName(params["text"].asString());
    int32_t bank = -1;
    int32_t preset = -1;
    if (name.isEmpty() || !place.isBank() || place.kind != CPresetBankKind::Stored || !bankList_.view() ||
        !catalog_.find(place, bank, preset)) {
        return refreshLists();
    }
    CError* error = catalog_.store()->renameBank(catalog_.storeIndex(bank), name);
    if (!error && shown_ == place) {
        shown_.bankName = name;
        selected_.bankName = name;
    }
    return afterStoreEdit(error, true);
}

CError* CPresetManager::presetRename(CAttributeMap& params) {
    const CPresetPlace place = edited_.isBank() ? rowPlace(false, params) : edited_;
    edited_ = {};
    const CString name = trimmedName(params["text"].asString());
    int32_t bank = -1;
    int32_t preset = -1;
    if (name.isEmpty() || place.isBank() || place.kind == CPresetBankKind::Rom || !catalog_.find(place, bank, preset)) {
        return refreshLists();
    }
    renamed_ = place == selected_ ? place : CPresetPlace();
    renamed_.presetName = name;
    if (place.kind == CPresetBankKind::Session) {
        return catalog_.client().renameProgram(catalog_.registry(), preset, name);
    }
    CError* error = catalog_.store()->renamePreset(catalog_.storeIndex(bank), preset, name);
    return afterStoreEdit(error, false);
}

void CPresetManager::followRename() {
    CPresetPlace former = renamed_;
    former.presetName = selected_.presetName;
    int32_t bank = -1;
    int32_t preset = -1;
    if (!renamed_.isBank() && former == selected_ && !catalog_.find(selected_, bank, preset) &&
        catalog_.find(renamed_, bank, preset)) {
        selected_ = std::exchange(renamed_, {});
    }
}

CError* CPresetManager::bankKey(CAttributeMap& params) {
    if (params["keycode"].asInt() != kKeyDelete || isHandled(params)) {
        return nullptr;
    }
    setHandled(params);
    return onBankDelete();
}

CError* CPresetManager::presetKey(CAttributeMap& params) {
    if (params["keycode"].asInt() != kKeyDelete || isHandled(params)) {
        return nullptr;
    }
    setHandled(params);
    return onPresetDelete();
}

}  // namespace tarv
