// A preset manager's lists: what they show, what is selected, which buttons can do something.

#include "UI/Controls/Presets/CPresetManager.h"

#include "Core/CObjectWatch.h"
#include "UI/Windows/CWindow.h"

namespace tarv {

CPresetManager::~CPresetManager() {
    endInput();
    destroyChildren();
}

CError* CPresetManager::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CPresetManager::bankAdd>("bank-add");
    descriptor.addHandler<&CPresetManager::onBankDelete>("on-bank-delete");
    descriptor.addHandler<&CPresetManager::bankDelete>("bank-delete");
    descriptor.addHandler<&CPresetManager::bankRename>("bank-rename");
    descriptor.addHandler<&CPresetManager::bankCanRename>("bank-can-rename");
    descriptor.addHandler<&CPresetManager::bankKey>("bank-key");
    descriptor.addHandler<&CPresetManager::onBankLoad>("bank-load");
    descriptor.addHandler<&CPresetManager::onBankLoad>("on-bank-load");
    descriptor.addHandler<&CPresetManager::onBankSave>("bank-save");
    descriptor.addHandler<&CPresetManager::onBankSave>("on-bank-save");
    descriptor.addHandler<&CPresetManager::performBankLoad>("perform-bank-load");
    descriptor.addHandler<&CPresetManager::performBankSave>("perform-bank-save");
    descriptor.addHandler<&CPresetManager::performBankReplace>("perform-bank-replace");
    descriptor.addHandler<&CPresetManager::presetAdd>("preset-add");
    descriptor.addHandler<&CPresetManager::onPresetDelete>("on-preset-delete");
    descriptor.addHandler<&CPresetManager::presetDelete>("preset-delete");
    descriptor.addHandler<&CPresetManager::presetRename>("preset-rename");
    descriptor.addHandler<&CPresetManager::presetCanRename>("preset-can-rename");
    descriptor.addHandler<&CPresetManager::presetKey>("preset-key");
    descriptor.addHandler<&CPresetManager::presetReplace>("preset-replace");
    descriptor.addHandler<&CPresetManager::performPresetReplace>("perform-preset-replace");
    descriptor.addHandler<&CPresetManager::onPresetLoad>("preset-load");
    descriptor.addHandler<&CPresetManager::onPresetLoad>("on-preset-load");
    descriptor.addHandler<&CPresetManager::onPresetSave>("preset-save");
    descriptor.addHandler<&CPresetManager::onPresetSave>("on-preset-save");
    descriptor.addHandler<&CPresetManager::performPresetLoad>("perform-preset-load");
    descriptor.addHandler<&CPresetManager::performPresetSave>("perform-preset-save");
    descriptor.addHandler<&CPresetManager::presetActivate>("preset-activate");
    descriptor.addHandler<&CPresetManager::presetSetDefault>("preset-set-default");
    descriptor.addHandler<&CPresetManager::performPresetSetDefault>("perform-preset-set-default");
    descriptor.addHandler<&CPresetManager::performPresetClearDefault>("perform-preset-clear-default");
    descriptor.addHandler<&CPresetManager::presetUpdate>("preset-update");
    descriptor.addHandler<&CPresetManager::sharedBanksUpdate>("shared-banks-update");
    descriptor.addHandler<&CPresetManager::defaultUpdate>("default-preset-update");
    return CWinDrag::initClass(descriptor);
}

CError* CPresetManager::init() {
    TARV_TRY(CWinDrag::init());
    auto* client = findObjectOf<CAudioInterfaceClient>(getAttrString("interface-client"));
    if (!client) {
        TARV_FAIL("@tarvstr_CPresetManager_init_NoInterfaceClient No interfacing object '%1' found.",
                  getAttrString("interface-client"));
    }
    TARV_TRY(catalog_.init(*client, getAttrString("param-registry"), getAttrString("store-name"),
                           getAttrBool("is-global-data")));
    listenObject(client->fullName(), "shared-banks-update", "shared-banks-update");
    listenObject(client->fullName(), "default-preset-update", "default-preset-update");
    return nullptr;
}

CError* CPresetManager::finishInit() {
    TARV_TRY(CWinDrag::finishInit());
    TARV_TRY(initChilds());
    TARV_TRY(catalog_.client().addRegistryListener(catalog_.registry(), *this));
    return nullptr;
}

CError* CPresetManager::initChilds() {
    if (!presetList_.view()) {
        TARV_FAIL("@tarvstr_CPresetManager_initChilds_NoPresetList No preset list view found.");
    }
    listenList(bankList_, "bank");
    listenList(presetList_, "preset");
    const CString presets = presetList_.view()->fullName();
    listenObject(presets, "paragraph-dbl-clicked", "preset-activate");
    listenObject(presets, "paragraph-chosen", "preset-activate");
    if (catalog_.store()) {
        catalog_.store()->refresh();  // what other programs have written since
    }
    TARV_TRY(refreshLists());
    return nullptr;
}

void CPresetManager::listenList(const CPresetManagerListBridge& list, const char* kind) {
    const CTextView* view = list.view();
    if (!view) {
        return;
    }
    const CString name(kind);
    listenObject(view->fullName(), "selected-paragraph-changed", "preset-update");
    listenObject(view->fullName(), "paragraph-edit-query", name + "-can-rename");
    listenObject(view->fullName(), "paragraph-text-changed", name + "-rename");
    listenObject(view->fullName(), "key-press", name + "-key");
}

int32_t CPresetManager::selectedBank() const {
    return bankList_.view() ? bankList_.selected() : 0;
}

