// Shared banks and preset lists of a user.

#include "Audio/Client/CAudioPresetStore.h"

#include <algorithm>

#include "Audio/Stores/PackedStream.h"
#include "Core/CompressedBlock.h"

namespace tarv {

namespace {

constexpr CAudioPresetStoreForm kForms[] = {
    {"shared-banks", false, true},
    {"routing-presets", true, false},
};

template <class T>
bool isSame(const T& one, const T& other) {
    CByteBuffer bytes[2];
    for (int32_t i = 0; i < 2; ++i) {
        CBufferWriter writer(bytes[i]);
        if (CError* error = (i == 0 ? one : other).save(writer)) {
            TARV_CONSUME(error);
            return false;
        }
    }
    return bytes[0].count() == bytes[1].count() && std::equal(bytes[0].begin(), bytes[0].end(), bytes[1].begin());
}

}  // namespace

const CAudioPresetStoreForm* CAudioPresetStore::findForm(const CString& name) {
    for (const CAudioPresetStoreForm& form : kForms) {
        if (name == form.name) {
            return &form;
        }
    }
    return nullptr;
}

CAudioPresetStore::CAudioPresetStore(const CAudioPresetStoreForm& form, void (*changed)(void* user), void* user)
    : form_(form), changed_(changed), user_(user), bridge_(this, &CAudioPresetStore::storeWritten) {
    bridge_.subscribe(data(), form_.name);
    refresh();
}

CAudioPresetStore::~CAudioPresetStore() {
    bridge_.disconnect();
}

CApplicationData& CAudioPresetStore::data() const {
    return form_.isGlobal ? static_cast<CApplicationData&>(CGlobalData::instance())
                          : static_cast<CApplicationData&>(CLocalData::instance());
}

uint32_t CAudioPresetStore::blockIdOfForm() const {
    return form_.hasBanks ? blockId(CAudioBankList::kBlockId) : kListBlockId;
}

void CAudioPresetStore::storeWritten(CCheckedObject*) {
    isChanged_ = true;
    changed_(user_);
}

CError* CAudioPresetStore::parse(const CByteBuffer& bytes, CAudioBankList& banks) const {
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
    if (form_.hasBanks) {
        TARV_TRY(banks.load(reader));
        return nullptr;
    }
    CAudioPresetList list;
    TARV_TRY(list.load(reader));
    TARV_TRY(expectStreamEnd(reader));
    banks.clear();
    banks.insert(0, list);
    return nullptr;
}

CError* CAudioPresetStore::parseStored(const CByteBuffer& bytes, CAudioBankList& banks) const {
    banks.clear();
    CError* error = bytes.isEmpty() ? nullptr : parse(bytes, banks);
    if (!form_.hasBanks && (banks.count() == 0 || banks.bank(0).count() == 0)) {
        CByteBuffer embedded;
        data().readEmbedded(form_.name, embedded, blockIdOfForm());
        banks.clear();
        TARV_CONSUME(parse(embedded, banks));
    }
    TARV_TRY(error);
    return nullptr;
}

bool CAudioPresetStore::isOfOtherVersion(const CByteBuffer& bytes) const {
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
    uint32_t version = 0;
    if (CError* error = reader.readValue(version)) {
        delete error;
        return false;
    }
    return version != (form_.hasBanks ? CAudioBankList::kVersion : CAudioPresetList::kVersion);
}

CError* CAudioPresetStore::parseForEdit(const CByteBuffer& bytes, CAudioBankList& banks) const {
    if (CError* error = parseStored(bytes, banks)) {
        if (isOfOtherVersion(bytes)) {
            return error;  // another build's: it isn't overwritten
        }
        TARV_CONSUME(error);
        TARV_TRY(data().keepDamaged(form_.name));
    }
    return nullptr;
}

CError* CAudioPresetStore::save(const CAudioBankList& banks, CByteBuffer& bytes) const {
    bytes.clear();
    CBufferWriter writer(bytes);
    if (form_.hasBanks) {
        TARV_TRY(banks.save(writer));
        return nullptr;
    }
    CAudioPresetList list;
    list.copyPresets(banks.bank(0));
    TARV_TRY(list.save(writer));
    return nullptr;
}

void CAudioPresetStore::refresh() {
    CByteBuffer bytes;
    data().readStored(form_.name, bytes, blockIdOfForm());
    TARV_CONSUME(parseStored(bytes, banks_));
}

bool CAudioPresetStore::refreshIfChanged() {
    if (!isChanged_.exchange(false)) {
        return false;
    }
    refresh();
    return true;
}

template <class Edit>
CError* CAudioPresetStore::edit(Edit&& change) {
    CError* error = data().update(form_.name, blockIdOfForm(), [&](CByteBuffer& bytes) -> CError* {
        CAudioBankList stored;
        TARV_TRY(parseForEdit(bytes, stored));
        TARV_TRY(change(stored));
        TARV_TRY(save(stored, bytes));
        return nullptr;
    });
    refresh();
    return error;
}

CError* CAudioPresetStore::requireBanks() const {
    if (!form_.hasBanks) {
        TARV_FAIL("@tarvstr_CAudioPresetStore_requireBanks_NoBanks The preset store '%1' has no banks.", form_.name);
    }
    return nullptr;
}

CError* CAudioPresetStore::requireIndex(int32_t index, int32_t end) const {
    if (index < 0 || index >= end) {
        TARV_FAIL("@tarvstr_CAudioPresetStore_requireIndex_IndexError Invalid preset index %1 specified.",
                  CString::fromInt(index));
    }
    return nullptr;
}

CError* CAudioPresetStore::requirePreset(int32_t bank, int32_t index) const {
    TARV_TRY(requireIndex(bank, banks_.count()));
    TARV_TRY(requireIndex(index, banks_.bank(bank).count()));
    return nullptr;
}

CError* CAudioPresetStore::findBank(const CAudioBankList& stored, int32_t index, int32_t& found) const {
    const CString& name = banks_.bank(index).name();
    found = index < stored.count() && stored.bank(index).name() == name ? index : -1;
    for (int32_t i = 0; found < 0 && i < stored.count(); ++i) {
        found = stored.bank(i).name() == name ? i : -1;
    }
    if (found < 0) {
        TARV_FAIL("@tarvstr_CAudioPresetStore_findBank_Gone The bank '%1' was changed by another program.", name);
    }
    return nullptr;
}

CError* CAudioPresetStore::findPreset(const CAudioBankList& stored, int32_t bank, int32_t index, int32_t& foundBank,
                                      int32_t& found) const {
    TARV_TRY(findBank(stored, bank, foundBank));
    const CAudioPreset& wanted = banks_.bank(bank).preset(index);
    const CAudioPresetBank& presets = stored.bank(foundBank);
    found = index < presets.count() && isSame(presets.preset(index), wanted) ? index : -1;
    for (int32_t i = 0; found < 0 && i < presets.count(); ++i) {
        found = isSame(presets.preset(i), wanted) ? i : -1;
    }
    if (found < 0) {
        TARV_FAIL("@tarvstr_CAudioPresetStore_findPreset_Gone The preset '%1' was changed by another program.",
                  wanted.displayName());
    }
    return nullptr;
}

CError* CAudioPresetStore::insertBank(int32_t index, const CAudioPresetBank& bank) {
    TARV_TRY(requireBanks());
    TARV_TRY(requireIndex(index, banks_.count() + 1));
    return edit([&](CAudioBankList& stored) -> CError* {
        stored.insert(std::min(index, stored.count()), bank);
        return nullptr;
    });
}

CError* CAudioPresetStore::deleteBank(int32_t index) {
    TARV_TRY(requireBanks());
    TARV_TRY(requireIndex(index, banks_.count()));
    return edit([&](CAudioBankList& stored) -> CError* {
        int32_t found = -1;
        TARV_TRY(findBank(stored, index, found));
        // A bank with presets that the user has not seen stays.
        if (!isSame(stored.bank(found), banks_.bank(index))) {
            TARV_FAIL("@tarvstr_CAudioPresetStore_deleteBank_Changed The bank '%1' was changed by another program.",
                      banks_.bank(index).name());
        }
        stored.remove(found);
        return nullptr;
    });
}

CError* CAudioPresetStore::renameBank(int32_t index, const CString& name) {
    TARV_TRY(requireBanks());
    TARV_TRY(requireIndex(index, banks_.count()));
    return edit([&](CAudioBankList& stored) -> CError* {
        int32_t found = -1;
        TARV_TRY(findBank(stored, index, found));
        stored.bank(found).setName(name);
        return nullptr;
    });
}

CError* CAudioPresetStore::insertPreset(int32_t bank, int32_t index, const CAudioPreset& preset) {
    TARV_TRY(requireIndex(bank, banks_.count()));
    TARV_TRY(requireIndex(index, banks_.bank(bank).count() + 1));
    return edit([&](CAudioBankList& stored) -> CError* {
        int32_t found = -1;
        TARV_TRY(findBank(stored, bank, found));
        stored.bank(found).insert(std::min(index, stored.bank(found).count()), preset);
        return nullptr;
    });
}

template <class Act>
CError* CAudioPresetStore::editPreset(int32_t bank, int32_t index, const Act& act) {
    TARV_TRY(requirePreset(bank, index));
    return edit([&](CAudioBankList& stored) -> CError* {
        int32_t foundBank = -1;
        int32_t found = -1;
        TARV_TRY(findPreset(stored, bank, index, foundBank, found));
        act(stored.bank(foundBank), found);
        return nullptr;
    });
}

CError* CAudioPresetStore::deletePreset(int32_t bank, int32_t index) {
    return editPreset(bank, index, [](CAudioPresetBank& stored, int32_t found) { stored.remove(found); });
}

CError* CAudioPresetStore::renamePreset(int32_t bank, int32_t index, const CString& displayName) {
    return editPreset(bank, index, [&](CAudioPresetBank& stored, int32_t found) {
        stored.preset(found).setDisplayName(displayName);
    });
}

CError* CAudioPresetStore::replacePreset(int32_t bank, int32_t index, const CAudioPreset& preset) {
    return editPreset(bank, index, [&](CAudioPresetBank& stored, int32_t found) {
        CAudioPreset& target = stored.preset(found);
        const CString name = target.name();
        target.copyFrom(preset);
        target.setName(name);
    });
}

}  // namespace tarv
