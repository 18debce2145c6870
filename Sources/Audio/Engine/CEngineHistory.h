#pragma once

#include "Audio/Engine/CEngineSender.h"
#include "Audio/Presets/CAudioParamUndo.h"

namespace tarv {

/// The messages that move in the history or open a record in it, and the list of steps that the clients get.
class CEngineHistory {
public:
    CEngineHistory(CAudioParamUndo& undo, const CEngineSender& sender) : undo_(undo), sender_(sender) {}

    /// A step with a label; with a key other than kNoKey one of a gesture.
    static std::unique_ptr<CAudioParamUndoStep> makeStep(const CString& label, int32_t key);
    /// Labels and position. The caller holds the history's lock until what it sends is on its way.
    CInterfaceHistory list() const;

    // One message each, under the connector's call lock.
    [[nodiscard]] CError* record(CInputStream& stream);
    [[nodiscard]] CError* move(CInputStream& stream);
    /// Ends a record that the client left open. Under the call lock.
    void clientGone(int32_t client);

    /// Sends the list of steps to every client, if it isn't the one that was sent last, or anyway with `isForced`.
    /// Takes the history's lock. Any thread.
    void send(bool isForced);

private:
    const CString& errorContextName() const { return sender_.errorContextName(); }

    CAudioParamUndo& undo_;
    const CEngineSender& sender_;
    int32_t recordingClient_ = -1;  // under the call lock
    CByteBuffer lastSent_;          // under the history's lock
};

}  // namespace tarv
