#pragma once

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Engine/CEngineSender.h"
#include "Core/CBridge.h"

namespace tarv {

class CAudioParamRegistry;

/// Sends the changes of one registry to all clients that subscribed it. Its lock is held while a state is read and
/// its message queued, so that the last message carries the last state; under it come the registry's locks and the
/// connector's set lock. Any thread but the audio thread's blocks.
class CAudioInterfaceBase::CRegistryListener final : public CBridge {
public:
    CRegistryListener(const CEngineSender& sender, CAudioParamRegistry& registry);
    ~CRegistryListener() override { disconnect(); }

    /// Null once the registry has gone.
    CAudioParamRegistry* registry() const;
    void add(uint32_t id);
    void remove(uint32_t id);
    /// Sends the registry's state to one of the subscriptions, or with `kNoRequest` to all.
    void send(uint32_t id);
    void notify(CCheckedObject* sender) override;

private:
    const CEngineSender& sender_;
    const CString path_;
    CLock lock_;
    CArray<uint32_t, 4> ids_;
};

}  // namespace tarv
