// What clients are told of the engine.

#include <algorithm>
#include <bit>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Engine/CAudioInterfaceBaseListeners.h"
#include "Audio/Messages/CAudioInterfaceBaseConnector.h"
#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Audio/Stores/CAudioDefaultPreset.h"
#include "Audio/Visuals/CAudioVizCollector.h"

namespace tarv {

namespace {

constexpr const char* kBpmParam = "plugin.modMain.host-bpm";

}  // namespace

const CAudioInterfaceBase::CBoundValue CAudioInterfaceBase::kBoundValues[] = {
    {"sample-rate", 1,
     [](const CAudioInterfaceBase& base, int32_t) { return base.vizCollector_->env()->sampleRate(); }},
    {"block-size", 1,
     [](const CAudioInterfaceBase& base, int32_t) -> double { return base.vizCollector_->env()->blockSize(); }},
    {"latency", 1,
     [](const CAudioInterfaceBase& base, int32_t) -> double { return base.vizCollector_->env()->latency(); }},
    {"is-running", 1, [](const CAudioInterfaceBase& base, int32_t) { return base.isGoing() ? 1.0 : 0.0; }},
    {"host-bpm", 1,
     [](const CAudioInterfaceBase& base, int32_t) {
         const CAudioParam* param = base.paramCollector_->findParam(kBpmParam);
         return param ? param->value(0, 0) : 0.0;
     }},
    {"io-channel-counts", 3,
     [](const CAudioInterfaceBase& base, int32_t index) -> double {
         const CInterfaceCounts counts = base.counts();
         const int32_t numbers[] = {counts.inputs, counts.outputs, counts.sidechain};
         return numbers[index];
     }},
    {"group-count", 1, [](const CAudioInterfaceBase& base, int32_t) -> double { return base.counts().groups; }},
    {"internal-channel-count", 1,
     [](const CAudioInterfaceBase& base, int32_t) -> double { return base.counts().internalChannels; }},
};

/// A notification by name and the message that it becomes.
struct CAudioInterfaceBase::CNotification {
    const char* eventName;
    CError* (CAudioInterfaceBase::*tell)(uint32_t request, int32_t client) const;
};

const CAudioInterfaceBase::CNotification CAudioInterfaceBase::kNotifications[] = {
    {"update-sample-rate", &CAudioInterfaceBase::sendSampleRate},
    {"update-io-channel-counts", &CAudioInterfaceBase::sendIoCounts},
    {"update-group-count", &CAudioInterfaceBase::sendGroupCount},
    {"update-internal-channel-count", &CAudioInterfaceBase::sendInternalCount},
    {"clear", &CAudioInterfaceBase::sendClear},
};

void CAudioInterfaceBase::start() {
    isGoing_ = true;
    sendChangedValues();
}

void CAudioInterfaceBase::stop() {
    isGoing_ = false;
    sendChangedValues();
}

CError* CAudioInterfaceBase::notify(const CString& eventName) {
    for (const CNotification& row : kNotifications) {
        if (eventName == row.eventName) {
            TARV_CONSUME((this->*row.tell)(kNoRequest, -1));
        }
    }
    sendChangedValues();
    CAttributeMap none;
    TARV_TRY(sendEvent(eventName, none, false));
    return nullptr;
}

CInterfaceCounts CAudioInterfaceBase::counts() const {
    CLockScope scope(countLock_);
    return counts_;
}

void CAudioInterfaceBase::setCounts(const CInterfaceCounts& counts, const CString& eventName) {
    {
        CLockScope scope(countLock_);
        if (counts == counts_) {
            return;
        }
        counts_ = counts;
    }
    TARV_CONSUME(notify(eventName));
}

void CAudioInterfaceBase::setIoCounts(int32_t inputs, int32_t outputs, int32_t sidechain) {
    CInterfaceCounts wanted = counts();
    wanted.inputs = inputs;
    wanted.outputs = outputs;
    wanted.sidechain = sidechain;
    setCounts(wanted, "update-io-channel-counts");
}

void CAudioInterfaceBase::setGroupCount(int32_t count) {
    CInterfaceCounts wanted = counts();
    wanted.groups = count;
    setCounts(wanted, "update-group-count");
}

void CAudioInterfaceBase::setInternalChannelCount(int32_t count) {
    CInterfaceCounts wanted = counts();
    wanted.internalChannels = count;
    setCounts(wanted, "update-internal-channel-count");
}

CError* CAudioInterfaceBase::sendSampleRate(uint32_t request, int32_t client) const {
    TARV_TRY(sendToClient(client, kSampleRate, request, vizCollector_->env()->sampleRate()));
    return nullptr;
}

CError* CAudioInterfaceBase::sendIoCounts(uint32_t request, int32_t client) const {
    const CInterfaceCounts now = counts();
    TARV_TRY(sendToClient(client, kIoCounts, request, now.inputs, now.outputs, now.sidechain));
    return nullptr;
}

CError* CAudioInterfaceBase::sendGroupCount(uint32_t request, int32_t client) const {
    TARV_TRY(sendToClient(client, kGroupCount, request, counts().groups));
    return nullptr;
}

CError* CAudioInterfaceBase::sendInternalCount(uint32_t request, int32_t client) const {
    TARV_TRY(sendToClient(client, kInternalCount, request, counts().internalChannels));
    return nullptr;
}

CError* CAudioInterfaceBase::sendClear(uint32_t, int32_t client) const {
    TARV_TRY(sendToClient(client, kData, static_cast<uint32_t>(CDataKind::Clear)));
    return nullptr;
}

CError* CAudioInterfaceBase::sendDefaultPreset(uint32_t request, int32_t client) const {
    CString name;
    const bool isThere = CAudioDefaultPreset::readName(name);
    TARV_TRY(sendToClient(client, kDefaultPreset, request, isThere, name));
    return nullptr;
}

template <CError* (CAudioInterfaceBase::*Answer)(uint32_t, int32_t) const>
CError* CAudioInterfaceBase::answer(CInputStream& stream) {
    uint32_t request = 0;
    TARV_TRY(takeMessage(stream, request));
    TARV_TRY(requireClient(request));
    TARV_TRY((this->*Answer)(request, clientOf(request)));
    return nullptr;
}

template CError* CAudioInterfaceBase::answer<&CAudioInterfaceBase::sendSampleRate>(CInputStream& stream);
template CError* CAudioInterfaceBase::answer<&CAudioInterfaceBase::sendIoCounts>(CInputStream& stream);
template CError* CAudioInterfaceBase::answer<&CAudioInterfaceBase::sendGroupCount>(CInputStream& stream);
template CError* CAudioInterfaceBase::answer<&CAudioInterfaceBase::sendInternalCount>(CInputStream& stream);
template CError* CAudioInterfaceBase::answer<&CAudioInterfaceBase::sendDefaultPreset>(CInputStream& stream);

CError* CAudioInterfaceBase::requestState(CInputStream& stream) {
    uint32_t request = 0;
    TARV_TRY(takeMessage(stream, request));
    TARV_TRY(requireClient(request));
    CInterfaceState state;
    state.sampleRate = vizCollector_->env()->sampleRate();
    state.blockSize = vizCollector_->env()->blockSize();
    state.latency = vizCollector_->env()->latency();
    state.isRunning = isGoing_;
    state.counts = counts();
    for (const CAudioParamRegistry* registry : registries()) {
        state.registries.append(registryState(*registry, registry->fullName()));
    }
    // Held until it is on its way: no older history may come behind a newer one.
    CLockScope scope(lock());
    state.history.labels = getStepLabels(&state.history.position);
    TARV_TRY(sendTo(request, kFullState, request, state));
    return nullptr;
}

CError* CAudioInterfaceBase::pass(CInputStream& stream) {
    uint32_t request = 0;
    CByteBuffer bytes;
    TARV_TRY(takeMessage(stream, request, bytes));
    TARV_TRY(requireClient(request));
    for (const int32_t client : connector_->clients()) {
        if (client != clientOf(request)) {
            TARV_TRY(sendToClient(client, kData, static_cast<uint32_t>(CDataKind::Passed), request, bytes));
        }
    }
    return nullptr;
}

CError* CAudioInterfaceBase::sendFrames() {
    struct CFrame : public CHeapObject {
        uint32_t count = 0;
        CMemoryWriteBuffer records;
    };
    COwnedArray<CFrame, 4> frames;
    for (int32_t i = 0; i < subscriptions_->visuals.count(); ++i) {
        frames.append(new CFrame);
    }
    CAudioVizCollector& collector = *vizCollector_;
    TARV_TRY(collector.takeRecords([&](const CAudioVizData& data) -> CError* {
        const CString name = collector.sourceName(data.source);
        for (int32_t i = 0; i < frames.count(); ++i) {
            const CString& wanted = subscriptions_->visuals[i].source;
            if (wanted.isEmpty() || wanted == name) {
                TARV_TRY(data.write(frames[i]->records));
                ++frames[i]->count;
            }
        }
        return nullptr;
    }));
    for (int32_t i = 0; i < frames.count(); ++i) {
        if (frames[i]->count > 0) {
            const uint32_t id = subscriptions_->visuals[i].id;
            CByteBuffer message;
            TARV_TRY(packMessage(message, kFrame, id, frames[i]->count));
            CByteBuffer records;
            frames[i]->records.copyTo(records);
            CBufferWriter writer(message);
            TARV_TRY(writer.write(records.data(), records.count()));
            TARV_TRY(deliver(clientOf(id), message));
        }
    }
    return nullptr;
}

void CAudioInterfaceBase::sendHistory(bool isForced) {
    // From the reading of the list to the handing over of its message, so that the last message tells the last state.
    CLockScope scope(lock());
    if (connector_->clients().isEmpty()) {
        lastHistory_.clear();  // who comes is told all of it first
        return;
    }
    CInterfaceHistory history;
    history.labels = getStepLabels(&history.position);
    CByteBuffer message;
    if (CError* error = packMessage(message, kHistory, history)) {
        TARV_CONSUME(error);
        return;
    }
    // The steps of one gesture leave labels and position as they are.
    const bool isSame =
        message.count() == lastHistory_.count() && std::equal(message.begin(), message.end(), lastHistory_.begin());
    if (isForced || !isSame) {
        TARV_CONSUME(deliver(-1, message));
        lastHistory_ = std::move(message);
    }
}

void CAudioInterfaceBase::historyChanged() {
    if (connector_) {
        sendHistory(false);
    }
    CAudioParamUndo::historyChanged();
}

void CAudioInterfaceBase::sendState() {
    CArray<CParamListener*, 16> params;
    CArray<CRegistryListener*, 4> registries;
    {
        CLockScope scope(subscriptions_->listenerLock);
        for (CParamListener* listener : subscriptions_->paramListeners) {
            params.append(listener);
        }
        for (CRegistryListener* listener : subscriptions_->registryListeners) {
            registries.append(listener);
        }
    }
    for (CParamListener* listener : params) {
        listener->sendWhole(kNoRequest, 0);
    }
    for (CRegistryListener* listener : registries) {
        listener->send(kNoRequest);
    }
    sendHistory(true);
}

CError* CAudioInterfaceBase::bindValue(CInputStream& stream) {
    uint32_t id = 0;
    CString name;
    uint32_t count = 0;
    TARV_TRY(takeMessage(stream, id, name, count));
    TARV_TRY(requireFreeId(id));
    const CBoundValue* found = nullptr;
    for (const CBoundValue& row : kBoundValues) {
        found = name == row.name ? &row : found;
    }
    if (!found || count < 1 || count > static_cast<uint32_t>(found->count)) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_bindValue_NoValue No value '%1' of %2 numbers found.", name,
                  CString::fromInt(count));
    }
    if (name == "host-bpm" && !bpmParam_) {
        bpmParam_ = paramCollector_->findParam(kBpmParam);
        if (bpmParam_) {
            bpmParam_->addListener(*this);
            paramListener(*bpmParam_);  // so that a tick asks it for what the audio thread set
        }
    }
    CLockScope scope(subscriptions_->valueLock);
    CBinding binding{id, found, {}};
    binding.numbers.resize(static_cast<int32_t>(count));
    subscriptions_->bindings.append(std::move(binding));
    sendBoundValue(subscriptions_->bindings.last(), true);
    return nullptr;
}

