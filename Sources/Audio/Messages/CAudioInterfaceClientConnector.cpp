#include "Audio/Messages/CAudioInterfaceClientConnector.h"

#include <utility>

#include "Core/CNotifyServer.h"
#include "Core/CObjectWatch.h"

namespace tarv {

namespace {

constexpr const char* kEvent = "process-base-data";
constexpr const char* kHandler = "process-base-data-proxy";

/// Reads the rest of a stream into a buffer of that size, since a message may wait for long.
CError* readAll(CInputStream& stream, CByteBuffer& bytes) {
    uint8_t piece[4096];
    for (int64_t count = sizeof(piece); count > 0;) {
        count = sizeof(piece);
        TARV_TRY(stream.readStreamed(piece, count));
        bytes.append(piece, static_cast<int32_t>(count));
    }
    if (bytes.capacity() > bytes.count()) {
        bytes.reserve(bytes.count());
    }
    return nullptr;
}

}  // namespace

CAudioInterfaceClientConnector::~CAudioInterfaceClientConnector() {
    if (client_) {
        client_->connectorGone();
    }
}

CError* CAudioInterfaceClientConnector::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CAudioInterfaceClientConnector::processBaseDataProxy>(kHandler);
    return nullptr;
}

CError* CAudioInterfaceClientConnector::init() {
    TARV_TRY(CObject::init());
    listenObject(fullName(), kEvent, kHandler);
    return nullptr;
}

CError* CAudioInterfaceClientConnector::setClient(CAudioInterfaceClientTarget& client) {
    CLockScope scope(lock_);
    if (client_ && client_ != &client) {
        TARV_FAIL("@tarvstr_CAudioInterfaceClientConnector_setClient_HasClient The connector has a client already.");
    }
    client_ = &client;
    return nullptr;
}

void CAudioInterfaceClientConnector::unsetClient(const CAudioInterfaceClientTarget& client) {
    CLockScope scope(lock_);
    if (client_ == &client) {
        client_ = nullptr;
    }
}

int32_t CAudioInterfaceClientConnector::pendingCount() const {
    CLockScope scope(lock_);
    return batch_.messages.count();
}

CError* CAudioInterfaceClientConnector::onProcessBaseData(CInputStream& stream) {
    CByteBuffer message;
    TARV_TRY(readAll(stream, message));
    CLockScope scope(lock_);
    if (!client_) {
        TARV_FAIL("@tarvstr_CAudioInterfaceClientConnector_onProcessBaseData_NoClient No client object defined.");
    }
    if (batch_.messages.count() >= kQueueLimit) {
        batch_.messages = {};
        batch_.isLossy = true;
    }
    batch_.messages.append(std::move(message));
    TARV_TRY(post());
    return nullptr;
}

void CAudioInterfaceClientConnector::noteBaseGone() {
    CLockScope scope(lock_);
    batch_.isBaseGone = true;
    TARV_CONSUME(post());
}

// Posted also on the editor's own thread: the sender may hold locks that the editor's code would wait for.
CError* CAudioInterfaceClientConnector::post() {
    if (!isPosted_ && notifyServer()) {
        CAttributeMap params;
        TARV_TRY(notifyServer()->sendPosted(fullName(), kEvent, params));
        isPosted_ = true;
    }
    return nullptr;
}

CAudioInterfaceClientConnector::CBatch CAudioInterfaceClientConnector::takeBatch() {
    CLockScope scope(lock_);
    isPosted_ = false;
    return std::exchange(batch_, {});
}

CError* CAudioInterfaceClientConnector::processBaseDataProxy() {
    // A listener may run a loop of events: a post that arrives meanwhile reads after the batch that is being read.
    if (isReading_) {
        isMissed_ = true;
        return nullptr;
    }
    const CObjectWatch watch(*this);
    isReading_ = true;
    readBatch(takeBatch(), watch);
    if (!watch.isAlive()) {
        return nullptr;
    }
    isReading_ = false;
    if (std::exchange(isMissed_, false)) {
        TARV_TRY(postMissed());
    }
    return nullptr;
}

CError* CAudioInterfaceClientConnector::postMissed() {
    CLockScope scope(lock_);
    isPosted_ = false;
    if (!batch_.isEmpty()) {
        TARV_TRY(post());
    }
    return nullptr;
}

void CAudioInterfaceClientConnector::readBatch(const CBatch& batch, const CObjectWatch& watch) {
    for (int32_t i = 0; i < batch.messages.count() && watch.isAlive() && client_; ++i) {
        const CByteBuffer& message = batch.messages[i];
        CMemoryReader reader(message.data(), static_cast<uint32_t>(message.count()));
        TARV_CONSUME(client_->processMessage(reader));
    }
    if (batch.isLossy && watch.isAlive() && client_) {
        TARV_CONSUME(client_->refresh());
    }
    if (batch.isBaseGone && watch.isAlive() && client_) {
        client_->engineGone();
    }
}

CAudioInterfaceClientConnectorVST::~CAudioInterfaceClientConnectorVST() {
    if (link_) {
        CLockScope scope(link_->callLock);
        if (link_->connector) {
            link_->connector->removeClient(*this);
        }
    }
}

CError* CAudioInterfaceClientConnectorVST::init() {
    TARV_TRY(CAudioInterfaceClientConnector::init());
    auto* pluginRoot = static_cast<CObject*>(root()->getAttrPointer(kPluginRoot));
    if (!pluginRoot) {
        TARV_FAIL(
            "@tarvstr_CAudioInterfaceClientConnectorVST_init_NoPluginRoot 'PluginRootPtrVar' variable not defined!");
    }
    const CString& path = getAttrString("base-connector");
    auto* base = pluginRoot->findObjectOf<CAudioInterfaceBaseConnectorVST>(path);
    clientId_ = base ? base->addClient(*this) : -1;
    if (clientId_ < 0) {
        TARV_FAIL(
            "@tarvstr_CAudioInterfaceClientConnectorVST_init_InvalidBaseConnector Invalid base connector '%1' "
            "specified.",
            path);
    }
    link_ = base->link();
    return nullptr;
}

CError* CAudioInterfaceClientConnectorVST::onProcessBaseData(CInputStream& stream) {
    TARV_TRY(CAudioInterfaceClientConnector::onProcessBaseData(stream));
    return nullptr;
}

CError* CAudioInterfaceClientConnectorVST::sendToBase(const CByteBuffer& buffer) {
    // A copy, since a host that the message calls may close the editor, which destroys this object.
    const std::shared_ptr<CAudioInterfaceLink> link = link_;
    const CObjectWatch watch(*this);
    if (link) {
        CLockScope scope(link->callLock);
        if (link->connector) {
            CMemoryReader reader(buffer.data(), static_cast<uint32_t>(buffer.count()));
            CError* error = link->connector->processClientData(reader);
            if (!watch.isAlive()) {
                return error;
            }
            TARV_TRY(error);
            return nullptr;
        }
    }
    TARV_FAIL("@tarvstr_CAudioInterfaceClientConnectorVST_sendToBase_NoBase No base connector defined.");
}

void CAudioInterfaceClientConnectorVST::onBaseGone() {
    noteBaseGone();
}

}  // namespace tarv
