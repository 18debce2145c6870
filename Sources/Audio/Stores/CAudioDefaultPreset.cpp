#include "Audio/Stores/CAudioDefaultPreset.h"

#include "Audio/Stores/CAudioPreset.h"
#include "Audio/Stores/PackedStream.h"
#include "Core/CApplicationData.h"
#include "Core/CompressedBlock.h"

namespace tarv {

void CAudioDefaultPreset::read(CByteBuffer& stream) {
    CLocalData::instance().read(kDataName, stream, kPresetBlockId);
}

bool CAudioDefaultPreset::readName(CString& displayName) {
    CByteBuffer stream;
    read(stream);
    if (stream.isEmpty()) {
        return false;
    }
    CMemoryReader reader(stream.data(), static_cast<uint32_t>(stream.count()));
    CAudioPreset preset;
    CError* error = preset.load(reader);
    if (!error) {
        error = expectStreamEnd(reader);
    }
    if (error) {
        TARV_CONSUME(error);
        return false;
    }
    displayName = preset.displayName();
    return true;
}

void CAudioDefaultPreset::write(const CByteBuffer& stream) {
    CLocalData::instance().write(kDataName, stream, kPresetBlockId);
}

void CAudioDefaultPreset::clear() {
    write({});
}

}  // namespace tarv
