#pragma once

#include "Audio/Presets/CAudioParamRegistry.h"

namespace tarv {

/// One action of a registry: holds the history's lock and the bank lock while it stands, gathers the values that it
/// changes as a step of the history, and tells those who listen when the locks are released.
class CAudioParamRegistry::CAction {
public:
    explicit CAction(CAudioParamRegistry& registry);
    CAction(const CAction&) = delete;
    CAction& operator=(const CAction&) = delete;
    ~CAction();

    /// What is assigned from here on is a step with this label, and with this deed if it is not null.
    void record(const CString& label, std::unique_ptr<CAudioUndoDeed> deed = nullptr);
    void assign(const CAssignments& assignments);
    /// The current preset, its name or the bank changed.
    void noteProgram() { isProgramChanged_ = true; }

private:
    CAudioParamRegistry& registry_;
    std::unique_ptr<CAudioParamUndoStep> step_;  ///< null: nothing is recorded
    bool isProgramChanged_ = false;
    CArray<CAudioParam*, 16> touched_;
};

/// A slot was selected.
class CAudioParamRegistry::CSelectDeed final : public CAudioUndoDeed {
public:
    CSelectDeed(CAudioParamRegistry& registry, int32_t before, int32_t after)
        : registry_(registry), before_(before), after_(after) {}
    void undo() override { registry_.moveSelection(before_); }
    void redo() override { registry_.moveSelection(after_); }
    CWitness& witness() override { return registry_; }

private:
    CAudioParamRegistry& registry_;
    int32_t before_;
    int32_t after_;
};

/// The session bank was replaced or its slots changed: holds the other state of it.
class CAudioParamRegistry::CBankDeed final : public CAudioUndoDeed {
public:
    /// Copies the bank as it is now.
    explicit CBankDeed(CAudioParamRegistry& registry) : registry_(registry) { other_.copyFrom(registry.session_); }
    void undo() override { registry_.exchangeBank(other_); }
    void redo() override { registry_.exchangeBank(other_); }
    CWitness& witness() override { return registry_; }

private:
    CAudioParamRegistry& registry_;
    CAudioPresetBank other_;
};

/// A slot was given another name.
class CAudioParamRegistry::CRenameDeed final : public CAudioUndoDeed {
public:
    CRenameDeed(CAudioParamRegistry& registry, int32_t index, const CString& before, const CString& after)
        : registry_(registry), index_(index), before_(before), after_(after) {}
    void undo() override { registry_.renameSlot(index_, before_); }
    void redo() override { registry_.renameSlot(index_, after_); }
    CWitness& witness() override { return registry_; }

private:
    CAudioParamRegistry& registry_;
    int32_t index_;
    CString before_;
    CString after_;
};

/// The state that A/B holds beside the current one, with its history.
struct CAudioParamRegistry::CAlternate : public CHeapObject {
    CAudioPreset preset;
    CAudioParamUndoList history;
};

}  // namespace tarv
