#pragma once

#include <memory>

#include "Audio/Stores/CAudioPreset.h"

namespace tarv {

/// A named, ordered list of presets with one selected. No lock; the owner guards it.
class CAudioPresetBank : public CHeapObject {
public:
    /// Presets that a stream may hold: far above what any bank has, and low enough that a count costs no memory.
    static constexpr uint32_t kCountLimit = 65536;

    CAudioPresetBank() = default;
    explicit CAudioPresetBank(const CString& name) : name_(name) {}

    const CString& name() const { return name_; }
    void setName(const CString& name) { name_ = name; }
    int32_t count() const { return presets_.count(); }
    /// Preset of an index in 0..count-1.
    CAudioPreset& preset(int32_t index) { return *presets_[index]; }
    const CAudioPreset& preset(int32_t index) const { return *presets_[index]; }
    /// In 0..count-1, 0 for an empty bank.
    int32_t selectedIndex() const { return selected_; }
    /// An index out of range selects 0.
    void select(int32_t index);
    /// Inserts a copy at an index in 0..count; the selected preset stays selected.
    void insert(int32_t index, const CAudioPreset& preset);
    /// Appends an empty preset.
    CAudioPreset& append();
    void remove(int32_t index);
    /// The index of the preset with this identity, or -1.
    int32_t indexOf(uint64_t id) const;
    /// Inserts a preset at an index in 0..count; the selected preset stays selected.
    void putIn(int32_t index, std::unique_ptr<CAudioPreset> preset);
    /// Takes the preset of an index out; selects as remove does.
    std::unique_ptr<CAudioPreset> takeOut(int32_t index);
    /// Copies of the other's presets replace this one's; the name and, if it is in range, the selected index stay.
    void copyPresets(const CAudioPresetBank& other);
    /// As copyPresets, with name and selection.
    void copyFrom(const CAudioPresetBank& other);
    void swap(CAudioPresetBank& other);
    /// Takes name and presets out of the other; the selected index stays if it is in range.
    void take(CAudioPresetBank& other);

    /// The stream form: name, count, presets. On failure the bank is as it was.
    [[nodiscard]] CError* load(CMemoryReader& stream);
    [[nodiscard]] CError* save(COutputStream& stream) const;
    /// A file (or an embedded range) of the compressed form, id 'abnk'.
    [[nodiscard]] CError* load(const CString& path);

private:
    CString name_;
    COwnedArray<CAudioPreset, 8> presets_;
    int32_t selected_ = 0;
};

/// The list of presets that an editor's menu offers: a version word, a reserved word, then as a bank without a name.
class CAudioPresetList : public CAudioPresetBank {
public:
    static constexpr uint32_t kVersion = 1;

    [[nodiscard]] CError* load(CMemoryReader& stream);
    [[nodiscard]] CError* save(COutputStream& stream) const;
    /// A file (or an embedded range) of the compressed form, id 'alst'.
    [[nodiscard]] CError* load(const CString& path);
};

}  // namespace tarv
