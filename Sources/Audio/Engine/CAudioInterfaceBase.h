#pragma once

#include <atomic>

#include "Audio/Messages/CAudioInterfaceBaseConnector.h"
#include "Audio/Messages/CAudioInterfaceMessage.h"
#include "Audio/Presets/CAudioParamUndo.h"
#include "Core/CApplicationData.h"

namespace tarv {

class CAudioParamCollector;
class CAudioParamRegistry;
class CAudioVizCollector;

/// The engine's end of the exchange with editors (`audio:interface-base`), and the instance's history. Clients ask and
/// set by messages (see CAudioInterfaceMessage.h), and what they subscribed comes to them, whoever changed it.
/// Any thread but the audio thread's blocks. Messages come one at a time, under the connector's call lock; what hears
/// of changes takes no lock but those of the listeners, under which the connector's set lock is the last.
class CAudioInterfaceBase : public CAudioParamUndo, public CAudioInterfaceBaseTarget, private CAudioParamListener {
public:
    CAudioInterfaceBase();
    ~CAudioInterfaceBase() override;
    [[nodiscard]] CError* init() override;

    CAudioInterfaceBaseConnector* connector() const { return connector_; }
    CAudioParamCollector* paramCollector() const { return paramCollector_; }
    CAudioVizCollector* vizCollector() const { return vizCollector_; }

    /// Waits for the message that is being processed; from then on each one fails. Called before an engine is destroyed
    /// whose editor lives on another thread. Any thread.
    void stopMessages();
    /// Set going by resume, stopped by suspend.
    void start();
    void stop();
    bool isGoing() const { return isGoing_; }
    /// Sends one of the events `update-sample-rate`, `update-io-channel-counts`, `update-group-count`,
    /// `update-internal-channel-count`, `clear` to whoever listens in the tree, and tells the clients.
    [[nodiscard]] CError* notify(const CString& eventName);
    /// Notifies of `clear` at the next tick of a client. [audio thread, running]
    void clearAtTick() { isClearDue_.store(true, std::memory_order_relaxed); }
    /// Counts that notifications and answers carry; each notifies if it is another one.
    void setIoCounts(int32_t inputs, int32_t outputs, int32_t sidechain);
    void setGroupCount(int32_t count);
    void setInternalChannelCount(int32_t count);
    CInterfaceCounts counts() const;
    /// What the host calls its input channels, empty for one that it has no name for; a client may import them.
    void setChannelLabels(const CTextList& labels);
    /// Sends everything that clients subscribed: after a host has restored a state.
    void sendState();

    /// One message of a client; outside data. A failure has changed nothing. Of the connector, under its call lock.
    [[nodiscard]] CError* processMessage(CInputStream& stream) override;
    /// A client left: what it asked for ends, and so does a record that it left open. Under the call lock.
    void clientGone(int32_t client) override;
    void connectorGone() override;

protected:
    void historyChanged() override;

private:
    class CParamListener;
    class CRegistryListener;
    struct CEdit;
    struct CSubscriptions;
    struct CBoundValue;
    struct CBinding;
    using CHandler = CError* (CAudioInterfaceBase::*)(CInputStream& stream);
    struct CNotification;
    struct CHandlerRow {
        uint32_t type;
        CHandler handle;
    };
    static const CHandlerRow kHandlers[kFirstBaseMessage];
    static const CNotification kNotifications[];
    static const CBoundValue kBoundValues[];

    // CAudioInterfaceBase.cpp: subscriptions.
    [[nodiscard]] CError* subscribeParam(CInputStream& stream);
    [[nodiscard]] CError* unsubscribeParam(CInputStream& stream);
    [[nodiscard]] CError* requestValues(CInputStream& stream);
    [[nodiscard]] CError* subscribeRegistry(CInputStream& stream);
    [[nodiscard]] CError* unsubscribeRegistry(CInputStream& stream);
    [[nodiscard]] CError* subscribeVisual(CInputStream& stream);
    [[nodiscard]] CError* unsubscribeVisual(CInputStream& stream);
    [[nodiscard]] CError* bindValue(CInputStream& stream);
    [[nodiscard]] CError* unbindValue(CInputStream& stream);
    [[nodiscard]] CError* requireClient(uint32_t id) const;
    [[nodiscard]] CError* requireFreeId(uint32_t id) const;
    CParamListener& paramListener(CAudioParam& param);
    CRegistryListener& registryListener(CAudioParamRegistry& registry, const CString& path);

