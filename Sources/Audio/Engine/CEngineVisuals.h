#pragma once

#include "Audio/Engine/CEngineSender.h"

namespace tarv {

class CAudioVizCollector;

/// The clients' subscriptions of visual records, by the names of the sources. Under the connector's call lock.
class CEngineVisuals {
public:
    CEngineVisuals(const CEngineSender& sender, CAudioVizCollector& collector)
        : sender_(sender), collector_(collector) {}

    bool has(uint32_t id) const { return indexOf(id) >= 0; }
    /// An empty source subscribes every one.
    void subscribe(uint32_t id, const CString& source) { subscribers_.append({id, source}); }
    /// Returns whether there was such a subscription.
    bool unsubscribe(uint32_t id);
    void clientGone(int32_t client);
    /// Takes the records that gathered and sends each subscriber those of its sources, in one frame.
    [[nodiscard]] CError* sendFrames();

private:
    struct CSubscriber {
        uint32_t id;
        CString source;
    };
    struct CFrame;
    int32_t indexOf(uint32_t id) const;
    [[nodiscard]] CError* send(uint32_t id, const CFrame& frame) const;
    const CString& errorContextName() const { return sender_.errorContextName(); }

    const CEngineSender& sender_;
    CAudioVizCollector& collector_;
    CArray<CSubscriber, 1> subscribers_;
};

}  // namespace tarv
