#include "Audio/CAudioInterfaceBaseConnector.h"

namespace tarv {

namespace {

/// Types of the messages from a client are below this one.
constexpr uint32_t kFirstBaseMessage = 29;

}  // namespace

CError* CAudioInterfaceBaseConnector::processClientData(CInputStream& stream) {
    if (!base_) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBaseConnector_processClientData_NoBase No base object defined.");
    }
    uint32_t type = 0;
    TARV_TRY(stream.readValue(type));
    if (type >= kFirstBaseMessage) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBaseConnector_processClientData_InvalidType Invalid data type %1.",
                  CString::fromInt(type));
    }
    return nullptr;
}

CError* CAudioInterfaceBaseConnectorVST::sendToClient(int32_t clientId, const CByteBuffer& buffer) {
    // Held while the clients read, so that none goes in the middle of its message; the lock is recursive.
    CLockScope scope(lock_);
    const CArray<CClient, 4> clients = clients_;
    for (const CClient& client : clients) {
        if (clientId == -1 || clientId == client.id) {
            CMemoryReader reader(buffer.data(), static_cast<uint32_t>(buffer.count()));
            TARV_TRY(client.end->onProcessBaseData(reader));
        }
    }
    return nullptr;
}

int32_t CAudioInterfaceBaseConnectorVST::addClient(CAudioInterfaceClientEnd& client) {
    CLockScope scope(lock_);
    clients_.append({nextId_, &client});
    return nextId_++;
}

void CAudioInterfaceBaseConnectorVST::removeClient(CAudioInterfaceClientEnd& client) {
    CLockScope scope(lock_);
    for (int32_t i = clients_.count() - 1; i >= 0; --i) {
        if (clients_[i].end == &client) {
            clients_.removeAt(i);
        }
    }
}

int32_t CAudioInterfaceBaseConnectorVST::clientCount() const {
    CLockScope scope(lock_);
    return clients_.count();
}

}  // namespace tarv
