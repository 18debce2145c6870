// The window system by hand: its clock and loop, failures on demand, clipboard and file dialogs.

#include "Platform/ByHand/CWindowSystemByHand.h"

#include <algorithm>
#include <utility>

#include "Platform/ByHand/CSurfaceByHand.h"
#include "Platform/ByHand/CWindowByHand.h"
#include "Platform/Clock.h"
#include "Platform/Posix/ClockByHand.h"
#include "Platform/Posix/EventQueue.h"

namespace tarv {

namespace {

// The numbers that Windows has for a window that is not there, and for a size that can't be.
constexpr CPlatformError kNoSuchWindow = 1400;
constexpr CPlatformError kInvalidParameter = 87;

}  // namespace

CWindowSystemByHand::CWindowSystemByHand(std::vector<CIntRect> monitors)
    : desktop_(std::move(monitors)), input_(desktop_) {
    setClockByHand(kFirstSecond);
    setWindowSystem(this);
}

CWindowSystemByHand::~CWindowSystemByHand() {
    setWindowSystem(nullptr);
    releaseClock();
}

int32_t CWindowSystemByHand::pump() {
    int32_t delivered = pumpEvents();
    delivered += desktop_.paint();
    return delivered + input_.settle();
}

void CWindowSystemByHand::advance(double seconds) {
    const double until = clockSeconds() + seconds;
    pump();
    while (timers_.fireNext(until)) {
        pump();
    }
    // A handler that lets time pass itself may be ahead.
    setClockByHand(std::max(until, clockSeconds()));
    pump();
}

void CWindowSystemByHand::starve(double seconds) {
    setClockByHand(clockSeconds() + seconds);
}

CPlatformError CWindowSystemByHand::CFailure::take() {
    return error == 0 || after-- > 0 ? 0 : std::exchange(error, 0);
}

std::unique_ptr<CSurface> CWindowSystemByHand::createSurface(int32_t width, int32_t height, CSurfaceStep& step,
                                                             CPlatformError& error) {
    const bool isPossible = width > 0 && height > 0;
    error = isPossible ? surfaceFailure_.take() : kInvalidParameter;
    if (error != 0) {
        step = isPossible ? surfaceFailure_.step : CSurfaceStep::Section;
        return nullptr;
    }
    step = CSurfaceStep::None;
    return std::make_unique<CSurfaceByHand>(desktop_, width, height);
}

CPlatformError CWindowSystemByHand::acquireClass(CWindowKind kind) {
    const CPlatformError error = std::exchange(classFailures_[static_cast<size_t>(kind)], 0);
    heldClasses_ += error ? 0 : 1;
    return error;
}

std::unique_ptr<CPlatformWindow> CWindowSystemByHand::createWindow(const CWindowRequest& request,
                                                                   CWindowHandler& handler, CPlatformError& error) {
    error = request.isChild && !desktop_.find(request.parent) ? kNoSuchWindow : windowFailure_.take();
    if (error != 0) {
        return nullptr;
    }
    return std::make_unique<CWindowByHand>(desktop_, request, &handler, true);
}

CWindowHandle CWindowSystemByHand::windowAt(int32_t x, int32_t y) {
    const CWindowByHand* window = desktop_.windowAt(x, y);
    return window && window->isOfThisProcess() ? window->handle() : 0;
}

void CWindowSystemByHand::pointerPosition(int32_t& x, int32_t& y) {
    x = input_.x();
    y = input_.y();
}

CTimerId CWindowSystemByHand::startTimer(CTimerHandler& handler, int32_t milliseconds, CPlatformError& error,
                                         bool& isWindow) {
    return timers_.start(handler, milliseconds, error, isWindow);
}

bool CWindowSystemByHand::isClipboardFree() {
    const int32_t tries = std::min(keptTries_, kClipboardTries);
    keptTries_ -= tries;
    return tries < kClipboardTries;
}

bool CWindowSystemByHand::clipboardText(std::u16string& text) {
    if (!isClipboardFree() || !hasText_) {
        return false;
    }
    text = clipboard_;
    return true;
}

bool CWindowSystemByHand::setClipboardText(const std::u16string& text) {
    if (!isClipboardFree()) {
        return false;
    }
    clipboard_ = text;
    hasText_ = true;
    return true;
}

void CWindowSystemByHand::answerFileDialog(const std::u16string& path, std::function<void()> meanwhile) {
    answers_.push_back({true, path, std::move(meanwhile)});
}

void CWindowSystemByHand::refuseFileDialog(const std::u16string& message, std::function<void()> meanwhile) {
    answers_.push_back({false, message, std::move(meanwhile)});
}

bool CWindowSystemByHand::askForFile(const CFileDialogRequest& request, std::u16string& path, std::u16string& message) {
    message.clear();
    fileDialogs_.push_back(request);
    if (answers_.empty()) {
        return false;
    }
    const CAnswer answer = std::move(answers_.front());
    answers_.pop_front();
    if (answer.meanwhile) {
        answer.meanwhile();
    }
    (answer.isPath ? path : message) = answer.text;
    return answer.isPath;
}

bool CWindowSystemByHand::isClean() const {
    return desktop_.windowCount() == 0 && desktop_.surfaceCount() == 0 && timers_.count() == 0 &&
           timers_.hiddenWindowCount() == 0 && heldClasses_ == 0 && desktop_.capture() == 0 &&
           desktop_.keyGrabber() == 0;
}

}  // namespace tarv
