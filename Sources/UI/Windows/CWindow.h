#pragma once

#include <cmath>
#include <memory>

#include "Core/CObject.h"
#include "Core/CObjectWatch.h"
#include "Platform/WindowSystem.h"
#include "UI/Views/CInputRouter.h"
#include "UI/Views/CSectorMap.h"
#include "UI/Views/CViewWindow.h"
#include "UI/Windows/CDrawLoad.h"
#include "UI/Windows/CFocusRing.h"
#include "UI/Windows/CPopups.h"

namespace tarv {

class CWindowSharedData;

/// Joins the root view above it to a window of the system (`ui:window-renderer`): passes its input to the views, and
/// draws and shows at each render tick what has changed. Attributes that it lacks are read from the root view. With
/// `is-plugin-vst` it is a child of the host's window, which the attribute `ParentWindow` of the tree's root points to;
/// otherwise a popup. Its size is that of the root view. Events that it sends for itself: `render` at each tick,
/// `static-view-update` each second, `paint`, `mouse-button`, `mouse-button-reset`, `mouse-top-exit`, `focus`, `blur`,
/// `activate-window`, `deactivate-window`; the main window `close-app` when it ends. While the main window is open, the
/// attribute `app-main-window` of the tree's `ui` is the path of its root view. While the user works by keys, the view
/// `focus-ring` stands around the one that has the focus. Enter that no view takes presses the view at `default-view`;
/// that at `edit-view` gets `edit-text` when the window opens. Both are paths from the root view. Thread: that of the
/// editor.
class CWindow : public CObject, public CViewWindow, private CInputWindow, private CWindowHandler {
public:
    CWindow();
    ~CWindow() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    /// Fails without the objects that it needs.
    [[nodiscard]] CError* init() override;
    /// Starts the timers.
    [[nodiscard]] CError* finishInit() override;

    /// Places the views, makes the window and shows it with its first picture. `place` null: the embedded window at 0,
    /// 0 of its parent, a popup by `window-alignment`. One that is open stays; none opens while all are being shut.
    [[nodiscard]] CError* open(const CPopupPlace* place = nullptr);
    /// Ends the input, closes the popups and the window of the system. The views stay. Harmless when not open.
    void shut();
    /// From open to shut, unless the system has destroyed the window.
    bool isOpen() const { return window_ && window_->handle() != 0; }
    /// One render tick.
    void tick();
    /// The host is idle: a tick that is overdue is made up for, since its timers may starve. With the setting
    /// `builtin-refresh` these calls draw each tick, and the timer only where they have ceased.
    void idle();
    /// A turn of the wheel that the host reports, in notches, up is positive: goes to the window of this editor at the
    /// pointer. False if none of its views takes it.
    bool onHostWheel(double notches);
    /// Asks for an end: at once nothing of it is seen or takes input; the opener releases a popup at its next tick.
    void requestClose();
    /// The same at once, and without an event, so that it may be called inside a destructor.
    void vanish();
    /// Cancels a press that is held, and takes hover and key focus from its views.
    void endInput();
    /// Takes back a press that is held; false without one.
    bool takeBackPress();
    bool isClosing() const { return isClosing_; }
    /// A call of a handler of this window runs.
    bool isBusy() const { return busy_ > 0; }

