#pragma once

#include <atomic>

#include "Audio/CAudioParamUndo.h"

namespace tarv {

class CAudioInterfaceBaseConnector;
class CAudioParamCollector;
class CAudioVizCollector;

/// The engine's end of the exchange with an editor (`audio:interface-base`), and the instance's history.
/// There: its attributes and the events that tell the engine's own tree of a change. Not there yet: messages.
class CAudioInterfaceBase : public CAudioParamUndo {
public:
    ~CAudioInterfaceBase() override;
    [[nodiscard]] CError* init() override;

    CAudioInterfaceBaseConnector* connector() const { return connector_; }
    CAudioParamCollector* paramCollector() const { return paramCollector_; }
    CAudioVizCollector* vizCollector() const { return vizCollector_; }

    /// Set going by resume, stopped by suspend.
    void start() { isGoing_ = true; }
    void stop() { isGoing_ = false; }
    bool isGoing() const { return isGoing_; }
    /// Sends one of the events `update-sample-rate`, `update-io-channel-counts`, `update-group-count`,
    /// `update-internal-channel-count`, `clear` to whoever listens in the tree.
    [[nodiscard]] CError* notify(const CString& eventName);

private:
    CAudioInterfaceBaseConnector* connector_ = nullptr;
    CAudioParamCollector* paramCollector_ = nullptr;
    CAudioVizCollector* vizCollector_ = nullptr;
    std::atomic<bool> isGoing_{false};
};

}  // namespace tarv
