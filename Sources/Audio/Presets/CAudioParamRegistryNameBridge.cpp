#include "Audio/Presets/CAudioParamRegistryNameBridge.h"

#include "Audio/Presets/CAudioParamRegistry.h"

namespace tarv {

CAudioParamRegistryNameBridge::CAudioParamRegistryNameBridge(CAudioParamRegistry& registry, void (*changed)(void*),
                                                             void* user)
    : changed_(changed), user_(user) {
    connect(registry, CAudioParamRegistry::kProgramUpdate);
}

CAudioParamRegistry* CAudioParamRegistryNameBridge::registry() const {
    return static_cast<CAudioParamRegistry*>(base());
}

CString CAudioParamRegistryNameBridge::read() const {
    const CAudioParamRegistry* found = registry();
    return found ? found->programName(found->currentProgram()) : CString();
}

void CAudioParamRegistryNameBridge::write(const CString& displayName) {
    if (CAudioParamRegistry* found = registry()) {
        found->renameProgram(found->currentProgram(), displayName);
    }
}

void CAudioParamRegistryNameBridge::notify(CCheckedObject*) {
    changed_(user_);
}

}  // namespace tarv
