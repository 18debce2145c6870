#pragma once

#include "Audio/Messages/CAudioInterfaceBaseConnector.h"

namespace tarv {

class CObjectWatch;

/// Receives the messages of the engine from a client's connector. Called on the editor's thread.
class CAudioInterfaceClientTarget {
public:
    /// Reads one message to its end.
    [[nodiscard]] virtual CError* processMessage(CPosInputStream& stream) = 0;
    /// Messages were lost: requests all that was subscribed again.
    [[nodiscard]] virtual CError* refresh() = 0;
    /// The engine has gone; no message comes any more.
    virtual void engineGone() = 0;
    /// The connector is destroyed.
    virtual void connectorGone() = 0;

protected:
    ~CAudioInterfaceClientTarget() = default;
};

/// Moves the bytes between a client object and the engine (`audio:interface-client-connector`). Messages of the engine
/// arrive on any thread and are read on the thread of the editor's anchor, in their order. A post reads the messages
/// that have arrived by then; later ones get another post. Without an anchor above this object no message is read.
class CAudioInterfaceClientConnector : public CObject {
public:
    ~CAudioInterfaceClientConnector() override;
    [[nodiscard]] CError* init() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    /// Queues a copy of one message and posts its reading to the editor's thread. Fails while there is no client
    /// object. Any thread.
    [[nodiscard]] virtual CError* onProcessBaseData(CInputStream& stream);
    /// Hands a message to the engine. The editor's thread.
    [[nodiscard]] virtual CError* sendToBase(const CByteBuffer& buffer) = 0;
    /// The number that the engine knows this client by, or -1.
    virtual int32_t clientId() const = 0;

    /// Takes one client; fails while there is another, since both would give the same ids. The editor's thread.
    [[nodiscard]] CError* setClient(CAudioInterfaceClientTarget& client);
    /// Unsets a client that is being destroyed. The editor's thread.
    void unsetClient(const CAudioInterfaceClientTarget& client);
    CAudioInterfaceClientTarget* client() const { return client_; }
    /// Most messages that may wait to be read. One more drops all of them, and the client requests again all that it
    /// had subscribed.
    static constexpr int32_t kQueueLimit = 16384;
    int32_t pendingCount() const;
    /// Reads what waits now, without its post. May destroy this object. The editor's thread.
    [[nodiscard]] CError* takePending() { return processBaseDataProxy(); }

protected:
    /// Notifies the client, on its thread, that the engine has gone. Any thread.
    void noteBaseGone();

private:
    /// What has arrived since the editor's thread read last.
    struct CBatch {
        CArray<CByteBuffer, 4> messages;
        bool isLossy = false;
        bool isBaseGone = false;

        bool isEmpty() const { return messages.isEmpty() && !isLossy && !isBaseGone; }
    };
    [[nodiscard]] CError* processBaseDataProxy();
    [[nodiscard]] CError* post();
    [[nodiscard]] CError* postMissed();
    CBatch takeBatch();
    void readBatch(const CBatch& batch, const CObjectWatch& watch);

    mutable CLock lock_;
    CAudioInterfaceClientTarget* client_ = nullptr;
    CBatch batch_;
    bool isPosted_ = false;
    // The editor's thread.
    bool isReading_ = false;
    bool isMissed_ = false;  ///< a post has come while messages were read
};

/// The connector inside one process (`audio:interface-client-connector-vst`): finds the engine's connector by the path
/// `base-connector` from the plug-in's root object, to which the variable PluginRootPtrVar of the editor's root points.
class CAudioInterfaceClientConnectorVST : public CAudioInterfaceClientConnector, public CAudioInterfaceClientEnd {
public:
    static constexpr const char* kPluginRoot = "PluginRootPtrVar";

    ~CAudioInterfaceClientConnectorVST() override;
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* onProcessBaseData(CInputStream& stream) override;
    /// On the calling thread, under the engine's call lock.
    [[nodiscard]] CError* sendToBase(const CByteBuffer& buffer) override;
    int32_t clientId() const override { return clientId_; }
    void onBaseGone() override;

private:
    std::shared_ptr<CAudioInterfaceLink> link_;  // null without a number
    int32_t clientId_ = -1;
};

}  // namespace tarv
