#pragma once

#include <memory>
#include <vector>

#include "Platform/ByHand/CPictureByHand.h"
#include "Platform/Window.h"

namespace tarv {

class CSurfaceByHand;
class CWindowByHand;

/// The screen by hand: monitors, windows in stacking order, and which of them is active, has the focus, the capture and
/// the keys. Handles are never used twice. Calls a window's handler as the system does, which may destroy any window.
/// Thread: that of the test.
///
/// Activation belongs to windows that stand in no other one: a child is never called for it. A popup counts as active
/// while it, or a window that it owns, is.
class CDesktopByHand {
public:
    static constexpr uint32_t kBackground = 0x00808080;

    explicit CDesktopByHand(std::vector<CIntRect> monitors);
    ~CDesktopByHand();
    CDesktopByHand(const CDesktopByHand&) = delete;
    CDesktopByHand& operator=(const CDesktopByHand&) = delete;

    /// A window of a host, shown and on top; with `isOfThisProcess` false, one of another program. Stays until
    /// destroyed, at the latest with the desktop.
    CWindowHandle openHost(const CIntRect& bounds, bool isOfThisProcess = true);
    /// The system destroys a window with all that stand in it and all that it owns; each of them gets onGone.
    void destroy(CWindowHandle window);
    /// Of the user or of another program: makes a window active, or none of this process with 0, and puts it on top.
    void activate(CWindowHandle window);
    /// The system takes the capture from the window that has it.
    void takeCapture();
    /// The user asks the window to close.
    void requestClose(CWindowHandle window);
    /// The system forgets a part of a window's pixels, and asks for them.
    void expose(CWindowHandle window, const CIntRect& rect);
    /// Calls onPaint of each shown window that has lost pixels or was invalidated, once; gives how many.
    int32_t paint();

    /// Null for a window that is gone.
    CWindowByHand* find(CWindowHandle window) const;
    /// Windows of the product, in stacking order from the bottom.
    std::vector<CWindowByHand*> windows() const;
    /// The topmost shown window at a point of the screen, of any process; null for none.
    CWindowByHand* windowAt(int32_t x, int32_t y) const;
    CIntRect monitorAt(int32_t x, int32_t y) const;
    /// All monitors and what lies between them.
    CIntRect screen() const;
    /// What the user sees in a part of the screen.
    CPictureByHand picture(const CIntRect& rect);
    CWindowHandle active() const { return active_; }
    CWindowHandle focus() const { return focus_; }
    CWindowHandle capture() const { return capture_; }
    CWindowHandle keyGrabber() const { return grabber_; }

    /// Objects of the product that live now, also of windows that the system has destroyed.
    int32_t windowCount() const { return windowCount_; }
    int32_t surfaceCount() const { return surfaceCount_; }

    // For windows and surfaces.
    CWindowHandle add(CWindowByHand& window);
    void countWindow(int32_t change) { windowCount_ += change; }
    void countSurface(int32_t change) { surfaceCount_ += change; }
    void readSurface(const CSurfaceByHand& surface);
    void shown(CWindowByHand& window, bool isActivated);
    void hidden(CWindowByHand& window);
    CIntRect screenBoundsOf(const CWindowByHand& window) const;
    void setCapture(CWindowHandle window);
    void dropCapture() { capture_ = 0; }
    void setFocus(CWindowHandle window) { focus_ = window; }
    void grabKeys(CWindowHandle window, bool isGrabbed);
    /// The window without a parent that a window stands in, or itself.
    CWindowHandle topOf(CWindowHandle window) const;

private:
    CWindowByHand* hitIn(CWindowHandle container, int32_t x, int32_t y) const;
    void drawIn(CWindowHandle container, const CIntRect& clip, const CIntRect& rect, CPictureByHand& picture);
    class CHandles;
    void raise(CWindowHandle top);
    bool isActiveGroup(const CWindowByHand& window) const;
    CWindowHandle dependantOf(CWindowHandle window) const;
    void forget(CWindowHandle window);
    void tellActivation();
    void loseKeys();

    std::vector<CIntRect> monitors_;
    std::vector<std::unique_ptr<CWindowByHand>> hosts_;
    // All windows, those that stand in one another too, from the bottom up.
    std::vector<CWindowByHand*> stack_;
    std::vector<std::vector<CWindowHandle>> spareHandles_;
    CWindowHandle lastHandle_ = 0x1000;
    CWindowHandle active_ = 0;
    CWindowHandle focus_ = 0;
    CWindowHandle capture_ = 0;
    CWindowHandle grabber_ = 0;
    int32_t windowCount_ = 0;
    int32_t surfaceCount_ = 0;
};

}  // namespace tarv
