#include "UI/Windows/CWindowSharedData.h"

#include <utility>

#include "Core/CObjectWatch.h"
#include "UI/Views/CInputTarget.h"
#include "UI/Windows/CWindow.h"

namespace tarv {

CError* CWindowSharedData::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CWindowSharedData::showHintsChanged>("is-show-hints");
    return nullptr;
}

void CWindowSharedData::add(CWindow& window) {
    if (windows_.indexOf(&window) < 0) {
        windows_.append(&window);
    }
}

void CWindowSharedData::remove(CWindow& window) {
    const int32_t index = windows_.indexOf(&window);
    if (index >= 0) {
        windows_.removeAt(index);
    }
    mouseWindow_ = mouseWindow_ == &window ? nullptr : mouseWindow_;
    keyWindow_ = keyWindow_ == &window ? nullptr : keyWindow_;
}

CWindow* CWindowSharedData::findWindow(CWindowHandle handle) const {
    for (CWindow* window : windows_) {
        if (handle != 0 && window->handle() == handle) {
            return window;
        }
    }
    return nullptr;
}

CWindow* CWindowSharedData::findNamed(const CString& uniqueName) const {
    for (CWindow* window : windows_) {
        if (!uniqueName.isEmpty() && window->uniqueName() == uniqueName) {
            return window;
        }
    }
    return nullptr;
}

CWindow* CWindowSharedData::mainWindow() const {
    for (CWindow* window : windows_) {
        if (window->isMainWindow()) {
            return window;
        }
    }
    return nullptr;
}

CViewBaseCtlEvents* CWindowSharedData::viewAt(int32_t x, int32_t y) const {
    CWindowSystem* system = windowSystem();
    CWindow* window = system ? findWindow(system->windowAt(x, y)) : nullptr;
    if (!window) {
        return nullptr;
    }
    const CIntRect bounds = window->screenBounds();
    return CInputTarget::hit(window->sectorMap(), x - bounds.left, y - bounds.top, false);
}

CViewBaseCtlEvents* CWindowSharedData::keyFocusView() const {
    return keyWindow_ ? keyWindow_->router().keyFocus() : nullptr;
}

CViewBaseCtlEvents* CWindowSharedData::hoveredView() const {
    return mouseWindow_ ? mouseWindow_->router().hovered() : nullptr;
}

bool CWindowSharedData::keyReleased(const CWindow& in, int32_t code) {
    bool wasTaken = false;
    for (CWindow* window : windows_) {
        wasTaken = (window != &in && window->router().forgetKey(code)) || wasTaken;
    }
    return wasTaken;
}

bool CWindowSharedData::takeBackPress() {
    for (CWindow* window : windows_) {
        if (window->takeBackPress()) {
            return true;  // its handlers may have destroyed the tree
        }
    }
    return false;
}

void CWindowSharedData::endCall() {
    if (--calls_ > 0 || !whenDone_) {
        return;
    }
    // This object may go with the tree.
    const std::function<void()> call = std::exchange(whenDone_, nullptr);
    call();
}

void CWindowSharedData::shutWindows() {
    const CObjectWatch watch(*this);
    const bool wasShutting = std::exchange(isShutting_, true);
    // From the last one, since popups stand behind what opened them; closing takes a window out of the list.
    while (watch.isAlive() && !windows_.isEmpty()) {
        windows_[windows_.count() - 1]->shut();
    }
    if (watch.isAlive()) {
        isShutting_ = wasShutting;
    }
}

CError* CWindowSharedData::showHintsChanged() {
    const CObjectWatch watch(*this);
    // What follows the status lines may open, close and destroy windows; a new one shows its hints by itself.
    const CArray<CWindow*, 4> windows = windows_;
    for (CWindow* window : windows) {
        if (watch.isAlive() && windows_.indexOf(window) >= 0) {
            window->refreshHint();
        }
    }
    return nullptr;
}

}  // namespace tarv