/// A bank, or a preset if one is selected.
CPresetPlace CPresetManager::selection() const {
    const int32_t bank = selectedBank();
    return bank >= 0 && bank < catalog_.bankCount() ? catalog_.placeOf(bank, selectedPreset()) : CPresetPlace();
}

/// The user has selected a bank or a preset.
CError* CPresetManager::presetUpdate() {
    CPresetPlace bank = selection();
    bank.preset = -1;
    bank.presetName.clear();
    if (!(bank == shown_)) {
        return refreshPresets();
    }
    selected_ = selection();
    return updateButtons();
}

CError* CPresetManager::sharedBanksUpdate(CAttributeMap& params) {
    const CString& name = params["store-name"].asString();
    return catalog_.store() && name == catalog_.store()->form().name ? refreshLists() : nullptr;
}

void CPresetManager::onRegistryChanged(const CInterfaceRegistryState& state) {
    catalog_.setState(state);
    TARV_CONSUME(refreshLists());
}

void CPresetManager::onRegistryGone() {
    isGone_ = true;
    TARV_CONSUME(updateButtons());
}

/// The selected bank follows where it moves; one that is gone leaves the first one selected.
CError* CPresetManager::refreshLists() {
    CPresetManagerListBridge::CRows rows;
    for (int32_t i = 0; bankList_.view() && i < catalog_.bankCount(); ++i) {
        rows.append({CPresetCatalog::shownName(catalog_.bankName(i))});
    }
    CPresetPlace wanted = shown_;
    wanted.preset = -1;
    int32_t bank = -1;
    int32_t preset = -1;
    if (!catalog_.find(wanted, bank, preset)) {
        bank = 0;
    }
    TARV_TRY(bankList_.show(rows));
    TARV_TRY(bankList_.select(bank));
    TARV_TRY(refreshPresets());
    return nullptr;
}

CError* CPresetManager::refreshPresets() {
    const int32_t bank = selectedBank();
    CPresetManagerListBridge::CRows rows;
    for (int32_t i = 0; i < catalog_.presetCount(bank); ++i) {
        const CString name = catalog_.presetName(bank, i);
        rows.append({CPresetCatalog::shownName(name), isDefault(name)});
    }
    const CPresetPlace place = bank >= 0 && bank < catalog_.bankCount() ? catalog_.placeOf(bank) : CPresetPlace();
    const int32_t current = catalog_.currentPreset(bank);
    followRename();
    int32_t foundBank = -1;
    int32_t preset = -1;
    const bool isSameBank = place.kind == shown_.kind && place.bankName == shown_.bankName;
    const bool isKept = isSameBank && current == current_ && !selected_.isBank() &&
                        catalog_.find(selected_, foundBank, preset) && foundBank == bank;
    shown_ = place;
    current_ = current;
    TARV_TRY(presetList_.show(rows));
    TARV_TRY(presetList_.select(isKept ? preset : current));
    selected_ = selection();
    TARV_TRY(updateButtons());
    return nullptr;
}

/// The selection when the lists are filled next.
void CPresetManager::selectLater(const CPresetPlace& place) {
    selected_ = place;
    shown_ = place;
    shown_.preset = -1;
    shown_.presetName.clear();
}

bool CPresetManager::isDefault(const CString& name) const {
    return catalog_.hasFixedBanks() && catalog_.client().hasDefaultPreset() &&
           catalog_.client().defaultPresetName() == name;
}

CError* CPresetManager::updateButtons() {
    const int32_t bank = selectedBank();
    const bool isThere = !isGone_ && bank >= 0 && bank < catalog_.bankCount();
    const bool isRom = isThere && catalog_.kindOf(bank) == CPresetBankKind::Rom;
    const bool isStored = isThere && catalog_.kindOf(bank) == CPresetBankKind::Stored;
    const bool isPreset = isThere && selectedPreset() >= 0;
    const bool isLastProgram = isThere && !isStored && catalog_.presetCount(bank) <= 1;
    const struct {
        const char* group;
        const char* button;
        bool isEnabled;
    } kButtons[] = {{"bank", "add", isThere && catalog_.store() != nullptr},
                    {"bank", "delete", isStored},
                    {"bank", "load", isThere},
                    {"bank", "save", isThere},
                    {"preset", "add", isThere && !isRom},
                    {"preset", "delete", isPreset && !isRom && !isLastProgram},
                    {"preset", "replace", isPreset && !isRom},
                    {"preset", "load", isThere && !isRom},
                    {"preset", "save", isPreset},
                    {"preset", "activate", isPreset},
                    {"preset", "set-default", isPreset && catalog_.hasFixedBanks()}};
    const CObjectWatch watch(*this);
    for (const auto& row : kButtons) {
        CError* error = enable(row.group, row.button, row.isEnabled);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

CError* CPresetManager::enable(const char* group, const char* button, bool isEnabled) {
    const CString path = CString(group) + "-buttons-path";
    CObject* view = getAttrString(path).isEmpty() ? nullptr : findObject("$" + path + "." + button);
    return view && view->getAttrBool("is-disabled") == isEnabled
               ? view->setAttribute("is-disabled", CAttributeValue::fromBool(!isEnabled))
               : nullptr;
}

CError* CPresetManager::inputEvent(const CString& name, CAttributeMap& params) {
    auto* shown = dynamic_cast<CWindow*>(window());
    if (name == CString("popup-closed") && shown && !shown->popups().popupOf(*this)) {
        asked_ = {};  // the window that asked was closed without an answer
    }
    // The answer of a window that names the event to go on with.
    const CString event = name == CString("popup-result") ? params["event"].asString() : CString();
    if (!event.isEmpty()) {
        CAttributeMap none;
        return deliverEvent(*this, event, none);
    }
    return CWinDrag::inputEvent(name, params);
}

}  // namespace tarv
