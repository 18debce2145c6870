#pragma once

#include <deque>
#include <functional>
#include <vector>

#include "Platform/ByHand/CDesktopByHand.h"
#include "Platform/ByHand/CInputByHand.h"
#include "Platform/ByHand/CTimersByHand.h"
#include "Platform/WindowSystem.h"

namespace tarv {

/// A window system in memory for tests and tools, which drive all of it: windows and pixels (desktop), pointer and keys
/// (input), clock and timers, posted events, clipboard, file dialogs. For its life it is the backend in use and the
/// clock is by hand. Nothing happens by itself: posts and paints wait for pump, timers for advance. One at a time; it
/// outlives what was made with it. Thread: that of the test; timers may be started on any.
class CWindowSystemByHand : public CWindowSystem {
public:
    static constexpr double kFirstSecond = 100.0;
    static constexpr int32_t kClipboardTries = 3;

    explicit CWindowSystemByHand(std::vector<CIntRect> monitors = {{0, 0, 1920, 1080}});
    ~CWindowSystemByHand() override;
    CWindowSystemByHand(const CWindowSystemByHand&) = delete;
    CWindowSystemByHand& operator=(const CWindowSystemByHand&) = delete;

    CDesktopByHand& desktop() { return desktop_; }
    CInputByHand& input() { return input_; }
    CTimersByHand& timers() { return timers_; }

    /// Delivers posts to this thread, then paints, once, and then what follows of windows that changed under the
    /// pointer. Gives how much was delivered.
    int32_t pump();
    /// Lets time pass: fires this thread's timers in their order, each at its time, and pumps behind each.
    void advance(double seconds);
    /// Lets time pass with nothing served, as under a flood of input.
    void starve(double seconds);

    /// Calls that fail next, after so many that succeed.
    void failSurface(CSurfaceStep step, CPlatformError error, int32_t after = 0) {
        surfaceFailure_ = {step, error, after};
    }
    void failClass(CWindowKind kind, CPlatformError error) { classFailures_[static_cast<size_t>(kind)] = error; }
    void failWindow(CPlatformError error, int32_t after = 0) { windowFailure_ = {CSurfaceStep::None, error, after}; }

    /// What the next file dialog without an answer yet gives. `meanwhile` runs while it is open.
    void answerFileDialog(const std::u16string& path, std::function<void()> meanwhile = {});
    /// The same without a path: the user gives up, or no dialog can be shown and `message` says why.
    void refuseFileDialog(const std::u16string& message = {}, std::function<void()> meanwhile = {});
    const std::vector<CFileDialogRequest>& fileDialogs() const { return fileDialogs_; }
    /// Another program has the clipboard for so many tries.
    void keepClipboard(int32_t tries) { keptTries_ = tries; }
    /// Something that is no text, or nothing, lies in the clipboard.
    void emptyClipboard() { hasText_ = false; }
    /// Calls of serve.
    int32_t serveCount() const { return serveCount_; }
    /// Nothing of the product is left: held classes, windows, surfaces, timers, their hidden windows, capture and keys.
    bool isClean() const;

    CPlatformError acquireClass(CWindowKind kind) override;
    void releaseClass(CWindowKind) override { --heldClasses_; }
    std::unique_ptr<CSurface> createSurface(int32_t width, int32_t height, CSurfaceStep& step,
                                            CPlatformError& error) override;
    std::unique_ptr<CPlatformWindow> createWindow(const CWindowRequest& request, CWindowHandler& handler,
                                                  CPlatformError& error) override;
    CWindowHandle windowAt(int32_t x, int32_t y) override;
    void pointerPosition(int32_t& x, int32_t& y) override;
    CInputModifiers modifiers() override { return input_.modifiers(); }
    double doubleClickSeconds() override { return CInputByHand::kDoubleClickSeconds; }
    CIntRect monitorArea(int32_t x, int32_t y) override { return desktop_.monitorAt(x, y); }
    CTimerId startTimer(CTimerHandler& handler, int32_t milliseconds, CPlatformError& error, bool& isWindow) override;
    void stopTimer(CTimerId id) override { timers_.stop(id); }
    bool clipboardText(std::u16string& text) override;
    bool setClipboardText(const std::u16string& text) override;
    bool askForFile(const CFileDialogRequest& request, std::u16string& path, std::u16string& message) override;
    /// Does nothing: the test serves.
    void serve() override { ++serveCount_; }

private:
    struct CFailure {
        CSurfaceStep step = CSurfaceStep::None;
        CPlatformError error = 0;
        int32_t after = 0;

        /// The error of this call; 0 if it succeeds.
        CPlatformError take();
    };
    struct CAnswer {
        bool isPath;
        std::u16string text;
        std::function<void()> meanwhile;
    };
    bool isClipboardFree();

    CDesktopByHand desktop_;
    CInputByHand input_;
    CTimersByHand timers_;
    CFailure surfaceFailure_;
    CFailure windowFailure_;
    CPlatformError classFailures_[3] = {};
    int32_t heldClasses_ = 0;
    std::deque<CAnswer> answers_;
    std::vector<CFileDialogRequest> fileDialogs_;
    std::u16string clipboard_;
    bool hasText_ = false;
    int32_t keptTries_ = 0;
    int32_t serveCount_ = 0;
};

}  // namespace tarv
