#pragma once

#include <windows.h>

#include <memory>

#include "Platform/File.h"
#include "Platform/Win32/CKeyCharacters.h"
#include "Platform/Win32/CLifeGuard.h"
#include "Platform/Win32/CModuleClass.h"
#include "Platform/Window.h"

namespace tarv {

/// A window of Windows. The procedure finds the object by the window's user data; an object that has gone leaves none,
/// and a window that has gone leaves the handle at 0.
class CWin32Window final : public CPlatformWindow {
public:
    /// As CWindowSystem::createWindow.
    static std::unique_ptr<CWin32Window> create(const CWindowRequest& request, CWindowHandler& handler,
                                                CPlatformError& error);
    static CModuleClass& windowClass();
    ~CWin32Window() override;
    CWin32Window(const CWin32Window&) = delete;
    CWin32Window& operator=(const CWin32Window&) = delete;

    CWindowHandle handle() const override { return reinterpret_cast<CWindowHandle>(handle_); }
    void show(bool isShown) override;
    void setBounds(const CIntRect& bounds) override;
    CIntRect screenBounds() const override;
    void setTitle(const char16_t* title) override;
    void present(const CSurface& surface, int32_t x, int32_t y, const CIntRect& rect) override;
    void finishPresenting() override;
    void invalidate(const CIntRect& rect) override;
    void setCapture() override;
    void releaseCapture() override;
    void setCursor(CCursorShape shape) override;
    void takeFocus() override;
    void giveFocusBack() override;
    void grabKeys(bool isGrabbed) override;

private:
    struct CMessage {
        HWND window;
        UINT number;
        WPARAM wParam;
        LPARAM lParam;
    };
    struct CMessageRow;
    struct CButtonRow;
    struct CShared;
    static const CMessageRow kMessages[];
    static const CButtonRow kButtons[];
    static CShared shared_;

    CWin32Window(const CWindowRequest& request, CWindowHandler& handler);
    CPlatformError make(const CWindowRequest& request);
    void rememberFocus();

    static LRESULT CALLBACK procedure(HWND window, UINT number, WPARAM wParam, LPARAM lParam);
    /// The object of a window of this class and this thread, or null.
    static CWin32Window* find(HWND window);
    static LRESULT byDefault(const CMessage& message);
    static LRESULT activate(const CMessage& message);
    LRESULT paint(const CMessage& message);
    LRESULT keepBackground(const CMessage& message);
    LRESULT chooseCursor(const CMessage& message);
    LRESULT refuseActivation(const CMessage& message);
    LRESULT askToClose(const CMessage& message);
    LRESULT forgetHandle(const CMessage& message);
    void followActivation(bool isActive, HWND active);

    LRESULT movePointer(const CMessage& message);
    LRESULT pressButton(const CMessage& message);
    LRESULT leave(const CMessage& message);
    LRESULT loseCapture(const CMessage& message);
    LRESULT turnWheel(const CMessage& message);
    LRESULT takeWheel(const CMessage& message, POINT place);
    LRESULT takeHookedKey(const CMessage& message);
    LRESULT loseKeys(const CMessage& message);
    LRESULT loseFocus(const CMessage& message);
    LRESULT passKeyOn(const CMessage& message);
    bool takeKeyOfFocus(const CMessage& message);
    CKeyEvent keyOf(const CMessage& message, bool isDown);
    bool takePacket(const CMessage& message);
    LRESULT passOn(HWND to, const CMessage& message);
    void sendPointer(CPointerKind kind, CPointerButton button, bool isDouble);
    void trackLeave();
    void trackLeaveAfterCapture();

    CWindowHandler& handler_;
    const bool isChild_;
    const bool isActivated_;
    HWND handle_ = nullptr;
    CLifeChain life_;
    HDC paintContext_ = nullptr;
    CIntRect painted_;
    CCursorShape cursor_ = CCursorShape::Arrow;
    HWND formerFocus_ = nullptr;
    bool isActive_ = false;
    bool isCaptured_ = false;
    bool isTracking_ = false;   ///< the system will report that the pointer leaves
    bool isPassingOn_ = false;  ///< the host has a message of ours in hand, and may send it back
    bool isGrabbing_ = false;   ///< until the grab ends, or is lost
    bool isKeyTaken_ = false;   ///< the characters of the last key are not the host's
    bool isPacket_ = false;     ///< the next WM_CHAR is a character without a key
    int32_t lastX_ = 0;
    int32_t lastY_ = 0;
    CKeyCharacters characters_;
};

/// As the keys are at the message in hand.
CInputModifiers currentModifiers();
/// Whether a window belongs to this process.
bool isOwnWindow(HWND window);

}  // namespace tarv
