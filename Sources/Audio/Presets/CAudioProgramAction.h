#pragma once

#include "Audio/Presets/CAudioParamRegistry.h"

namespace tarv {

/// What one action does to the programs of the session bank, by their identities: programs that come or go, other
/// contents, other names, another selection. The first redo carries it out. While a program is out of the bank the
/// action owns it. What no longer applies is left out: a program that is gone, and one that the other of the two states
/// (A/B) changed since the action was moved last. The current program is captured before anything moves, and another
/// program comes up with what its slot holds.
class CAudioParamRegistry::CProgramAction final : public CAudioUndoAction {
public:
    /// `withPersistent`: a program that comes up brings its persistent parameters, too. Under the bank lock.
    explicit CProgramAction(CAudioParamRegistry& registry, bool withPersistent = false);

    /// The program comes in behind the one of that identity; 0: at the beginning. Takes it over.
    void add(std::unique_ptr<CAudioPreset> program, uint64_t predecessor);
    /// The program goes.
    void remove(uint64_t id);
    /// The program takes these contents, its name included.
    void replace(uint64_t id, CAudioPreset& contents);
    void rename(uint64_t id, const CString& before, const CString& after);
    void select(uint64_t before, uint64_t after);

    void undo(CTouched& touched) override { move(false, touched); }
    void redo(CTouched& touched) override { move(true, touched); }
    /// Names of one program that were typed one after the other.
    bool merge(CAudioUndoAction& later) override;
    /// As redo; returns false, and does nothing, if the program to come up cannot be read.
    bool carryOut(CTouched& touched) { return move(true, touched); }
    /// Whether it changed nothing: the contents are the same as before. Under the bank lock.
    bool isIdle() const;

private:
    struct CPresence {
        uint64_t id = 0;
        bool isAdded = false;
        std::unique_ptr<CAudioPreset> out;  ///< the program while it is not in the bank
        uint64_t predecessor = 0;           ///< of a program that is out: where it stood, 0 at the beginning
        int32_t index = 0;                  ///< the same if that one is gone
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

    CAudioPresetBank& bank() const { return registry_.session_; }
    bool move(bool forth, CTouched& touched);
    bool isOthersWork(const CAudioPreset& program) const;
    CIds leaving(bool forth) const;
    int32_t programToBe(bool forth, CIds& leaving, CAssignments& assignments) const;
    bool canComeUp(int32_t index, CAssignments& assignments) const;
    void putIn(bool forth);
    void takeOut(const CIds& ids);
    void exchangeContents();
    void exchangeNames(bool forth);

    CAudioParamRegistry& registry_;
    CPresetRequest request_;
    uint64_t movedAt_;
    CArray<CPresence, 1> presences_;
    CArray<CContents, 1> contents_;
    CArray<CName, 1> names_;
    uint64_t selectedBefore_ = 0;
    uint64_t selectedAfter_ = 0;
};

}  // namespace tarv
