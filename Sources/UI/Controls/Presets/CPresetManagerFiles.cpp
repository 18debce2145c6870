// Presets and banks in files.

#include <algorithm>
#include <utility>

#include "Audio/Stores/CAudioDefaultPreset.h"
#include "Core/CObjectWatch.h"
#include "UI/Controls/Presets/CFileDialog.h"
#include "UI/Controls/Presets/CPresetManager.h"
#include "UI/Controls/Presets/PresetFiles.h"

namespace tarv {

namespace {

constexpr const char* kBankFilter = "Compressed bank files";
constexpr const char* kPresetFilter = "Compressed preset files";
constexpr const char* kBankExtension = "cbf";
constexpr const char* kPresetExtension = "cpf";

/// What a user reads first; %1 is the name of the file.
constexpr std::pair<const char*, const char*> kFailures[] = {
    {"error-bank-load", "The bank \"%1\" can't be loaded."},
    {"error-bank-save", "The bank \"%1\" can't be saved."},
    {"error-preset-load", "The preset \"%1\" can't be loaded."},
    {"error-preset-save", "The preset \"%1\" can't be saved."},
    {"error-preset-type", "The file \"%1\" can't be loaded."}};
constexpr const char* kStoreFailure = "Your presets can't be stored.";
constexpr const char* kDefaultFailure = "The default preset can't be stored.";

CString failureText(const char* event, const CString& fileName) {
    CString text;
    for (const auto& [name, form] : kFailures) {
        if (CString(name) == event) {
            text.format(form, &fileName, 1);
        }
    }
    return text;
}

CString withoutExtension(const CString& name) {
    const int32_t dot = name.lastIndexOf('.');
    return dot > 0 ? name.substring(0, dot) : name;
}

}  // namespace

CError* CPresetManager::raise(const char* event, const CString& path, CError* error, const CString& reason) {
    CAttributeMap params;
    params["path"] = CAttributeValue::fromPlainString(path);
    const CString fileName = CFileDialog::nameIn(path);
    const CString why = error ? *error->lines()[0] : reason;
    const bool isStore = catalog_.store() && path == catalog_.store()->form().name;
    const CString what = isStore                                  ? CString(kStoreFailure)
                         : path == CAudioDefaultPreset::kDataName ? CString(kDefaultFailure)
                                                                  : failureText(event, fileName);
    logError(error);
    params["filename"] = CAttributeValue::fromPlainString(fileName);
    params["reason"] = CAttributeValue::fromPlainString(why);
    params["text"] = CAttributeValue::fromPlainString(what + "\n" + why);
    return inputEvent(event, params);
}

/// Runs a loop of messages: this object may be gone behind it.
CError* CPresetManager::askForFile(bool isBank, bool isSave, const CPresetPlace& place) {
    const char* extension = isBank ? kBankExtension : kPresetExtension;
    CFileDialog::CRequest request;
    request.isSave = isSave;
    request.title = CString(isSave ? "Save " : "Load ") + (isBank ? "Bank" : "Preset");
    request.filterName = isBank ? kBankFilter : kPresetFilter;
    request.extension = extension;
    request.folder = folder_;
    if (isSave) {
        const CString name = getAttrString("filename-prefix") + (isBank ? place.bankName : place.presetName);
        request.name = CFileDialog::fileNameOf(name) + "." + extension;
    }
    CString path;
    CString message;
    const CObjectWatch watch(*this);
    const bool isChosen = CFileDialog::ask(*this, request, path, message);
    if (!watch.isAlive()) {
        return nullptr;
    }
    const CString kind(isBank ? "bank-" : "preset-");
    const CString work(isSave ? "save" : "load");
    if (!isChosen) {
        const CString event = "error-" + kind + work;
        return message.isEmpty() ? nullptr : raise(event.toUtf8().c_str(), request.name, nullptr, message);
    }
    folder_ = CFileDialog::folderIn(path);
    const CString event = "perform-" + kind + work;
    asked_ = {event, place, path};
    CAttributeMap params;
    params["path"] = CAttributeValue::fromPlainString(path);
    return deliverEvent(*this, event, params);
}

CError* CPresetManager::onBankLoad() {
    const int32_t bank = selectedBank();
    return bank >= 0 && bank < catalog_.bankCount() && catalog_.hasFixedBanks() && !isGone_
               ? askForFile(true, false, catalog_.placeOf(bank))
               : nullptr;
}

CError* CPresetManager::onBankSave() {
    const int32_t bank = selectedBank();
    return bank >= 0 && bank < catalog_.bankCount() && !isGone_ ? askForFile(true, true, catalog_.placeOf(bank))
                                                                : nullptr;
}

CError* CPresetManager::onPresetLoad() {
    const int32_t bank = selectedBank();
    return bank >= 0 && bank < catalog_.bankCount() && mayChange(bank) ? askForFile(false, false, selection())
                                                                       : nullptr;
}

CError* CPresetManager::onPresetSave() {
    const CPresetPlace place = selection();
    return place.isBank() || isGone_ ? nullptr : askForFile(false, true, place);
}

/// Whose preset it is, as far as this product knows.
CString CPresetManager::typeFailure(const CAudioPreset& preset, const char* what) const {
    for (const CInterfaceRegistryState& registry : catalog_.client().engineState().registries) {
        if (preset.hasPrefix(registry.id)) {
            return CString("The ") + what +
                   (registry.isMaster ? " is one of the whole plug-in: load it in Presets."
                                      : " is one of the routing alone: load it in Routing Presets.");
        }
    }
    return CString("The ") + what + " is for another product.";
}

/// False where the event of a failure was sent: this object may be gone then, and `error` is what a handler returned.
bool CPresetManager::readBank(const CString& path, CAudioPresetBank& bank, CError*& error) {
    if (CError* failure = readBankFile(path, bank)) {
        error = raise("error-bank-load", path, failure);
        return false;
    }
    for (int32_t i = 0; i < bank.count(); ++i) {
        if (!bank.preset(i).hasPrefix(catalog_.state().id)) {
            error = raise("error-preset-type", path, nullptr, typeFailure(bank.preset(i), "bank"));
            return false;
        }
        cutName(bank.preset(i));
    }
    return true;
}

CError* CPresetManager::performBankLoad(CAttributeMap& params) {
    const CString path = params["path"].asString();
    CPresetPlace place = takeAsked("perform-bank-load");
    place.preset = -1;
    if (path.isEmpty() || !catalog_.hasFixedBanks() || !catalog_.store()) {
        return nullptr;
    }
    return place.kind == CPresetBankKind::Session ? loadSessionBank(path) : loadBank(place, path);
}

/// The session bank is replaced only behind a question; the file is read once more then.
CError* CPresetManager::loadSessionBank(const CString& path) {
    CAudioPresetBank bank;
    CError* error = nullptr;
    if (!readBank(path, bank, error)) {
        return error;
    }
    if (bank.count() == 0) {
        return raise("error-bank-load", path, nullptr, "The bank holds no presets.");
    }
    return ask("perform-bank-replace", catalog_.placeOf(0), "Load Bank",
               "Replace all presets of the session bank by those of \"" + CFileDialog::nameIn(path) + "\"?", path);
}

CError* CPresetManager::performBankReplace() {
    CString path;
    const CPresetPlace place = takeAsked("perform-bank-replace", &path);
    if (path.isEmpty() || place.kind != CPresetBankKind::Session) {
        return nullptr;
    }
    CAudioPresetBank bank;
    CError* error = nullptr;
    if (!readBank(path, bank, error)) {
        return error;
    }
    CByteBuffer packed;
    TARV_TRY(packBank(bank, packed));
    const CObjectWatch watch(*this);
    error = catalog_.client().activateData(catalog_.registry(), packed);
    return error && watch.isAlive() ? raise("error-bank-load", path, error) : error;
}

/// Behind the bank that was selected; behind the fixed ones if it is gone.
CError* CPresetManager::loadBank(const CPresetPlace& place, const CString& path) {
    CAudioPresetBank bank;
    CError* error = nullptr;
    if (!readBank(path, bank, error)) {
        return error;
    }
    bank.setName(trimmedName(importedName(bank.name(), path)));
    int32_t behind = -1;
    int32_t preset = -1;
    const bool isThere = catalog_.find(place, behind, preset) && place.kind == CPresetBankKind::Stored;
    const int32_t index = isThere ? catalog_.storeIndex(behind) + 1 : 0;
    error = catalog_.store()->insertBank(index, bank);
    if (!error) {
        selectLater(catalog_.placeOf(catalog_.bankOfStore(index)));
    }
    return afterStoreEdit(error, true);
}

/// A bank that bears no name, or that of a fixed one, is named after its file.
CString CPresetManager::importedName(const CString& name, const CString& path) const {
    if (!name.isEmpty() && !(name == CPresetCatalog::kSessionName) && !(name == CPresetCatalog::kRomName)) {
        return name;
    }
    const CString file = withoutExtension(CFileDialog::nameIn(path));
    const CString& prefix = getAttrString("filename-prefix");
    const bool hasPrefix = file.length() > prefix.length() && file.startsWith(prefix);
    return hasPrefix ? file.substring(prefix.length()) : file;
}

CError* CPresetManager::performPresetLoad(CAttributeMap& params) {
    const CString path = params["path"].asString();
    const CPresetPlace place = takeAsked("perform-preset-load");
    int32_t bank = -1;
    int32_t preset = -1;
    // Without the preset that was selected the bank will do.
    if (path.isEmpty() || (!catalog_.find(place, bank, preset) && bank < 0) || !mayChange(bank)) {
        return nullptr;
    }
    CAudioPreset loaded;
    if (CError* error = readPresetFile(path, loaded)) {
        return raise("error-preset-load", path, error);
    }
    if (!loaded.hasPrefix(catalog_.state().id)) {
        return raise("error-preset-type", path, nullptr, typeFailure(loaded, "preset"));
    }
    cutName(loaded);
    return insertLoaded(bank, preset, loaded, path);
}

/// Into the current program of the session bank; otherwise behind the selected preset, or at the end.
CError* CPresetManager::insertLoaded(int32_t bank, int32_t preset, const CAudioPreset& loaded, const CString& path) {
    const CObjectWatch watch(*this);
    if (catalog_.kindOf(bank) == CPresetBankKind::Session) {
        CByteBuffer packed;
        TARV_TRY(packPreset(loaded, packed));
        CError* error = catalog_.client().activateData(catalog_.registry(), packed);
        return error && watch.isAlive() ? raise("error-preset-load", path, error) : error;
    }
    const int32_t index = preset >= 0 ? preset + 1 : catalog_.presetCount(bank);
    CError* error = catalog_.store()->insertPreset(catalog_.storeIndex(bank), index, loaded);
    if (!error && bank == selectedBank()) {
        selectLater(catalog_.placeOf(bank, index));
    }
    return afterStoreEdit(error, false);
}

CError* CPresetManager::writeFile(bool isBank, const CString& path, const CByteBuffer& block) {
    CError* error = writeBlockFile(path, block);
    return error ? raise(isBank ? "error-bank-save" : "error-preset-save", path, error) : nullptr;
}

CError* CPresetManager::performBankSave(CAttributeMap& params) {
    const CString path = params["path"].asString();
    CPresetPlace place = takeAsked("perform-bank-save");
    place.preset = -1;
    int32_t bank = -1;
    int32_t preset = -1;
    if (path.isEmpty() || !catalog_.find(place, bank, preset)) {
        return nullptr;
    }
    if (place.kind != CPresetBankKind::Stored) {
        CError* error = acquire(CPending::SaveBank, bank, -1, place, path);
        return error ? raise("error-bank-save", path, error) : nullptr;
    }
    CByteBuffer packed;
    TARV_TRY(packBank(catalog_.storedBank(bank), packed));
    return writeFile(true, path, packed);
}

CError* CPresetManager::performPresetSave(CAttributeMap& params) {
    const CString path = params["path"].asString();
    const CPresetPlace place = takeAsked("perform-preset-save");
    int32_t bank = -1;
    int32_t preset = -1;
    if (path.isEmpty() || place.isBank() || !catalog_.find(place, bank, preset)) {
        return nullptr;
    }
    if (place.kind != CPresetBankKind::Stored) {
        CError* error = acquire(CPending::SavePreset, bank, preset, place, path);
        return error ? raise("error-preset-save", path, error) : nullptr;
    }
    CByteBuffer packed;
    TARV_TRY(packPreset(catalog_.storedPreset(bank, preset), packed));
    return writeFile(false, path, packed);
}

}  // namespace tarv
