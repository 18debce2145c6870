#include "UI/Binding/CMinMax.h"

#include <algorithm>
#include <cmath>

#include "UI/Binding/CUIParam.h"

namespace tarv {

namespace {

/// One length of the axis beyond each bound, in parts of half of it.
constexpr double kReach = 3.0;

double bend(double part, double power) {
    return power == 1.0 ? part : std::copysign(std::pow(std::fabs(part), power), part);
}

double finite(double number, double fallback) {
    return std::isfinite(number) ? number : fallback;
}

}  // namespace

CError* CMinMax::initClass(CClassDescriptor& descriptor) {
    for (const char* name : {"min", "max", "is-log", "scale-power"}) {
        descriptor.addHandler<&CMinMax::readMapping>(name);
    }
    return nullptr;
}

CError* CMinMax::init() {
    TARV_TRY(CObject::init());
    return readMapping();
}

CError* CMinMax::readMapping() {
    const double first = finite(getAttrReal("min"), 0.0);
    const double last = finite(getAttrReal("max"), 0.0);
    const double given = finite(getAttrReal("scale-power"), 1.0);
    const double power = given > 0.0 ? given : 1.0;
    const bool isLog = getAttrBool("is-log") && first > 0.0 && last > 0.0;
    if (first == first_ && last == last_ && power == power_ && isLog == isLog_) {
        return nullptr;
    }
    first_ = first;
    last_ = last;
    power_ = power;
    isLog_ = isLog;
    evenMiddle_ = (toEven(first) + toEven(last)) / 2.0;
    evenHalf_ = (toEven(last) - toEven(first)) / 2.0;
    CAttributeMap none;
    return state() == CObjectState::Finished ? sendEvent(kUpdateEvent, none, false) : nullptr;
}

CError* CMinMax::onParamChanged(CUIParam& param) {
    static const CString kMin("ui-param-min");
    const bool isMin = param.name() == kMin;
    return setAttribute(isMin ? "min" : "max", CAttributeValue::fromReal(param.getValue()));
}

double CMinMax::toEven(double value) const {
    return isLog_ ? std::log(value) : value;
}

double CMinMax::position(double value) const {
    if (isEmpty()) {
        return 0.0;
    }
    // A value that has no logarithm stands beyond all that have one.
    const double even = isLog_ && value <= 0.0 ? -HUGE_VAL : toEven(value);
    const double part = bend((even - evenMiddle_) / evenHalf_, 1.0 / power_);
    return (std::clamp(std::isnan(part) ? 0.0 : part, -kReach, kReach) + 1.0) / 2.0;
}

double CMinMax::value(double position) const {
    // The bounds exactly, since rounding would leave them.
    if (isEmpty() || position == 0.0) {
        return first_;
    }
    if (position == 1.0) {
        return last_;
    }
    const double even = evenMiddle_ + bend(2.0 * position - 1.0, power_) * evenHalf_;
    return isLog_ ? std::exp(even) : even;
}

double CMinMax::clamp(double value) const {
    return std::clamp(value, lowest(), highest());
}

}  // namespace tarv
