#pragma once

#include "Audio/Messages/CAudioInterfaceMessage.h"
#include "Audio/Parameters/CAudioParamData.h"
#include "Core/CCheckedObject.h"

namespace tarv {

class CAudioInterfaceClient;
class CAudioVizData;

/// What editor code hears through. A listener belongs to one client at a time and leaves it when it dies; the client
/// lets it go when that dies first. The editor's thread.
class CAudioInterfaceListener : public CCheckedObject {
public:
    ~CAudioInterfaceListener() override;
    /// The client that it listens to, or null.
    CAudioInterfaceClient* client() const { return client_; }

private:
    friend class CAudioInterfaceClient;
    CAudioInterfaceClient* client_ = nullptr;
};

/// Hears one parameter.
class CAudioInterfaceParamListener : public CAudioInterfaceListener {
public:
    /// Values were set. `data` holds all of them; `group` is an index or CAudioParamData::kAllGroups.
    virtual void onParamChanged(const CAudioParamData& data, int32_t group, int32_t first, int32_t count) = 0;
    /// The engine has gone: no change comes any more.
    virtual void onParamGone() {}
};

/// Hears one registry.
class CAudioInterfaceRegistryListener : public CAudioInterfaceListener {
public:
    virtual void onRegistryChanged(const CInterfaceRegistryState& state) = 0;
    /// The other one of the A/B states is current.
    virtual void onAlternateChanged(bool) {}
    /// A preset or bank that this listener asked for, as a compressed block.
    virtual void onDataAcquired(const CByteBuffer&) {}
    /// The engine has gone.
    virtual void onRegistryGone() {}
};

/// Takes what an editor draws, frame by frame.
class CAudioInterfaceVizProcessor : public CAudioInterfaceListener {
public:
    virtual void processVizData(const CAudioVizData& data) = 0;
    /// All records of one frame have come.
    virtual void endVizFrame() = 0;
};

}  // namespace tarv
