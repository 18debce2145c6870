#pragma once

#include <windows.h>

#include <vector>

#include "Platform/Win32/CModuleClass.h"
#include "Platform/WindowSystem.h"

namespace tarv {

/// The hidden window of one thread that carries all timers of the thread. Made for the first timer and destroyed with
/// the last. Ids begin at 1 and none is given twice while the window lives: a tick that was waiting when its timer
/// stopped finds nobody.
class CTimerWindow {
public:
    /// For the calling thread; as CWindowSystem::startTimer.
    static CTimerId start(CTimerHandler& handler, int32_t milliseconds, CPlatformError& error, bool& isWindow);
    static void stop(CTimerId id);
    static CModuleClass& windowClass();

private:
    struct CRow {
        CTimerId id;
        CTimerHandler* handler;
    };

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static CTimerWindow* ofThisThread();
    /// Null with the system's number.
    static CTimerWindow* open(CPlatformError& error);
    void close();
    CTimerHandler* handlerOf(CTimerId id) const;

    struct CAllWindows;
    static CAllWindows all_;

    DWORD thread_ = 0;
    HWND window_ = nullptr;
    CTimerId lastId_ = 0;
    std::vector<CRow> rows_;
};

}  // namespace tarv
