#pragma once

#include "Audio/Client/CAudioInterfaceClient.h"
#include "UI/Controls/Presets/CPresetPlace.h"

namespace tarv {

/// The banks and presets that an editor offers, in their order: the session bank and the ROM of a registry, then the
/// banks of a store; or the presets of a store without banks as one bank. Banks and presets are counted from 0. The
/// registry's part is what onRegistryChanged brought last; the store's is always current. Thread: that of the editor.
class CPresetCatalog {
public:
    static constexpr const char* kSessionName = "Session Bank";
    static constexpr const char* kRomName = "Factory ROM";

    /// Finds the store of a name, empty for none; `isGlobal` says whether it is to be one for all the maker's plug-ins.
    /// Fails for a name without a store and for one of the other kind. The client outlives this object's use.
    [[nodiscard]] CError* init(CAudioInterfaceClient& client, const CString& registry, const CString& storeName,
                               bool isGlobal);
    void setState(const CInterfaceRegistryState& state) { state_ = state; }
    const CInterfaceRegistryState& state() const { return state_; }
    CAudioInterfaceClient& client() const { return *client_; }
    const CString& registry() const { return registry_; }
    /// Null without one.
    CAudioPresetStore* store() const { return store_; }

    /// Whether the session bank and the ROM stand first.
    bool hasFixedBanks() const { return !store_ || store_->form().hasBanks; }
    int32_t bankCount() const;
    CPresetBankKind kindOf(int32_t bank) const;
    /// Index in the store of a stored bank.
    int32_t storeIndex(int32_t bank) const { return hasFixedBanks() ? bank - kFixedBanks : bank; }
    /// Bank of an index in the store.
    int32_t bankOfStore(int32_t index) const { return hasFixedBanks() ? index + kFixedBanks : index; }
    /// Empty for an index out of range.
    CString bankName(int32_t bank) const;
    int32_t presetCount(int32_t bank) const;
    /// The display name; empty for an index out of range.
    CString presetName(int32_t bank, int32_t preset) const;
    /// What a list shows for a name: a row without any text could not be seen.
    static CString shownName(const CString& name) { return name.isEmpty() ? CString("---") : name; }
    /// The current program in the session bank, -1 in all others.
    int32_t currentPreset(int32_t bank) const;
    /// What lies there in the store, as it was read last; of a stored bank.
    const CAudioPreset& storedPreset(int32_t bank, int32_t preset) const;
    const CAudioPresetBank& storedBank(int32_t bank) const;

    CPresetPlace placeOf(int32_t bank, int32_t preset = -1) const;
    /// Where it is by now: at its index if the name is still the same, otherwise where that name comes first. False if
    /// the name is gone. Of a bank, `preset` gets -1.
    [[nodiscard]] bool find(const CPresetPlace& place, int32_t& bank, int32_t& preset) const;

    /// Makes a preset the current state: a program is selected, any other is copied to the current one. One step. May
    /// destroy this object, as CAudioInterfaceClient documents.
    [[nodiscard]] CError* activate(int32_t bank, int32_t preset) const;

private:
    static constexpr int32_t kFixedBanks = 2;

    const CTextList& programsOf(int32_t bank) const;

    CAudioInterfaceClient* client_ = nullptr;
    CString registry_;
    CAudioPresetStore* store_ = nullptr;
    CInterfaceRegistryState state_;
};

/// A preset or a bank as a compressed block.
[[nodiscard]] CError* packPreset(const CAudioPreset& preset, CByteBuffer& packed);
[[nodiscard]] CError* packBank(const CAudioPresetBank& bank, CByteBuffer& packed);

}  // namespace tarv
