#pragma once

#include "Core/CObject.h"
#include "Core/CStreams.h"

namespace tarv {

class CAudioInterfaceBase;

/// Moves the bytes between the engine's interface object and its clients.
class CAudioInterfaceBaseConnector : public CObject {
public:
    /// Delivers a buffer to one client, or with -1 to every one.
    [[nodiscard]] virtual CError* sendToClient(int32_t clientId, const CByteBuffer& buffer) = 0;
    /// Takes a client's message. Fails while there is no base object.
    [[nodiscard]] virtual CError* processClientData(CInputStream& stream);

    void setBase(CAudioInterfaceBase* base) { base_ = base; }
    CAudioInterfaceBase* base() const { return base_; }

private:
    CAudioInterfaceBase* base_ = nullptr;
};

/// A client's end, in the same process.
class CAudioInterfaceClientEnd {
public:
    [[nodiscard]] virtual CError* onProcessBaseData(CInputStream& stream) = 0;

protected:
    ~CAudioInterfaceClientEnd() = default;
};

/// The connector inside one process (`audio:interface-base-connector-vst`): passes buffers directly. The set of clients
/// is guarded by its lock; clients may come and go on any thread. Not there yet: the engine's own reading of messages.
class CAudioInterfaceBaseConnectorVST : public CAudioInterfaceBaseConnector {
public:
    [[nodiscard]] CError* sendToClient(int32_t clientId, const CByteBuffer& buffer) override;

    /// Adds a client and gives its id, counted from 0.
    int32_t addClient(CAudioInterfaceClientEnd& client);
    void removeClient(CAudioInterfaceClientEnd& client);
    int32_t clientCount() const;

private:
    struct CClient {
        int32_t id;
        CAudioInterfaceClientEnd* end;
    };
    mutable CLock lock_;
    CArray<CClient, 4> clients_;
    int32_t nextId_ = 0;
};

}  // namespace tarv
