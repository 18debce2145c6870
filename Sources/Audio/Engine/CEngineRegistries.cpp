#include "Audio/Engine/CEngineRegistries.h"

#include "Audio/Presets/CAudioParamRegistry.h"

namespace tarv {

CError* CEngineRegistries::find(const CString& path, CAudioParamRegistry*& registry) const {
    registry = base_.findObjectOf<CAudioParamRegistry>(path);
    if (!registry) {
        TARV_FAIL("@tarvstr_CEngineRegistries_find_NoRegistry No param registry object '%1' found.", path);
    }
    return nullptr;
}

CArray<CAudioParamRegistry*, 4> CEngineRegistries::all() const {
    CArray<CAudioParamRegistry*, 4> found;
    for (CObject* sibling : base_.parent()->children()) {
        if (auto* registry = dynamic_cast<CAudioParamRegistry*>(sibling)) {
            found.append(registry);
        }
    }
    return found;
}

CString CEngineRegistries::groupName(int32_t group) const {
    CString name = CString::fromInt(group + 1);
    for (const CAudioParamRegistry* registry : all()) {
        if (!registry->groupNamesParam().isEmpty()) {
            name = registry->groupName(group);
        }
    }
    return name;
}

CInterfaceRegistryState CEngineRegistries::stateOf(const CAudioParamRegistry& registry, const CString& path) {
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

}  // namespace tarv
