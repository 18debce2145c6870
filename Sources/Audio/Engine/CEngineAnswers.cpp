#include "Audio/Engine/CEngineAnswers.h"

#include "Audio/Engine/CEngineEditorMemory.h"
#include "Audio/Engine/CEngineHistory.h"
#include "Audio/Engine/CEngineRegistries.h"
#include "Audio/Engine/CEngineStatus.h"
#include "Audio/Presets/CAudioParamRegistry.h"

namespace tarv {

const CEngineAnswers::CNotification CEngineAnswers::kNotifications[] = {
    {"update-sample-rate", &CEngineAnswers::sendSampleRate},
    {"update-io-channel-counts", &CEngineAnswers::sendIoCounts},
    {"update-group-count", &CEngineAnswers::sendGroupCount},
    {"update-internal-channel-count", &CEngineAnswers::sendInternalCount},
    {"update-input-labels", &CEngineAnswers::sendInputLabels},
    {"update-output-labels", &CEngineAnswers::sendOutputLabels},
    {"clear", &CEngineAnswers::sendClear},
};

void CEngineAnswers::notify(const CString& eventName) const {
    for (const CNotification& row : kNotifications) {
        if (eventName == row.eventName) {
            TARV_CONSUME((this->*row.send)(kNoRequest, -1));
        }
    }
}

CError* CEngineAnswers::answer(CInputStream& stream, CSend send) const {
    uint32_t request = 0;
    TARV_TRY(takeMessage(stream, request));
    TARV_TRY(sender_.requireClient(request));
    TARV_TRY((this->*send)(request, clientOf(request)));
    return nullptr;
}

CError* CEngineAnswers::askSampleRate(CInputStream& stream) {
    TARV_TRY(answer(stream, &CEngineAnswers::sendSampleRate));
    return nullptr;
}

CError* CEngineAnswers::askIoCounts(CInputStream& stream) {
    TARV_TRY(answer(stream, &CEngineAnswers::sendIoCounts));
    return nullptr;
}

CError* CEngineAnswers::askGroupCount(CInputStream& stream) {
    TARV_TRY(answer(stream, &CEngineAnswers::sendGroupCount));
    return nullptr;
}

CError* CEngineAnswers::askInternalCount(CInputStream& stream) {
    TARV_TRY(answer(stream, &CEngineAnswers::sendInternalCount));
    return nullptr;
}

CError* CEngineAnswers::sendSampleRate(uint32_t request, int32_t client) const {
    TARV_TRY(sender_.send(client, kSampleRate, request, status_.sampleRate()));
    return nullptr;
}

CError* CEngineAnswers::sendIoCounts(uint32_t request, int32_t client) const {
    const CInterfaceCounts now = status_.counts();
    TARV_TRY(sender_.send(client, kIoCounts, request, now.inputs, now.outputs, now.sidechain));
    return nullptr;
}

CError* CEngineAnswers::sendGroupCount(uint32_t request, int32_t client) const {
    TARV_TRY(sender_.send(client, kGroupCount, request, status_.counts().groups));
    return nullptr;
}

CError* CEngineAnswers::sendInternalCount(uint32_t request, int32_t client) const {
    TARV_TRY(sender_.send(client, kInternalCount, request, status_.counts().internalChannels));
    return nullptr;
}

CError* CEngineAnswers::sendInputLabels(uint32_t, int32_t client) const {
    TARV_TRY(sender_.send(client, kData, static_cast<uint32_t>(CDataKind::InputLabels), status_.channelLabels()));
    return nullptr;
}

CError* CEngineAnswers::sendOutputLabels(uint32_t, int32_t client) const {
    TARV_TRY(sender_.send(client, kData, static_cast<uint32_t>(CDataKind::OutputLabels), status_.outputLabels()));
    return nullptr;
}

CError* CEngineAnswers::sendClear(uint32_t, int32_t client) const {
    TARV_TRY(sender_.send(client, kData, static_cast<uint32_t>(CDataKind::Clear)));
    return nullptr;
}

CError* CEngineAnswers::requestState(CInputStream& stream) {
    uint32_t request = 0;
    TARV_TRY(takeMessage(stream, request));
    TARV_TRY(sender_.requireClient(request));
    CInterfaceState state;
    state.sampleRate = status_.sampleRate();
    state.blockSize = status_.blockSize();
    state.latency = status_.latency();
    state.isRunning = status_.isRunning();
    state.counts = status_.counts();
    for (const CAudioParamRegistry* registry : registries_.all()) {
        state.registries.append(CEngineRegistries::stateOf(*registry, registry->fullName()));
    }
    // Held until the message is queued, so that no older history comes behind a newer one.
    CLockScope scope(undo_.lock());
    state.history = history_.list();
    TARV_TRY(sender_.sendTo(request, kFullState, request, state));
    if (!status_.channelLabels().isEmpty()) {
        TARV_TRY(sendInputLabels(request, clientOf(request)));
    }
    if (!status_.outputLabels().isEmpty()) {
        TARV_TRY(sendOutputLabels(request, clientOf(request)));
    }
    TARV_TRY(editorMemory_.send(clientOf(request)));
    return nullptr;
}

CError* CEngineAnswers::pass(CInputStream& stream) {
    uint32_t request = 0;
    CByteBuffer bytes;
    TARV_TRY(takeMessage(stream, request, bytes));
    TARV_TRY(sender_.requireClient(request));
    for (const int32_t client : sender_.clients()) {
        if (client != clientOf(request)) {
            TARV_TRY(sender_.send(client, kData, static_cast<uint32_t>(CDataKind::Passed), request, bytes));
        }
    }
    return nullptr;
}

}  // namespace tarv
