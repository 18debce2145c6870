#include "Audio/Stores/CAudioDefaultPreset.h"

#include "Audio/Stores/CAudioPreset.h"
#include "Audio/Stores/PackedStream.h"
#include "Core/CApplicationData.h"
#include "Core/CompressedBlock.h"

namespace tarv {

namespace {

CError* parseName(const CByteBuffer& stream, CString& displayName) {
    CMemoryReader reader(stream.data(), static_cast<uint32_t>(stream.count()));
    CAudioPreset preset;
    TARV_TRY(preset.load(reader));
    TARV_TRY(expectStreamEnd(reader));
    displayName = preset.displayName();
    return nullptr;
}

}  // namespace

void CAudioDefaultPreset::read(CByteBuffer& stream) {
    CLocalData::instance().read(kDataName, stream, kPresetBlockId);
}

bool CAudioDefaultPreset::readName(CString& displayName) {
    CByteBuffer stream;
    read(stream);
    if (stream.isEmpty()) {
        return false;
    }
    if (CError* error = parseName(stream, displayName)) {
        TARV_CONSUME(error);
        return false;
    }
    return true;
}

CError* CAudioDefaultPreset::write(const CByteBuffer& stream) {
    CLocalData& data = CLocalData::instance();
    TARV_TRY(data.update(kDataName, kPresetBlockId, [&](CByteBuffer& stored) -> CError* {
        CString ignored;
        CError* damage = stored.isEmpty() ? nullptr : parseName(stored, ignored);
        if (damage) {
            TARV_CONSUME(damage);
            TARV_TRY(data.keepDamaged(kDataName));
        }
        stored = stream;
        return nullptr;
    }));
    return nullptr;
}

CError* CAudioDefaultPreset::clear() {
    TARV_TRY(write({}));
    return nullptr;
}

}  // namespace tarv
