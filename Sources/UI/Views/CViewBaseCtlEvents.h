#pragma once

#include "Core/CString.h"
#include "UI/Views/CViewBase.h"
#include "UI/Views/CViewReading.h"

namespace tarv {

/// The states that input sets on a view. Focus: the view with key focus, while the user works by keys.
enum class CInputState : uint8_t { Hover, Pushed, Focus };

/// A view that takes input. The router of the window (CInputRouter) decides which view gets what, and calls the virtual
/// operations below, each named after its event. Their parameters are those of the event: `actual-x` and `actual-y` in
/// pixels of the window, `is-alt`, `is-ctrl`, `is-shift`, and what the event adds. Thread: that of the window.
class CViewBaseCtlEvents : public CViewBase {
public:
    ~CViewBaseCtlEvents() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    /// Reads the flags below and the hint from the attributes of the same names; a change of one counts at once.
    [[nodiscard]] CError* init() override;

    /// Each may destroy this view. A failure is logged by the window, and the input goes on. Here, each passes its
    /// event on by inputEvent.
    [[nodiscard]] virtual CError* mouseEnter(CAttributeMap& params);
    [[nodiscard]] virtual CError* mouseExit(CAttributeMap& params);
    /// `button`, `is-button-l`, `is-button-r`. While a press is held, the view that took it gets all moves.
    [[nodiscard]] virtual CError* mouseMove(CAttributeMap& params);
    /// `is-double-click`. Each press is followed by one release or one cancel, unless the view is destroyed before.
    [[nodiscard]] virtual CError* mousePress(CAttributeMap& params);
    [[nodiscard]] virtual CError* mousePressR(CAttributeMap& params);
    [[nodiscard]] virtual CError* mouseRelease(CAttributeMap& params);
    [[nodiscard]] virtual CError* mouseReleaseR(CAttributeMap& params);
    [[nodiscard]] virtual CError* mouseCancel(CAttributeMap& params);
    [[nodiscard]] virtual CError* mouseCancelR(CAttributeMap& params);
    /// The user takes the press back by Escape: what it has changed becomes what it was. Its cancel follows.
    [[nodiscard]] virtual CError* mouseTakeBack(CAttributeMap& params);
    /// A press of this view changes something before its release: the window sees to it that it gets an Escape. Those
    /// that grab the keys, or stand in a window that has them, need not say so.
    virtual bool isTakenBack() const { return false; }
    /// `delta` in notches, up is positive. Goes on to the parent unless setHandled was called.
    [[nodiscard]] virtual CError* mouseWheel(CAttributeMap& params);
    /// `keycode`, `is-tab`, and `characters`, what the key types. Unless setHandled was called, a tab moves the focus,
    /// and while the user works by keys Space and Enter press and release the view and Escape takes the focus from it;
    /// any other key goes on to the host.
    [[nodiscard]] virtual CError* keyPress(CAttributeMap& params);
    [[nodiscard]] virtual CError* keyRelease(CAttributeMap& params);
    [[nodiscard]] virtual CError* focusLost(CAttributeMap& params);
    /// The hint is about to be shown: a view whose hint changes with the pointer sets it here.
    [[nodiscard]] virtual CError* hintUpdate(CAttributeMap& params);
    /// The press is still held: repeated at the rate of the window, with the position in the view as `actual-x` and
    /// `actual-y`.
    [[nodiscard]] virtual CError* autoClick(CAttributeMap& params);

    /// Sets or unsets the state `hover`, `pushed` or `focus`; called before the event that goes with it. Here, nothing
    /// happens.
    [[nodiscard]] virtual CError* setInputState(CInputState state, bool isSet);

    /// Hover and presses climb to the nearest input view: one that overrides a mouse operation, has a command on a
    /// mouse event, or is focusable. Classes and views of the first two kinds override this; here, it is isFocusable.
    virtual bool isInputView() const { return isFocusable_; }

    /// With key focus it gets all keys before the host does, also where the host's window has the keyboard: a field
    /// that is edited, a list. Others get the keys that the system sends to a window with focus.
    virtual bool grabsKeys() const { return false; }

    /// The view that a ring is drawn around while this one has key focus and the user works by keys. Null for a view
    /// that shows the focus by itself.
    virtual CViewBaseCtlEvents* focusView() { return this; }

