#pragma once

#include <string>
#include <vector>

#include "Platform/File.h"
#include "Platform/Window.h"

namespace tarv {

/// Called at each interval of a timer, on the thread that started it; may stop the timer.
class CTimerHandler {
public:
    virtual void onTimer() = 0;

protected:
    ~CTimerHandler() = default;
};

/// A running timer of one thread; 0 is none.
using CTimerId = uint32_t;

/// Classes of windows, where a system has such: those that are seen, those that posts arrive at, those of timers.
enum class CWindowKind : uint8_t { Seen, Posts, Timers };

/// What a file dialog shall ask for.
struct CFileDialogRequest {
    bool isSave = false;
    bool isFolder = false;
    CWindowHandle owner = 0;
    std::u16string title;
    std::u16string folder;      ///< to begin in; empty: the system's choice
    std::u16string name;        ///< offered name
    std::u16string filterName;  ///< e.g. "Preset"
    std::u16string extension;   ///< without a dot; appended to a name to be saved that lacks it
    bool isAllOffered = false;  ///< files of other extensions can be listed, too
};

/// What the editors of this process need of the system's user interface. Calls belong to the threads that own windows;
/// windows, surfaces and timers belong to the thread that made them.
class CWindowSystem {
public:
    virtual ~CWindowSystem() = default;

    /// Registers a class before its first window, and holds it until it is released as often; the system's number, 0
    /// for none. Windows and timers hold theirs by themselves, too. Any thread.
    [[nodiscard]] virtual CPlatformError acquireClass(CWindowKind kind) = 0;
    virtual void releaseClass(CWindowKind kind) = 0;

    /// Null with the step and the system's number, and whatever was made before it freed.
    virtual std::unique_ptr<CSurface> createSurface(int32_t width, int32_t height, CSurfaceStep& step,
                                                    CPlatformError& error) = 0;
    /// Null with the system's number. Not shown yet.
    virtual std::unique_ptr<CPlatformWindow> createWindow(const CWindowRequest& request, CWindowHandler& handler,
                                                          CPlatformError& error) = 0;
    /// The window of this process at a point of the screen, or 0.
    virtual CWindowHandle windowAt(int32_t x, int32_t y) = 0;
    /// Where the pointer is on the screen.
    virtual void pointerPosition(int32_t& x, int32_t& y) = 0;
    virtual CInputModifiers modifiers() = 0;
    /// Two presses that far apart are no double click.
    virtual double doubleClickSeconds() { return 0.5; }
    /// Work area of the monitor that holds a point, or of the nearest one.
    virtual CIntRect monitorArea(int32_t x, int32_t y) = 0;

    /// 0 with the system's number. `isWindow`: the hidden window failed, not the timer. An interval of 0 is the
    /// system's least one.
    virtual CTimerId startTimer(CTimerHandler& handler, int32_t milliseconds, CPlatformError& error,
                                bool& isWindow) = 0;
    /// No call of the handler comes after the return. An id that does not run does nothing.
    virtual void stopTimer(CTimerId id) = 0;

    /// UTF-16. False if there is no text, or if another program keeps the clipboard for three tries.
    virtual bool clipboardText(std::u16string& text) = 0;
    virtual bool setClipboardText(const std::u16string& text) = 0;

    /// Runs its own message loop. False if the user gave up; `message` says why no dialog could be shown, otherwise it
    /// is empty.
    virtual bool askForFile(const CFileDialogRequest& request, std::u16string& path, std::u16string& message) = 0;

    /// Serves what waits for this thread's windows and timers, from a host's idle call; a system that serves them by
    /// itself does nothing.
    virtual void serve() = 0;
};

/// The backend of the system; null where there is none: no display.
CWindowSystem* systemWindows();
/// Why systemWindows() gave null, for the log; empty if it gave a backend. Any thread.
std::u16string noWindowsReason();
/// For backends; empty for none.
void noteNoWindows(const std::u16string& reason);
/// The backend in use: that of the system unless another one was chosen.
CWindowSystem* windowSystem();
/// For tests and tools. Null chooses the system's again. No window may be open.
void setWindowSystem(CWindowSystem* system);

}  // namespace tarv
