#pragma once

#include <cstdint>

namespace tarv {

class CUIParam;

/// How far a wheel, or an arrow key, moves a value: one rule for all controls. A control holds one as a member. A
/// number moves by `mouse-wheel-precision` of the unit that a person reads, a frequency by that part of a semitone, one
/// of several states by one. The editor's thread.
class CWheelSteps {
public:
    /// The value that many notches on, not clamped. `precision`: 1.0, less where a key makes it finer. `step` above
    /// 0.0: a notch is that much instead. Steps and states move by whole notches; the parts of notches in one direction
    /// on one element, counted from that of the param, add up.
    double turned(const CUIParam& param, int32_t element, double value, double notches, double precision,
                  double step = 0.0);

private:
    double wholeNotches(const CUIParam& param, int32_t element, double notches);

    double rest_ = 0.0;
    const CUIParam* param_ = nullptr;  ///< that of the rest; compared alone
    int32_t element_ = 0;
};

}  // namespace tarv
