// What clients ask of the registries.

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Messages/CAudioInterfaceBaseConnector.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Audio/Stores/CAudioDefaultPreset.h"
#include "Audio/Stores/PackedStream.h"
#include "Core/CompressedBlock.h"

namespace tarv {

CError* CAudioInterfaceBase::findRegistry(const CString& path, CAudioParamRegistry*& registry) const {
    registry = findObjectOf<CAudioParamRegistry>(path);
    if (!registry) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_findRegistry_NoRegistry No param registry object '%1' found.", path);
    }
    return nullptr;
}

CArray<CAudioParamRegistry*, 4> CAudioInterfaceBase::registries() const {
    CArray<CAudioParamRegistry*, 4> found;
    for (CObject* sibling : parent()->children()) {
        if (auto* registry = dynamic_cast<CAudioParamRegistry*>(sibling)) {
            found.append(registry);
        }
    }
    return found;
}

CInterfaceRegistryState CAudioInterfaceBase::registryState(const CAudioParamRegistry& registry, const CString& path) {
    CInterfaceRegistryState state;
    state.path = path;
    state.id = registry.id();
    state.presetNaming = registry.presetNaming();
    state.isMaster = registry.isMaster();
    state.isAlternate = registry.isAlternate();
    state.currentProgram = registry.currentProgram();
    state.bankName = registry.bankName(false);
    for (int32_t i = 0; i < registry.programCount(); ++i) {
        state.programs.append(registry.programName(i));
    }
    state.romName = registry.bankName(true);
    for (int32_t i = 0; i < registry.romCount(); ++i) {
        state.romPresets.append(registry.romName(i));
    }
    return state;
}

CError* CAudioInterfaceBase::requireProgram(const CAudioParamRegistry& registry, int32_t index) const {
    if (index < 0 || index >= registry.programCount()) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_requireProgram_PresetIndexError Invalid preset index %1 specified.",
                  CString::fromInt(index));
    }
    return nullptr;
}

CError* CAudioInterfaceBase::setProgram(CInputStream& stream) {
    CString path;
    int32_t index = 0;
    TARV_TRY(takeMessage(stream, path, index));
    CAudioParamRegistry* registry = nullptr;
    TARV_TRY(findRegistry(path, registry));
    TARV_TRY(requireProgram(*registry, index));
    registry->selectProgram(index);
    return nullptr;
}

CError* CAudioInterfaceBase::renameProgram(CInputStream& stream) {
    CString path;
    int32_t index = 0;
    CString displayName;
    TARV_TRY(takeMessage(stream, path, index, displayName));
    CAudioParamRegistry* registry = nullptr;
    TARV_TRY(findRegistry(path, registry));
    TARV_TRY(requireProgram(*registry, index));
    registry->renameProgram(index, displayName);
    return nullptr;
}

CError* CAudioInterfaceBase::addProgram(CInputStream& stream) {
    CString path;
    int32_t index = 0;
    CString displayName;
    TARV_TRY(takeMessage(stream, path, index, displayName));
    CAudioParamRegistry* registry = nullptr;
    TARV_TRY(findRegistry(path, registry));
    // Behind the last one is a place, too; a registry without programs has none.
    if (index != registry->programCount() || index == 0) {
        TARV_TRY(requireProgram(*registry, index));
    }
    registry->addProgram(index, displayName);
    return nullptr;
}

CError* CAudioInterfaceBase::deleteProgram(CInputStream& stream) {
    CString path;
    int32_t index = 0;
    TARV_TRY(takeMessage(stream, path, index));
    CAudioParamRegistry* registry = nullptr;
    TARV_TRY(findRegistry(path, registry));
    TARV_TRY(requireProgram(*registry, index));
    if (registry->programCount() == 1) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_deleteProgram_LastProgram The last program can't be deleted.");
    }
    registry->deleteProgram(index);
    return nullptr;
}

CError* CAudioInterfaceBase::replaceProgram(CInputStream& stream) {
    CString path;
    int32_t index = 0;
    TARV_TRY(takeMessage(stream, path, index));
    CAudioParamRegistry* registry = nullptr;
    TARV_TRY(findRegistry(path, registry));
    TARV_TRY(requireProgram(*registry, index));
    registry->replaceProgram(index);
    return nullptr;
}