    // CAudioInterfaceBaseEdit.cpp: what clients do to values and to the history.
    [[nodiscard]] CError* setValues(CInputStream& stream);
    [[nodiscard]] CError* record(CInputStream& stream);
    [[nodiscard]] CError* moveInHistory(CInputStream& stream);
    [[nodiscard]] CError* importLabels(CInputStream& stream);
    [[nodiscard]] CError* findDefined(const CString& name, CAudioParam*& param) const;
    [[nodiscard]] CError* targetOf(uint32_t id, const CString& name, CAudioParam*& param) const;
    [[nodiscard]] CError* requirePlace(const CEdit& edit) const;
    [[nodiscard]] CError* readElements(CInputStream& stream, CEdit& edit) const;
    bool editGroup(const CEdit& edit, int32_t group) const;
    void carryOut(const CEdit& edit);
    CString labelOf(const CEdit& edit) const;

    // CAudioInterfaceBaseRegistry.cpp.
    [[nodiscard]] CError* setProgram(CInputStream& stream);
    [[nodiscard]] CError* renameProgram(CInputStream& stream);
    [[nodiscard]] CError* addProgram(CInputStream& stream);
    [[nodiscard]] CError* deleteProgram(CInputStream& stream);
    [[nodiscard]] CError* replaceProgram(CInputStream& stream);
    [[nodiscard]] CError* activateRomPreset(CInputStream& stream);
    [[nodiscard]] CError* activateData(CInputStream& stream);
    [[nodiscard]] CError* acquirePreset(CInputStream& stream);
    [[nodiscard]] CError* acquireBank(CInputStream& stream);
    [[nodiscard]] CError* setDefaultPreset(CInputStream& stream);
    [[nodiscard]] CError* clearDefaultPreset(CInputStream& stream);
    template <void (CAudioParamRegistry::*Action)()>
    [[nodiscard]] CError* registryAction(CInputStream& stream);
    [[nodiscard]] CError* findRegistry(const CString& path, CAudioParamRegistry*& registry) const;
    [[nodiscard]] CError* requireProgram(const CAudioParamRegistry& registry, int32_t index) const;
    static CInterfaceRegistryState registryState(const CAudioParamRegistry& registry, const CString& path);
    /// The registries beside this object, in the order of the tree.
    CArray<CAudioParamRegistry*, 4> registries() const;

    // CAudioInterfaceBaseState.cpp: what clients are told.
    [[nodiscard]] CError* requestState(CInputStream& stream);
    [[nodiscard]] CError* pass(CInputStream& stream);
    template <CError* (CAudioInterfaceBase::*Answer)(uint32_t, int32_t) const>
    [[nodiscard]] CError* answer(CInputStream& stream);
    [[nodiscard]] CError* sendSampleRate(uint32_t request, int32_t client) const;
    [[nodiscard]] CError* sendIoCounts(uint32_t request, int32_t client) const;
    [[nodiscard]] CError* sendGroupCount(uint32_t request, int32_t client) const;
    [[nodiscard]] CError* sendInternalCount(uint32_t request, int32_t client) const;
    [[nodiscard]] CError* sendClear(uint32_t request, int32_t client) const;
    [[nodiscard]] CError* sendDefaultPreset(uint32_t request, int32_t client) const;
    void setCounts(const CInterfaceCounts& counts, const CString& eventName);
    [[nodiscard]] CError* sendFrames();
    void sendHistory(bool isForced);
    void sendBoundValue(CBinding& binding, bool isForced) const;
    void sendChangedValues();
    void sendEngineValues();
    void defaultPresetChanged(CCheckedObject* sender);
    void onParamChanged(CAudioParam& param, int32_t group, int32_t first, int32_t count) override;

    /// A message to the client of an id.
    template <class... T>
    [[nodiscard]] CError* sendTo(uint32_t id, uint32_t type, const T&... fields) const {
        TARV_TRY(sendToClient(clientOf(id), type, fields...));
        return nullptr;
    }
    template <class... T>
    [[nodiscard]] CError* sendToClient(int32_t client, uint32_t type, const T&... fields) const {
        CByteBuffer message;
        TARV_TRY(packMessage(message, type, fields...));
        TARV_TRY(deliver(client, message));
        return nullptr;
    }
    [[nodiscard]] CError* deliver(int32_t client, const CByteBuffer& message) const;

    CAudioInterfaceBaseConnector* connector_ = nullptr;
    CAudioParamCollector* paramCollector_ = nullptr;
    CAudioVizCollector* vizCollector_ = nullptr;
    std::atomic<bool> isGoing_{false};
    std::atomic<bool> isClearDue_{false};
    std::unique_ptr<CSubscriptions> subscriptions_;
    int32_t recordingClient_ = -1;  // under the call lock
    CAudioParam* bpmParam_ = nullptr;
    mutable CLock countLock_;
    CInterfaceCounts counts_;
    CTextList channelLabels_;
    CByteBuffer lastHistory_;  // under the history's lock
    CApplicationDataBridge<CAudioInterfaceBase> defaultPresetBridge_;
};

}  // namespace tarv
