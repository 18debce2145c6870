#pragma once

#include <memory>

#include "Audio/Presets/CAudioParamUndo.h"
#include "Audio/Presets/CAudioPresetCodec.h"
#include "Audio/Stores/CAudioPresetBank.h"

namespace tarv {

/// The programs of a master registry: the session bank with its current program, whose slot takes the parameters'
/// values when it is captured, and the state that A/B holds beside the current one. Programs have identities, by which
/// the steps of the history refer to them. Without init it is empty, as in a registry without banks. Any thread but the
/// audio thread. Its lock comes behind the history's and before those of parameters.
class CAudioSessionBank final : public CAudioUndoPrograms {
public:
    using CAssignments = CAudioPresetCodec::CAssignments;

    /// Both outlive the bank. The observer is notified when actions of the history changed programs.
    CAudioSessionBank(const CAudioPresetCodec& codec, CAudioUndoAction::CObserver& observer);

    /// Takes copies of presets as programs, or one program "Default" if there are none; the first is current. `prefix`
    /// is that of the registry's presets.
    void init(const CAudioPresetBank& presets, const CString& prefix);
    /// The string parameter that shows the current program's name; it outlives the bank's use. A name that is set there
    /// becomes the program's.
    void setNameParam(CAudioParam& param) { nameParam_ = &param; }
    const CAudioParam* nameParam() const { return nameParam_; }

    /// Reads that take the lock. An index out of range has an empty name and identity 0.
    int32_t count() const;
    int32_t current() const;
    CString programName(int32_t index) const;
    uint64_t programId(int32_t index) const;
    CString name() const;
    bool isAlternate() const;
    uint64_t currentProgramId() const override { return programId(current()); }

    /// Assigns the current program's name to the parameter of the name. While the tree is built.
    void showName();
    /// The parameter of the name changed: renames the current program. Returns whether the program has another name
    /// than when this was called last. Takes the lock; the caller holds none.
    bool followName();
    void adoptStep(CAudioParamUndoStep& step) override;

    // All below with the lock held.
    CLock& lock() const { return lock_; }
    const CAudioPresetCodec& codec() const { return codec_; }
    CAudioUndoAction::CObserver& observer() const { return observer_; }
    CAudioPresetBank& programs() { return programs_; }
    const CAudioPresetBank& programs() const { return programs_; }
    /// The current program.
    CAudioPreset& slot() { return programs_.preset(programs_.selectedIndex()); }
    const CAudioPreset& slot() const { return programs_.preset(programs_.selectedIndex()); }
    /// Gives the current program the name that the parameter of the name shows.
    void captureName();
    /// As captureName, with all stored values.
    void captureCurrent();
    /// Renames the program of an index; returns whether that changed its name.
    bool rename(int32_t index, const CString& displayName);
    /// Adds an assignment by which the parameter of the name shows the current program's, unless it does.
    void addNameShown(CAssignments& assignments) const;

    /// Gives a program, or every preset of a bank, a new identity.
    void identify(CAudioPreset& program) { program.identity().id = ++lastProgramId_; }
    void identify(CAudioPresetBank& bank);
    /// Replaces all programs; the current index stays if it is in range.
    void replaceAll(CAudioPresetBank& bank);
    /// The current state changed a program: notes when.
    void markChanged(CAudioPreset& program);
    /// A program got other contents than its own: notes when, and in the other state of A/B they replace the values of
    /// that program, if it is current there only.
    void contentsReplaced(CAudioPreset& program);
    /// A time on the clock of markChanged, later than all before.
    uint64_t nextTime() { return ++changeClock_; }
    /// Whether the other state of A/B changed a program after that time.
    bool isOthersWork(const CAudioPreset& program, uint64_t since) const;

    /// Exchanges the current state with the alternate one: the current program, the history's list, and by the
    /// assignments, which the caller carries out, the values. False, and nothing changes, if the values cannot be read.
    /// `undo`, or null, is the history; its lock is held, too.
    bool swapAlternate(CAssignments& assignments, CAudioParamUndo* undo);
    /// The alternate state becomes a copy of the current one, with its program: a step of its history, which has at
    /// most `historyLimit` steps. With the history's lock held, too.
    void copyToAlternate(int32_t historyLimit);
    /// Ends what the steps of both states' histories say of programs. `undo` as in swapAlternate.
    void endProgramSteps(CAudioParamUndo* undo);

private:
    /// The state that A/B holds beside the current one, with its program and its history.
    struct CAlternate : public CHeapObject {
        CAudioPreset preset;
        uint64_t programId = 0;
        CAudioParamUndoList history;
    };

    std::unique_ptr<CAudioParamUndoStep> copyStep();

    const CAudioPresetCodec& codec_;
    CAudioUndoAction::CObserver& observer_;
    CAudioParam* nameParam_ = nullptr;
    mutable CLock lock_;
    CAudioPresetBank programs_;
    bool isNamePending_ = false;  ///< the current program was renamed before followName was called
    uint64_t lastProgramId_ = 0;
    uint64_t changeClock_ = 0;  ///< counts changes of programs
    std::unique_ptr<CAlternate> alternate_;
    bool isAlternate_ = false;
};

}  // namespace tarv
