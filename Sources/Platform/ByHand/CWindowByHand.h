#pragma once

#include <string>
#include <vector>

#include "Platform/ByHand/CPictureByHand.h"
#include "Platform/ByHand/CSurfaceByHand.h"
#include "Platform/Window.h"

namespace tarv {

class CDesktopByHand;

/// A window in memory. What is presented is read at finishPresenting, as a system may do that draws later: pixels that
/// are written too early show. Pixels that nothing was presented for are kUnpainted; a window that is shown or grows is
/// asked to paint.
class CWindowByHand : public CPlatformWindow {
public:
    static constexpr uint32_t kUnpainted = 0x00ff00ff;

    /// Without a handler it is a window of a host.
    CWindowByHand(CDesktopByHand& desktop, const CWindowRequest& request, CWindowHandler* handler,
                  bool isOfThisProcess);
    ~CWindowByHand() override;
    CWindowByHand(const CWindowByHand&) = delete;
    CWindowByHand& operator=(const CWindowByHand&) = delete;

    CWindowHandle handle() const override { return handle_; }
    void show(bool isShown) override;
    void setBounds(const CIntRect& bounds) override;
    CIntRect screenBounds() const override;
    void setTitle(const char16_t* title) override { title_ = title; }
    void present(const CSurface& surface, int32_t x, int32_t y, const CIntRect& rect) override;
    void finishPresenting() override;
    void invalidate(const CIntRect& rect) override;
    void setCapture() override;
    void releaseCapture() override;
    void setCursor(CCursorShape shape) override { cursor_ = shape; }
    void takeFocus() override;
    void giveFocusBack() override;
    void grabKeys(bool isGrabbed) override;

    bool isChild() const { return isChild_; }
    /// Of a child the window that it stands in, otherwise 0.
    CWindowHandle container() const { return isChild_ ? parent_ : 0; }
    /// Of a popup the window that owns it: never a child, but the window that the requested one stands in. Otherwise 0.
    CWindowHandle owner() const { return isChild_ ? 0 : parent_; }
    bool isHost() const { return isHost_; }
    bool isOfThisProcess() const { return isOfThisProcess_; }
    bool isShown() const { return isShown_; }
    /// A popup that takes no activation, by showing or by a press.
    bool staysInactive() const { return !isHost_ && !isChild_ && !isActivated_; }
    bool isTaskbar() const { return isTaskbar_; }
    bool isLasting() const { return isLasting_; }
    const CIntRect& bounds() const { return bounds_; }
    const std::u16string& title() const { return title_; }
    CCursorShape cursor() const { return cursor_; }
    /// Null for a host's window.
    CWindowHandler* handler() const { return handler_; }
    /// What the user would see of this window alone.
    const CPictureByHand& picture();
    /// Since the start, or the last forgetPresented: pixels within the window, and calls.
    int64_t presentedPixels() const { return presentedPixels_; }
    int32_t presentCount() const { return presentCount_; }
    void forgetPresented();

private:
    friend class CDesktopByHand;

    /// What waits to be read.
    struct CPresented {
        const CSurfaceByHand* surface;
        int32_t x;
        int32_t y;
        CIntRect rect;
    };
    CIntRect inner() const { return {0, 0, picture_.width, picture_.height}; }
    void readPresented();
    void loseContent();

    CDesktopByHand& desktop_;
    CWindowHandle handle_ = 0;
    CWindowHandler* handler_;
    const bool isHost_;
    const bool isOfThisProcess_;
    const bool isChild_;
    const bool isTaskbar_;
    const bool isLasting_;
    const bool isActivated_;
    const CWindowHandle parent_;
    bool isShown_ = false;
    // The last state that the handler was called with.
    bool isToldActive_ = false;
    CIntRect bounds_;
    CIntRect invalid_;
    std::u16string title_;
    CCursorShape cursor_ = CCursorShape::Arrow;
    CWindowHandle formerFocus_ = 0;
    CPictureByHand picture_;
    std::vector<CPresented> presented_;
    int64_t presentedPixels_ = 0;
    int32_t presentCount_ = 0;
};

}  // namespace tarv
