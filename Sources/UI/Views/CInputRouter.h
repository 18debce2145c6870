#pragma once

#include "Platform/Keyboard.h"
#include "UI/Views/CDragInfo.h"
#include "UI/Views/CEventParams.h"
#include "UI/Views/CInputListener.h"
#include "UI/Views/CViewBaseCtlEvents.h"

namespace tarv {

class CViewWindow;

/// What the routing of input asks of the window that it serves, beside what views ask.
class CInputWindow {
public:
    /// All events of the pointer come here while true. Calls nothing back.
    virtual void capturePointer(bool isCaptured) = 0;
    /// The key focus is at another view than before, or none has it any more.
    virtual void wantKeys(bool isWanted) = 0;
    /// The view with key focus is being destroyed. As wantKeys, but no handler may run inside the destructor.
    virtual void keyFocusGone() { wantKeys(false); }
    /// A press is held that Escape takes back (CViewBaseCtlEvents::isTakenBack), or is so no longer.
    virtual void wantEscape(bool isWanted) { (void)isWanted; }
    /// A handler has failed; takes the error.
    virtual void inputFailed(CError* error) = 0;
    /// Its views get no input for now: what opened a window in its way may be a handler that the router has called.
    virtual bool isBlocked() const { return false; }
    /// A view is being destroyed.
    virtual void viewGone(const CViewBaseCtlEvents& view) { (void)view; }

protected:
    ~CInputWindow() = default;
};

/// Passes the input of one window to its views: hover, presses with their releases and cancels, wheel, keys, key focus
/// and the hint. Handlers may destroy views, this router and its window, may change the tree, and may run a message
/// loop that brings more input. What they disable or hide loses hover, press and focus once the running call is
/// through. A view that is destroyed gets nothing any more. In tablet mode (`globalSettings`) no view gets the state
/// `hover`, and a press goes where a finger means it (CTouchTarget); until the release, the pointer counts as far from
/// where it is as at the press. Thread: that of the window. Nothing is allocated by what
/// reaches no listener, but for the first events.
class CInputRouter final : public CInputListener, public CHeapObject {
public:
    /// Both outlive the router.
    CInputRouter(CViewWindow& window, CInputWindow& system);
    ~CInputRouter();
    CInputRouter(const CInputRouter&) = delete;
    CInputRouter& operator=(const CInputRouter&) = delete;

    /// The view that the walk of the focus begins at; null before the views go.
    void setRootView(CViewBaseCtlEvents* root) { root_ = root; }

    void pointer(const CPointerEvent& event);
    /// From the view under the pointer up to the root, until one takes it. False if none has. During a press it is
    /// ignored, with true.
    bool wheel(const CWheelEvent& event);
    /// True if the view with key focus has taken it, if a tab has moved the focus (without one: to the first view), or
    /// if it has worked the view. A release follows its press.
    bool key(const CKeyEvent& event);
    /// A key has been released in another window. True if its press was taken here.
    bool forgetKey(int32_t code);
    /// The release of a key is to be taken here: its press was taken elsewhere.
    void holdKey(int32_t code);
    /// Keys whose presses were taken, and whose releases are still to come.
    const CArray<int32_t, 8>& heldKeys() const { return takenKeys_; }
    /// Their releases will not come.
    void forgetKeys() { takenKeys_.clear(); }
    /// The user works by keys: since a tab has moved the focus, until a button of the pointer is pressed.
    bool isKeyMode() const { return isKeyMode_; }
    /// Sends `auto-click` to the view that is pressed with the left button, if the pointer is on it and `timeout`
    /// seconds have gone by since the press or the last one.
    void autoClick(double timeout);
    /// Looks what lies under a resting pointer after views have moved. Once a render tick.
    void update();
    /// Ends a press by a cancel, and hover: the window goes, or is deactivated.
    void cancel();

    /// Takes a held press back: its view gets mouseTakeBack and a cancel. The button stays down for nothing. False
    /// without one.
    bool takeBackPress();

    /// As Space does: a press and a release in the middle of a view. False for one that takes no input, and while a
    /// button is down.
    bool work(CViewBaseCtlEvents& view);

    /// A view that takes no input gets no focus. Null takes it from the view that has it.
    void setKeyFocus(CViewBaseCtlEvents* view);
    CViewBaseCtlEvents* keyFocus() const { return focus_; }
    CViewBaseCtlEvents* hovered() const { return hovered_; }

