#pragma once

#include "UI/Controls/Buttons/CWinDrag.h"
#include "UI/Controls/Presets/CPresetCatalog.h"
#include "UI/Controls/Presets/CPresetManagerListBridge.h"

namespace tarv {

/// The panel in which banks and presets are managed (`ui:preset-manager`), a root view. Its list of banks, if there is
/// one, and its list of presets show the session bank, the ROM and the banks of a store, or a store of presets alone;
/// what other editors change shows at once. Thread: that of the editor. Attributes:
///   interface-client, param-registry, store-name, is-global-data   as of CDynamicListPresets
///   filename-prefix                       before the names that are offered for files
///   defbankname, defpresetname            names of new ones, before a blank and the first free number
///   bank-list-path, preset-list-path      the lists; presets must have one
///   bank-buttons-path, preset-buttons-path   views of buttons: `.add`, `.delete`, `.replace`, `.load`, `.save`,
///                                         `.activate`, `.set-default` below them are disabled while they can do
///                                         nothing
///   confirmation-template                 of the window that asks; by default "ui:win-confirmation"
///
/// Events that it handles. Those of presets are named like those of banks, with `preset-` for `bank-`.
///   bank-add         a new one at the end; behind the selected one with `is-insert`. A preset holds the current state
///   on-bank-delete   asks, then gets `bank-delete`, which deletes the selected one
///   bank-rename      `index`, `text` of a row; `bank-can-rename` refuses the fixed ones by `is-refused`
///   bank-load, bank-save   ask for a file; then `perform-bank-load`, `perform-bank-save` with its `path`
///   preset-replace   overwrites the selected one with the current state; a stored one asks before, and then gets
///                    `perform-preset-replace`
///   preset-activate  makes the selected one the current state
///   preset-set-default   asks, then gets `perform-preset-set-default`, or `perform-preset-clear-default` if the
///                    selected one is the default
///   preset-update    the user selected a row
/// Events that it sends, with `path`, `filename`, `reason` and the whole as `text`: error-bank-load, error-bank-save,
/// error-preset-load, error-preset-save, error-preset-type (a file of another product or registry). Then nothing has
/// changed. What could not be stored has the name of the store as its path: a block that the disk does not take lasts
/// for this process. Names in files that are longer than kMaxName are cut.
class CPresetManager : public CWinDrag, public CAudioInterfaceRegistryListener {
public:
    /// In UTF-16 units; what is longer is cut.
    static constexpr int32_t kMaxName = 64;

    ~CPresetManager() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* finishInit() override;

    void onRegistryChanged(const CInterfaceRegistryState& state) override;
    void onDataAcquired(uint32_t request, const CByteBuffer& bytes) override;
    void onRegistryGone() override;

    const CPresetCatalog& catalog() const { return catalog_; }

protected:
    [[nodiscard]] CError* inputEvent(const CString& name, CAttributeMap& params) override;

private:
    /// What is to be done with a preset or a bank that the engine sends.
    enum class CPending : uint8_t { Insert, Replace, SetDefault, AskDefault, SavePreset, SaveBank };
    struct CRequest {
        uint32_t id = 0;
        CPending action = CPending::Insert;
        CPresetPlace place;
        CString text;  ///< a name or a path
    };
    /// What a window asks about, until its answer comes.
    struct CAsked {
        CString event;
        CPresetPlace place;
        CString path;
    };
    // Lists: CPresetManager.cpp.
    [[nodiscard]] CError* initChilds();
    void listenList(const CPresetManagerListBridge& list, const char* kind);
    [[nodiscard]] CError* presetUpdate();
    [[nodiscard]] CError* sharedBanksUpdate(CAttributeMap& params);
    [[nodiscard]] CError* defaultUpdate() { return refreshPresets(); }
    [[nodiscard]] CError* refreshLists();
    [[nodiscard]] CError* refreshPresets();
    [[nodiscard]] CError* updateButtons();
    [[nodiscard]] CError* enable(const char* group, const char* button, bool isEnabled);
    int32_t selectedBank() const;
    int32_t selectedPreset() const { return presetList_.selected(); }
    CPresetPlace selection() const;
    bool isDefault(const CString& name) const;
    bool mayChange(int32_t bank) const { return !isGone_ && catalog_.kindOf(bank) != CPresetBankKind::Rom; }
    void selectLater(const CPresetPlace& place);

    // Renaming, keys: CPresetManagerNames.cpp.
    [[nodiscard]] CError* bankCanRename(CAttributeMap& params);
    [[nodiscard]] CError* bankRename(CAttributeMap& params);
    [[nodiscard]] CError* bankKey(CAttributeMap& params);
    [[nodiscard]] CError* presetCanRename(CAttributeMap& params);
    [[nodiscard]] CError* presetRename(CAttributeMap& params);
    [[nodiscard]] CError* presetKey(CAttributeMap& params);
    /// Without blanks at its ends, and no longer than a name may be.
    static CString trimmedName(const CString& text);
    /// What a file names it, where that is too long.
    static void cutName(CAudioPreset& preset);
    CPresetPlace rowPlace(bool isBank, const CAttributeMap& params) const;
    /// The selected preset is found by its new name from then on that the list has it.
    void followRename();

