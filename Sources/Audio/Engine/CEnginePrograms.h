#pragma once

#include "Audio/Engine/CEngineRegistries.h"
#include "Audio/Engine/CEngineSender.h"

namespace tarv {

class CEngineStatus;

/// The messages on programs, presets, banks and the A/B states of a registry, which every one of them names by its
/// path. Under the connector's call lock.
class CEnginePrograms {
public:
    CEnginePrograms(const CEngineRegistries& registries, const CEngineStatus& status, const CEngineSender& sender)
        : registries_(registries), status_(status), sender_(sender) {}

    // One message each. A failure has changed nothing.
    [[nodiscard]] CError* select(CInputStream& stream);
    [[nodiscard]] CError* rename(CInputStream& stream);
    [[nodiscard]] CError* add(CInputStream& stream);
    [[nodiscard]] CError* remove(CInputStream& stream);
    [[nodiscard]] CError* replace(CInputStream& stream);
    [[nodiscard]] CError* activateRomPreset(CInputStream& stream);
    [[nodiscard]] CError* activateData(CInputStream& stream);
    [[nodiscard]] CError* acquirePreset(CInputStream& stream);
    [[nodiscard]] CError* acquireBank(CInputStream& stream);
    /// A message that is a path alone.
    template <void (CAudioParamRegistry::*Action)()>
    [[nodiscard]] CError* act(CInputStream& stream) {
        CAudioParamRegistry* registry = nullptr;
        TARV_TRY(takeTarget(stream, registry));
        (registry->*Action)();
        return nullptr;
    }

private:
    /// Reads a path and the fields behind it up to the message's end, and finds the registry.
    template <class... T>
    [[nodiscard]] CError* takeTarget(CInputStream& stream, CAudioParamRegistry*& registry, T&... fields) const {
        CString path;
        TARV_TRY(takeMessage(stream, path, fields...));
        TARV_TRY(registries_.find(path, registry));
        return nullptr;
    }
    /// The same with the index of a program, which has to be there, before the other fields.
    template <class... T>
    [[nodiscard]] CError* takeProgram(CInputStream& stream, CAudioParamRegistry*& registry, int32_t& index,
                                      T&... fields) const {
        TARV_TRY(takeTarget(stream, registry, index, fields...));
        TARV_TRY(requireProgram(*registry, index));
        return nullptr;
    }
    [[nodiscard]] CError* requireProgram(const CAudioParamRegistry& registry, int32_t index) const;
    [[nodiscard]] CError* answer(uint32_t request, const CByteBuffer& bytes) const;
    const CString& errorContextName() const { return sender_.errorContextName(); }

    const CEngineRegistries& registries_;
    const CEngineStatus& status_;
    const CEngineSender& sender_;
};

}  // namespace tarv
