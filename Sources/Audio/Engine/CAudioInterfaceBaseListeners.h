#pragma once

#include <atomic>
#include <map>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Parameters/CAudioParam.h"
#include "Core/CBridge.h"

namespace tarv {

/// Hears one parameter for all clients that subscribed it. Lives as long as the interface object: parameters call their
/// listeners outside all locks, so that one that could go would be called afterwards.
class CAudioInterfaceBase::CParamListener final : public CHeapObject, public CAudioParamListener {
public:
    CParamListener(CAudioInterfaceBase& base, CAudioParam& param);
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
    const CString& errorContextName() const { return base_.fullName(); }
    [[nodiscard]] CError* writeWhole(COutputStream& stream) const;
    [[nodiscard]] CError* writePart(COutputStream& stream, int32_t group, int32_t first, int32_t count) const;
    [[nodiscard]] CError* send(const CSubscriber& subscriber, uint32_t request, const CByteBuffer& body) const;
    [[nodiscard]] CError* sendGroupNames(const CSubscriber& subscriber, uint32_t request) const;

    CAudioInterfaceBase& base_;
    CAudioParam& param_;
    // Over the reading of the value and the handing over of its message, so that the last message tells the last value.
    // Under it: the parameter's lock for the reading, then the connector's set lock.
    CLock lock_;
    CArray<CSubscriber, 4> subscribers_;
    std::atomic<int32_t> count_{0};
};

/// Hears one registry for all clients that subscribed it. Lives as long as the interface object.
class CAudioInterfaceBase::CRegistryListener final : public CBridge {
public:
    CRegistryListener(CAudioInterfaceBase& base, CAudioParamRegistry& registry, const CString& path);
    ~CRegistryListener() override { disconnect(); }

    CAudioParamRegistry* registry() const;
    const CString& path() const { return path_; }
    void add(uint32_t id);
    void remove(uint32_t id);
    /// Sends the registry's state to one of the subscriptions, or with `kNoRequest` to all.
    void send(uint32_t id);
    void notify(CCheckedObject* sender) override;

private:
    CAudioInterfaceBase& base_;
    CString path_;
    CLock lock_;  // as a parameter listener's; under it the registry's locks
    CArray<uint32_t, 4> ids_;
};

/// A bound value of a client, with the numbers that it has.
struct CAudioInterfaceBase::CBinding {
    uint32_t id;
    const CBoundValue* value;
    CArray<double, 4> numbers;
};

/// What clients asked for, by id. Under the connector's call lock but where said otherwise.
struct CAudioInterfaceBase::CSubscriptions : public CHeapObject {
    template <class T>
    using CIds = std::map<uint32_t, T*, std::less<uint32_t>, CHeapAllocator<std::pair<const uint32_t, T*>>>;
    struct CVisual {
        uint32_t id;
        CString source;
    };

    CIds<CParamListener> params;
    CIds<CRegistryListener> registries;
    CArray<CVisual, 1> visuals;

    CLock valueLock;  // guards the bindings; as a parameter listener's
    CArray<CBinding, 1> bindings;
    CLock listenerLock;  // guards the two arrays, not what they own
    COwnedArray<CParamListener, 4> paramListeners;
    COwnedArray<CRegistryListener, 2> registryListeners;
};

/// A value of the engine that a client can bind.
struct CAudioInterfaceBase::CBoundValue {
    const char* name;
    int32_t count;
    double (*read)(const CAudioInterfaceBase& base, int32_t index);
};

}  // namespace tarv
