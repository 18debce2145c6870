#pragma once

#include "Audio/Messages/CAudioInterfaceBaseConnector.h"
#include "Audio/Messages/CAudioInterfaceMessage.h"

namespace tarv {

/// Packs messages of the engine and hands them to the clients' connector, whose set lock is the only one that it takes.
/// Any thread but the audio thread's blocks.
class CEngineSender {
public:
    /// `owner` names the object in errors; both outlive this one, or connectorGone is called.
    CEngineSender(const CObject& owner, CAudioInterfaceBaseConnector& connector)
        : owner_(owner), connector_(&connector) {}
    /// From here on there are no clients.
    void connectorGone() { connector_ = nullptr; }

    CClientList clients() const;
    bool hasClient(int32_t client) const { return clients().indexOf(client) >= 0; }
    /// Fails if the client that made an id isn't connected.
    [[nodiscard]] CError* requireClient(uint32_t id) const;

    /// A whole message to one client, or with -1 to every one. A client that has gone is no failure.
    [[nodiscard]] CError* deliver(int32_t client, const CByteBuffer& message) const;
    template <class... T>
    [[nodiscard]] CError* send(int32_t client, uint32_t type, const T&... fields) const {
        CByteBuffer message;
        TARV_TRY(packMessage(message, type, fields...));
        TARV_TRY(deliver(client, message));
        return nullptr;
    }
    /// A message to the client that made an id.
    template <class... T>
    [[nodiscard]] CError* sendTo(uint32_t id, uint32_t type, const T&... fields) const {
        TARV_TRY(send(clientOf(id), type, fields...));
        return nullptr;
    }

    const CString& errorContextName() const { return owner_.fullName(); }

private:
    const CObject& owner_;
    CAudioInterfaceBaseConnector* connector_;
};

}  // namespace tarv