    /// What the view is to a reader for the blind: the attribute `role` (CViewReader::roleNamed); without it, a
    /// focusable view is a button, unless its class says what it is.
    virtual CViewRole role() const;
    /// What it is called: the attribute `readable-name`, otherwise its `title`, that of its child `label`, or its hint,
    /// or that of an ancestor. A class whose title is its value leaves the titles out.
    virtual CString readableName() const;
    /// What it holds; here, nothing.
    virtual CString readableValue() const { return {}; }

    /// `is-click-through`; without it, `is-child-click-through` of the nearest ancestor that has it.
    bool isClickThrough() const;
    bool isFocusable() const { return isFocusable_; }
    /// `is-intercepting`: takes what is aimed at views below it.
    bool isIntercepting() const { return isIntercepting_; }
    /// `is-intercepting-allow-childs`: as isIntercepting, but input views below it get theirs.
    bool isInterceptingAllowChilds() const { return isInterceptingAllowChilds_; }
    /// `is-disabled` of this view or an ancestor, or one that is inactive: takes no input.
    bool isDisabled() const;
    const CString& hint() const { return getAttrString("hint"); }
    /// The hint was set plain: it has no marks.
    bool isHintPlain() const;
    /// A text of the view that it shows only in part.
    struct CShortened {
        int32_t paragraph = -1;  ///< -1: all is shown
        int32_t serial = 0;      ///< of the text
    };
    /// Of the text under the pointer; here, all is shown. Allocates nothing.
    virtual CShortened shortened() const { return {}; }
    /// Without marks.
    virtual CString wholeText(int32_t) const { return {}; }
    /// isDisabled may be another one, for this view or through an ancestor. Overrides call their base's.
    virtual void disabledChanged();
    /// The parent where it takes input too, or null.
    CViewBaseCtlEvents* parentInput() const { return parentInput_; }

    /// Marks the wheel or the key as taken, so that neither goes on to a parent or to the host.
    static void setHandled(CAttributeMap& params);
    static bool isHandled(const CAttributeMap& params);

    /// An event that is no operation arrives at this view; goes the way of the others.
    [[nodiscard]] CError* passEvent(const CString& name, CAttributeMap& params) { return inputEvent(name, params); }
    /// Of a root view, called by its window at each render tick, when the clock of the window is set: what moves by
    /// time goes on, then all rectangles are brought up to date. Here, nothing happens.
    [[nodiscard]] virtual CError* advanceViews() { return nullptr; }
    /// The second half of it: gives the views of this tree their places, and marks what they draw anew. Sends events;
    /// handlers may destroy this view.
    [[nodiscard]] virtual CError* placeViews() { return nullptr; }

    /// Opens or closes a popup; see CViewWindow::openPopup. Without a window nothing happens. The event `popup-toggle`
    /// does so with the template that its parameter `popup-template`, or this view's attribute of that name, names.
    [[nodiscard]] CError* openPopup(const CString& templateName, CAttributeMap& params);

protected:
    /// What every operation above ends in: sends the event `name` of this object to its listeners. A class with
    /// commands runs those of the event first.
    [[nodiscard]] virtual CError* inputEvent(const CString& name, CAttributeMap& params);
    /// Disables the view beside its attribute: for a class whose value is not there.
    void setInactive(bool isInactive);
    /// Ends what input holds of this view: to be called first in the destructors of classes whose children must still
    /// be there. A root view's window cancels a press that is held; then the views below are destroyed.
    void endInput();

private:
    [[nodiscard]] CError* readClickThrough();
    [[nodiscard]] CError* readChildClickThrough();
    [[nodiscard]] CError* readFocusable();
    [[nodiscard]] CError* readIntercepting();
    [[nodiscard]] CError* readInterceptingAllowChilds();
    [[nodiscard]] CError* readDisabled();
    [[nodiscard]] CError* readHint();
    [[nodiscard]] CError* popupToggle(CAttributeMap& params);
    bool childrenAreClickThrough() const;
    void setDisabledFlag(bool& flag, bool isSet);

protected:
    /// `readable-name`, otherwise the nearest hint.
    CString nameWithoutTitle() const;

private:
    enum class CInherited : uint8_t { None, No, Yes };
    CInherited inherited(const char* attribute) const;

    CViewBaseCtlEvents* parentInput_ = nullptr;
    CInherited clickThrough_ = CInherited::None;
    CInherited childClickThrough_ = CInherited::None;
    bool isFocusable_ = false;
    bool isIntercepting_ = false;
    bool isInterceptingAllowChilds_ = false;
    bool isDisabled_ = false;
    bool isInactive_ = false;
};

}  // namespace tarv
