#pragma once

#include "Audio/Client/CAudioInterfaceListeners.h"
#include "Core/CObject.h"

namespace tarv {

class CTimer;

/// A view of visual data. It leaves its exchange before it is destroyed. Either call may destroy it. The editor's
/// thread.
class CVizView {
public:
    /// One record; it lasts for the call.
    [[nodiscard]] virtual CError* takeVizData(const CAudioVizData& data) = 0;
    /// All records of a frame have been given: what they show may be drawn.
    [[nodiscard]] virtual CError* endVizFrame() { return nullptr; }

protected:
    ~CVizView() = default;
};

/// Hands the visual data of the audio side to views (`ui:viz-exchange`): records of `source`, of every one where that
/// is empty. `interface-client` is the path of the client, by default `ui.interface-client`. While there are views it
/// keeps the global parameter `audio.param-enable-viz` on, and asks for frames at the `viz-fps` of the audio
/// environment; without views it does nothing, and no audio is measured. The editor's thread.
class CVizExchange : public CObject, public CAudioInterfaceVizProcessor {
public:
    ~CVizExchange() override;
    /// Fails without the client.
    [[nodiscard]] CError* init() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    /// The view gets the records from now on. A view counts once.
    [[nodiscard]] CError* addView(CVizView& view);
    /// Nothing happens for a view that isn't there. Without effect on the audio side once the engine has gone.
    void removeView(CVizView& view);
    int32_t viewCount() const;

    void processVizData(const CAudioVizData& data) override;
    void endVizFrame() override;

private:
    [[nodiscard]] CError* start();
    void stop();
    [[nodiscard]] CError* rateChanged();
    [[nodiscard]] CError* requestFrames();
    [[nodiscard]] CError* enable(bool isEnabled);
    CAudioInterfaceClient* clientObject() const;
    template <class Call>
    void callEach(Call&& call);

    CString clientPath_;
    CArray<CVizView*, 2> views_;  ///< null for one that has left during the calls
    int32_t calls_ = 0;
    CTimer* timer_ = nullptr;
    uint32_t rateId_ = 0;
    bool isRateBound_ = false;
};

}  // namespace tarv
