#include "UI/Controls/Presets/CPresetCatalog.h"

#include "Audio/Stores/PackedStream.h"
#include "Core/CompressedBlock.h"

namespace tarv {

namespace {

template <class T>
CError* pack(const T& source, uint32_t id, CByteBuffer& packed) {
    CByteBuffer bytes;
    CBufferWriter stream(bytes);
    TARV_TRY(source.save(stream));
    packed.clear();
    CBufferWriter writer(packed);
    TARV_TRY(writeStored(writer, bytes, id, true));
    return nullptr;
}

/// The index itself if it has that name, otherwise the first one that has; -1 for none.
template <class NameAt>
int32_t findNamed(int32_t index, int32_t count, const CString& name, NameAt&& nameAt) {
    if (index >= 0 && index < count && nameAt(index) == name) {
        return index;
    }
    for (int32_t i = 0; i < count; ++i) {
        if (nameAt(i) == name) {
            return i;
        }
    }
    return -1;
}

}  // namespace

CError* packPreset(const CAudioPreset& preset, CByteBuffer& packed) {
    return pack(preset, kPresetBlockId, packed);
}

CError* packBank(const CAudioPresetBank& bank, CByteBuffer& packed) {
    return pack(bank, kBankBlockId, packed);
}

CError* CPresetCatalog::init(CAudioInterfaceClient& client, const CString& registry, const CString& storeName,
                             bool isGlobal) {
    client_ = &client;
    registry_ = registry;
    if (storeName.isEmpty()) {
        return nullptr;
    }
    TARV_TRY(client.findPresetStore(storeName, store_));
    if (store_->form().isGlobal != isGlobal) {
        store_ = nullptr;
        TARV_FAIL("@tarvstr_CPresetCatalog_init_OtherStore The preset store '%1' is of the other kind.", storeName);
    }
    return nullptr;
}

int32_t CPresetCatalog::bankCount() const {
    return (hasFixedBanks() ? kFixedBanks : 0) + (store_ ? store_->banks().count() : 0);
}

CPresetBankKind CPresetCatalog::kindOf(int32_t bank) const {
    return hasFixedBanks() && bank < kFixedBanks ? static_cast<CPresetBankKind>(bank) : CPresetBankKind::Stored;
}

const CAudioPresetBank& CPresetCatalog::storedBank(int32_t bank) const {
    return store_->banks().bank(storeIndex(bank));
}

const CAudioPreset& CPresetCatalog::storedPreset(int32_t bank, int32_t preset) const {
    return storedBank(bank).preset(preset);
}

const CTextList& CPresetCatalog::programsOf(int32_t bank) const {
    return kindOf(bank) == CPresetBankKind::Session ? state_.programs : state_.romPresets;
}

CString CPresetCatalog::bankName(int32_t bank) const {
    if (bank < 0 || bank >= bankCount()) {
        return {};
    }
    if (kindOf(bank) == CPresetBankKind::Stored) {
        return storedBank(bank).name();
    }
    return kindOf(bank) == CPresetBankKind::Session ? kSessionName : kRomName;
}

int32_t CPresetCatalog::presetCount(int32_t bank) const {
    if (bank < 0 || bank >= bankCount()) {
        return 0;
    }
    return kindOf(bank) == CPresetBankKind::Stored ? storedBank(bank).count() : programsOf(bank).count();
}

CString CPresetCatalog::presetName(int32_t bank, int32_t preset) const {
    if (preset < 0 || preset >= presetCount(bank)) {
        return {};
    }
    return kindOf(bank) == CPresetBankKind::Stored ? storedPreset(bank, preset).displayName()
                                                   : programsOf(bank)[preset];
}

int32_t CPresetCatalog::currentPreset(int32_t bank) const {
    return bank >= 0 && bank < bankCount() && kindOf(bank) == CPresetBankKind::Session && !state_.programs.isEmpty()
               ? state_.currentProgram
               : -1;
}

CPresetPlace CPresetCatalog::placeOf(int32_t bank, int32_t preset) const {
    CPresetPlace place;
    place.kind = kindOf(bank);
    place.bank = place.kind == CPresetBankKind::Stored ? storeIndex(bank) : 0;
    place.bankName = bankName(bank);
    place.preset = preset;
    place.presetName = presetName(bank, preset);
    return place;
}

bool CPresetCatalog::find(const CPresetPlace& place, int32_t& bank, int32_t& preset) const {
    bank = static_cast<int32_t>(place.kind);
    if (place.kind == CPresetBankKind::Stored) {
        const int32_t index = findNamed(place.bank, store_ ? store_->banks().count() : 0, place.bankName,
                                        [this](int32_t i) -> const CString& { return store_->banks().bank(i).name(); });
        bank = index < 0 ? -1 : bankOfStore(index);
    } else if (!hasFixedBanks()) {
        bank = -1;
    }
    preset = -1;
    if (bank >= 0 && !place.isBank()) {
        preset = findNamed(place.preset, presetCount(bank), place.presetName,
                           [this, bank](int32_t i) { return presetName(bank, i); });
    }
    return bank >= 0 && (place.isBank() || preset >= 0);
}

CError* CPresetCatalog::activate(int32_t bank, int32_t preset) const {
    switch (kindOf(bank)) {
        case CPresetBankKind::Session:
            return client_->setProgram(registry_, preset);
        case CPresetBankKind::Rom:
            return client_->activateRomPreset(registry_, preset);
        case CPresetBankKind::Stored:
            break;
    }
    CByteBuffer packed;
    TARV_TRY(packPreset(storedPreset(bank, preset), packed));
    return client_->activateData(registry_, packed);
}

}  // namespace tarv
