#include "Audio/Engine/CEngineSubscriptions.h"

#include "Audio/Engine/CEngineRegistries.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Presets/CAudioParamRegistry.h"

namespace tarv {

CEngineSubscriptions::CEngineSubscriptions(const CEngineSender& sender, const CEngineStatus& status,
                                           const CEngineRegistries& registries, CAudioParamCollector& collector,
                                           CAudioVizCollector& vizCollector, CEngineTickListener& tickListener)
    : sender_(sender),
      registriesByPath_(registries),
      collector_(collector),
      tickListener_(tickListener),
      visuals_(sender, vizCollector),
      values_(sender, status, collector) {}

CError* CEngineSubscriptions::requireFreeId(uint32_t id) const {
    TARV_TRY(sender_.requireClient(id));
    if (params_.find(id) || registries_.find(id) || visuals_.has(id) || values_.has(id)) {
        TARV_FAIL("@tarvstr_CEngineSubscriptions_requireFreeId_InUse Listener %1 exists already.",
                  CString::fromInt(id));
    }
    return nullptr;
}

CError* CEngineSubscriptions::findDefined(const CString& name, CAudioParam*& param) const {
    param = collector_.findParam(name);
    if (!param || !param->isDefined()) {
        TARV_FAIL("@tarvstr_CEngineSubscriptions_findDefined_NoParam No parameter '%1' found.", name);
    }
    return nullptr;
}

CError* CEngineSubscriptions::findParam(uint32_t id, const CString& name, CAudioParam*& param) const {
    if (!name.isEmpty()) {
        TARV_TRY(findDefined(name, param));
        return nullptr;
    }
    const CParamListener* listener = params_.find(id);
    if (!listener) {
        TARV_FAIL("@tarvstr_CEngineSubscriptions_findParam_NoListener No parameter listener %1 found.",
                  CString::fromInt(id));
    }
    param = &listener->param();
    return nullptr;
}

CEngineSubscriptions::CParamListener& CEngineSubscriptions::listenerOf(CAudioParam& param) {
    return params_.findOrMake([&](const CParamListener& listener) { return &listener.param() == &param; },
                              [&] { return new CParamListener(sender_, param); });
}

CEngineSubscriptions::CRegistryListener& CEngineSubscriptions::listenerOf(CAudioParamRegistry& registry) {
    return registries_.findOrMake([&](const CRegistryListener& listener) { return listener.registry() == &registry; },
                                  [&] { return new CRegistryListener(sender_, registry); });
}

CError* CEngineSubscriptions::subscribeParam(CInputStream& stream) {
    uint32_t id = 0;
    CString name;
    uint32_t flags = 0;
    uint32_t request = 0;
    TARV_TRY(takeMessage(stream, id, name, flags, request));
    TARV_TRY(requireFreeId(id));
    CAudioParam* param = nullptr;
    TARV_TRY(findDefined(name, param));
    CParamListener& listener = listenerOf(*param);
    listener.sendEngineValue();  // to those that are there already
    listener.add(id, (flags & kAsGroupNames) != 0);
    params_.subscribe(id, listener);
    if (flags & kSendAtOnce) {
        listener.sendWhole(id, request);
    }
    return nullptr;
}

CError* CEngineSubscriptions::unsubscribeParam(CInputStream& stream) {
    uint32_t id = 0;
    TARV_TRY(takeMessage(stream, id));
    if (!params_.unsubscribe(id)) {
        TARV_FAIL("@tarvstr_CEngineSubscriptions_unsubscribeParam_NoListener No parameter listener %1 found.",
                  CString::fromInt(id));
    }
    return nullptr;
}

CError* CEngineSubscriptions::subscribeRegistry(CInputStream& stream) {
    CString path;
    uint32_t id = 0;
    TARV_TRY(takeMessage(stream, path, id));
    TARV_TRY(requireFreeId(id));
    CAudioParamRegistry* registry = nullptr;
    TARV_TRY(registriesByPath_.find(path, registry));
    CRegistryListener& listener = listenerOf(*registry);
    listener.add(id);
    registries_.subscribe(id, listener);
    listener.send(id);
    return nullptr;
}

CError* CEngineSubscriptions::unsubscribeRegistry(CInputStream& stream) {
    uint32_t id = 0;
    TARV_TRY(takeMessage(stream, id));
    if (!registries_.unsubscribe(id)) {
        TARV_FAIL("@tarvstr_CEngineSubscriptions_unsubscribeRegistry_NoListener No registry listener %1 found.",
                  CString::fromInt(id));
    }
    return nullptr;
}

CError* CEngineSubscriptions::subscribeVisual(CInputStream& stream) {
    CString source;
    uint32_t id = 0;
    TARV_TRY(takeMessage(stream, source, id));
    TARV_TRY(requireFreeId(id));
    visuals_.subscribe(id, source);
    return nullptr;
}

CError* CEngineSubscriptions::unsubscribeVisual(CInputStream& stream) {
    uint32_t id = 0;
    TARV_TRY(takeMessage(stream, id));
    if (!visuals_.unsubscribe(id)) {
        TARV_FAIL("@tarvstr_CEngineSubscriptions_unsubscribeVisual_NoListener No visual listener %1 found.",
                  CString::fromInt(id));
    }
    return nullptr;
}

CError* CEngineSubscriptions::bindValue(CInputStream& stream) {
    uint32_t id = 0;
    CString name;
    uint32_t count = 0;
    TARV_TRY(takeMessage(stream, id, name, count));
    TARV_TRY(requireFreeId(id));
    TARV_TRY(values_.bind(id, name, count));
    if (values_.followedParam()) {
        listenerOf(*values_.followedParam());  // so that a tick asks it for what the audio thread set
    }
    return nullptr;
}

CError* CEngineSubscriptions::unbindValue(CInputStream& stream) {
    uint32_t id = 0;
    TARV_TRY(takeMessage(stream, id));
    if (!values_.unbind(id)) {
        TARV_FAIL("@tarvstr_CEngineSubscriptions_unbindValue_NoBinding No bound value %1 found.", CString::fromInt(id));
    }
    return nullptr;
}

bool CEngineSubscriptions::isTick(uint32_t id) const {
    return visuals_.has(id) || (id == tickIdOf(clientOf(id)) && sender_.hasClient(clientOf(id)));
}

CError* CEngineSubscriptions::requestValues(CInputStream& stream) {
    uint32_t id = 0;
    TARV_TRY(takeMessage(stream, id));
    if (CParamListener* listener = params_.find(id)) {
        listener->sendWhole(id, 0);
        return nullptr;
    }
    if (isTick(id)) {
        tickListener_.onTick();
        sendEngineValues();
        TARV_TRY(visuals_.sendFrames());
        return nullptr;
    }
    if (!values_.send(id)) {
        TARV_FAIL("@tarvstr_CEngineSubscriptions_requestValues_NoListener No listener %1 found.", CString::fromInt(id));
    }
    return nullptr;
}

void CEngineSubscriptions::clientGone(int32_t client) {
    params_.clientGone(client);
    registries_.clientGone(client);
    visuals_.clientGone(client);
    values_.clientGone(client);
}

void CEngineSubscriptions::sendAll() {
    for (CParamListener* listener : params_.listeners()) {
        listener->sendWhole(kNoRequest, 0);
    }
    for (CRegistryListener* listener : registries_.listeners()) {
        listener->send(kNoRequest);
    }
}

void CEngineSubscriptions::sendEngineValues() {
    for (CParamListener* listener : params_.listeners()) {
        listener->sendEngineValue();
    }
    values_.sendChanged();
}

}  // namespace tarv
