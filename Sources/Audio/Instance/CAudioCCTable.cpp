// Loads the table of controllers and follows its store.

#include "Audio/Instance/CAudioCCTable.h"

#include <algorithm>

#include "Core/CompressedBlock.h"

namespace tarv {

CAudioCCTable::CAudioCCTable() : bridge_(this, &CAudioCCTable::read) {}

CError* CAudioCCTable::init() {
    TARV_TRY(CObject::init());
    bridge_.subscribe(CLocalData::instance(), kDataName);
    read(nullptr);
    return nullptr;
}

CAudioCCTable::CSlot CAudioCCTable::slot(int32_t controller) const {
    CLockScope scope(lock_);
    return slots_[controller];
}

void CAudioCCTable::read(CCheckedObject*) {
    CByteBuffer buffer;
    CLocalData::instance().read(kDataName, buffer, blockId(kDataId));
    CMemoryReader reader(buffer.data(), static_cast<uint32_t>(buffer.count()));
    CSlot slots[kSlotCount] = {};
    const int32_t stored = std::min(buffer.count() / static_cast<int32_t>(sizeof(CSlot)), kSlotCount);
    for (int32_t i = 0; i < stored; ++i) {
        uint32_t param = 0;
        uint32_t mode = 0;
        TARV_CONSUME(reader.readValue(param));
        TARV_CONSUME(reader.readValue(mode));
        slots[i] = {static_cast<int32_t>(param), static_cast<int32_t>(mode)};
    }
    CLockScope scope(lock_);
    std::copy_n(slots, kSlotCount, slots_);
}

}  // namespace tarv
