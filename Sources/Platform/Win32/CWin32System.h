#pragma once

#include "Platform/WindowSystem.h"

namespace tarv {

/// The user interface of Windows. Touches nothing that belongs to the process: no DPI awareness, no mode of COM, no
/// current folder.
class CWin32System final : public CWindowSystem {
public:
    CPlatformError acquireClass(CWindowKind kind) override;
    void releaseClass(CWindowKind kind) override;
    std::unique_ptr<CSurface> createSurface(int32_t width, int32_t height, CSurfaceStep& step,
                                            CPlatformError& error) override;
    std::unique_ptr<CPlatformWindow> createWindow(const CWindowRequest& request, CWindowHandler& handler,
                                                  CPlatformError& error) override;
    CWindowHandle windowAt(int32_t x, int32_t y) override;
    void pointerPosition(int32_t& x, int32_t& y) override;
    CInputModifiers modifiers() override;
    double doubleClickSeconds() override;
    CIntRect monitorArea(int32_t x, int32_t y) override;
    CTimerId startTimer(CTimerHandler& handler, int32_t milliseconds, CPlatformError& error, bool& isWindow) override;
    void stopTimer(CTimerId id) override;
    bool clipboardText(std::u16string& text) override;
    bool setClipboardText(const std::u16string& text) override;
    bool askForFile(const CFileDialogRequest& request, std::u16string& path, std::u16string& message) override;
    /// The host's message loop serves windows and timers.
    void serve() override {}
};

}  // namespace tarv
