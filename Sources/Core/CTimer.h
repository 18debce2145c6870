#pragma once

#include "Core/CObject.h"
#include "Platform/WindowSystem.h"

namespace tarv {

/// Sends the event `tick` every `interval` seconds, a real, from the end of its construction to its destruction
/// (`core:timer`). Rounded to milliseconds; 0, and what is below, is the system's least interval. A change of
/// `interval` starts anew. Ticks that the thread missed are not made up for. A tick in steady state allocates nothing.
/// Thread: that of the tree, which serves the windows of the system.
class CTimer : public CObject, private CTimerHandler {
public:
    ~CTimer() override;
    /// Fails without a window system, and where the system refuses the timer or its hidden window.
    [[nodiscard]] CError* finishInit() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

protected:
    /// Sends `tick`. May destroy this object.
    [[nodiscard]] virtual CError* onTick();

private:
    void onTimer() override;
    [[nodiscard]] CError* intervalChanged();
    [[nodiscard]] CError* start();
    void stop();

    CTimerId id_ = 0;
    // That of the running timer.
    CWindowSystem* system_ = nullptr;
    bool isFinished_ = false;
    // Kept between ticks for its memory.
    CAttributeMap params_;
    CString sender_;
};

}  // namespace tarv