    CViewBaseCtlEvents& view() const { return *root_; }
    CInputRouter& router() { return router_; }
    CPopups& popups() { return popups_; }
    CWindowSharedData& sharedData() const { return *shared_; }
    /// 0 while not open.
    CWindowHandle handle() const { return window_ ? window_->handle() : 0; }
    CIntRect screenBounds() const { return window_ ? window_->screenBounds() : CIntRect(); }
    /// A view without what it scrolls and what it draws beyond its box.
    static CViewRect boxOf(const CViewBaseCtlEvents& view);
    /// Moves a popup; its size stays.
    void moveTo(int32_t x, int32_t y);
    /// An attribute of this object, or that of its root view where this one is empty.
    const CString& attr(const char* name) const;
    const CString& uniqueName() const { return attr("unique-name"); }
    bool isMainWindow() const { return flag("is-main-window"); }
    /// A list, a menu or the like: closes when it loses activation to anything but its own popups.
    bool isPopupWindow() const { return flag("is-popup-window"); }
    /// The window of its opener waits until this one is closed: `is-popup-window` or `is-modal`, and not
    /// `is-helper-window`.
    bool isBlocking() const { return (isPopupWindow() || isModal()) && takesFocus(); }
    bool isModal() const { return flag("is-modal"); }
    /// Takes the activation, and with it the focus.
    bool takesFocus() const { return !flag("is-helper-window"); }
    /// Brings an open popup to the user.
    void raise();
    /// While true the views get no pointer and no key; a press asks what blocks.
    bool isBlocked() const override { return blockedBy_ != nullptr; }
    /// What stands in the way: a popup of this window. Null ends it. The view `window-blocker` comes and goes with it.
    void block(CWindow* popup);
    CWindow* blockedBy() const { return blockedBy_; }
    /// A popup is about to take the focus: keeps where it is, of the keys and of the system.
    void keepFocus();
    /// That popup is closed, or has not opened. Calls no handler.
    void popupLeaves() { isFocusDue_ = true; }
    /// Behind popupLeaves, unless another popup blocks: the focus goes back to where it was, if that still lives.
    void returnFocus();
    /// Shows the hint anew, where hints have been switched on or off.
    void refreshHint();
    /// The window that opened this one; null for the main window.
    CWindow* openerWindow() const { return openerWindow_; }
    void setOpenerWindow(CWindow* window) { openerWindow_ = window; }
    /// Whether a window is this one or was opened by it, directly or not.
    bool isOwnOrPopup(const CWindow* window) const;

    CSectorMap& sectorMap() override { return map_; }
    double now() const override { return now_; }
    CViewBase* keyFocusView() const override { return router_.keyFocus(); }
    void setKeyFocusView(CViewBase* view) override;
    void setHint(const CString& hint) override { takeHint(hint, false); }
    void setPlainHint(const CString& hint) override { takeHint(hint, true); }
    void setCursor(CCursorShape shape) override;
    CInputListener* input() override { return &router_; }
    CColorMixes* colorMixes() override;
    [[nodiscard]] CError* openPopup(CViewBaseCtlEvents& opener, const CString& templateName,
                                    CAttributeMap& params) override;

private:
    /// That of the product's main window.
    static constexpr double kDefaultFps = 40.0;

    struct CFailedView {
        const CSectorView* view;
        double loggedAt;
    };
    /// A call that handlers run in. Its end may destroy the window: declared before what else a function declares.
    class CBusy {
    public:
        explicit CBusy(CWindow& window);
        ~CBusy();
        CBusy(const CBusy&) = delete;
        CBusy& operator=(const CBusy&) = delete;
        bool isAlive() const { return watch_.isAlive(); }

    private:
        CWindow& window_;
        CWindowSharedData& shared_;
        const CObjectWatch watch_;
        const CObjectWatch sharedWatch_;
    };

    // From the system.
    void onPaint(const CIntRect& dirty) override;
    void onPointer(const CPointerEvent& event) override;
    bool onWheel(const CWheelEvent& event) override;
    bool onKey(const CKeyEvent& event) override;
    void onActivation(bool isActive, CWindowHandle other) override;
    void onKeysLost() override;
    void onCloseRequest() override;
    void onGone() override;
    // From the router.
    void capturePointer(bool isCaptured) override;
    void wantKeys(bool isWanted) override;
    void keyFocusGone() override;
    void wantEscape(bool isWanted) override;
    void inputFailed(CError* error) override;
    void viewGone(const CViewBaseCtlEvents& view) override;

    // Handlers of events and attributes.
    [[nodiscard]] CError* renderTick();
    bool isDrawnByIdle() const;
    [[nodiscard]] CError* cursorTick();
    [[nodiscard]] CError* deactivateTick();
    [[nodiscard]] CError* autoClickTick();
    [[nodiscard]] CError* updateWindowBounds();
    [[nodiscard]] CError* closeWindow();
    [[nodiscard]] CError* blockWindow(CAttributeMap& params);
    [[nodiscard]] CError* unblockWindow();
    [[nodiscard]] CError* popupResult(CAttributeMap& params);
    [[nodiscard]] CError* popupChanged(CAttributeMap& params);
    [[nodiscard]] CError* titleChanged();
    [[nodiscard]] CError* keyFocusViewChanged();

