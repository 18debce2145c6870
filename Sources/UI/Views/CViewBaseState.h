#pragma once

#include "UI/Views/CNamedValues.h"
#include "UI/Views/CViewBaseCtlEvents.h"
#include "UI/Views/CViewColorSlot.h"
#include "UI/Views/CViewCommand.h"
#include "UI/Views/CViewMorph.h"
#include "UI/Views/CViewState.h"

namespace tarv {

/// How a change of state shows: by the morph that the state or the view declares, or at once.
enum class CStateChange : uint8_t { Morphed, AtOnce };

/// An event arrives at an object: a handler of that name is called, a view runs its commands, and the listeners of the
/// object get it. Any step may destroy the receiver, which ends it with success.
[[nodiscard]] CError* deliverEvent(CObject& receiver, const CString& name, CAttributeMap& params);

/// The states of a view, the overrides and the look that they give, and its commands. A state is a name; the state
/// objects below the view that have this name change the view while it is set, the later child winning. Times come from
/// the window's clock. Thread: that of the window.
class CViewBaseState : public CViewBaseCtlEvents {
public:
    ~CViewBaseState() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* childAdded(CObject* child) override;
    void removeChild(CObject* child) override;
    /// Applies the states that the attribute `state` declares.
    [[nodiscard]] CError* finishInit() override;

    /// Names separated by blanks, each by itself. One that is set (or unset) already does nothing. May destroy the
    /// view.
    [[nodiscard]] CError* setState(const CString& names, CStateChange change = CStateChange::Morphed);
    [[nodiscard]] CError* unsetState(const CString& names, CStateChange change = CStateChange::Morphed);
    [[nodiscard]] CError* toggleState(const CString& names, CStateChange change = CStateChange::Morphed);
    bool isStateSet(const CString& name) const { return active_.find(name) != active_.end(); }
    /// Sets a state that ends at the first render tick at or behind that many seconds, with the event `state-ready`.
    /// One that is set already gets the new end.
    [[nodiscard]] CError* setStateTimed(const CString& name, double duration);
    /// The same for the seconds of the view's `duration`, by default 0.5.
    [[nodiscard]] CError* setStateTimed(const CString& name);

    /// Names of the colour state, in the order of the state objects.
    const CArray<CString, 4>& colorStates() const { return colorStates_; }
    /// The range of images: that of the last state with one, otherwise the view's own.
    const CString& imageRange() const { return hasStateRange_ ? stateRange_ : getAttrString("image-set-range"); }
    bool isImageRangeOfState() const { return hasStateRange_; }
    const CArray<CViewColorSlot*, 2>& colorSlots() const { return slots_; }
    bool hasCommandOn(const CString& eventName) const;

    /// Of a root view: morphs and timed states of its views go on. The window calls it at each render tick, when its
    /// clock is set. Failures are logged; views, also this one, may be destroyed meanwhile.
    void runTimers();
    /// An event arrives: the commands of the event run, then the listeners get it.
    [[nodiscard]] CError* receiveEvent(const CString& name, CAttributeMap& params) { return inputEvent(name, params); }
    [[nodiscard]] CError* setInputState(CInputState state, bool isSet) override;
    /// Also a view with a command on an event of the mouse.
    bool isInputView() const override;
    /// True with a command on `mouse-take-back`.
    bool isTakenBack() const override;

    /// The look has changed: the view is drawn anew at the next render tick.
    virtual void requestRedraw() {}
    /// A colour slot has other attributes, or is gone.
    virtual void colorSlotsChanged() {}

protected:
    void prepareAttribute(const CString& name, CAttributeValue& value) override;
    [[nodiscard]] CError* inputEvent(const CString& name, CAttributeMap& params) override;
    /// The colour state or the range of images may be another one; `morphSeconds` is the time to change over.
    virtual void lookChanged(double morphSeconds) = 0;
    /// Called at each render tick while the view is in the timers; false: nothing of it moves.
    [[nodiscard]] virtual bool animate(double now) = 0;
    /// Joins the views that the render tick serves, until nothing moves.
    void startTimer();
    /// 0 without a window.
    double now() const;

private:
    struct CActive {
        double end = 0.0;
        bool isTimed = false;
        bool isWaiting = false;  ///< no clock yet: `end` counts from the first render tick
    };
    static constexpr int32_t kTracks = 3;

    [[nodiscard]] CError* attrState();
    [[nodiscard]] CError* changeState(const CString& name, bool isSet, CStateChange change);
    [[nodiscard]] CError* changeEach(const CString& names, CStateChange change, bool (*isSet)(bool wasSet));
    void activate(const CString& name);
    void activateTimed(const CString& name, double duration);
    bool hasStateObject(const CString& name) const;
    CString activeNames() const;
    double morphSecondsOf(const CString& name) const;
    double ownMorphSeconds() const;
    /// The following may end with this view destroyed.
    [[nodiscard]] CError* applyStates(double morphSeconds);
    [[nodiscard]] CError* applyOnce(double morphSeconds);
    [[nodiscard]] CError* restoreOthers(const CNamedValues<CString>& wanted, double morphSeconds);
    [[nodiscard]] CError* applyOverrides(const CNamedValues<CString>& wanted, double morphSeconds);
    [[nodiscard]] CError* changeAttribute(const CString& name, const CAttributeValue& value, double morphSeconds);
    [[nodiscard]] CError* writeAttribute(const CString& name, const CAttributeValue& value);
    [[nodiscard]] CError* timer(double now);
    [[nodiscard]] CError* stepTracks(double now);
    [[nodiscard]] CError* endStates(double now);
    void composeLook();
    CAttributeValue expandOverride(const CString& name, const CString& text);
    static int32_t trackOf(const CString& name);
    bool isMoving() const;
    void leaveTimers();

    CArray<CViewState*, 5> states_;
    CArray<CViewCommand*, 2> commands_;
    CArray<CViewColorSlot*, 2> slots_;
    CNamedValues<CActive> active_;
    CNamedValues<CString> wanted_;       ///< room for what applyOnce collects
    CNamedValues<CString> overrides_;    ///< texts of the states that are set, as written
    CNamedValues<CAttributeValue> own_;  ///< what the view has of these attributes without any state
    const CString* writing_ = nullptr;
    bool isApplying_ = false;
    bool isStale_ = false;
    CArray<CString, 4> colorStates_;
    CString stateRange_;
    bool hasStateRange_ = false;
    CViewMorphTrack tracks_[kTracks];
    bool isInTimers_ = false;
    CViewBaseState* timerRoot_ = nullptr;
    CArray<CViewBaseState*, 8> timers_;  ///< of a root view; null for one that has left
};

}  // namespace tarv
