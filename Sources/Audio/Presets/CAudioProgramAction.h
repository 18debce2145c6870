#pragma once

#include "Audio/Presets/CAudioSessionBank.h"

namespace tarv {

/// What one action does to the programs of the session bank, by their identities: programs that are added or removed,
/// other contents, other names, another selection. perform does it first, later undo and redo. While a program is out
/// of the bank the action owns it. What no longer applies is left out: a program that is not there any more, and one
/// that the other of the two states (A/B) changed after this action was moved last. The current program is captured
/// before anything moves; a program that is selected gets its values from its slot. Filled and performed with the
/// bank's lock held; undo and redo take it.
class CAudioProgramAction final : public CAudioUndoAction {
public:
    /// `withPersistent`: a program that is selected sets its persistent parameters, too.
    explicit CAudioProgramAction(CAudioSessionBank& session, bool withPersistent = false);

    /// Adds a program, which it takes over, behind the one of that identity; 0: at the beginning.
    void add(std::unique_ptr<CAudioPreset> program, uint64_t predecessor);
    void remove(uint64_t id);
    /// Gives a program these contents, its name included, which it takes out of `contents`.
    void replace(uint64_t id, CAudioPreset& contents);
    /// Removes all programs, adds those of `loaded`, which it takes over, and selects its selected one.
    void replaceAll(CAudioPresetBank& loaded);
    void rename(uint64_t id, const CString& before, const CString& after);
    void select(uint64_t before, uint64_t after);

    void undo(CTouched& touched) override { move(false, touched); }
    void redo(CTouched& touched) override { move(true, touched); }
    /// Merges names of one program that were typed one after the other.
    bool merge(CAudioUndoAction& later) override;
    /// As redo; returns whether all of it applied: false if the program to select cannot be read, which then stays
    /// unselected, or if the other state's work kept a program in.
    bool perform(CTouched& touched) { return move(true, touched); }
    /// Whether it changed nothing: the contents are the same as before.
    bool isIdle() const;

private:
    struct CPresence {
        uint64_t id = 0;
        bool isAdded = false;
        std::unique_ptr<CAudioPreset> out;  ///< the program while it is not in the bank
        uint64_t predecessor = 0;           ///< of a program that is out: the one before it, 0 at the beginning
        int32_t index = 0;                  ///< its index, for when that one is not there any more
    };
    struct CContents {
        uint64_t id = 0;
        std::unique_ptr<CAudioPreset> other;
    };
    struct CName {
        uint64_t id = 0;
        CString before;
        CString after;
    };
    using CIds = CArray<uint64_t, 4>;
    using CAssignments = CAudioSessionBank::CAssignments;

    CAudioPresetBank& bank() const { return session_.programs(); }
    bool move(bool forth, CTouched& touched);
    bool isOthersWork(const CAudioPreset& program) const;
    CIds leaving(bool forth) const;
    int32_t programToBe(bool forth, CIds& leaving, CAssignments& assignments) const;
    bool canSelect(int32_t index, CAssignments& assignments) const;
    void putIn(bool forth);
    void takeOut(const CIds& ids);
    void exchangeContents();
    void exchangeNames(bool forth);

    CAudioSessionBank& session_;
    CPresetRequest request_;
    uint64_t movedAt_;
    CArray<CPresence, 1> presences_;
    CArray<CContents, 1> contents_;
    CArray<CName, 1> names_;
    uint64_t selectedBefore_ = 0;
    uint64_t selectedAfter_ = 0;
};

}  // namespace tarv
