#pragma once

#include "Audio/Stores/CAudioPresetBank.h"

namespace tarv {

/// The ordered list of banks that the instances of a user share. No lock; the owner guards it.
class CAudioBankList : public CHeapObject {
public:
    static constexpr uint32_t kVersion = 1;
    /// Id of the compressed block.
    static constexpr const char kBlockId[5] = "sbnk";

    int32_t count() const { return banks_.count(); }
    /// Bank of an index in 0..count-1.
    CAudioPresetBank& bank(int32_t index) { return *banks_[index]; }
    const CAudioPresetBank& bank(int32_t index) const { return *banks_[index]; }
    /// Inserts a copy at an index in 0..count.
    void insert(int32_t index, const CAudioPresetBank& bank);
    void remove(int32_t index);
    void clear() { banks_.deleteAll(); }
    void take(CAudioBankList& other);

    /// The stream form: version, a zero, count, bank streams; nothing behind them. On failure the list is as it was.
    [[nodiscard]] CError* load(CMemoryReader& stream);
    [[nodiscard]] CError* save(COutputStream& stream) const;

private:
    COwnedArray<CAudioPresetBank, 4> banks_;
};

}  // namespace tarv