    [[nodiscard]] CError* findObjects();
    [[nodiscard]] CError* startTimer(const char* name, const char* rate, double fallback, const char* handler);
    [[nodiscard]] CError* beginEdit();
    [[nodiscard]] CError* createWindow(const CPopupPlace* place);
    [[nodiscard]] CError* requestBounds(const CPopupPlace* place, CWindowRequest& request);
    void report(const CSectorView* view, CError* error);
    [[nodiscard]] bool advance(const CBusy& busy);
    void draw();
    void showAgain(const CIntRect& rect);
    void show(int32_t column, int32_t row, const CIntRect& rect, const CSurface& surface, int32_t surfaceRow);
    void endPresenting();
    void leaveSystem();
    void exportLoad();
    /// The timers have missed a tick.
    bool isTickOverdue() const;
    /// False if a listener has destroyed this window.
    bool sendHere(const char* name, CAttributeMap& params);
    bool sendHere(const char* name);
    /// Follows the key focus of the views in the system and in what the windows share.
    void moveKeys(bool isWanted);
    void grabKeys();
    /// The window has closed on the press of a key that it has taken: the release goes to the window that is left.
    void passKeyOn(int32_t code);
    /// Escape takes back the press that is held in a window of the editor, and does nothing more until it is released.
    bool takeBackBy(const CKeyEvent& event);
    /// False if this window has none that takes input.
    bool workDefaultView();
    /// The following give false if this window is gone.
    bool sendActivation(bool isActive);
    /// What has been reported inside destructors.
    bool sendDue();
    bool isListened(const char* name) const;
    void pressBlocked();
    void showBlocker();
    void takeHint(const CString& hint, bool isPlain);
    void beMainWindow(bool isOpened);
    bool flag(const char* name) const;
    double number(const char* name, double fallback) const;

    CViewBaseCtlEvents* root_ = nullptr;
    CWindowSharedData* shared_ = nullptr;
    CSectorMap map_;
    CInputRouter router_;
    CPopups popups_;
    CFocusRing focusRing_;
    std::unique_ptr<CPlatformWindow> window_;
    CWindow* openerWindow_ = nullptr;
    CWindow* blockedBy_ = nullptr;
    double now_;
    double lastTick_;
    double lastIdle_ = -HUGE_VAL;  ///< when the host was idle last
    double lastStaticUpdate_;
    CDrawLoad load_;
    CArray<CFailedView, 4> failedViews_;
    CString hint_;
    bool isHintPlain_ = false;
    bool isPresented_ = false;
    bool isClosing_ = false;
    bool isEnding_ = false;
    bool isBlockerChanging_ = false;
    bool isDeactivated_ = false;
    bool wasActive_ = false;
    bool isElsewhere_ = false;                   ///< has lost the activation to what is none of its popups
    CViewBaseCtlEvents* focusBefore_ = nullptr;  ///< had the key focus when a popup opened
    bool hadFocus_ = false;                      ///< hasFocus_ at that time
    bool isFocusDue_ = false;
    bool hasFocus_ = false;
    bool hasKeyView_ = false;  ///< a view has key focus, by the last event that said so
    bool isActivationDue_ = false;
    bool isActivated_ = false;  ///< if that is due
    bool areKeysLost_ = false;
    bool isCaptureLost_ = false;
    bool isGrabbing_ = false;
    bool isEdited_ = false;       ///< a view that grabs keys has key focus
    bool isHolding_ = false;      ///< a press that Escape takes back
    bool isEscapeSpent_ = false;  ///< has taken a press back, and may still be down
    bool isAwaiting_ = false;     ///< the release of a key that a popup has taken
    int32_t busy_ = 0;
    CAttributeMap params_;
};

}  // namespace tarv
