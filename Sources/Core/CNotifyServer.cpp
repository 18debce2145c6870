#include "Core/CNotifyServer.h"

#include <atomic>

#include "Core/CObjectEventBridge.h"
#include "Core/Log.h"
#include "Platform/ThreadId.h"

namespace tarv {

namespace {

std::atomic<int32_t> nextServerId{0};
// An array that grows by appending lies inline up to 31. A change of group has about 20 listeners.
constexpr int32_t kListenersWithoutHeap = 31;

}  // namespace

CNotifyServer::CNotifyServer() : id_(++nextServerId) {}

CNotifyServer::~CNotifyServer() {
    for (auto& event : events_) {
        CLockScope scope(event.second->lock);
        event.second->senders.clear();
    }
}

CNotifyServer::CEventRef CNotifyServer::findEvent(const CString& eventName) {
    CLockScope scope(mapLock_);
    auto found = events_.find(eventName);
    return found == events_.end() ? nullptr : found->second;
}

CNotifyServer::CEventRef CNotifyServer::makeEvent(const CString& eventName) {
    CLockScope scope(mapLock_);
    CEventRef& event = events_[eventName];
    if (!event) {
        event = std::allocate_shared<CEvent>(CHeapAllocator<CEvent>());
    }
    return event;
}

bool CNotifyServer::listenObject(CObject& listener, const CString& senderName, const CString& eventName,
                                 const CString& handlerName) {
    int32_t handler = listener.descriptor()->handlerIndex(handlerName);
    if (handler < 0) {
        CString text;
        text.format("Event handler '%1' not found in listenObject().", &handlerName, 1);
        logLineIn(text, listener.fullName());
        return false;
    }
    const CEventRef event = makeEvent(eventName);
    CLockScope scope(event->lock);
    CListeners& listeners = event->senders[senderName];
    for (const CListener& known : listeners) {
        if (known.object == &listener && known.handler == handler) {
            return true;
        }
    }
    CLockScope stateScope(stateLock_);
    listeners.append(CListener{&listener, handler, ++nextListenerId_});
    return true;
}

void CNotifyServer::removeListener(const CObject& listener, const CString& senderName, const CString& eventName) {
    const CEventRef event = findEvent(eventName);
    if (!event) {
        return;
    }
    CLockScope scope(event->lock);
    auto found = event->senders.find(senderName);
    if (found == event->senders.end()) {
        return;
    }
    CListeners& listeners = found->second;
    for (int32_t i = listeners.count() - 1; i >= 0; --i) {
        if (listeners[i].object == &listener) {
            listeners.removeAt(i);
        }
    }
    if (listeners.isEmpty()) {
        event->senders.erase(found);
    }
}

const CNotifyServer::CListener* CNotifyServer::findListener(const CEvent& event, const CString& senderName,
                                                            int32_t id) {
    auto found = event.senders.find(senderName);
    if (found == event.senders.end()) {
        return nullptr;
    }
    for (const CListener& listener : found->second) {
        if (listener.id == id) {
            return &listener;
        }
    }
    return nullptr;
}

bool CNotifyServer::hasListeners(const CString& senderName, const CString& eventName) {
    const CEventRef event = findEvent(eventName);
    if (!event) {
        return false;
    }
    CLockScope scope(event->lock);
    return event->senders.find(senderName) != event->senders.end();
}

bool CNotifyServer::isRegistered(const CObject& listener, const CString& senderName, const CString& eventName,
                                 int32_t listenerId) {
    const CEventRef event = findEvent(eventName);
    if (!event) {
        return false;
    }
    CLockScope scope(event->lock);
    const CListener* found = findListener(*event, senderName, listenerId);
    return found && found->object == &listener;
}

CError* CNotifyServer::send(const CString& senderName, const CString& eventName, CAttributeMap& params,
                            bool synchronous) {
    TARV_TRY(sendBy(synchronous ? CDirect::All : CDirect::OfThread, senderName, eventName, params));
    return nullptr;
}

CError* CNotifyServer::sendPosted(const CString& senderName, const CString& eventName, CAttributeMap& params) {
    TARV_TRY(sendBy(CDirect::None, senderName, eventName, params));
    return nullptr;
}

CError* CNotifyServer::sendBy(CDirect who, const CString& senderName, const CString& eventName, CAttributeMap& params) {
    const CEventRef event = findEvent(eventName);
    if (!event) {
        return nullptr;
    }
    params["sender"].setString(senderName);
    params["event-name"].setString(eventName);

    // Also over the posts: no listener can leave meanwhile, so its anchor stands.
    CLockScope scope(event->lock);
    auto sender = event->senders.find(senderName);
    if (sender == event->senders.end()) {
        return nullptr;
    }
    uint64_t thread = currentThreadId();
    CArray<CListener, kListenersWithoutHeap> direct;
    CArray<CListener, kListenersWithoutHeap> posts;
    for (const CListener& listener : sender->second) {
        const CObjectEventBridge* anchor = listener.object->eventAnchor();
        if (anchor) {
            const bool isDirect = who == CDirect::All || (who == CDirect::OfThread && anchor->threadId() == thread);
            (isDirect ? direct : posts).append(listener);
        }
    }
    for (const CListener& listener : direct) {
        // A handler that ran before may have destroyed this listener, or the server with all of them.
        if (findListener(*event, senderName, listener.id)) {
            TARV_TRY(deliver(listener, params));
        }
    }
    for (const CListener& listener : posts) {
        if (findListener(*event, senderName, listener.id)) {
            describe(listener, params);
            TARV_TRY(post(listener, params));
        }
    }
    return nullptr;
}

void CNotifyServer::describe(const CListener& listener, CAttributeMap& params) {
    params["listener"].setString(listener.object->fullName());
    params["listener-id"] = CAttributeValue::fromInt(listener.id);
    params["listener-proc"].setString(listener.object->descriptor()->handlerName(listener.handler));
}

CError* CNotifyServer::deliver(const CListener& listener, CAttributeMap& params) {
    describe(listener, params);
    TARV_TRY(listener.object->descriptor()->handler(listener.handler)(*listener.object, &params));
    return nullptr;
}

CError* CNotifyServer::post(const CListener& listener, const CAttributeMap& params) {
    TARV_TRY(listener.object->eventAnchor()->post(params));
    return nullptr;
}

}  // namespace tarv
