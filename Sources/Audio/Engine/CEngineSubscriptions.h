#pragma once

#include "Audio/Engine/CEngineBoundValues.h"
#include "Audio/Engine/CEngineListenerTable.h"
#include "Audio/Engine/CEngineTickListener.h"
#include "Audio/Engine/CEngineVisuals.h"
#include "Audio/Engine/CParamListener.h"
#include "Audio/Engine/CRegistryListener.h"

namespace tarv {

class CEngineRegistries;

/// What clients subscribed: parameters, registries, visual records and bound values. The messages are processed under
/// the connector's call lock; what sends may be called on any thread but the audio thread's blocks.
class CEngineSubscriptions {
public:
    CEngineSubscriptions(const CEngineSender& sender, const CEngineStatus& status, const CEngineRegistries& registries,
                         CAudioParamCollector& collector, CAudioVizCollector& vizCollector,
                         CEngineTickListener& tickListener);

    // One message each. A failure has changed nothing.
    [[nodiscard]] CError* subscribeParam(CInputStream& stream);
    [[nodiscard]] CError* unsubscribeParam(CInputStream& stream);
    [[nodiscard]] CError* subscribeRegistry(CInputStream& stream);
    [[nodiscard]] CError* unsubscribeRegistry(CInputStream& stream);
    [[nodiscard]] CError* subscribeVisual(CInputStream& stream);
    [[nodiscard]] CError* unsubscribeVisual(CInputStream& stream);
    [[nodiscard]] CError* bindValue(CInputStream& stream);
    [[nodiscard]] CError* unbindValue(CInputStream& stream);
    [[nodiscard]] CError* requestValues(CInputStream& stream);

    /// Ends all subscriptions of a client. Under the call lock.
    void clientGone(int32_t client);
    /// The defined parameter of a name, or without one that of a subscription; fails if there is none. Under the call
    /// lock.
    [[nodiscard]] CError* findParam(uint32_t id, const CString& name, CAudioParam*& param) const;
    /// Sends all parameters and registries that are subscribed.
    void sendAll();
    /// Sends the bound values that changed.
    void sendChangedValues() { values_.sendChanged(); }

private:
    using CParamListener = CAudioInterfaceBase::CParamListener;
    using CRegistryListener = CAudioInterfaceBase::CRegistryListener;

    [[nodiscard]] CError* requireFreeId(uint32_t id) const;
    [[nodiscard]] CError* findDefined(const CString& name, CAudioParam*& param) const;
    CParamListener& listenerOf(CAudioParam& param);
    CRegistryListener& listenerOf(CAudioParamRegistry& registry);
    bool isTick(uint32_t id) const;
    void sendEngineValues();
    const CString& errorContextName() const { return sender_.errorContextName(); }

    const CEngineSender& sender_;
    const CEngineRegistries& registriesByPath_;
    CAudioParamCollector& collector_;
    CEngineTickListener& tickListener_;
    CEngineListenerTable<CParamListener> params_;
    CEngineListenerTable<CRegistryListener> registries_;
    CEngineVisuals visuals_;
    CEngineBoundValues values_;
};

}  // namespace tarv
