#pragma once

#include <set>

#include "Audio/Messages/CAudioInterfaceClientConnector.h"
#include "Audio/Messages/CAudioInterfaceMessage.h"

namespace tarv {

/// Packs messages of an editor, hands them to its connector, and gives the ids that they carry. A message that sets,
/// selects or undoes something may make the engine call a host that closes the editor, which destroys this object: it
/// uses nothing of itself behind the call, nor do the callers. The editor's thread.
class CClientSender {
public:
    void connect(CAudioInterfaceClientConnector& connector) { connector_ = &connector; }
    /// From here on each message fails.
    void disconnect() { connector_ = nullptr; }
    bool isConnected() const { return connector_ != nullptr; }
    /// The number by which the engine knows this client; 0 without a connector.
    int32_t clientId() const { return connector_ ? connector_->clientId() : 0; }

    /// One whole message. Fails without a connector, or as the engine does.
    [[nodiscard]] CError* deliver(const CByteBuffer& message) const;
    template <class... T>
    [[nodiscard]] CError* send(uint32_t type, const T&... fields) const {
        CByteBuffer message;
        TARV_TRY(packMessage(message, type, fields...));
        return deliver(message);
    }

    /// An id that isn't held. In turn, so that a message which is still on its way doesn't meet a new listener.
    uint32_t newId();

private:
    friend class CClientId;
    using CIds = std::set<uint32_t, std::less<uint32_t>, CHeapAllocator<uint32_t>>;

    CAudioInterfaceClientConnector* connector_ = nullptr;
    uint32_t lastNumber_ = 0;
    CIds held_;
};

}  // namespace tarv
