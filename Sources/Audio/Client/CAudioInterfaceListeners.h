#pragma once

#include "Audio/Messages/CAudioInterfaceMessage.h"
#include "Audio/Parameters/CAudioParamData.h"
#include "Core/CCheckedObject.h"

namespace tarv {

class CAudioInterfaceClient;
class CAudioVizData;

/// Base of the interfaces by which editor code is notified. A listener belongs to one client at a time. Its destructor
/// removes it from the client; a client that is destroyed first releases it. Each notification may destroy the
/// listener, another one, or the client with its whole tree. The editor's thread.
class CAudioInterfaceListener : public CCheckedObject {
public:
    ~CAudioInterfaceListener() override;
    /// The client that notifies it, or null.
    CAudioInterfaceClient* client() const { return client_; }

private:
    friend class CAudioInterfaceClient;
    CAudioInterfaceClient* client_ = nullptr;
};

/// Follows one parameter.
class CAudioInterfaceParamListener : public CAudioInterfaceListener {
public:
    /// The elements `first` to before `first + count` of one group were set; `data` holds the whole parameter. With
    /// `isReplacing` the group ends behind them: its later elements are removed. A whole value comes as one replacing
    /// call for each group that it holds or that the former one held, at least for group 0.
    virtual void onParamChanged(const CAudioParamData& data, int32_t group, int32_t first, int32_t count,
                                bool isReplacing) = 0;
    /// The engine has gone: no change comes any more.
    virtual void onParamGone() {}
};

/// Follows one registry.
class CAudioInterfaceRegistryListener : public CAudioInterfaceListener {
public:
    virtual void onRegistryChanged(const CInterfaceRegistryState& state) = 0;
    /// The other one of the A/B states is current.
    virtual void onAlternateChanged(bool) {}
    /// A preset or bank that this listener asked for, as a compressed block. `request` is what the asking call gave.
    virtual void onDataAcquired([[maybe_unused]] uint32_t request, const CByteBuffer&) {}
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
