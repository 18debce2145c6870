#pragma once

#include "Audio/Presets/CAudioParamUndo.h"
#include "Audio/Stores/CAudioPresetBank.h"
#include "Core/CBridge.h"
#include "Core/CObject.h"

namespace tarv {

/// How a preset is applied.
struct CPresetRequest {
    int32_t group = -1;           ///< the one group that takes the preset's group 0, or -1 for all as they are stored
    bool withPersistent = false;  ///< parameters that are persistent only, too (a host's session)
    bool isRecorded = true;       ///< as a step of the history
};

/// The preset view of a part of the parameters (`audio:param-registry`): captures what lies under its hierarchy into
/// presets and applies them. A master owns the banks and the alternate (A/B) state. Any thread but the audio thread.
/// Locks in their order: the history's, the bank lock, the parameter list's, a parameter's. Listeners of parameters and
/// bridges are notified when none is held. Connected bridges get `kProgramUpdate` when the current preset, its name or
/// the bank changed.
class CAudioParamRegistry : public CObject,
                            public CBridgeBase,
                            public CAudioParamReceiver,
                            private CAudioParamListener,
                            private CAudioUndoAction::CObserver,
                            private CAudioUndoPrograms {
public:
    static constexpr const char* kProgramUpdate = "program";

    struct CEntry : public CHeapObject {
        CEntry(const CString& entryKey, CAudioParam& entryParam, const char* entryFormerKey)
            : key(entryKey), keyBytes(entryKey.toUtf8()), formerKey(entryFormerKey), param(&entryParam) {}
        CString key;            ///< the full name without the hierarchy
        std::string keyBytes;   ///< as presets hold it
        const char* formerKey;  ///< under which older presets hold it, or null
        CAudioParam* param;
    };

    CAudioParamRegistry();
    ~CAudioParamRegistry() override;
    /// A master reads its ROM bank and copies it to the session bank. A file that cannot be read leaves the ROM empty
    /// and the session bank with one preset, "Default".
    [[nodiscard]] CError* init() override;

    /// Takes the parameter if its full name lies under the hierarchy; tells whether it did.
    bool offerParam(const CString& name, CAudioParam& param) override;
    /// Takes the parameter wherever it lies: it was assigned to this registry by name.
    void takeParam(const CString& name, CAudioParam& param) override;
    int32_t paramCount() const;
    /// Entry of an index in 0..paramCount-1, by ascending key.
    CEntry param(int32_t index) const;

    /// Reads a preset stream to its end and applies it; in a master it becomes the current preset. On failure, also of
    /// one record's structure, nothing changes; a record of another version or format is left out.
    [[nodiscard]] CError* activatePreset(CMemoryReader& stream, const CPresetRequest& request = {});
    /// Reads a bank stream to its end, makes it the session bank and applies its current preset: the index stays if it
    /// is in range. Of a master.
    [[nodiscard]] CError* activateBank(CMemoryReader& stream, const CPresetRequest& request = {});
    /// Copies a ROM preset over the current one and applies it. Of a master.
    [[nodiscard]] CError* activateRomPreset(int32_t index);
    /// Writes a preset: of a master a stored one, or with -1 the current state with the name and the unknown records of
    /// its slot; a non-master has the current state only, without a name. A group other than -1 writes that group
    /// alone, as group 0. `isPacked`: as a compressed block, otherwise the bare stream.
    [[nodiscard]] CError* acquirePreset(bool fromRom, int32_t index, int32_t group, COutputStream& stream,
                                        bool isPacked);
    /// Writes a bank; the session bank with the current state in its slot.
    [[nodiscard]] CError* acquireBank(bool fromRom, COutputStream& stream, bool isPacked);

    /// The session bank of a master; without one counts and indexes are 0, names empty.
    int32_t programCount() const;
    int32_t currentProgram() const;
    /// The display name of a slot, empty for an index out of range.
    CString programName(int32_t index) const;
    int32_t romCount() const;
    CString romName(int32_t index) const;
    CString bankName(bool ofRom) const;
    /// The identity of a slot's program: it stays the same wherever the program moves, whatever it holds, and while a
    /// step of the history holds it. 0 for an index out of range. A bank that is loaded has programs of new identities.
    uint64_t programId(int32_t index) const;
    /// Makes a slot the current one and applies it. The current index again, and one out of range, change nothing.
    void selectProgram(int32_t index);
    /// Puts a new preset of the current state at an index in 0..programCount.
    void addProgram(int32_t index, const CString& displayName);
    /// Takes a slot out, but not the last one; if it was current its neighbour's state comes up.
    void deleteProgram(int32_t index);
    void renameProgram(int32_t index, const CString& displayName);
    /// Overwrites a slot with the current state; its name stays.
    void replaceProgram(int32_t index);

    /// Exchanges the current state and the alternate one: the values, the current program of each, and its history. At
    /// first both are the same. If the other state's program is gone, the current one stays.
    void swapAB();
    /// The alternate state becomes a copy of the current one, with its program.
    void copyToAlternate();
    /// Whether the state that is not the first one is current.
    bool isAlternate() const;
    /// All storable parameters go to their defaults, in one step "Master reset".
    void masterReset();
    /// The same under this registry's own label.
    void reset();

    /// With the "." at its end.
    const CString& hierarchy() const { return hierarchy_; }
    bool isMaster() const { return isMaster_; }
    bool isEnumerated() const override { return isEnumerated_; }
    const CString& id() const override { return id_; }
    const CString& presetNaming() const { return presetNaming_; }
    const CString& presetNameParam() const { return presetNameParam_; }
    const CString& groupNamesParam() const { return groupNamesParam_; }
    const CString& bankFile() const { return bankFile_; }
    CAudioParamUndo* undo() const { return undo_; }
    CAudioParamCollector* collector() const { return collector_; }
    /// The name of a group: its text in the parameter of group names, otherwise its number counted from 1.
    CString groupName(int32_t group) const;

private:
    class CProgramAction;
    struct CAlternate;
    using CAssignment = CAudioParamCollector::CAssignment;
    using CAssignments = CArray<CAssignment, 1>;

    /// One action on the values and the banks: holds the history's lock and the bank lock, gathers what it does as a
    /// step, and notifies when the locks are released.
    class CAction;

    // CAudioParamRegistryPresets.cpp: between parameters and presets.
    CArray<const CEntry*, 64> entries() const;
    bool isStored(const CAudioParam& param, bool withPersistent) const;
    const char* formerKeyOf(const CAudioParam& param) const;
    [[nodiscard]] CError* requirePrefix(const CAudioPreset& preset) const;
    [[nodiscard]] CError* decode(const CAudioPreset& preset, const CPresetRequest& request,
                                 CAssignments& assignments) const;
    [[nodiscard]] CError* decodeEntry(CMemoryReader& reader, const CAudioPreset& preset, int32_t& nextIndex,
                                      const CEntry& entry, const CPresetRequest& request, CAssignments& assignments,
                                      bool* isUsed) const;
    [[nodiscard]] CError* decodeOthers(CMemoryReader& reader, const CAudioPreset& preset, const CPresetRequest& request,
                                       CAssignments& assignments, const bool* isUsed) const;
    [[nodiscard]] static CError* decodeRecord(CMemoryReader& reader, const CAudioPreset& preset, int32_t index,
                                              const CAudioParamInfo& info, CAudioParamData& data, bool& isForeign);
    bool capture(CAudioPreset& preset, bool withPersistent) const;
    void extractGroup(CAudioPreset& preset, int32_t group) const;
    void addNameShown(const CString& displayName, CAssignments& assignments) const;
    void addDefaults(CAssignments& assignments) const;
    CString activationLabel(int32_t group) const;
    void resetAll(const CString& label);

    // CAudioParamRegistryBanks.cpp: the session bank's slots. Under the bank lock.
    void initBanks();
    [[nodiscard]] CError* requireMaster(const char* message) const;
    CAudioPreset& slot() { return session_.preset(session_.selectedIndex()); }
    void nameCurrent();
    void captureCurrent();
    void identify(CAudioPresetBank& bank);
    void markChanged(CAudioPreset& program);
    void followStore(const CAudioPreset& program);
    bool renameSlot(int32_t index, const CString& displayName);
    [[nodiscard]] CError* replaceBank(CAudioPresetBank& loaded, const CPresetRequest& request);
    void onParamChanged(CAudioParam& param, int32_t group, int32_t first, int32_t count) override;
    void actionsMoved() override { notifyBridges(kProgramUpdate); }
    uint64_t currentProgramId() const override;
    void adoptStep(CAudioParamUndoStep& step) override;

    CString hierarchy_;
    CString id_;
    CString presetNaming_;
    CString presetNameParam_;
    CString groupNamesParam_;
    CString bankFile_;
    bool isMaster_ = false;
    bool isEnumerated_ = false;
    CAudioParamCollector* collector_ = nullptr;
    CAudioParamUndo* undo_ = nullptr;
    CAudioParam* nameParam_ = nullptr;
    mutable CLock paramLock_;
    COwnedArray<const CEntry> params_;  ///< by ascending key, as presets hold them

    mutable CLock bankLock_;
    CAudioPresetBank rom_;
    CAudioPresetBank session_;
    bool isNamePending_ = false;  ///< the slot took its name from the parameter before the listener was called
    uint64_t lastProgramId_ = 0;
    uint64_t changeClock_ = 0;  ///< counts changes of programs
    std::unique_ptr<CAlternate> alternate_;
    bool isAlternate_ = false;
};

/// The name of a registry's current preset, to read and to write. Calls `changed` on the thread that changed it.
class CAudioParamRegistryNameBridge final : public CBridge {
public:
    CAudioParamRegistryNameBridge(CAudioParamRegistry& registry, void (*changed)(void*), void* user);
    ~CAudioParamRegistryNameBridge() override { disconnect(); }

    /// Empty when the registry has gone.
    CString read() const;
    /// A step "Program name change" of the history.
    void write(const CString& displayName);
    void notify(CCheckedObject* sender) override;

private:
    CAudioParamRegistry* registry() const;
    void (*changed_)(void*);
    void* user_;
};

}  // namespace tarv
