#pragma once

#include "Platform/Lock.h"
#include "Platform/WindowSystem.h"
#include "Platform/X11/CX11Library.h"

namespace tarv {

class CX11Session;

/// The windows of Linux, by X11. Each thread that has windows has its own connection, from its first window,
/// surface or timer to its last. Any thread; what a call is about belongs to the calling one.
class CX11System final : public CWindowSystem {
public:
    explicit CX11System(const CX11Library::CFiles& files = CX11Library::kFiles);
    ~CX11System() override;

    /// Whether this thread has a display, or gets one now; otherwise noWindowsReason() says why not.
    bool isAvailable();

    /// There are none.
    CPlatformError acquireClass(CWindowKind) override { return 0; }
    void releaseClass(CWindowKind) override {}
    std::unique_ptr<CSurface> createSurface(int32_t width, int32_t height, CSurfaceStep& step,
                                            CPlatformError& error) override;
    std::unique_ptr<CPlatformWindow> createWindow(const CWindowRequest& request, CWindowHandler& handler,
                                                  CPlatformError& error) override;
    CWindowHandle windowAt(int32_t x, int32_t y) override;
    void pointerPosition(int32_t& x, int32_t& y) override;
    CInputModifiers modifiers() override;
    CIntRect monitorArea(int32_t x, int32_t y) override;
    CTimerId startTimer(CTimerHandler& handler, int32_t milliseconds, CPlatformError& error, bool& isWindow) override;
    void stopTimer(CTimerId id) override;
    bool clipboardText(std::u16string& text) override;
    bool setClipboardText(const std::u16string& text) override;
    bool askForFile(const CFileDialogRequest& request, std::u16string& path, std::u16string& message) override;
    void serve() override;

private:
    struct CRow {
        uint64_t threadId;
        std::weak_ptr<CX11Session> session;
        std::shared_ptr<CX11Session> unused;  ///< until the first object of the session holds it
    };

    /// Null if this thread has none.
    std::shared_ptr<CX11Session> present();
    /// Opened if this thread has none; null without a display.
    std::shared_ptr<CX11Session> session();
    /// An object of the session exists from now on.
    void use(const std::shared_ptr<CX11Session>& session);

    CLock lock_;
    CX11Library library_;
    std::vector<CRow> rows_;
};

}  // namespace tarv
