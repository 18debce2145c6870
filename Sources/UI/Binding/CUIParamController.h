#pragma once

#include "Core/CObject.h"
#include "UI/Binding/CParamGesture.h"

namespace tarv {

/// Scales or mirrors a list of values together (`ui:ui-param-controller`): the elements from that of the param at
/// `ui-param` on, as many as the param at `ui-param-count` says, without one all that the group stores. The paths are
/// followed when a drag begins. Events of a drag button: `start-scale`; `advance-scale` with `scale`, the pixels since
/// the press, and `is-shift`; `finish-scale`, also for a press that is cancelled; `take-back-scale` gives the values of
/// the start back and ends the drag. A value becomes axis + (value - axis) * 2^(pixels * drag-precision / 50), from the
/// values at the start, so that a drag back to its start gives them back to the bit; with the shift key a pixel counts
/// `shift-key-precision` of itself from where it was pressed. The axis is 0 with `is-axis-zero`, otherwise the mean of
/// the values. What a drag sets is written at the ticks of the child `update-timer`, a `core:timer`: one that is
/// declared, or one of `update-fps` a second (40 without one that is positive) while a drag lasts. A param that goes
/// ends the drag. `invert-scale` mirrors the values about 0. A drag and an inversion are one gesture each. The editor's
/// thread.
class CUIParamController : public CObject, private CParamGesture::COwner {
public:
    /// Fails without the object `ui.global-settings`, whose precisions count.
    [[nodiscard]] CError* init() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    bool isScaling() const { return gesture_.isActive(); }

private:
    [[nodiscard]] CError* startScale();
    [[nodiscard]] CError* advanceScale(CAttributeMap& params);
    [[nodiscard]] CError* finishScale();
    [[nodiscard]] CError* takeBackScale();
    [[nodiscard]] CError* invertScale();
    [[nodiscard]] CError* tick();
    void onGestureCancelled(CParamGesture& gesture) override;

    /// Reads the values to be changed; none without an active param.
    void readValues();
    /// Ends a scale that is under way and reads the values. False where there is nothing to change: `error` is the
    /// failure, or null. Handlers may destroy this object, which gives false, too.
    [[nodiscard]] bool beginAnew(CError*& error);
    /// Ends a scale whose param has gone; true while there is one.
    [[nodiscard]] bool hasParam();
    void scaleValues(double pixels);
    [[nodiscard]] CError* writeValues();
    [[nodiscard]] CError* startTimer();
    void stopTimer();

    CParamGesture gesture_{this};
    CUIParam* param_ = nullptr;  ///< while the gesture holds it
    bool isOfSetting_ = false;   ///< no bridge ends the gesture when the param goes
    bool isTimerOwn_ = false;
    CArray<double, 16> start_;
    CArray<double, 16> values_;
    double axis_ = 0.0;
    bool isPending_ = false;
    // The drag from where the shift key was pressed or released last, in pixels of the pointer, and those that count.
    double pixelsThere_ = 0.0;
    double countedThere_ = 0.0;
    double pixels_ = 0.0;
    double counted_ = 0.0;
    bool isShift_ = false;
};

}  // namespace tarv
