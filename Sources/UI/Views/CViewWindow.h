#pragma once

#include "Core/CAttribute.h"
#include "Core/CError.h"
#include "Platform/Pointer.h"

namespace tarv {

class CColorMixes;
class CInputListener;
class CSectorMap;
class CViewBase;
class CViewBaseCtlEvents;

/// What views ask of the window that they stand in. A window that goes before its views leaves its root view first.
/// Thread: that of the window.
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
    /// The same of a text without marks, as one with a name that a user has typed.
    virtual void setPlainHint(const CString& hint) { setHint(hint); }
    virtual void setCursor(CCursorShape shape) = 0;
    /// Null in a window that takes no input.
    virtual CInputListener* input() { return nullptr; }
    /// Mixes that the views of an editor share, or null: then each view makes its own.
    virtual CColorMixes* colorMixes() { return nullptr; }
    /// Opens a popup of a template for a view, with the parameters that UI/Windows/CPopups.h documents; closes the one
    /// that this opener has open. A window without popups does nothing.
    [[nodiscard]] virtual CError* openPopup(CViewBaseCtlEvents& opener, const CString& templateName,
                                            CAttributeMap& params) {
        (void)opener;
        (void)templateName;
        (void)params;
        return nullptr;
    }

protected:
    ~CViewWindow() = default;
};

}  // namespace tarv
