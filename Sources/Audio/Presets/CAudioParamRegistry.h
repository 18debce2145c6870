#pragma once

#include "Audio/Presets/CAudioSessionBank.h"
#include "Core/CBridge.h"
#include "Core/CObject.h"

namespace tarv {

/// The preset view of a part of the parameters (`audio:param-registry`): captures what lies under its hierarchy into
/// presets and applies them. A master owns the session bank, the ROM bank and the alternate (A/B) state.
/// Any thread but the audio thread. Locks in their order: the history's, the session bank's, the parameter list's, a
/// parameter's. Listeners of parameters and bridges are notified when none is held. Connected bridges get
/// `kProgramUpdate` when the current preset, its name or the bank changed.
class CAudioParamRegistry : public CObject,
                            public CBridgeBase,
                            public CAudioParamReceiver,
                            private CAudioParamListener,
                            private CAudioUndoAction::CObserver {
public:
    static constexpr const char* kProgramUpdate = "program";

    CAudioParamRegistry();
    ~CAudioParamRegistry() override;
    /// A master reads its ROM bank and copies it to the session bank. A file that cannot be read leaves the ROM empty
    /// and the session bank with one preset, "Default".
    [[nodiscard]] CError* init() override;

    /// Takes the parameter if its full name lies under the hierarchy; returns whether it did.
    bool offerParam(const CString& name, CAudioParam& param) override;
    /// Takes the parameter whatever its name: it was assigned to this registry by the definition.
    void takeParam(const CString& name, CAudioParam& param) override;
    int32_t paramCount() const { return params_.count(); }
    /// Entry of an index in 0..paramCount-1, by ascending key.
    const CAudioRegistryParam& param(int32_t index) const { return params_.entry(index); }

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
    /// Writes a bank; the session bank with the current state in its slot. Of a master.
    [[nodiscard]] CError* acquireBank(bool fromRom, COutputStream& stream, bool isPacked);

    /// The session bank of a master; without one counts and indexes are 0, names empty.
    int32_t programCount() const { return session_.count(); }
    int32_t currentProgram() const { return session_.current(); }
    /// The display name of a slot, empty for an index out of range.
    CString programName(int32_t index) const { return session_.programName(index); }
    int32_t romCount() const { return rom_.count(); }
    CString romName(int32_t index) const;
    CString bankName(bool ofRom) const { return ofRom ? rom_.name() : session_.name(); }
    /// The identity of a slot's program: it stays the same wherever the program moves, whatever it holds, and while a
    /// step of the history holds it. 0 for an index out of range. A bank that is loaded has programs of new identities.
    uint64_t programId(int32_t index) const { return session_.programId(index); }
    /// Makes a slot the current one and applies it. The current index again, and one out of range, change nothing.
    void selectProgram(int32_t index);
    /// Puts a new preset of the current state at an index in 0..programCount.
    void addProgram(int32_t index, const CString& displayName);
    /// Takes a slot out, but not the last one; if it was current, its neighbour becomes current and is applied.
    void deleteProgram(int32_t index);
    void renameProgram(int32_t index, const CString& displayName);
    /// Overwrites a slot with the current state; its name stays.
    void replaceProgram(int32_t index);

    /// Exchanges the current state and the alternate one: the values, the current program of each, and its history. At
    /// first both are the same. If the other state's program was deleted, the current one stays.
    void swapAB();
    /// The alternate state becomes a copy of the current one, with its program: a step "Copy from A" (or B) of its
    /// history.
    void copyToAlternate();
    /// Whether the state that is not the first one is current.
    bool isAlternate() const { return session_.isAlternate(); }
    /// Sets all storable parameters to their defaults, in one step "Master reset".
    void masterReset();
    /// The same under this registry's own label.
    void reset();

    /// With the "." at its end.
    const CString& hierarchy() const { return params_.hierarchy(); }
    bool isMaster() const { return isMaster_; }
    bool isEnumerated() const override { return isEnumerated_; }
    const CString& id() const override { return id_; }
    const CString& presetNaming() const { return presetNaming_; }
    const CString& groupNamesParam() const { return groupNamesParam_; }
    const CString& bankFile() const { return bankFile_; }
    CAudioParamUndo* undo() const { return undo_; }
    CAudioParamCollector* collector() const { return collector_; }
    /// The name of a group: its text in the parameter of group names, otherwise its number counted from 1.
    CString groupName(int32_t group) const;

private:
    using CAssignments = CAudioPresetCodec::CAssignments;

    [[nodiscard]] CError* requireMaster(const char* message) const;
    [[nodiscard]] CError* requireIndex(int32_t index, int32_t first, const CAudioPresetBank& bank) const;
    bool hasProgram(int32_t index) const { return index >= 0 && index < session_.programs().count(); }
    [[nodiscard]] CError* replaceBank(CAudioPresetBank& loaded, const CPresetRequest& request);
    /// Whether the current program already has the preset's name and bytes, and the parameters its values.
    bool isActive(const CAudioPreset& preset, const CAssignments& assignments) const;
    void applyPreset(CAudioPreset& preset, const CPresetRequest& request, const CAssignments& assignments);
    CString activationLabel(int32_t group) const;
    void resetAll(const CString& label);
    void onParamChanged(CAudioParam& param, int32_t group, int32_t first, int32_t count) override;
    void actionsMoved() override { notifyBridges(kProgramUpdate); }

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
    CAudioRegistryParams params_;
    CAudioPresetCodec codec_{params_};
    CAudioPresetBank rom_;  ///< read-only after init
    CAudioSessionBank session_;
};

}  // namespace tarv
