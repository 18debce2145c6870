#pragma once

#include <atomic>

#include "Audio/Stores/CAudioBankList.h"
#include "Core/CApplicationData.h"

namespace tarv {

/// Where a store is kept and in which form.
struct CAudioPresetStoreForm {
    const char* name;  ///< `store-name`, and the key in the user's data
    bool isGlobal;     ///< in CGlobalData, otherwise in CLocalData
    bool hasBanks;     ///< banks with presets; otherwise a list of presets, shown here as one bank
};

/// Presets that outlive an instance, one list for all editors of a user. Holds a copy of what is stored. Every edit
/// reads the stored bytes again, makes its one change and writes them, under a lock between programs, so that another
/// program's edits stay. A bank is identified by its index and name, a preset by its index and bytes: if another
/// program moved it the edit follows; if another program changed it the edit fails, changes nothing, and the copy is
/// refreshed. Indexes are those of the copy; an index out of range fails. The editor's thread.
class CAudioPresetStore : public CHeapObject {
public:
    /// `changed(user)` is called when any editor of this process wrote the store; on the thread that wrote, under the
    /// store's lock.
    CAudioPresetStore(const CAudioPresetStoreForm& form, void (*changed)(void* user), void* user);
    ~CAudioPresetStore();
    /// The form of the store of a name, or null.
    static const CAudioPresetStoreForm* findForm(const CString& name);

    const CAudioPresetStoreForm& form() const { return form_; }
    const CAudioBankList& banks() const { return banks_; }
    /// Reads what is stored. Damage is logged. A list of presets that is missing, damaged or empty gives the embedded
    /// one, damaged banks give none. The next edit keeps the damaged bytes aside (CApplicationData::keepDamaged) and
    /// begins with what is shown; an edit of what another version of the form stored fails.
    void refresh();
    /// False if the last edit could not be written to the disk: it lasts for this process only.
    bool isOnDisk() const { return data().isOnDisk(form_.name); }
    /// Refreshes if `changed` was called since the last time; returns whether it was.
    bool refreshIfChanged();

    /// Banks; not of a list.
    [[nodiscard]] CError* insertBank(int32_t index, const CAudioPresetBank& bank);
    [[nodiscard]] CError* deleteBank(int32_t index);
    [[nodiscard]] CError* renameBank(int32_t index, const CString& name);
    /// Presets of a bank; of a list the bank is 0.
    [[nodiscard]] CError* insertPreset(int32_t bank, int32_t index, const CAudioPreset& preset);
    [[nodiscard]] CError* deletePreset(int32_t bank, int32_t index);
    [[nodiscard]] CError* renamePreset(int32_t bank, int32_t index, const CString& displayName);
    /// Overwrites a preset; its name stays.
    [[nodiscard]] CError* replacePreset(int32_t bank, int32_t index, const CAudioPreset& preset);

private:
    CApplicationData& data() const;
    uint32_t blockIdOfForm() const;
    [[nodiscard]] CError* parse(const CByteBuffer& bytes, CAudioBankList& banks) const;
    /// On failure `banks` is what it is with nothing stored.
    [[nodiscard]] CError* parseStored(const CByteBuffer& bytes, CAudioBankList& banks) const;
    [[nodiscard]] CError* parseForEdit(const CByteBuffer& bytes, CAudioBankList& banks) const;
    bool isOfOtherVersion(const CByteBuffer& bytes) const;
    [[nodiscard]] CError* save(const CAudioBankList& banks, CByteBuffer& bytes) const;
    [[nodiscard]] CError* requireBanks() const;
    [[nodiscard]] CError* requireIndex(int32_t index, int32_t end) const;
    [[nodiscard]] CError* requirePreset(int32_t bank, int32_t index) const;
    [[nodiscard]] CError* findBank(const CAudioBankList& stored, int32_t index, int32_t& found) const;
    [[nodiscard]] CError* findPreset(const CAudioBankList& stored, int32_t bank, int32_t index, int32_t& foundBank,
                                     int32_t& found) const;
    template <class Edit>
    [[nodiscard]] CError* edit(Edit&& change);
    /// Calls `act` with the stored bank that holds a preset, and the preset's index in it.
    template <class Act>
    [[nodiscard]] CError* editPreset(int32_t bank, int32_t index, const Act& act);
    void storeWritten(CCheckedObject* sender);

    const CAudioPresetStoreForm& form_;
    void (*changed_)(void* user);
    void* user_;
    CAudioBankList banks_;
    std::atomic<bool> isChanged_{false};
    CApplicationDataBridge<CAudioPresetStore> bridge_;
};

}  // namespace tarv
