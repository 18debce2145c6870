#pragma once

#include "Core/CObject.h"
#include "UI/Windows/CWindowPlace.h"

namespace tarv {

class CViewBaseCtlEvents;
class CWindow;

/// Where a popup is to be opened.
struct CPopupPlace {
    CWindowSurroundings around;
    bool isManual = false;  ///< at x, y of the screen, and not by an alignment
    int32_t x = 0;
    int32_t y = 0;
};

/// The popups that views of one window have opened. Thread: that of the window.
class CPopups {
public:
    /// `owner` has this object as a member.
    explicit CPopups(CWindow& owner) : owner_(owner) {}
    ~CPopups();
    CPopups(const CPopups&) = delete;
    CPopups& operator=(const CPopups&) = delete;

    /// Makes an object of a template as a child of the tree's `ui`, and opens its window. If `opener` has a popup open,
    /// that one closes, and a new one is made only with `is-popup-toggle-always-create` (a parameter, or an attribute
    /// of the opener). A window whose `unique-name` is open is not opened twice: it is raised, and closes if the view
    /// that opened it has gone. One that blocks nothing is a popup of the main window, and stays when that of its
    /// opener closes. The parameters become attributes of the new object, with `opener`, the full name. Those that
    /// count here:
    ///   popup-width, is-same-width (that of the opener), width-modif (added); lengths at scale 1
    ///   is-least-width: the width of the opener if the popup is narrower than that
    ///   is-manual-coords: at actual-x, actual-y of the opener's window; otherwise by the window's `window-alignment`
    ///   window-x, window-y: a place on the screen; these and constrain-y may stand in the template, too
    ///   shift-x, shift-y: lengths at scale 1, added to the place; constrain-y: the lowest y on the screen
    /// A popup with `is-popup-window` that is taller than the monitor gets its height, and before that the attribute
    /// `popup-height-limit`. One with `is-popup-window` or `is-modal` blocks the window of its opener.
    [[nodiscard]] CError* open(CViewBaseCtlEvents& opener, const CString& templateName, CAttributeMap& params);
    /// Destroys those that close and whose handlers have returned; their openers get `popup-closed`.
    void release();
    /// All of them close.
    void close();
    /// The same without an event: their input ends before they are destroyed.
    void vanish();
    /// The popups that this view has opened vanish, and it gets nothing any more: it is being destroyed, and a handler
    /// that destroyed what is above it would do so twice.
    /// `isOwn`: the view stands in the window of this object; otherwise its popups lose their opener and stay.
    void openerGoes(const CViewBaseCtlEvents& opener, bool isOwn);
    /// The popups of a popup that is being destroyed; they close, and nobody gets their end.
    void takeOver(CPopups& popups);
    /// The window of a popup is being destroyed, or closes.
    void windowGoes(const CWindow& window);
    /// Passes an answer of a popup on to the object that `popup-result-target` of its root view names, by default to
    /// its opener; where that object names another target, on to that. Adds `source`, the popup's full name. An answer
    /// with the parameter `event`, unless that is empty, goes under that name.
    [[nodiscard]] CError* answer(const CWindow& window, const CString& eventName, CAttributeMap& params);
    /// The popup that stands in the way of the window's views, or null.
    CWindow* blocking() const;
    /// The window that this view has open, or null.
    CWindow* popupOf(const CViewBaseCtlEvents& opener) const;
    /// The open window of the popup of that path, or null.
    CWindow* findPopup(const CString& path) const;
    /// Whether the view that has opened a window still lives.
    bool hasOpener(const CWindow& window) const;
    int32_t count() const { return popups_.count(); }

private:
    struct CPopup {
        CObject* object;
        CWindow* window;
        CViewBaseCtlEvents* opener;
    };

    [[nodiscard]] CError* make(CViewBaseCtlEvents& opener, const CString& templateName, const CAttributeMap& params,
                               CObject*& made, CWindow*& window);
    [[nodiscard]] CError* openMade(CViewBaseCtlEvents& opener, const CAttributeMap& params, CObject& made,
                                   CWindow& window);
    [[nodiscard]] CError* setWidth(const CViewBaseCtlEvents& opener, const CAttributeMap& params, CObject& made,
                                   CWindow& window) const;
    [[nodiscard]] CError* limitHeight(const CIntRect& monitor, CWindow& window);
    CPopupPlace placeOf(const CViewBaseCtlEvents& opener, const CAttributeMap& params, const CWindow& window) const;
    [[nodiscard]] CError* findTarget(const CPopup& popup, CObject*& target) const;
    int32_t indexOf(const CWindow& window) const;
    const CPopup* find(const CWindow& window) const;

    CWindow& owner_;
    CArray<CPopup, 2> popups_;
};

}  // namespace tarv
