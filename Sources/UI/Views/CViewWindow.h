#pragma once

#include "Core/CString.h"
#include "Platform/Pointer.h"

namespace tarv {

class CSectorMap;
class CViewBase;

/// What views ask of the window that they stand in. The window outlives its views. Thread: that of the window.
class CViewWindow {
public:
    virtual CSectorMap& sectorMap() = 0;
    /// Seconds of the last render tick; all animation takes its time from here.
    virtual double now() const = 0;
    /// The view that has key focus, or null.
    virtual CViewBase* keyFocusView() const = 0;
    /// Null takes the focus from the view that has it.
    virtual void setKeyFocusView(CViewBase* view) = 0;
    /// The line of the status bar; empty for none.
    virtual void setHint(const CString& hint) = 0;
    virtual void setCursor(CCursorShape shape) = 0;

protected:
    ~CViewWindow() = default;
};

}  // namespace tarv
