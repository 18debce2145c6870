// A periodic event for a tree.

#include "Core/CTimer.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Core/CKeptParams.h"

namespace tarv {

namespace {

/// Rounded half away from zero; what is not a number is 0.
int32_t millisecondsOf(double seconds) {
    const double milliseconds = seconds * 1000.0;
    return milliseconds > 0.0 ? static_cast<int32_t>(std::round(std::min(milliseconds, 2e9))) : 0;
}

}  // namespace

CTimer::~CTimer() {
    stop();
}

CError* CTimer::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CTimer::intervalChanged>("interval");
    return nullptr;
}

CError* CTimer::finishInit() {
    TARV_TRY(CObject::finishInit());
    isFinished_ = true;
    TARV_TRY(start());
    return nullptr;
}

CError* CTimer::intervalChanged() {
    if (isFinished_) {
        stop();
        TARV_TRY(start());
    }
    return nullptr;
}

CError* CTimer::start() {
    CWindowSystem* system = windowSystem();
    if (!system) {
        TARV_FAIL("@tarvstr_CTimer_start_NoWindowSystem No window system to run a timer.");
    }
    CPlatformError error = system->acquireClass(CWindowKind::Timers);
    if (error) {
        TARV_FAIL("@tarvstr_CTimer_start_ClassError Unable to register timer window class: error %1.",
                  CString::fromInt(error));
    }
    bool isWindow = false;
    id_ = system->startTimer(*this, millisecondsOf(getAttrReal("interval")), error, isWindow);
    // The timer's window holds its class.
    system->releaseClass(CWindowKind::Timers);
    if (id_ == 0 && isWindow) {
        TARV_FAIL("@tarvstr_CTimer_start_WindowError Timer window creation error %1.", CString::fromInt(error));
    }
    if (id_ == 0) {
        TARV_FAIL("@tarvstr_CTimer_start_TimerError Timer creation error %1.", CString::fromInt(error));
    }
    system_ = system;
    return nullptr;
}

void CTimer::stop() {
    if (id_ != 0) {
        system_->stopTimer(std::exchange(id_, 0));
    }
}

void CTimer::onTimer() {
    // Behind the call this object may be gone.
    TARV_CONSUME(onTick());
}

CError* CTimer::onTick() {
    const CObjectWatch watch(*this);
    // A handler may destroy this object, or serve the next tick inside.
    CKeptParams tick(*this, params_, 0);
    CString sender = std::move(sender_);
    CError* error = sendEvent("tick", tick.params, false, sender);
    if (!watch.isAlive()) {
        return error;
    }
    sender_ = std::move(sender);
    TARV_TRY(error);
    return nullptr;
}

}  // namespace tarv
