#pragma once

#include "Audio/Engine/CEngineSender.h"

namespace tarv {

class CAudioParamUndo;
class CEngineEditorMemory;
class CEngineHistory;
class CEngineRegistries;
class CEngineStatus;

/// What clients ask of the engine as a whole, and the same sent to all of them as notifications. Messages come under
/// the connector's call lock, notifications on any thread but the audio thread's blocks.
class CEngineAnswers {
public:
    CEngineAnswers(const CEngineStatus& status, const CEngineRegistries& registries, const CAudioParamUndo& undo,
                   const CEngineHistory& history, const CEngineEditorMemory& editorMemory, const CEngineSender& sender)
        : status_(status),
          registries_(registries),
          undo_(undo),
          history_(history),
          editorMemory_(editorMemory),
          sender_(sender) {}

    // One message each.
    [[nodiscard]] CError* requestState(CInputStream& stream);
    [[nodiscard]] CError* pass(CInputStream& stream);
    [[nodiscard]] CError* askSampleRate(CInputStream& stream);
    [[nodiscard]] CError* askIoCounts(CInputStream& stream);
    [[nodiscard]] CError* askGroupCount(CInputStream& stream);
    [[nodiscard]] CError* askInternalCount(CInputStream& stream);

    /// Sends the message of a notification (see CAudioInterfaceBase::notify) to every client; other names send nothing.
    void notify(const CString& eventName) const;

private:
    using CSend = CError* (CEngineAnswers::*)(uint32_t request, int32_t client) const;
    struct CNotification {
        const char* eventName;
        CSend send;
    };
    static const CNotification kNotifications[];

    [[nodiscard]] CError* answer(CInputStream& stream, CSend send) const;
    [[nodiscard]] CError* sendSampleRate(uint32_t request, int32_t client) const;
    [[nodiscard]] CError* sendIoCounts(uint32_t request, int32_t client) const;
    [[nodiscard]] CError* sendGroupCount(uint32_t request, int32_t client) const;
    [[nodiscard]] CError* sendInternalCount(uint32_t request, int32_t client) const;
    [[nodiscard]] CError* sendInputLabels(uint32_t request, int32_t client) const;
    [[nodiscard]] CError* sendOutputLabels(uint32_t request, int32_t client) const;
    [[nodiscard]] CError* sendClear(uint32_t request, int32_t client) const;
    const CString& errorContextName() const { return sender_.errorContextName(); }

    const CEngineStatus& status_;
    const CEngineRegistries& registries_;
    const CAudioParamUndo& undo_;
    const CEngineHistory& history_;
    const CEngineEditorMemory& editorMemory_;
    const CEngineSender& sender_;
};

}  // namespace tarv
