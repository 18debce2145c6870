#pragma once

#include <functional>

#include "Core/CObject.h"
#include "Platform/Window.h"
#include "UI/Drawing/CColorMixes.h"

namespace tarv {

class CFocusReader;
class CViewBaseCtlEvents;
class CWindow;

/// What the windows of one editor share (`ui:window-shared-data`): which of them are open, and whether hints are shown
/// (`is-show-hints`, true unless set to false). Thread: that of the editor.
class CWindowSharedData : public CObject {
public:
    /// Where each window looks for it.
    static constexpr const char* kPath = "ui.window-shared-data";

    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    /// In the order of their opening.
    const CArray<CWindow*, 4>& windows() const { return windows_; }
    void add(CWindow& window);
    void remove(CWindow& window);
    /// Null for none.
    CWindow* findWindow(CWindowHandle handle) const;
    CWindow* findNamed(const CString& uniqueName) const;
    /// The window with `is-main-window`, or null.
    CWindow* mainWindow() const;
    /// The view at a point of the screen, in the topmost window there if it is one of these; null for none.
    CViewBaseCtlEvents* viewAt(int32_t x, int32_t y) const;
    /// A window has got the release of a key: true if the press was taken by another one, which forgets it.
    bool keyReleased(const CWindow& in, int32_t code);
    /// Takes back the press that is held in one of the windows; false without one.
    bool takeBackPress();

    /// The window that the pointer is in, and the one whose view has key focus; null for none.
    CWindow* mouseWindow() const { return mouseWindow_; }
    void setMouseWindow(CWindow* window) { mouseWindow_ = window; }
    CWindow* keyWindow() const { return keyWindow_; }
    void setKeyWindow(CWindow* window) { keyWindow_ = window; }
    CViewBaseCtlEvents* keyFocusView() const;
    CViewBaseCtlEvents* hoveredView() const;
    /// A call of the system or of a timer runs in one of the windows.
    bool isBusy() const { return calls_ > 0; }
    void beginCall() { ++calls_; }
    /// Behind the outermost one it calls what waits, which may destroy the tree.
    void endCall();
    /// Calls this once when the calls that run have returned. One must run.
    void callWhenDone(std::function<void()> call) { whenDone_ = std::move(call); }
    /// Between these a view is being destroyed: what the system reports to the windows reaches their handlers later.
    void beginSilence() { ++silences_; }
    void endSilence() { --silences_; }
    bool isSilent() const { return silences_ > 0; }
    /// Shuts all windows, popups first. Their handlers may destroy the tree, and open no window meanwhile.
    void shutWindows();
    bool isShutting() const { return isShutting_; }
    /// Follows the key focus; null ends it.
    void setFocusReader(CFocusReader* reader) { focusReader_ = reader; }
    CFocusReader* focusReader() const { return focusReader_; }
    /// Mixes of the colours of this editor's views. The palettes outlive it.
    CColorMixes& colorMixes() { return colorMixes_; }
    bool isShowHints() const { return getAttrBoolOr("is-show-hints", true); }

private:
    [[nodiscard]] CError* showHintsChanged();

    CArray<CWindow*, 4> windows_;
    CWindow* mouseWindow_ = nullptr;
    CWindow* keyWindow_ = nullptr;
    int32_t calls_ = 0;
    int32_t silences_ = 0;
    bool isShutting_ = false;
    std::function<void()> whenDone_;
    CFocusReader* focusReader_ = nullptr;
    CColorMixes colorMixes_;
};

}  // namespace tarv
