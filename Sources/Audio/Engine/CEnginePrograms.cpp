#include "Audio/Engine/CEnginePrograms.h"

#include "Audio/Engine/CEngineStatus.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Core/CompressedBlock.h"

namespace tarv {

CError* CEnginePrograms::requireProgram(const CAudioParamRegistry& registry, int32_t index) const {
    if (index < 0 || index >= registry.programCount()) {
        TARV_FAIL("@tarvstr_CEnginePrograms_requireProgram_PresetIndexError Invalid preset index %1 specified.",
                  CString::fromInt(index));
    }
    return nullptr;
}

CError* CEnginePrograms::select(CInputStream& stream) {
    CAudioParamRegistry* registry = nullptr;
    int32_t index = 0;
    TARV_TRY(takeProgram(stream, registry, index));
    registry->selectProgram(index);
    return nullptr;
}

CError* CEnginePrograms::rename(CInputStream& stream) {
    CAudioParamRegistry* registry = nullptr;
    int32_t index = 0;
    CString displayName;
    TARV_TRY(takeProgram(stream, registry, index, displayName));
    registry->renameProgram(index, displayName);
    return nullptr;
}

CError* CEnginePrograms::add(CInputStream& stream) {
    CAudioParamRegistry* registry = nullptr;
    int32_t index = 0;
    CString displayName;
    TARV_TRY(takeTarget(stream, registry, index, displayName));
    // Behind the last one is a place, too; a registry without programs has none.
    if (index != registry->programCount() || index == 0) {
        TARV_TRY(requireProgram(*registry, index));
    }
    registry->addProgram(index, displayName);
    return nullptr;
}

CError* CEnginePrograms::remove(CInputStream& stream) {
    CAudioParamRegistry* registry = nullptr;
    int32_t index = 0;
    TARV_TRY(takeProgram(stream, registry, index));
    if (registry->programCount() == 1) {
        TARV_FAIL("@tarvstr_CEnginePrograms_remove_LastProgram The last program can't be deleted.");
    }
    registry->deleteProgram(index);
    return nullptr;
}

CError* CEnginePrograms::replace(CInputStream& stream) {
    CAudioParamRegistry* registry = nullptr;
    int32_t index = 0;
    TARV_TRY(takeProgram(stream, registry, index));
    registry->replaceProgram(index);
    return nullptr;
}

CError* CEnginePrograms::activateRomPreset(CInputStream& stream) {
    CAudioParamRegistry* registry = nullptr;
    int32_t index = 0;
    TARV_TRY(takeTarget(stream, registry, index));
    TARV_TRY(registry->activateRomPreset(index));
    return nullptr;
}

CError* CEnginePrograms::activateData(CInputStream& stream) {
    CAudioParamRegistry* registry = nullptr;
    CPresetRequest request;
    CByteBuffer packed;
    TARV_TRY(takeTarget(stream, registry, request.group, packed));
    const int32_t groups = status_.counts().groups;
    if (request.group < -1 || request.group >= (groups > 0 ? groups : 1)) {
        TARV_FAIL("@tarvstr_CEnginePrograms_activateData_InvalidGroup Invalid group %1 specified.",
                  CString::fromInt(request.group));
    }
    CMemoryReader source(packed.data(), static_cast<uint32_t>(packed.count()));
    uint32_t blockId = 0;
    TARV_TRY(source.readValue(blockId));
    TARV_TRY(source.setPosition(0));
    CByteBuffer bytes;
    const bool isBank = blockId == kBankBlockId;
    TARV_TRY(source.readCompressedData(bytes, isBank ? kBankBlockId : kPresetBlockId));
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
    TARV_TRY(isBank ? registry->activateBank(reader, request) : registry->activatePreset(reader, request));
    return nullptr;
}

CError* CEnginePrograms::acquirePreset(CInputStream& stream) {
    CAudioParamRegistry* registry = nullptr;
    uint32_t request = 0;
    bool fromRom = false;
    int32_t index = 0;
    int32_t group = 0;
    TARV_TRY(takeTarget(stream, registry, request, fromRom, index, group));
    TARV_TRY(sender_.requireClient(request));
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    TARV_TRY(registry->acquirePreset(fromRom, index, group, writer, true));
    TARV_TRY(answer(request, bytes));
    return nullptr;
}

CError* CEnginePrograms::acquireBank(CInputStream& stream) {
    CAudioParamRegistry* registry = nullptr;
    uint32_t request = 0;
    bool fromRom = false;
    TARV_TRY(takeTarget(stream, registry, request, fromRom));
    TARV_TRY(sender_.requireClient(request));
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    TARV_TRY(registry->acquireBank(fromRom, writer, true));
    TARV_TRY(answer(request, bytes));
    return nullptr;
}

CError* CEnginePrograms::answer(uint32_t request, const CByteBuffer& bytes) const {
    TARV_TRY(sender_.sendTo(request, kData, static_cast<uint32_t>(CDataKind::Answer), request, bytes));
    return nullptr;
}

}  // namespace tarv
