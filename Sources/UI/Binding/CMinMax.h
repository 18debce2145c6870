#pragma once

#include "Core/CObject.h"
#include "UI/Binding/CUIParamUpdateHandler.h"

namespace tarv {

/// The range of an axis and its mapping (`ui:min-max`), which a surface and the rulers beside it share: `min` stands at
/// position 0.0, `max` at 1.0, in the unit that a person reads (dB, Hz, %). Children `ui-param-min` and `ui-param-max`
/// of the class `ui:ui-param` set the bounds while they are active. A `min` above `max` turns the axis around.
/// `is-log` makes the axis logarithmic where both bounds are positive. `scale-power` p (1.0 without one that is
/// positive) stretches the middle for p above 1: a value at the part u of the range, from -1 to 1 about its middle,
/// stands at sign(u) |u|^(1/p). Sends `min-max-update` when the mapping becomes another one. The editor's thread.
class CMinMax : public CObject, public CUIParamUpdateHandler {
public:
    static constexpr const char* kUpdateEvent = "min-max-update";

    [[nodiscard]] CError* init() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    /// `min` and `max` as they are given: `first` may be the larger one.
    double first() const { return first_; }
    double last() const { return last_; }
    double lowest() const { return first_ < last_ ? first_ : last_; }
    double highest() const { return first_ < last_ ? last_ : first_; }
    bool isLog() const { return isLog_; }
    /// A range without a length has all values at 0.0.
    bool isEmpty() const { return first_ == last_; }

    /// Part of the axis at which a value stands. It goes on beyond the bounds, by the axis's length at most, so that a
    /// drag may begin there.
    double position(double value) const;
    /// The value at a position, also beyond 0.0 to 1.0.
    double value(double position) const;
    /// The nearest value within the range.
    double clamp(double value) const;

    [[nodiscard]] CError* onParamChanged(CUIParam& param) override;

private:
    [[nodiscard]] CError* readMapping();
    /// The axis on which the range is divided evenly: the value, or its logarithm.
    double toEven(double value) const;

    double first_ = 0.0;
    double last_ = 0.0;
    double power_ = 1.0;
    double evenMiddle_ = 0.0;
    double evenHalf_ = 0.0;
    bool isLog_ = false;
};

}  // namespace tarv
