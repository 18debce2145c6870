#include "Audio/Engine/CRegistryListener.h"

#include "Audio/Engine/CEngineRegistries.h"
#include "Audio/Presets/CAudioParamRegistry.h"

namespace tarv {

CAudioInterfaceBase::CRegistryListener::CRegistryListener(const CEngineSender& sender, CAudioParamRegistry& registry)
    : sender_(sender), path_(registry.fullName()) {
    connect(registry, CAudioParamRegistry::kProgramUpdate);
}

CAudioParamRegistry* CAudioInterfaceBase::CRegistryListener::registry() const {
    return static_cast<CAudioParamRegistry*>(base());
}

void CAudioInterfaceBase::CRegistryListener::add(uint32_t id) {
    CLockScope scope(lock_);
    ids_.append(id);
}

void CAudioInterfaceBase::CRegistryListener::remove(uint32_t id) {
    CLockScope scope(lock_);
    const int32_t index = ids_.indexOf(id);
    if (index >= 0) {
        ids_.removeAt(index);
    }
}

void CAudioInterfaceBase::CRegistryListener::send(uint32_t id) {
    // Read before the lock is taken: it takes the link's lock, which is held while notifications come.
    const CAudioParamRegistry* found = registry();
    CLockScope scope(lock_);
    if (!found || ids_.isEmpty()) {
        return;
    }
    const CInterfaceRegistryState state = CEngineRegistries::stateOf(*found, path_);
    for (const uint32_t subscriber : ids_) {
        if (id == kNoRequest || subscriber == id) {
            TARV_CONSUME(sender_.sendTo(subscriber, kRegistryChanged, subscriber, state));
        }
    }
}

void CAudioInterfaceBase::CRegistryListener::notify(CCheckedObject*) {
    send(kNoRequest);
}

}  // namespace tarv
