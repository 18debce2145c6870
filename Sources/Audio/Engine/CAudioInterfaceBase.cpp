#include "Audio/Engine/CAudioInterfaceBase.h"

#include "Audio/Engine/CAudioInterfaceBaseListeners.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Audio/Stores/CAudioDefaultPreset.h"
#include "Audio/Visuals/CAudioVizCollector.h"

namespace tarv {

constexpr CAudioInterfaceBase::CHandlerRow CAudioInterfaceBase::kHandlers[] = {
    {kSubscribeParam, &CAudioInterfaceBase::subscribeParam},
    {kUnsubscribeParam, &CAudioInterfaceBase::unsubscribeParam},
    {kRequestValues, &CAudioInterfaceBase::requestValues},
    {kRequestState, &CAudioInterfaceBase::requestState},
    {kSetValues, &CAudioInterfaceBase::setValues},
    {kSubscribeRegistry, &CAudioInterfaceBase::subscribeRegistry},
    {kUnsubscribeRegistry, &CAudioInterfaceBase::unsubscribeRegistry},
    {kRecord, &CAudioInterfaceBase::record},
    {kMoveInHistory, &CAudioInterfaceBase::moveInHistory},
    {kSubscribeVisual, &CAudioInterfaceBase::subscribeVisual},
    {kUnsubscribeVisual, &CAudioInterfaceBase::unsubscribeVisual},
    {kSetProgram, &CAudioInterfaceBase::setProgram},
    {kRenameProgram, &CAudioInterfaceBase::renameProgram},
    {kActivateRomPreset, &CAudioInterfaceBase::activateRomPreset},
    {kActivateData, &CAudioInterfaceBase::activateData},
    {kAcquirePreset, &CAudioInterfaceBase::acquirePreset},
    {kAcquireBank, &CAudioInterfaceBase::acquireBank},
    {kSwapAB, &CAudioInterfaceBase::registryAction<&CAudioParamRegistry::swapAB>},
    {kMasterReset, &CAudioInterfaceBase::registryAction<&CAudioParamRegistry::masterReset>},
    {kResetState, &CAudioInterfaceBase::registryAction<&CAudioParamRegistry::reset>},
    {kCopyToAlternate, &CAudioInterfaceBase::registryAction<&CAudioParamRegistry::copyToAlternate>},
    {kBindValue, &CAudioInterfaceBase::bindValue},
    {kUnbindValue, &CAudioInterfaceBase::unbindValue},
    {kPass, &CAudioInterfaceBase::pass},
    {kAskSampleRate, &CAudioInterfaceBase::answer<&CAudioInterfaceBase::sendSampleRate>},
    {kAskIoCounts, &CAudioInterfaceBase::answer<&CAudioInterfaceBase::sendIoCounts>},
    {kAskGroupCount, &CAudioInterfaceBase::answer<&CAudioInterfaceBase::sendGroupCount>},
    {kAskInternalCount, &CAudioInterfaceBase::answer<&CAudioInterfaceBase::sendInternalCount>},
    {kImportLabels, &CAudioInterfaceBase::importLabels},
    {kAddProgram, &CAudioInterfaceBase::addProgram},
    {kDeleteProgram, &CAudioInterfaceBase::deleteProgram},
    {kReplaceProgram, &CAudioInterfaceBase::replaceProgram},
    {kSetDefaultPreset, &CAudioInterfaceBase::setDefaultPreset},
    {kClearDefaultPreset, &CAudioInterfaceBase::clearDefaultPreset},
    {kAskDefaultPreset, &CAudioInterfaceBase::answer<&CAudioInterfaceBase::sendDefaultPreset>},
};

CAudioInterfaceBase::CAudioInterfaceBase()
    : subscriptions_(std::make_unique<CSubscriptions>()),
      defaultPresetBridge_(this, &CAudioInterfaceBase::defaultPresetChanged) {}

CAudioInterfaceBase::~CAudioInterfaceBase() {
    stopMessages();
    if (bpmParam_) {
        bpmParam_->removeListener(*this);
    }
}

CError* CAudioInterfaceBase::init() {
    TARV_TRY(CAudioParamUndo::init());
    connector_ = findObjectOf<CAudioInterfaceBaseConnector>(getAttrString("base-connector"));
    if (!connector_) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_init_NoBaseConnector No base connector '%1' found.",
                  getAttrString("base-connector"));
    }
    paramCollector_ = findObjectOf<CAudioParamCollector>(getAttrString("param-collector"));
    if (!paramCollector_) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_init_NoParamCollector No parameter collector '%1' found.",
                  getAttrString("param-collector"));
    }
    vizCollector_ = findObjectOf<CAudioVizCollector>(getAttrString("viz-collector"));
    if (!vizCollector_) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_init_NoVizCollector No visual object collector '%1' found.",
                  getAttrString("viz-collector"));
    }
    connector_->setBase(this);
    defaultPresetBridge_.subscribe(CLocalData::instance(), CAudioDefaultPreset::kDataName);
    return nullptr;
}