    void viewGoes(CViewBaseCtlEvents& view) override;
    void rootViewGoes() override;
    void viewsChanged() override;
    void hintChanged(CViewBaseCtlEvents& view) override;
    const CDragInfo& drag() const override { return drag_; }
    void follow(CHIDInfoUpdateHandler* handler) override { follower_ = drag_.isActive() ? handler : nullptr; }

private:
    using COperation = CError* (CViewBaseCtlEvents::*)(CAttributeMap&);
    class CCall;

    void move(const CHIDInfo& info);
    void press(const CPointerEvent& event, const CHIDInfo& info);
    void release(CPointerButton button, const CHIDInfo& info);
    void leave();
    void captureLost();
    void followTabletMode();
    // The following give false if this router has been destroyed.
    bool send(CViewBaseCtlEvents& view, COperation operation, CAttributeMap& params);
    bool sendPlain(CViewBaseCtlEvents& view, COperation operation);
    bool setState(CViewBaseCtlEvents& view, CInputState state, bool isSet);
    bool hoverAt(const CHIDInfo& info);
    bool setHover(CViewBaseCtlEvents* view);
    bool leaveView(CViewBaseCtlEvents& view);
    bool beginPress(CViewBaseCtlEvents& view, const CPointerEvent& event, const CHIDInfo& info);
    bool endPress(CViewBaseCtlEvents* view, CPointerButton button, bool isRelease);
    bool cancelPress(bool isButtonUp);
    bool changeFocus(CViewBaseCtlEvents* view);
    bool loseFocus(CViewBaseCtlEvents& view);
    bool setKeyMode(bool isOn);
    bool sendKey(CViewBaseCtlEvents& view, const CKeyEvent& event, bool& isTaken);
    bool workByKey(const CKeyEvent& event, bool isRepeated);
    void clickByKey(CViewBaseCtlEvents& view);
    bool isOfHint(const CViewBaseCtlEvents& cut, const CString& own) const;
    CString wholeHint(const CViewBaseCtlEvents& cut, const CString& own);
    bool refreshHint();
    bool check();
    void settle();
    bool takesInput(const CViewBaseCtlEvents& view) const;
    bool anotherIsHeld(const CPointerEvent& event) const;
    void noteButton(const CPointerEvent& event);
    CViewBaseCtlEvents* takerAt(const CHIDInfo& info);
    CViewBaseCtlEvents* pressedAt(CHIDInfo& info) const;
    CHIDInfo shifted(const CHIDInfo& info) const;
    bool isReleasedOn(const CViewBaseCtlEvents& view, const CHIDInfo& info) const;

    CViewWindow& window_;
    CInputWindow& system_;
    std::shared_ptr<CEventParamPool> pool_;
    CViewBaseCtlEvents* root_ = nullptr;
    CCall* calls_ = nullptr;

    CHIDInfo last_;
    bool isInside_ = false;
    bool needsCheck_ = false;
    bool isTablet_ = false;
    CViewBaseCtlEvents* hovered_ = nullptr;
    CViewBaseCtlEvents* entering_ = nullptr;  ///< to be hovered once the former one has been left
    uint32_t hoverSerial_ = 0;
    bool isLeaving_ = false;

    CDragInfo drag_;
    int32_t shiftX_ = 0;  ///< from the pointer to the point that counts, while a press is held
    int32_t shiftY_ = 0;
    CHIDInfoUpdateHandler* follower_ = nullptr;
    CViewBaseCtlEvents* pressing_ = nullptr;  ///< to get a press once the focus has moved
    uint32_t pressSerial_ = 0;
    bool isEnding_ = false;  ///< between the end of a press and its event
    double pressedAt_ = 0.0;
    bool isLeftDown_ = false;
    bool isRightDown_ = false;

    CViewBaseCtlEvents* focus_ = nullptr;
    CViewBaseCtlEvents* focusing_ = nullptr;  ///< to get the focus once the former one has lost it
    uint32_t focusSerial_ = 0;
    CArray<int32_t, 8> takenKeys_;
    bool isKeyMode_ = false;

    CViewBaseCtlEvents* hintHit_ = nullptr;
    CViewBaseCtlEvents* hintView_ = nullptr;
    /// The text that is shown only in part and stands in the hint; the view is only compared.
    struct CHintCut {
        const CViewBaseCtlEvents* view = nullptr;
        CViewBaseCtlEvents::CShortened text;
        CString own;
    };
    CHintCut hintCut_;
    CString hint_;
    bool isHintPlain_ = false;
    inline static const CString kNoHint;
};

}  // namespace tarv
