#include "Core/CObject.h"

#include "Core/CApplication.h"
#include "Core/CCreatorRegistry.h"
#include "Core/CNotifyServer.h"
#include "Core/CObjectWatch.h"

namespace tarv {

CObject::CObject() {
    setDescriptor(&CCreatorRegistry::objectDescriptor());
}

CObject::~CObject() {
    for (CObjectWatch* watch = watch_; watch; watch = watch->outer_) {
        watch->object_ = nullptr;
    }
    destroyChildren();
    releaseListeners();
    leaveObservation();
    if (parent_) {
        parent_->removeChild(this);
    }
}

void CObject::setDescriptor(const CClassDescriptor* descriptor) {
    descriptor_ = descriptor;
    pendingHandlers_.clear();
    pendingHandlers_.resize(descriptor->handlerCount());
}

CError* CObject::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CObject::releaseChildBridged>("release-child-bridged");
    return nullptr;
}

CError* CObject::init() {
    if (definition_) {
        TARV_TRY(readTemplateBody(false, true));
    }
    if (instanceAttributes_) {
        TARV_TRY(setAttributes(*instanceAttributes_, false));
    }
    state_ = CObjectState::AttributesLoaded;
    return nullptr;
}

CError* CObject::initChildren() {
    TARV_TRY(runPendingHandlers());
    state_ = CObjectState::ChildrenCreated;
    if (definition_) {
        TARV_TRY(readTemplateBody(true, false));
    }
    return nullptr;
}

CError* CObject::finishInit() {
    if (!CApplication::exists()) {
        readOnly_ = true;
    }
    state_ = CObjectState::Finished;
    return nullptr;
}

CError* CObject::childAdded(CObject*) {
    return nullptr;
}

void CObject::removeChild(CObject* child) {
    int32_t index = children_.indexOf(child);
    if (index < 0) {
        return;
    }
    children_.removeAt(index);
    auto base = childMap_.find(child->baseName_);
    base->second.erase(child->nameIndex_);
    if (base->second.empty()) {
        childMap_.erase(base);
    }
    auto definition = templates_.find(child->name());
    if (definition != templates_.end() && definition->second == child) {
        templates_.erase(definition);
    }
    child->parent_ = nullptr;
}

void CObject::removeFromParent() {
    if (parent_) {
        parent_->removeChild(this);
    }
}

void CObject::destroyChildren() {
    while (!children_.isEmpty()) {
        delete children_.last();
    }
}

void CObject::setEventBridge(CObjectEventBridge* bridge) {
    eventBridge_ = bridge;
    eventForward_ = bridge == nullptr;
}

CObjectEventBridge* CObject::eventAnchor() const {
    const CObject* object = this;
    while (object && object->eventForward_) {
        object = object->parent_;
    }
    return object ? object->eventBridge_ : nullptr;
}

void CObject::addEventParams(CAttributeMap& params) {
    params["sender"].setString(fullName_);
}

void CObject::listenObject(const CString& senderName, const CString& eventName, const CString& handlerName) {
    if (!notifyServer_) {
        return;
    }
    if (notifyServer_->listenObject(*this, senderName, eventName, handlerName)) {
        listeners_[senderName][eventName] = true;
    }
}

void CObject::releaseListeners() {
    // A subtree that was taken out may outlive the root that owned the server.
    if (!listeners_.empty() && CCheckedObject::isLive(notifyServer_)) {
        for (const auto& sender : listeners_) {
            for (const auto& event : sender.second) {
                notifyServer_->removeListener(*this, sender.first, event.first);
            }
        }
    }
    listeners_.clear();
}

CError* CObject::sendEvent(const CString& eventName, CAttributeMap& params, bool synchronous) {
    CString sender;
    return sendEvent(eventName, params, synchronous, sender);
}

CError* CObject::sendEvent(const CString& eventName, CAttributeMap& params, bool synchronous, CString& sender) {
    addEventParams(params);
    // A copy, since a handler may destroy this very object.
    sender = fullName_;
    CError* error = notifyServer_ ? notifyServer_->send(sender, eventName, params, synchronous) : nullptr;
    return error ? addErrorLocation(error, __FILE__, __LINE__, sender, CString()) : nullptr;
}

}  // namespace tarv