CError* CAudioInterfaceBase::activateRomPreset(CInputStream& stream) {
    CString path;
    int32_t index = 0;
    TARV_TRY(takeMessage(stream, path, index));
    CAudioParamRegistry* registry = nullptr;
    TARV_TRY(findRegistry(path, registry));
    TARV_TRY(registry->activateRomPreset(index));
    return nullptr;
}

CError* CAudioInterfaceBase::activateData(CInputStream& stream) {
    CString path;
    CPresetRequest request;
    CByteBuffer packed;
    TARV_TRY(takeMessage(stream, path, request.group, packed));
    CAudioParamRegistry* registry = nullptr;
    TARV_TRY(findRegistry(path, registry));
    const int32_t groups = counts().groups;
    if (request.group < -1 || request.group >= (groups > 0 ? groups : 1)) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_activateData_InvalidGroup Invalid group %1 specified.",
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

CError* CAudioInterfaceBase::acquirePreset(CInputStream& stream) {
    CString path;
    uint32_t request = 0;
    bool fromRom = false;
    int32_t index = 0;
    int32_t group = 0;
    TARV_TRY(takeMessage(stream, path, request, fromRom, index, group));
    TARV_TRY(requireClient(request));
    CAudioParamRegistry* registry = nullptr;
    TARV_TRY(findRegistry(path, registry));
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    TARV_TRY(registry->acquirePreset(fromRom, index, group, writer, true));
    TARV_TRY(sendTo(request, kData, static_cast<uint32_t>(CDataKind::Answer), request, bytes));
    return nullptr;
}

CError* CAudioInterfaceBase::acquireBank(CInputStream& stream) {
    CString path;
    uint32_t request = 0;
    bool fromRom = false;
    TARV_TRY(takeMessage(stream, path, request, fromRom));
    TARV_TRY(requireClient(request));
    CAudioParamRegistry* registry = nullptr;
    TARV_TRY(findRegistry(path, registry));
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    TARV_TRY(registry->acquireBank(fromRom, writer, true));
    TARV_TRY(sendTo(request, kData, static_cast<uint32_t>(CDataKind::Answer), request, bytes));
    return nullptr;
}

CError* CAudioInterfaceBase::setDefaultPreset(CInputStream& stream) {
    CString path;
    CByteBuffer packed;
    TARV_TRY(takeMessage(stream, path, packed));
    CAudioParamRegistry* registry = nullptr;
    TARV_TRY(findRegistry(path, registry));
    CMemoryReader source(packed.data(), static_cast<uint32_t>(packed.count()));
    CByteBuffer bytes;
    TARV_TRY(source.readCompressedData(bytes, kPresetBlockId));
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
    CAudioPreset preset;
    TARV_TRY(preset.load(reader));
    TARV_TRY(expectStreamEnd(reader));
    if (!registry->isMaster() || !preset.hasPrefix(registry->id())) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_setDefaultPreset_IncompatiblePreset Incompatible preset.");
    }
    TARV_TRY(CAudioDefaultPreset::write(bytes));
    return nullptr;
}

CError* CAudioInterfaceBase::clearDefaultPreset(CInputStream& stream) {
    TARV_TRY(expectMessageEnd(stream));
    TARV_TRY(CAudioDefaultPreset::clear());
    return nullptr;
}

void CAudioInterfaceBase::defaultPresetChanged(CCheckedObject*) {
    TARV_CONSUME(sendDefaultPreset(kNoRequest, -1));
}

template <void (CAudioParamRegistry::*Action)()>
CError* CAudioInterfaceBase::registryAction(CInputStream& stream) {
    CString path;
    TARV_TRY(takeMessage(stream, path));
    CAudioParamRegistry* registry = nullptr;
    TARV_TRY(findRegistry(path, registry));
    (registry->*Action)();
    return nullptr;
}

template CError* CAudioInterfaceBase::registryAction<&CAudioParamRegistry::swapAB>(CInputStream& stream);
template CError* CAudioInterfaceBase::registryAction<&CAudioParamRegistry::masterReset>(CInputStream& stream);
template CError* CAudioInterfaceBase::registryAction<&CAudioParamRegistry::reset>(CInputStream& stream);
template CError* CAudioInterfaceBase::registryAction<&CAudioParamRegistry::copyToAlternate>(CInputStream& stream);

}  // namespace tarv
