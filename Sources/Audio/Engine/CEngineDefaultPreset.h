#pragma once

#include "Audio/Engine/CEngineSender.h"
#include "Core/CApplicationData.h"

namespace tarv {

class CEngineRegistries;

/// The messages on the preset that new instances start with. Sends its name to every client when any instance of the
/// process writes it. Messages come under the connector's call lock; a write notifies on the thread that writes, under
/// the store's lock.
class CEngineDefaultPreset {
public:
    CEngineDefaultPreset(const CEngineRegistries& registries, const CEngineSender& sender);
    /// Ends the notifications of writes. Any thread.
    void stop() { bridge_.disconnect(); }

    // One message each. A failure has changed nothing.
    [[nodiscard]] CError* set(CInputStream& stream);
    [[nodiscard]] CError* clear(CInputStream& stream);
    [[nodiscard]] CError* ask(CInputStream& stream);

private:
    void written(CCheckedObject* sender);
    [[nodiscard]] CError* send(uint32_t request, int32_t client) const;
    const CString& errorContextName() const { return sender_.errorContextName(); }

    const CEngineRegistries& registries_;
    const CEngineSender& sender_;
    CApplicationDataBridge<CEngineDefaultPreset> bridge_;
};

}  // namespace tarv