void CAudioInterfaceBase::connectorGone() {
    defaultPresetBridge_.disconnect();  // notifications come on other threads
    connector_ = nullptr;
}

void CAudioInterfaceBase::stopMessages() {
    defaultPresetBridge_.disconnect();
    if (connector_) {
        connector_->unsetBase(*this);
    }
}

CError* CAudioInterfaceBase::deliver(int32_t client, const CByteBuffer& message) const {
    TARV_TRY(connector_->sendToClient(client, message));
    return nullptr;
}

CError* CAudioInterfaceBase::processMessage(CInputStream& stream) {
    static_assert(isKeyedByType(kHandlers, 0, kFirstBaseMessage));
    uint32_t type = 0;
    TARV_TRY(stream.readValue(type));
    if (type >= kFirstBaseMessage) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_processMessage_InvalidType Invalid data type %1.",
                  CString::fromInt(type));
    }
    TARV_TRY((this->*kHandlers[type].handle)(stream));
    return nullptr;
}

CError* CAudioInterfaceBase::requireClient(uint32_t id) const {
    if (connector_->clients().indexOf(clientOf(id)) < 0) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_requireClient_UnknownClient Unknown client %1.",
                  CString::fromInt(clientOf(id)));
    }
    return nullptr;
}

CError* CAudioInterfaceBase::requireFreeId(uint32_t id) const {
    TARV_TRY(requireClient(id));
    bool isUsed = subscriptions_->params.count(id) > 0 || subscriptions_->registries.count(id) > 0;
    for (const CSubscriptions::CVisual& visual : subscriptions_->visuals) {
        isUsed = isUsed || visual.id == id;
    }
    CLockScope scope(subscriptions_->valueLock);
    for (const CBinding& binding : subscriptions_->bindings) {
        isUsed = isUsed || binding.id == id;
    }
    if (isUsed) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_requireFreeId_InUse Listener %1 exists already.", CString::fromInt(id));
    }
    return nullptr;
}

CAudioInterfaceBase::CParamListener& CAudioInterfaceBase::paramListener(CAudioParam& param) {
    CLockScope scope(subscriptions_->listenerLock);
    for (CParamListener* listener : subscriptions_->paramListeners) {
        if (&listener->param() == &param) {
            return *listener;
        }
    }
    subscriptions_->paramListeners.append(new CParamListener(*this, param));
    return *subscriptions_->paramListeners.last();
}

CAudioInterfaceBase::CRegistryListener& CAudioInterfaceBase::registryListener(CAudioParamRegistry& registry,
                                                                              const CString& path) {
    CLockScope scope(subscriptions_->listenerLock);
    for (CRegistryListener* listener : subscriptions_->registryListeners) {
        if (listener->registry() == &registry) {
            return *listener;
        }
    }
    subscriptions_->registryListeners.append(new CRegistryListener(*this, registry, path));
    return *subscriptions_->registryListeners.last();
}

CError* CAudioInterfaceBase::subscribeParam(CInputStream& stream) {
    uint32_t id = 0;
    CString name;
    uint32_t flags = 0;
    uint32_t request = 0;
    TARV_TRY(takeMessage(stream, id, name, flags, request));
    TARV_TRY(requireFreeId(id));
    CAudioParam* param = nullptr;
    TARV_TRY(findDefined(name, param));
    CParamListener& listener = paramListener(*param);
    listener.sendEngineValue();  // to those that are there already
    listener.add(id, (flags & kAsGroupNames) != 0);
    subscriptions_->params[id] = &listener;
    if (flags & kSendAtOnce) {
        listener.sendWhole(id, request);
    }
    return nullptr;
}

CError* CAudioInterfaceBase::unsubscribeParam(CInputStream& stream) {
    uint32_t id = 0;
    TARV_TRY(takeMessage(stream, id));
    const auto found = subscriptions_->params.find(id);
    if (found == subscriptions_->params.end()) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_unsubscribeParam_NoListener No parameter listener %1 found.",
                  CString::fromInt(id));
    }
    found->second->remove(id);
    subscriptions_->params.erase(found);
    return nullptr;
}

