#include "Audio/Messages/CAudioInterfaceClientConnector.h"

#include <utility>

#include "Core/CNotifyServer.h"

namespace tarv {

namespace {

constexpr const char* kEvent = "process-base-data";
constexpr const char* kHandler = "process-base-data-proxy";

/// The rest of a stream.
CError* readAll(CInputStream& stream, CByteBuffer& bytes) {
    constexpr int32_t kStep = 4096;
    for (int64_t count = kStep; count > 0;) {
        const int32_t start = bytes.count();
        bytes.resize(start + kStep);
        count = kStep;
        CError* error = stream.readStreamed(bytes.data() + start, count);
        bytes.resize(error ? start : start + static_cast<int32_t>(count));
        if (error) {
            return error;
        }
    }
    return nullptr;
}

}  // namespace

CAudioInterfaceClientConnector::~CAudioInterfaceClientConnector() {
    if (client_) {
        client_->connectorGone();
    }
    if (isGone_) {
        *isGone_ = true;
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

void CAudioInterfaceClientConnector::setClient(CAudioInterfaceClientTarget* client) {
    CLockScope scope(lock_);
    client_ = client;
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

// Posted also on the editor's own thread: whoever sends may hold locks that the editor's code would wait for.
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
    // A listener may run a loop of events of its own: what comes meanwhile is read behind what is being read.
    if (isReading_) {
        return nullptr;
    }
    bool isGone = false;
    isReading_ = true;
    isGone_ = &isGone;
    for (CBatch batch = takeBatch(); !isGone && !batch.isEmpty();) {
        readBatch(batch, isGone);
        if (!isGone) {
            batch = takeBatch();
        }
    }
    if (!isGone) {
        isReading_ = false;
        isGone_ = nullptr;
    }
    return nullptr;
}

void CAudioInterfaceClientConnector::readBatch(const CBatch& batch, const bool& isGone) {
    for (int32_t i = 0; i < batch.messages.count() && !isGone && client_; ++i) {
        const CByteBuffer& message = batch.messages[i];
        CMemoryReader reader(message.data(), static_cast<uint32_t>(message.count()));
        TARV_CONSUME(client_->processMessage(reader));
    }
    if (batch.isLossy && !isGone && client_) {
        TARV_CONSUME(client_->refresh());
    }
    if (batch.isBaseGone && !isGone && client_) {
        client_->engineGone();
    }
}

CAudioInterfaceClientConnectorVST::~CAudioInterfaceClientConnectorVST() {
    if (CAudioInterfaceBaseConnectorVST* base = base_.load()) {
        base->removeClient(*this);
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
    base_ = base;
    return nullptr;
}

CError* CAudioInterfaceClientConnectorVST::onProcessBaseData(CInputStream& stream) {
    TARV_TRY(CAudioInterfaceClientConnector::onProcessBaseData(stream));
    return nullptr;
}

CError* CAudioInterfaceClientConnectorVST::sendToBase(const CByteBuffer& buffer) {
    CAudioInterfaceBaseConnectorVST* base = base_.load();
    if (!base) {
        TARV_FAIL("@tarvstr_CAudioInterfaceClientConnectorVST_sendToBase_NoBase No base connector defined.");
    }
    CLockScope scope(base->callLock());
    CMemoryReader reader(buffer.data(), static_cast<uint32_t>(buffer.count()));
    TARV_TRY(base->processClientData(reader));
    return nullptr;
}

void CAudioInterfaceClientConnectorVST::onBaseGone() {
    base_ = nullptr;
    noteBaseGone();
}

}  // namespace tarv
