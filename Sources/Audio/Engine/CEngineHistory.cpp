#include "Audio/Engine/CEngineHistory.h"

#include <algorithm>

namespace tarv {

std::unique_ptr<CAudioParamUndoStep> CEngineHistory::makeStep(const CString& label, int32_t key) {
    return key == CAudioParamUndoStep::kNoKey ? std::make_unique<CAudioParamUndoStep>(label)
                                              : std::make_unique<CAudioParamUndoStep>(label, key);
}

CInterfaceHistory CEngineHistory::list() const {
    CInterfaceHistory history;
    history.labels = undo_.getStepLabels(&history.position);
    return history;
}

CError* CEngineHistory::record(CInputStream& stream) {
    uint32_t request = 0;
    bool isOpening = false;
    CString label;
    int32_t key = 0;
    TARV_TRY(takeMessage(stream, request, isOpening, label, key));
    TARV_TRY(sender_.requireClient(request));
    if (isOpening) {
        recordingClient_ = clientOf(request);
        undo_.beginRecord(makeStep(label, key));
    } else {
        clientGone(clientOf(request));
    }
    return nullptr;
}

void CEngineHistory::clientGone(int32_t client) {
    if (recordingClient_ == client) {
        recordingClient_ = -1;
        undo_.endRecord();
    }
}

CError* CEngineHistory::move(CInputStream& stream) {
    uint32_t request = 0;
    uint32_t move = 0;
    int32_t position = 0;
    int32_t count = 0;
    TARV_TRY(takeMessage(stream, request, move, position, count));
    TARV_TRY(sender_.requireClient(request));
    if (move == static_cast<uint32_t>(CHistoryMove::Undo)) {
        undo_.undo(count);
    } else if (move == static_cast<uint32_t>(CHistoryMove::Redo)) {
        undo_.redo(count);
    } else if (move == static_cast<uint32_t>(CHistoryMove::Select)) {
        undo_.selectStep(position);
    } else {
        TARV_FAIL("@tarvstr_CEngineHistory_move_InvalidMove Invalid move %1 in the history.", CString::fromInt(move));
    }
    return nullptr;
}

void CEngineHistory::send(bool isForced) {
    // Held from the reading of the list until its message is queued, so that the last message carries the last state.
    CLockScope scope(undo_.lock());
    if (sender_.clients().isEmpty()) {
        lastSent_.clear();  // a new client gets the full state anyway
        return;
    }
    CByteBuffer message;
    if (CError* error = packMessage(message, kHistory, list())) {
        TARV_CONSUME(error);
        return;
    }
    // The steps of one gesture leave labels and position as they are.
    const bool isSame =
        message.count() == lastSent_.count() && std::equal(message.begin(), message.end(), lastSent_.begin());
    if (isForced || !isSame) {
        TARV_CONSUME(sender_.deliver(-1, message));
        lastSent_ = std::move(message);
    }
}

}  // namespace tarv
