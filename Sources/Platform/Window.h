#pragma once

#include <memory>

#include "Platform/IntRect.h"
#include "Platform/Keyboard.h"
#include "Platform/Pointer.h"
#include "Platform/Surface.h"

namespace tarv {

/// The system's own name of a window; 0 is none.
using CWindowHandle = uintptr_t;

/// Follows one window. Called on the thread that made it, until onGone has returned or the window is destroyed. May
/// destroy the window.
class CWindowHandler {
public:
    /// The system wants pixels again; present them before the return.
    virtual void onPaint(const CIntRect& dirty) = 0;
    virtual void onPointer(const CPointerEvent& event) = 0;
    /// False gives the wheel on to the host's window.
    virtual bool onWheel(const CWheelEvent& event) = 0;
    /// While grabKeys holds, all keys of the thread; otherwise those that the system sends because this window has the
    /// focus. False gives the key on to the host.
    virtual bool onKey(const CKeyEvent& event) = 0;
    /// grabKeys has ended without a call: another window has grabbed the keys, or the user works in a window that is
    /// neither the host's nor one of its popups. Windows: also a child without a grab that has lost the focus to
    /// another program.
    virtual void onKeysLost() {}
    /// The window, or one that it owns, has become active or has lost that. `other` is the window that has it now, if
    /// it is one of this process.
    virtual void onActivation(bool isActive, CWindowHandle other) = 0;
    /// The user closes a popup by the system's own means.
    virtual void onCloseRequest() = 0;
    /// The system has destroyed the window, with its parent: the handle is void.
    virtual void onGone() = 0;

protected:
    ~CWindowHandler() = default;
};

/// What kind of window is wanted.
struct CWindowRequest {
    bool isChild = false;         ///< stands in `parent`, which a host owns; otherwise a popup that `parent` owns
    CWindowHandle parent = 0;     ///< must be there for a child
    CIntRect bounds;              ///< of a child in its parent, of a popup on the screen
    const char16_t* title = u"";  ///< UTF-16, ends with 0
    bool isTaskbar = false;       ///< has a button in the taskbar
    bool isLasting = false;       ///< a popup that stays when the user works elsewhere, among other windows
    bool isActivated = true;      ///< a popup takes the activation when it is shown or pressed
};

/// A window of the system. Destroyed by its destructor, which calls no handler. One thread.
class CPlatformWindow {
public:
    virtual ~CPlatformWindow() = default;
    /// 0 once the system has destroyed it.
    virtual CWindowHandle handle() const = 0;
    virtual void show(bool isShown) = 0;
    /// In the coordinates of CWindowRequest::bounds.
    virtual void setBounds(const CIntRect& bounds) = 0;
    /// On the screen.
    virtual CIntRect screenBounds() const = 0;
    virtual void setTitle(const char16_t* title) = 0;

    /// Shows a part of a surface whose top left corner lies at x, y of the window. `rect` is in pixels of the window.
    virtual void present(const CSurface& surface, int32_t x, int32_t y, const CIntRect& rect) = 0;
    /// Returns when the system has read what was presented, so that its pixels may be written again.
    virtual void finishPresenting() = 0;
    /// Asks for onPaint.
    virtual void invalidate(const CIntRect& rect) = 0;

    /// All events of the pointer come to this window until the release, or until CaptureLost.
    virtual void setCapture() = 0;
    /// Calls no handler.
    virtual void releaseCapture() = 0;
    virtual void setCursor(CCursorShape shape) = 0;
    /// Takes the keyboard's focus, and gives it back to the window that had it.
    virtual void takeFocus() = 0;
    virtual void giveFocusBack() = 0;
    /// While true, keys of this thread come to this window before the host sees them. One window of the process at a
    /// time: a grab ends the former one. False for a window that grabs nothing does nothing.
    virtual void grabKeys(bool isGrabbed) = 0;
};

}  // namespace tarv
