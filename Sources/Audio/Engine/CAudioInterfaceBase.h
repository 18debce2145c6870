#pragma once

#include "Audio/Messages/CAudioInterfaceBaseConnector.h"
#include "Audio/Messages/CAudioInterfaceMessage.h"
#include "Audio/Presets/CAudioParamUndo.h"

namespace tarv {

class CAudioExtParamList;
class CAudioParamCollector;
class CAudioVizCollector;

/// The engine's end of the exchange with editors (`audio:interface-base`), and the instance's history. Clients ask and
/// set by messages (see CAudioInterfaceMessage.h), and get what they subscribed, whichever thread changed it. After
/// init; any thread but the audio thread's blocks. Messages are processed one at a time, under the connector's call
/// lock; what sends changes takes no lock but those of the listeners, under which the connector's set lock is the last.
class CAudioInterfaceBase : public CAudioParamUndo, public CAudioInterfaceBaseTarget {
public:
    class CParamListener;
    class CRegistryListener;

    CAudioInterfaceBase();
    ~CAudioInterfaceBase() override;
    [[nodiscard]] CError* init() override;

    CAudioInterfaceBaseConnector* connector() const { return connector_; }
    CAudioParamCollector* paramCollector() const { return paramCollector_; }
    CAudioVizCollector* vizCollector() const { return vizCollector_; }

    /// The host's parameters, or null: what an editor's messages change of them is reported to the host as edits.
    /// Before the first message, and before they are destroyed.
    void setHostParams(CAudioExtParamList* params);
    /// Waits for the message that is being processed; from then on each one fails. Called before an engine is destroyed
    /// whose editor lives on another thread. Any thread.
    void stopMessages();
    /// Notes that the engine runs, or that it doesn't, and sends the bound values that changed. Of resume and suspend.
    void start();
    void stop();
    bool isGoing() const;
    /// Sends one of the events `update-sample-rate`, `update-io-channel-counts`, `update-group-count`,
    /// `update-internal-channel-count`, `update-input-labels`, `update-output-labels`, `clear` to the listeners in the
    /// tree, and its message to the clients.
    [[nodiscard]] CError* notify(const CString& eventName);
    /// Notifies of `clear` at the next tick of a client, since the audio thread sends nothing. [audio thread, running]
    void clearAtTick();
    /// Counts that notifications and answers carry; each notifies if it changed.
    void setIoCounts(int32_t inputs, int32_t outputs, int32_t sidechain);
    void setGroupCount(int32_t count);
    void setInternalChannelCount(int32_t count);
    CInterfaceCounts counts() const;
    /// What the host calls its input channels, empty for one without a name; a client may import them. Notifies of
    /// `update-input-labels` if they changed.
    void setChannelLabels(const CTextList& labels);
    /// The same of its output channels; notifies of `update-output-labels` if they changed.
    void setOutputLabels(const CTextList& labels);
    /// Sends everything that clients subscribed: after a host has restored a state.
    void sendState();

    /// One message of a client; outside data. A failure has changed nothing. Of the connector, under its call lock.
    [[nodiscard]] CError* processMessage(CInputStream& stream) override;
    /// Ends what a client that left had asked for, and a record that it left open. Under the call lock.
    void clientGone(int32_t client) override;
    void connectorGone() override;

protected:
    void historyChanged() override;

private:
    struct CParts;
    template <class Edit>
    void editCounts(const CString& eventName, Edit&& edit);

    CAudioInterfaceBaseConnector* connector_ = nullptr;
    CAudioParamCollector* paramCollector_ = nullptr;
    CAudioVizCollector* vizCollector_ = nullptr;
    std::unique_ptr<CParts> parts_;  // from init on
};

}  // namespace tarv