void CAudioInterfaceBase::sendBoundValue(CBinding& binding, bool isForced) const {
    bool isOther = isForced;
    for (int32_t i = 0; i < binding.numbers.count(); ++i) {
        const double now = binding.value->read(*this, i);
        isOther = isOther || std::bit_cast<uint64_t>(now) != std::bit_cast<uint64_t>(binding.numbers[i]);
        binding.numbers[i] = now;
    }
    if (isOther) {
        TARV_CONSUME(sendTo(binding.id, kData, static_cast<uint32_t>(CDataKind::Value), binding.id, binding.numbers));
    }
}

void CAudioInterfaceBase::sendEngineValues() {
    if (isClearDue_.exchange(false, std::memory_order_relaxed)) {
        TARV_CONSUME(notify("clear"));
    }
    CArray<CParamListener*, 16> listeners;
    {
        CLockScope scope(subscriptions_->listenerLock);
        for (CParamListener* listener : subscriptions_->paramListeners) {
            listeners.append(listener);
        }
    }
    for (CParamListener* listener : listeners) {
        listener->sendEngineValue();
    }
    sendChangedValues();
}

void CAudioInterfaceBase::sendChangedValues() {
    CLockScope scope(subscriptions_->valueLock);
    for (CBinding& binding : subscriptions_->bindings) {
        sendBoundValue(binding, false);
    }
}

void CAudioInterfaceBase::onParamChanged(CAudioParam&, int32_t, int32_t, int32_t) {
    sendChangedValues();
}

}  // namespace tarv