CError* CAudioInterfaceBase::requestValues(CInputStream& stream) {
    uint32_t id = 0;
    TARV_TRY(takeMessage(stream, id));
    const auto found = subscriptions_->params.find(id);
    if (found != subscriptions_->params.end()) {
        found->second->sendWhole(id, 0);
        return nullptr;
    }
    bool isTick = id == tickIdOf(clientOf(id)) && connector_->clients().indexOf(clientOf(id)) >= 0;
    for (const CSubscriptions::CVisual& visual : subscriptions_->visuals) {
        isTick = isTick || visual.id == id;
    }
    if (isTick) {
        sendEngineValues();
        TARV_TRY(sendFrames());
        return nullptr;
    }
    CLockScope scope(subscriptions_->valueLock);
    for (CBinding& binding : subscriptions_->bindings) {
        if (binding.id == id) {
            sendBoundValue(binding, true);
            return nullptr;
        }
    }
    TARV_FAIL("@tarvstr_CAudioInterfaceBase_requestValues_NoListener No listener %1 found.", CString::fromInt(id));
}

CError* CAudioInterfaceBase::subscribeRegistry(CInputStream& stream) {
    CString path;
    uint32_t id = 0;
    TARV_TRY(takeMessage(stream, path, id));
    TARV_TRY(requireFreeId(id));
    CAudioParamRegistry* registry = nullptr;
    TARV_TRY(findRegistry(path, registry));
    CRegistryListener& listener = registryListener(*registry, registry->fullName());
    listener.add(id);
    subscriptions_->registries[id] = &listener;
    listener.send(id);
    return nullptr;
}

CError* CAudioInterfaceBase::unsubscribeRegistry(CInputStream& stream) {
    uint32_t id = 0;
    TARV_TRY(takeMessage(stream, id));
    const auto found = subscriptions_->registries.find(id);
    if (found == subscriptions_->registries.end()) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_unsubscribeRegistry_NoListener No registry listener %1 found.",
                  CString::fromInt(id));
    }
    found->second->remove(id);
    subscriptions_->registries.erase(found);
    return nullptr;
}

CError* CAudioInterfaceBase::subscribeVisual(CInputStream& stream) {
    CString source;
    uint32_t id = 0;
    TARV_TRY(takeMessage(stream, source, id));
    TARV_TRY(requireFreeId(id));
    subscriptions_->visuals.append({id, source});
    return nullptr;
}

CError* CAudioInterfaceBase::unsubscribeVisual(CInputStream& stream) {
    uint32_t id = 0;
    TARV_TRY(takeMessage(stream, id));
    for (int32_t i = 0; i < subscriptions_->visuals.count(); ++i) {
        if (subscriptions_->visuals[i].id == id) {
            subscriptions_->visuals.removeAt(i);
            return nullptr;
        }
    }
    TARV_FAIL("@tarvstr_CAudioInterfaceBase_unsubscribeVisual_NoListener No visual listener %1 found.",
              CString::fromInt(id));
}

CError* CAudioInterfaceBase::unbindValue(CInputStream& stream) {
    uint32_t id = 0;
    TARV_TRY(takeMessage(stream, id));
    CLockScope scope(subscriptions_->valueLock);
    for (int32_t i = 0; i < subscriptions_->bindings.count(); ++i) {
        if (subscriptions_->bindings[i].id == id) {
            subscriptions_->bindings.removeAt(i);
            return nullptr;
        }
    }
    TARV_FAIL("@tarvstr_CAudioInterfaceBase_unbindValue_NoBinding No bound value %1 found.", CString::fromInt(id));
}

void CAudioInterfaceBase::clientGone(int32_t client) {
    const auto dropFrom = [client](auto& ids) {
        for (auto entry = ids.lower_bound(static_cast<uint32_t>(client) << 16);
             entry != ids.end() && clientOf(entry->first) == client;) {
            entry->second->remove(entry->first);
            entry = ids.erase(entry);
        }
    };
    dropFrom(subscriptions_->params);
    dropFrom(subscriptions_->registries);
    const auto dropIn = [client](auto& entries) {
        for (int32_t i = entries.count() - 1; i >= 0; --i) {
            if (clientOf(entries[i].id) == client) {
                entries.removeAt(i);
            }
        }
    };
    dropIn(subscriptions_->visuals);
    {
        CLockScope scope(subscriptions_->valueLock);
        dropIn(subscriptions_->bindings);
    }
    if (recordingClient_ == client) {
        recordingClient_ = -1;
        endRecord();
    }
}

}  // namespace tarv
