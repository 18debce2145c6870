#pragma once

#include "Core/CObject.h"
#include "Platform/EventPost.h"

namespace tarv {

/// The system's services behind events.
class CSystem {
public:
    /// Posts a cookie to a window; any thread.
    [[nodiscard]] static CError* sendEvent(CEventWindow window, uintptr_t cookie);
};

/// Anchor of a subtree to the thread that made it: events from other threads arrive there through a hidden window.
class CObjectEventBridge {
public:
    CObjectEventBridge();
    CObjectEventBridge(const CObjectEventBridge&) = delete;
    CObjectEventBridge& operator=(const CObjectEventBridge&) = delete;
    virtual ~CObjectEventBridge();

    uint64_t threadId() const { return threadId_; }
    /// Queues a copy of the parameters of an event and posts it. Any thread.
    [[nodiscard]] CError* post(const CAttributeMap& params);

protected:
    /// One event that has arrived, on the anchor's thread.
    [[nodiscard]] virtual CError* eventArrived(CAttributeMap& params) = 0;
    /// Opens the window; without it posts fail.
    [[nodiscard]] CError* openWindow();
    /// No event arrives any more; what is queued is dropped.
    void closeWindow();

private:
    static void receive(void* user, uintptr_t cookie);

    using CQueue = std::map<uint32_t, CAttributeMap, std::less<uint32_t>,
                            CHeapAllocator<std::pair<const uint32_t, CAttributeMap>>>;
    const uint64_t threadId_;
    CEventWindow window_ = 0;
    CLock queueLock_;
    uint32_t lastSerial_ = 0;
    CQueue queue_;
};

/// An anchor that is an object of the tree: finds the listener of each event by its name and calls its handler.
class CObjectEventBridgeHandler : public CObject, public CObjectEventBridge {
public:
    CObjectEventBridgeHandler();
    ~CObjectEventBridgeHandler() override;
    [[nodiscard]] CError* init() override;

protected:
    [[nodiscard]] CError* eventArrived(CAttributeMap& params) override;
};

/// The anchor that definitions declare, tag `ui:ui-event-bridge`.
class CStdEventBridge : public CObjectEventBridgeHandler {};

}  // namespace tarv
