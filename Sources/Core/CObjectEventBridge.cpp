#include "Core/CObjectEventBridge.h"

#include "Core/CNotifyServer.h"
#include "Core/CObjectWatch.h"
#include "Platform/ThreadId.h"

namespace tarv {

namespace {

constexpr const char* kReleaseHandler = "release-child-bridged";

}  // namespace

CError* CSystem::sendEvent(CEventWindow window, uintptr_t cookie) {
    if (CPlatformError code = postEvent(window, cookie)) {
        TARV_FAIL("@tarvstr_CSystem_sendEvent_PostError Post message error %1.", CString::fromInt(code));
    }
    return nullptr;
}

CObjectEventBridge::CObjectEventBridge() : threadId_(currentThreadId()) {}

CObjectEventBridge::~CObjectEventBridge() {
    closeWindow();
}

CError* CObjectEventBridge::openWindow() {
    closeWindow();
    if (CPlatformError code = openEventWindow(&CObjectEventBridge::receive, this, window_)) {
        TARV_FAIL("@tarvstr_CObjectEventBridge_openWindow_Error Event window creation error %1.",
                  CString::fromInt(code));
    }
    return nullptr;
}

void CObjectEventBridge::closeWindow() {
    if (window_) {
        closeEventWindow(window_);
        window_ = 0;
    }
    CLockScope scope(queueLock_);
    queue_.clear();
}

CError* CObjectEventBridge::post(const CAttributeMap& params) {
    uint32_t serial = 0;
    {
        CLockScope scope(queueLock_);
        serial = ++lastSerial_;
        queue_[serial] = params;
    }
    if (CError* error = CSystem::sendEvent(window_, serial)) {
        CLockScope scope(queueLock_);
        queue_.erase(serial);
        return addErrorLocation(error, __FILE__, __LINE__, CString(), CString());
    }
    return nullptr;
}

void CObjectEventBridge::receive(void* user, uintptr_t cookie) {
    auto* bridge = static_cast<CObjectEventBridge*>(user);
    CAttributeMap params;
    {
        CLockScope scope(bridge->queueLock_);
        auto queued = bridge->queue_.find(static_cast<uint32_t>(cookie));
        if (queued == bridge->queue_.end()) {
            return;
        }
        params.swap(queued->second);
        bridge->queue_.erase(queued);
    }
    TARV_CONSUME(bridge->eventArrived(params));
}

CObjectEventBridgeHandler::CObjectEventBridgeHandler() {
    setEventBridge(this);
}

CObjectEventBridgeHandler::~CObjectEventBridgeHandler() {
    // The children leave the notification server while other threads may still look for their anchor.
    destroyChildren();
    releaseListeners();
    closeWindow();
}

CError* CObjectEventBridgeHandler::init() {
    TARV_TRY(openWindow());
    TARV_TRY(CObject::init());
    return nullptr;
}

CError* CObjectEventBridgeHandler::eventArrived(CAttributeMap& params) {
    const CString& handlerName = params["listener-proc"].asString();
    CObject* listener = root()->findObject(params["listener"].asString());
    int32_t handler = listener ? listener->descriptor()->handlerIndex(handlerName) : -1;
    if (handler < 0) {
        return nullptr;
    }
    bool isRelease = handlerName == kReleaseHandler;
    // Another object may have got the name of one that died.
    if (!isRelease && !(notifyServer() &&
                        notifyServer()->isRegistered(*listener, params["sender"].asString(),
                                                     params["event-name"].asString(), params["listener-id"].asInt()))) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    CError* error = listener->descriptor()->handler(handler)(*listener, &params);
    if (!watch.isAlive()) {
        return error;
    }
    TARV_TRY(error);
    return nullptr;
}

CError* CObject::releaseBridged() {
    CObjectEventBridge* anchor = eventAnchor();
    if (!anchor || !parent_ || anchor == eventBridge_) {
        return nullptr;
    }
    CAttributeMap params;
    addEventParams(params);
    params["event-name"] = CAttributeValue::fromString(kReleaseHandler);
    params["listener"] = CAttributeValue::fromString(parent_->fullName());
    params["listener-proc"] = CAttributeValue::fromString(kReleaseHandler);
    params["child"] = CAttributeValue::fromPointer(this);
    TARV_TRY(anchor->post(params));
    return nullptr;
}

CError* CObject::releaseChildBridged(CAttributeMap& params) {
    auto* child = static_cast<CObject*>(params["child"].asPointer());
    // A request may arrive twice, or after the child has gone another way and left its place to a new one.
    if (children_.indexOf(child) >= 0 && child->fullName_ == params["sender"].asString()) {
        delete child;
    }
    return nullptr;
}

}  // namespace tarv
