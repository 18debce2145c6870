#include "Audio/Engine/CEngineDefaultPreset.h"

#include "Audio/Engine/CEngineRegistries.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Audio/Stores/CAudioDefaultPreset.h"
#include "Audio/Stores/PackedStream.h"
#include "Core/CompressedBlock.h"

namespace tarv {

CEngineDefaultPreset::CEngineDefaultPreset(const CEngineRegistries& registries, const CEngineSender& sender)
    : registries_(registries), sender_(sender), bridge_(this, &CEngineDefaultPreset::written) {
    bridge_.subscribe(CLocalData::instance(), CAudioDefaultPreset::kDataName);
}

CError* CEngineDefaultPreset::set(CInputStream& stream) {
    CString path;
    CByteBuffer packed;
    TARV_TRY(takeMessage(stream, path, packed));
    CAudioParamRegistry* registry = nullptr;
    TARV_TRY(registries_.find(path, registry));
    CMemoryReader source(packed.data(), static_cast<uint32_t>(packed.count()));
    CByteBuffer bytes;
    TARV_TRY(source.readCompressedData(bytes, kPresetBlockId));
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
    CAudioPreset preset;
    TARV_TRY(preset.load(reader));
    TARV_TRY(expectStreamEnd(reader));
    if (!registry->isMaster() || !preset.hasPrefix(registry->id())) {
        TARV_FAIL("@tarvstr_CEngineDefaultPreset_set_IncompatiblePreset Incompatible preset.");
    }
    TARV_TRY(CAudioDefaultPreset::write(bytes));
    return nullptr;
}

CError* CEngineDefaultPreset::clear(CInputStream& stream) {
    TARV_TRY(expectMessageEnd(stream));
    TARV_TRY(CAudioDefaultPreset::clear());
    return nullptr;
}

CError* CEngineDefaultPreset::ask(CInputStream& stream) {
    uint32_t request = 0;
    TARV_TRY(takeMessage(stream, request));
    TARV_TRY(sender_.requireClient(request));
    TARV_TRY(send(request, clientOf(request)));
    return nullptr;
}

void CEngineDefaultPreset::written(CCheckedObject*) {
    TARV_CONSUME(send(kNoRequest, -1));
}

CError* CEngineDefaultPreset::send(uint32_t request, int32_t client) const {
    CString name;
    const bool isThere = CAudioDefaultPreset::readName(name);
    TARV_TRY(sender_.send(client, kDefaultPreset, request, isThere, name));
    return nullptr;
}

}  // namespace tarv