    // Additions, deletions, activation: CPresetManagerEdits.cpp.
    [[nodiscard]] CError* bankAdd(CAttributeMap& params);
    [[nodiscard]] CError* onBankDelete();
    [[nodiscard]] CError* bankDelete();
    [[nodiscard]] CError* presetAdd(CAttributeMap& params);
    [[nodiscard]] CError* onPresetDelete();
    [[nodiscard]] CError* presetDelete();
    [[nodiscard]] CError* presetReplace();
    [[nodiscard]] CError* performPresetReplace();
    [[nodiscard]] CError* replaceAt(const CPresetPlace& place);
    [[nodiscard]] CError* presetActivate(CAttributeMap& params);
    [[nodiscard]] CError* presetSetDefault();
    [[nodiscard]] CError* performPresetSetDefault();
    [[nodiscard]] CError* performPresetClearDefault();
    [[nodiscard]] CError* askDefault(const CPresetPlace& place, bool isDefault);
    [[nodiscard]] CError* setDefault(const CByteBuffer& packed);
    [[nodiscard]] CError* afterDefaultEdit(CError* error);
    static bool isStoredDefault(const CAudioPreset& preset);
    [[nodiscard]] CError* deleteStoredPreset(int32_t bank, int32_t preset);
    [[nodiscard]] CError* insertAcquired(const CRequest& request, CAudioPreset& preset);
    [[nodiscard]] CError* replaceAcquired(const CRequest& request, const CAudioPreset& preset);
    int32_t insertIndex(bool isInsert) const;
    CString freeBankName() const;
    CString freePresetName(int32_t bank) const;
    [[nodiscard]] CError* afterStoreEdit(CError* error, bool isBank);

    // Files: CPresetManagerFiles.cpp.
    [[nodiscard]] CError* onBankLoad();
    [[nodiscard]] CError* onBankSave();
    [[nodiscard]] CError* performBankLoad(CAttributeMap& params);
    [[nodiscard]] CError* performBankSave(CAttributeMap& params);
    [[nodiscard]] CError* onPresetLoad();
    [[nodiscard]] CError* onPresetSave();
    [[nodiscard]] CError* performPresetLoad(CAttributeMap& params);
    [[nodiscard]] CError* performPresetSave(CAttributeMap& params);
    [[nodiscard]] CError* performBankReplace();
    [[nodiscard]] CError* askForFile(bool isBank, bool isSave, const CPresetPlace& place);
    [[nodiscard]] CError* loadBank(const CPresetPlace& place, const CString& path);
    [[nodiscard]] CError* loadSessionBank(const CString& path);
    CString typeFailure(const CAudioPreset& preset, const char* what) const;
    [[nodiscard]] bool readBank(const CString& path, CAudioPresetBank& bank, CError*& error);
    [[nodiscard]] CError* insertLoaded(int32_t bank, int32_t preset, const CAudioPreset& loaded, const CString& path);
    [[nodiscard]] CError* writeFile(bool isBank, const CString& path, const CByteBuffer& block);
    CString importedName(const CString& name, const CString& path) const;
    /// Takes the failure over, which may be null where `reason` says enough.
    [[nodiscard]] CError* raise(const char* event, const CString& path, CError* error, const CString& reason = {});

    // What is common to them: CPresetManagerEdits.cpp.
    [[nodiscard]] CError* ask(const char* event, const CPresetPlace& place, const CString& title, const CString& text,
                              const CString& path = {});
    /// What was asked about if a window with that event has asked, otherwise what is selected.
    CPresetPlace takeAsked(const char* event, CString* path = nullptr);
    [[nodiscard]] CError* acquire(CPending action, int32_t bank, int32_t preset, const CPresetPlace& place,
                                  const CString& text);

    CPresetCatalog catalog_;
    CPresetManagerListBridge bankList_{*this, "bank-list-path"};
    CPresetManagerListBridge presetList_{*this, "preset-list-path"};
    CPresetPlace shown_;     ///< bank whose presets are listed
    CPresetPlace selected_;  ///< of it, as the selection was last set
    int32_t current_ = -1;   ///< current program when the list was filled
    CPresetPlace renamed_;   ///< the selected preset by the name that it is about to get
    CPresetPlace edited_;    ///< of the row whose name is being edited
    CAsked asked_;
    CArray<CRequest, 2> requests_;
    CString folder_;  ///< of the last file
    bool isDoubleClicked_ = false;
    bool isGone_ = false;
};

}  // namespace tarv
