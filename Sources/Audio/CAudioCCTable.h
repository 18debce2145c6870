#pragma once

#include "Core/CObject.h"

namespace tarv {

/// Assignments of MIDI controllers (`audio:cctable`), kept under the key `ccmap` of the product's data. Nothing sends
/// controllers to this plug-in: the table is loaded and kept.
class CAudioCCTable : public CObject {
public:
    struct CSlot {
        int32_t param;  ///< host index + 1, 0 for none
        int32_t mode;
    };
    static constexpr int32_t kSlotCount = 128;
    static_assert(sizeof(CSlot) == 8);

    CAudioCCTable();
    ~CAudioCCTable() override;
    [[nodiscard]] CError* init() override;
    /// Slot of a controller number, 0..127.
    const CSlot& slot(int32_t controller) const { return slots_[controller]; }

private:
    void read();
    CSlot slots_[kSlotCount] = {};
};

}  // namespace tarv
