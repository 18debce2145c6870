// What a preset manager does with banks and presets.

#include <algorithm>

#include "Audio/Stores/CAudioDefaultPreset.h"
#include "Audio/Stores/PackedStream.h"
#include "Core/CApplicationData.h"
#include "Core/CObjectWatch.h"
#include "Core/CompressedBlock.h"
#include "UI/Controls/Presets/CPresetManager.h"

namespace tarv {

namespace {

CString quoted(const CString& name) {
    return "\"" + name + "\"";
}

template <class NameAt>
CString freeName(const CString& base, int32_t count, NameAt&& nameAt) {
    for (int32_t number = 1;; ++number) {
        CString name = base + " " + CString::fromInt(number);
        bool isFree = true;
        for (int32_t i = 0; i < count && isFree; ++i) {
            isFree = !(nameAt(i) == name);
        }
        if (isFree) {
            return name;
        }
    }
}

constexpr const char* kNotOnDisk = "It can't be stored, and lasts until the host is closed.";

CError* unpackPreset(const CByteBuffer& block, CAudioPreset& preset) {
    CMemoryReader reader(block.data(), static_cast<uint32_t>(block.count()));
    TARV_TRY(loadPacked(reader, kPresetBlockId, preset));
    return nullptr;
}

}  // namespace

CString CPresetManager::freeBankName() const {
    return freeName(getAttrString("defbankname"), catalog_.bankCount(),
                    [this](int32_t i) { return catalog_.bankName(i); });
}

CString CPresetManager::freePresetName(int32_t bank) const {
    return freeName(getAttrString("defpresetname"), catalog_.presetCount(bank),
                    [this, bank](int32_t i) { return catalog_.presetName(bank, i); });
}

CError* CPresetManager::ask(const char* event, const CPresetPlace& place, const CString& title, const CString& text,
                            const CString& path) {
    asked_ = {event, place, path};
    CAttributeMap params;
    params["title"] = CAttributeValue::fromString(title);
    params["text"] = CAttributeValue::fromPlainString(text);
    params["event"] = CAttributeValue::fromString(event);
    params["popup-result-target"] = CAttributeValue::fromString(fullName());
    params["is-popup-toggle-always-create"] = CAttributeValue::fromBool(true);
    const CString& window = getAttrString("confirmation-template");
    return openPopup(window.isEmpty() ? CString("ui:win-confirmation") : window, params);
}

CPresetPlace CPresetManager::takeAsked(const char* event, CString* path) {
    const CAsked asked = std::exchange(asked_, {});
    if (!(asked.event == event)) {
        return selection();
    }
    if (path) {
        *path = asked.path;
    }
    return asked.place;
}

/// A failed edit of the store, or one that the disk did not take, is shown.
CError* CPresetManager::afterStoreEdit(CError* error, bool isBank) {
    const char* event = isBank ? "error-bank-save" : "error-preset-save";
    const CString name = catalog_.store()->form().name;
    const CObjectWatch watch(*this);
    CError* failure = refreshLists();
    if (failure || !watch.isAlive()) {
        logError(error);
        return failure;
    }
    if (error) {
        return raise(event, name, error);
    }
    return catalog_.store()->isOnDisk() ? nullptr : raise(event, name, nullptr, kNotOnDisk);
}

CError* CPresetManager::acquire(CPending action, int32_t bank, int32_t preset, const CPresetPlace& place,
                                const CString& text) {
    const bool isRom = catalog_.kindOf(bank) == CPresetBankKind::Rom;
    const bool isState = catalog_.kindOf(bank) == CPresetBankKind::Stored || preset == catalog_.currentPreset(bank);
    CRequest request;
    request.action = action;
    request.place = place;
    request.text = text;
    CAudioInterfaceClient& client = catalog_.client();
    if (action == CPending::SaveBank) {
        TARV_TRY(client.acquireBank(catalog_.registry(), *this, request.id, isRom));
    } else {
        TARV_TRY(client.acquirePreset(catalog_.registry(), *this, request.id, isRom, isState ? -1 : preset));
    }
    requests_.append(request);
    return nullptr;
}

void CPresetManager::onDataAcquired(uint32_t request, const CByteBuffer& bytes) {
    for (int32_t i = 0; i < requests_.count(); ++i) {
        if (requests_[i].id != request) {
            continue;
        }
        const CRequest done = requests_[i];
        requests_.removeAt(i);
        CAudioPreset preset;
        CError* error = nullptr;
        switch (done.action) {
            case CPending::Insert:
                error = unpackPreset(bytes, preset);
                error = error ? error : insertAcquired(done, preset);
                break;
            case CPending::Replace:
                error = unpackPreset(bytes, preset);
                error = error ? error : replaceAcquired(done, preset);
                break;
            case CPending::SetDefault:
                error = setDefault(bytes);
                break;
            case CPending::AskDefault:
                error = unpackPreset(bytes, preset);
                error = error ? error : askDefault(done.place, isStoredDefault(preset));
                break;
            case CPending::SavePreset:
            case CPending::SaveBank:
                error = writeFile(done.action == CPending::SaveBank, done.text, bytes);
                break;
        }
        TARV_CONSUME(error);
        return;
    }
}

CError* CPresetManager::bankAdd(CAttributeMap& params) {
    if (!catalog_.store() || !catalog_.store()->form().hasBanks) {
        return nullptr;
    }
    const int32_t selected = std::max(catalog_.storeIndex(selectedBank()), -1);
    const int32_t index = params["is-insert"].asBool() ? selected + 1 : catalog_.store()->banks().count();
    const CString name = freeBankName();
    CError* error = catalog_.store()->insertBank(index, CAudioPresetBank(name));
    if (!error) {
        selectLater(catalog_.placeOf(catalog_.bankOfStore(index)));
    }
    return afterStoreEdit(error, true);
}

CError* CPresetManager::onBankDelete() {
    const int32_t bank = selectedBank();
    if (bank < 0 || bank >= catalog_.bankCount() || catalog_.kindOf(bank) != CPresetBankKind::Stored ||
        !bankList_.view()) {
        return nullptr;
    }
    const int32_t count = catalog_.presetCount(bank);
    const CString presets = count == 0   ? CString()
                            : count == 1 ? CString(" and its preset")
                                         : " and its " + CString::fromInt(count) + " presets";
    return ask("bank-delete", catalog_.placeOf(bank), "Delete Bank",
               "Delete the bank " + quoted(catalog_.bankName(bank)) + presets + "?");
}

CError* CPresetManager::bankDelete() {
    int32_t bank = -1;
    int32_t preset = -1;
    CPresetPlace place = takeAsked("bank-delete");
    place.preset = -1;
    if (!catalog_.find(place, bank, preset) || place.kind != CPresetBankKind::Stored || !bankList_.view()) {
        return nullptr;
    }
    CError* error = catalog_.store()->deleteBank(catalog_.storeIndex(bank));
    if (!error && place.bankName == shown_.bankName) {
        // The one that has taken its place, or the last one.
        selectLater(catalog_.placeOf(std::min(bank, catalog_.bankCount() - 1)));
    }
    return afterStoreEdit(error, true);
}

/// In the selected bank.
int32_t CPresetManager::insertIndex(bool isInsert) const {
    const int32_t selected = selectedPreset();
    return isInsert && selected >= 0 ? selected + 1 : catalog_.presetCount(selectedBank());
}

CError* CPresetManager::presetAdd(CAttributeMap& params) {
    const int32_t bank = selectedBank();
    if (bank < 0 || bank >= catalog_.bankCount() || !mayChange(bank)) {
        return nullptr;
    }
    const int32_t index = insertIndex(params["is-insert"].asBool());
    const CString name = freePresetName(bank);
    if (catalog_.kindOf(bank) == CPresetBankKind::Session) {
        return catalog_.client().addProgram(catalog_.registry(), index, name);
    }
    // The preset that it comes behind: others may be inserted before the engine's answer comes.
    CPresetPlace place = catalog_.placeOf(bank, index - 1);
    return acquire(CPending::Insert, bank, -1, place, name);
}

CError* CPresetManager::insertAcquired(const CRequest& request, CAudioPreset& preset) {
    int32_t bank = -1;
    int32_t before = -1;
    CPresetPlace place = request.place;
    if (!catalog_.find(place, bank, before)) {
        before = catalog_.presetCount(bank) - 1;
    }
    if (bank < 0) {
        return nullptr;
    }
    preset.setDisplayName(request.text);
    CError* error = catalog_.store()->insertPreset(catalog_.storeIndex(bank), before + 1, preset);
    const bool isShown = place.bankName == shown_.bankName && place.kind == shown_.kind;
    if (!error && isShown && before + 1 < catalog_.presetCount(bank)) {
        selectLater(catalog_.placeOf(bank, before + 1));
    }
    return afterStoreEdit(error, false);
}

CError* CPresetManager::onPresetDelete() {
    const int32_t bank = selectedBank();
    const int32_t preset = selectedPreset();
    const bool isLast = bank >= 0 && preset >= 0 && catalog_.kindOf(bank) == CPresetBankKind::Session &&
                        catalog_.presetCount(bank) <= 1;
    if (bank < 0 || preset < 0 || preset >= catalog_.presetCount(bank) || !mayChange(bank) || isLast) {
        return nullptr;
    }
    return ask("preset-delete", catalog_.placeOf(bank, preset), "Delete Preset",
               "Delete the preset " + quoted(catalog_.presetName(bank, preset)) + "?");
}

CError* CPresetManager::presetDelete() {
    const CPresetPlace place = takeAsked("preset-delete");
    int32_t bank = -1;
    int32_t preset = -1;
    if (place.isBank() || !catalog_.find(place, bank, preset) || !mayChange(bank)) {
        return nullptr;
    }
    if (place.kind == CPresetBankKind::Session) {
        return catalog_.presetCount(bank) > 1 ? catalog_.client().deleteProgram(catalog_.registry(), preset) : nullptr;
    }
    return deleteStoredPreset(bank, preset);
}

CError* CPresetManager::deleteStoredPreset(int32_t bank, int32_t preset) {
    const bool isSelected = bank == selectedBank() && preset == selectedPreset();
    CError* error = catalog_.store()->deletePreset(catalog_.storeIndex(bank), preset);
    if (!error && isSelected && bank < catalog_.bankCount()) {
        selectLater(catalog_.placeOf(bank, std::min(preset, catalog_.presetCount(bank) - 1)));
    }
    return afterStoreEdit(error, false);
}

CError* CPresetManager::presetReplace() {
    const CPresetPlace place = selection();
    if (place.isBank() || place.kind == CPresetBankKind::Rom || isGone_) {
        return nullptr;
    }
    if (place.kind == CPresetBankKind::Session) {
        return replaceAt(place);
    }
    return ask("perform-preset-replace", place, "Replace Preset",
               "Replace the preset " + quoted(place.presetName) + " by the current state?");
}

CError* CPresetManager::performPresetReplace() {
    return replaceAt(takeAsked("perform-preset-replace"));
}

CError* CPresetManager::replaceAt(const CPresetPlace& place) {
    int32_t bank = -1;
    int32_t preset = -1;
    if (place.isBank() || !catalog_.find(place, bank, preset) || !mayChange(bank)) {
        return nullptr;
    }
    return place.kind == CPresetBankKind::Session ? catalog_.client().replaceProgram(catalog_.registry(), preset)
                                                  : acquire(CPending::Replace, bank, -1, place, {});
}

CError* CPresetManager::replaceAcquired(const CRequest& request, const CAudioPreset& preset) {
    int32_t bank = -1;
    int32_t index = -1;
    if (!catalog_.find(request.place, bank, index)) {
        return nullptr;
    }
    return afterStoreEdit(catalog_.store()->replacePreset(catalog_.storeIndex(bank), index, preset), false);
}

/// Also of the list: a double click comes as `paragraph-dbl-clicked`, and then as `paragraph-chosen`, as Enter does.
CError* CPresetManager::presetActivate(CAttributeMap& params) {
    const CString event = params["event-name"].asString();
    const bool isSecond = event == CString("paragraph-chosen") && isDoubleClicked_;
    isDoubleClicked_ = event == CString("paragraph-dbl-clicked");
    const int32_t bank = selectedBank();
    const int32_t preset = selectedPreset();
    const bool isThere = bank >= 0 && preset >= 0 && preset < catalog_.presetCount(bank);
    return isThere && !isSecond && !isGone_ ? catalog_.activate(bank, preset) : nullptr;
}

CError* CPresetManager::presetSetDefault() {
    const CPresetPlace place = selection();
    if (place.isBank() || !catalog_.hasFixedBanks() || isGone_) {
        return nullptr;
    }
    int32_t bank = -1;
    int32_t preset = -1;
    if (!isDefault(place.presetName) || !catalog_.find(place, bank, preset)) {
        return askDefault(place, false);
    }
    // Another preset may have that name, too.
    return place.kind == CPresetBankKind::Stored
               ? askDefault(place, isStoredDefault(catalog_.storedPreset(bank, preset)))
               : acquire(CPending::AskDefault, bank, preset, place, {});
}

CError* CPresetManager::askDefault(const CPresetPlace& place, bool isDefault) {
    return isDefault ? ask("perform-preset-clear-default", place, "Set as Default",
                           "This preset is the default preset. Use none from now on?")
                     : ask("perform-preset-set-default", place, "Set as Default", "Use this preset as default preset?");
}

/// Whether it is stored as the default preset, byte for byte.
bool CPresetManager::isStoredDefault(const CAudioPreset& preset) {
    CByteBuffer bytes;
    CAudioDefaultPreset::read(bytes);
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
    CAudioPreset stored;
    if (CError* error = stored.load(reader)) {
        TARV_CONSUME(error);
        return false;
    }
    return stored.isSame(preset);
}

CError* CPresetManager::performPresetSetDefault() {
    const CPresetPlace place = takeAsked("perform-preset-set-default");
    int32_t bank = -1;
    int32_t preset = -1;
    if (place.isBank() || !catalog_.hasFixedBanks() || !catalog_.find(place, bank, preset)) {
        return nullptr;
    }
    if (place.kind != CPresetBankKind::Stored) {
        return acquire(CPending::SetDefault, bank, preset, place, {});
    }
    CByteBuffer packed;
    TARV_TRY(packPreset(catalog_.storedPreset(bank, preset), packed));
    return setDefault(packed);
}

CError* CPresetManager::setDefault(const CByteBuffer& packed) {
    const CObjectWatch watch(*this);
    CError* error = catalog_.client().setDefaultPreset(catalog_.registry(), packed);
    return watch.isAlive() ? afterDefaultEdit(error) : error;
}

/// As afterStoreEdit, for the default preset.
CError* CPresetManager::afterDefaultEdit(CError* error) {
    const char* name = CAudioDefaultPreset::kDataName;
    return error || !CLocalData::instance().isOnDisk(name) ? raise("error-preset-save", name, error, kNotOnDisk)
                                                           : nullptr;
}

CError* CPresetManager::performPresetClearDefault() {
    takeAsked("perform-preset-clear-default");
    const CObjectWatch watch(*this);
    CError* error = catalog_.client().clearDefaultPreset();
    return watch.isAlive() ? afterDefaultEdit(error) : error;
}

}  // namespace tarv
