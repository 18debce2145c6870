#pragma once

#include <memory>

#include "Core/CObject.h"

namespace tarv {

/// Events of one tree: who listens to which event of which sender. Every root has one. Any thread; handlers run with
/// the event's lock held, so another thread adds or removes listeners of that event only between sends.
class CNotifyServer : public CCheckedObject {
public:
    CNotifyServer();
    ~CNotifyServer() override;

    /// Key of this server among all of the process.
    int32_t id() const { return id_; }

    /// Registers `handlerName` of the listener's class for an event; the same registration twice counts once. An
    /// unknown handler is logged and gives false.
    bool listenObject(CObject& listener, const CString& senderName, const CString& eventName,
                      const CString& handlerName);
    void removeListener(const CObject& listener, const CString& senderName, const CString& eventName);

    /// Delivers an event in the order of registration: directly to listeners whose thread anchor belongs to this
    /// thread (to all if `synchronous`), by a post of a copy of `params` to the others. Listeners without an anchor
    /// are left out. `params` gets the sender's and the event's name, and with each delivery `listener`,
    /// `listener-id` and `listener-proc`. The first failure ends the deliveries, and so does a handler that destroys
    /// this server.
    [[nodiscard]] CError* send(const CString& senderName, const CString& eventName, CAttributeMap& params,
                               bool synchronous);
    /// As send, but each listener gets a post, also those of this thread: for a sender that holds a lock under which
    /// no handler shall run. Any thread.
    [[nodiscard]] CError* sendPosted(const CString& senderName, const CString& eventName, CAttributeMap& params);
    /// Whether a send of this event would reach a listener: for senders that make no parameters for nothing. Any
    /// thread.
    bool hasListeners(const CString& senderName, const CString& eventName);
    /// Whether this registration of the listener still stands.
    bool isRegistered(const CObject& listener, const CString& senderName, const CString& eventName, int32_t listenerId);

private:
    struct CListener {
        CObject* object = nullptr;
        int32_t handler = -1;
        int32_t id = 0;
    };
    using CListeners = CArray<CListener, 4>;
    using CSenderMap =
        std::map<CString, CListeners, std::less<CString>, CHeapAllocator<std::pair<const CString, CListeners>>>;
    /// Shared with the sends that run: a handler may destroy the server, which leaves an event without senders.
    struct CEvent {
        CLock lock;
        CSenderMap senders;
    };
    using CEventRef = std::shared_ptr<CEvent>;
    using CEventMap =
        std::map<CString, CEventRef, std::less<CString>, CHeapAllocator<std::pair<const CString, CEventRef>>>;

    /// Which listeners are called on the sender's thread; the others get a post.
    enum class CDirect : uint8_t { None, OfThread, All };

    [[nodiscard]] CError* sendBy(CDirect who, const CString& senderName, const CString& eventName,
                                 CAttributeMap& params);
    CEventRef findEvent(const CString& eventName);
    CEventRef makeEvent(const CString& eventName);
    [[nodiscard]] static CError* deliver(const CListener& listener, CAttributeMap& params);
    [[nodiscard]] static CError* post(const CListener& listener, const CAttributeMap& params);
    static void describe(const CListener& listener, CAttributeMap& params);
    static const CListener* findListener(const CEvent& event, const CString& senderName, int32_t id);

    const int32_t id_;
    CLock mapLock_;
    CLock stateLock_;
    int32_t nextListenerId_ = 0;
    CEventMap events_;
};

}  // namespace tarv
