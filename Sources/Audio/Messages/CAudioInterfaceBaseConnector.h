#pragma once

#include <memory>

#include "Core/CObject.h"
#include "Core/CStreams.h"

namespace tarv {

/// Numbers of connected clients.
using CClientList = CArray<int32_t, 4>;

/// Receives the messages of the clients from the engine's connector. Called under the connector's call lock.
class CAudioInterfaceBaseTarget {
public:
    /// Reads one message to its end and carries it out; damage is an error and changes nothing.
    [[nodiscard]] virtual CError* processMessage(CInputStream& stream) = 0;
    /// A client was removed: everything that it subscribed ends.
    virtual void clientGone(int32_t client) = 0;
    /// The connector is destroyed.
    virtual void connectorGone() = 0;

protected:
    ~CAudioInterfaceBaseTarget() = default;
};

class CAudioInterfaceBaseConnectorVST;

/// What the engine's connector shares with its clients, so that either end may be destroyed first, on any thread.
struct CAudioInterfaceLink {
    CLock callLock;
    CAudioInterfaceBaseConnectorVST* connector = nullptr;  ///< under the call lock; null once it is being destroyed
};

/// Moves the bytes between the engine's interface object and its clients. Any thread but the audio thread's blocks.
class CAudioInterfaceBaseConnector : public CObject {
public:
    CAudioInterfaceBaseConnector();
    ~CAudioInterfaceBaseConnector() override;
    /// Delivers a message to one client, or with -1 to every one. A client that has gone is no failure. If several
    /// clients fail, the first failure is returned after all of them were served.
    [[nodiscard]] virtual CError* sendToClient(int32_t clientId, const CByteBuffer& buffer) = 0;
    /// Takes one message of a client, under the call lock. Fails while there is no base object.
    [[nodiscard]] virtual CError* processClientData(CInputStream& stream);
    /// The clients that are connected now.
    virtual CClientList clients() const = 0;

    /// Sets what processes the messages, or null. Waits for a message that is being processed. Any thread.
    void setBase(CAudioInterfaceBaseTarget* base);
    /// Unsets a base that is being destroyed, unless another one has taken its place. Waits as setBase does.
    void unsetBase(const CAudioInterfaceBaseTarget& base);
    CAudioInterfaceBaseTarget* base() const { return base_; }
    /// Serialises the messages of the clients, addClient, removeClient, and the destruction of this object. No listener
    /// of changes takes it.
    CLock& callLock() const { return link_->callLock; }
    const std::shared_ptr<CAudioInterfaceLink>& link() const { return link_; }

private:
    const std::shared_ptr<CAudioInterfaceLink> link_;
    CAudioInterfaceBaseTarget* base_ = nullptr;
};

/// A client's end, in the same process.
class CAudioInterfaceClientEnd {
public:
    /// One message, on the thread that sends it and with the set of clients locked: keeps a copy and returns at once.
    [[nodiscard]] virtual CError* onProcessBaseData(CInputStream& stream) = 0;
    /// The connector is being destroyed. On the thread that destroys it, with the call lock and the set of clients
    /// locked: returns at once.
    virtual void onBaseGone() {}

protected:
    ~CAudioInterfaceClientEnd() = default;
};

/// The connector inside one process (`audio:interface-base-connector-vst`): passes buffers directly. The set of clients
/// is guarded by a lock under which nothing is called but the clients' ends; clients may come and go on any thread.
class CAudioInterfaceBaseConnectorVST : public CAudioInterfaceBaseConnector {
public:
    CAudioInterfaceBaseConnectorVST();
    ~CAudioInterfaceBaseConnectorVST() override;
    [[nodiscard]] CError* sendToClient(int32_t clientId, const CByteBuffer& buffer) override;
    CClientList clients() const override;

    /// Adds a client and gives its number, the lowest that is free, or -1 if all 65536 are taken.
    int32_t addClient(CAudioInterfaceClientEnd& client);
    /// Removes a client and ends its subscriptions. After the return it gets no message.
    void removeClient(CAudioInterfaceClientEnd& client);
    int32_t clientCount() const { return clients().count(); }

private:
    struct CClient {
        int32_t id;
        CAudioInterfaceClientEnd* end;
    };
    static constexpr int32_t kClientLimit = 65536;

    mutable CLock setLock_;
    CArray<CClient, 4> clients_;  // in the order of the numbers
};

}  // namespace tarv
