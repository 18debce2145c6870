#include "Audio/Messages/CAudioInterfaceBaseConnector.h"

namespace tarv {

CAudioInterfaceBaseConnector::CAudioInterfaceBaseConnector()
    : link_(std::allocate_shared<CAudioInterfaceLink>(CHeapAllocator<CAudioInterfaceLink>())) {}

CAudioInterfaceBaseConnector::~CAudioInterfaceBaseConnector() {
    CLockScope scope(callLock());
    if (base_) {
        base_->connectorGone();
    }
}

void CAudioInterfaceBaseConnector::setBase(CAudioInterfaceBaseTarget* base) {
    CLockScope scope(callLock());
    base_ = base;
}

void CAudioInterfaceBaseConnector::unsetBase(const CAudioInterfaceBaseTarget& base) {
    CLockScope scope(callLock());
    if (base_ == &base) {
        base_ = nullptr;
    }
}

CError* CAudioInterfaceBaseConnector::processClientData(CInputStream& stream) {
    CLockScope scope(callLock());
    if (!base_) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBaseConnector_processClientData_NoBase No base object defined.");
    }
    TARV_TRY(base_->processMessage(stream));
    return nullptr;
}

CAudioInterfaceBaseConnectorVST::CAudioInterfaceBaseConnectorVST() {
    link()->connector = this;
}

CAudioInterfaceBaseConnectorVST::~CAudioInterfaceBaseConnectorVST() {
    CLockScope scope(callLock());
    link()->connector = nullptr;
    CLockScope setScope(setLock_);
    for (const CClient& client : clients_) {
        client.end->onBaseGone();
    }
}

CError* CAudioInterfaceBaseConnectorVST::sendToClient(int32_t clientId, const CByteBuffer& buffer) {
    CError* failure = nullptr;
    // Held while the clients take their copies, so that none is removed while it copies.
    CLockScope scope(setLock_);
    for (const CClient& client : clients_) {
        if (clientId == -1 || clientId == client.id) {
            CMemoryReader reader(buffer.data(), static_cast<uint32_t>(buffer.count()));
            CError* error = client.end->onProcessBaseData(reader);
            if (failure) {
                TARV_CONSUME(error);
            } else {
                failure = error;
            }
        }
    }
    TARV_TRY(failure);
    return nullptr;
}

CClientList CAudioInterfaceBaseConnectorVST::clients() const {
    CLockScope scope(setLock_);
    CClientList ids;
    for (const CClient& client : clients_) {
        ids.append(client.id);
    }
    return ids;
}

int32_t CAudioInterfaceBaseConnectorVST::addClient(CAudioInterfaceClientEnd& client) {
    CLockScope callScope(callLock());
    CLockScope scope(setLock_);
    int32_t id = 0;
    while (id < clients_.count() && clients_[id].id == id) {
        ++id;
    }
    if (id == kClientLimit) {
        return -1;
    }
    clients_.insert(id, {id, &client});
    return id;
}

void CAudioInterfaceBaseConnectorVST::removeClient(CAudioInterfaceClientEnd& client) {
    // Held over both steps, so that no client gets the number before the subscriptions of the former one have ended.
    CLockScope callScope(callLock());
    int32_t id = -1;
    {
        CLockScope scope(setLock_);
        for (int32_t i = clients_.count() - 1; i >= 0; --i) {
            if (clients_[i].end == &client) {
                id = clients_[i].id;
                clients_.removeAt(i);
            }
        }
    }
    if (id >= 0 && base()) {
        base()->clientGone(id);
    }
}

}  // namespace tarv
