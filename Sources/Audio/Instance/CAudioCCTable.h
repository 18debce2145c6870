#pragma once

#include "Core/CApplicationData.h"
#include "Core/CObject.h"

namespace tarv {

/// Assignments of MIDI controllers (`audio:cctable`), kept in the product's data under the key `ccmap`: 128 pairs of
/// 32-bit numbers. Nothing sends controllers to this plug-in: the table is loaded, follows the writes of other
/// instances, and has no further effect. Any thread but the audio thread.
class CAudioCCTable : public CObject {
public:
    struct CSlot {
        int32_t param;
        int32_t mode;
    };
    static constexpr int32_t kSlotCount = 128;
    static_assert(sizeof(CSlot) == 8);
    /// Key and block id in CLocalData.
    static constexpr const char* kDataName = "ccmap";
    static constexpr const char kDataId[5] = "dccm";

    CAudioCCTable();
    [[nodiscard]] CError* init() override;
    /// Slot of a controller number in 0..127; zeros if the store has none.
    CSlot slot(int32_t controller) const;

private:
    void read(CCheckedObject* sender);

    mutable CLock lock_;
    CSlot slots_[kSlotCount] = {};
    CApplicationDataBridge<CAudioCCTable> bridge_;
};

}  // namespace tarv
