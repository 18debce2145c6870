#pragma once

#include "Audio/Messages/CAudioInterfaceMessage.h"
#include "Core/CObject.h"

namespace tarv {

class CAudioParamRegistry;

/// The registries of an instance as messages name them. Any thread but the audio thread's blocks.
class CEngineRegistries {
public:
    /// Paths count from `base`; the registries are its siblings.
    explicit CEngineRegistries(const CObject& base) : base_(base) {}

    /// The registry of a path; fails without one.
    [[nodiscard]] CError* find(const CString& path, CAudioParamRegistry*& registry) const;
    /// In the order of the tree.
    CArray<CAudioParamRegistry*, 4> all() const;
    /// The name of a group in the last registry that names groups, otherwise its number counted from 1.
    CString groupName(int32_t group) const;
    /// What an editor shows of a registry. Takes the registry's locks.
    static CInterfaceRegistryState stateOf(const CAudioParamRegistry& registry, const CString& path);

private:
    const CString& errorContextName() const { return base_.fullName(); }

    const CObject& base_;
};

}  // namespace tarv
