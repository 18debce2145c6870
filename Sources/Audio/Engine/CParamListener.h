#pragma once

#include <atomic>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Engine/CEngineSender.h"
#include "Audio/Parameters/CAudioParam.h"

namespace tarv {

/// Sends the changes of one parameter to all clients that subscribed it. Its lock is held while a value is read and its
/// message queued, so that the last message carries the last value; under it come the parameter's lock for the reading
/// and the connector's set lock. Any thread but the audio thread's blocks.
class CAudioInterfaceBase::CParamListener final : public CHeapObject, public CAudioParamListener {
public:
    CParamListener(const CEngineSender& sender, CAudioParam& param);
    ~CParamListener();

    CAudioParam& param() const { return param_; }
    void add(uint32_t id, bool asGroupNames);
    void remove(uint32_t id);
    /// Sends the whole value to one of the subscriptions, or with `kNoRequest` to all.
    void sendWhole(uint32_t id, uint32_t request);
    /// Sends what the audio thread has set since the last call. No other listener of the parameter is notified: the
    /// host knows it, or set it.
    void sendEngineValue();
    void onParamChanged(CAudioParam& param, int32_t group, int32_t first, int32_t count) override;

private:
    struct CSubscriber {
        uint32_t id;
        bool asGroupNames;
    };
    const CString& errorContextName() const { return sender_.errorContextName(); }
    [[nodiscard]] CError* writeWhole(COutputStream& stream) const;
    [[nodiscard]] CError* writePart(COutputStream& stream, int32_t group, int32_t first, int32_t count) const;
    [[nodiscard]] CError* send(const CSubscriber& subscriber, uint32_t request, const CByteBuffer& body) const;
    [[nodiscard]] CError* sendGroupNames(const CSubscriber& subscriber, uint32_t request) const;

    const CEngineSender& sender_;
    CAudioParam& param_;
    CLock lock_;
    CArray<CSubscriber, 4> subscribers_;
    std::atomic<int32_t> count_{0};
};

}  // namespace tarv
