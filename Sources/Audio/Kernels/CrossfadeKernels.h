#pragma once

#include "Audio/Context/COperation.h"

namespace tarv {

/// What the ramp of a fade begins with.
struct CRampStart {
    static constexpr int32_t kBytes = 3 * static_cast<int32_t>(sizeof(double));

    double numbers[3] = {};
};
/// As kernelXfadeInit writes it: `length` is its count, `place` its immediate.
CRampStart rampStart(int32_t length, double place);
/// Sets the ramp of a raised-cosine crossfade by recurrence. Operand 0: ramp, three 64-bit floats. `count`: the samples
/// of the whole fade (0 acts as 1). Immediate: where in the fade to start, from 0 for its beginning to 0.5 for its end.
void kernelXfadeInit(COperation& operation);
/// out = (0.5 - r0) x new + (0.5 + r0) x old; (r0, r1) = (r0 x r2 - r1, r0).
/// Operands: 0 destination, 1 ramp, 2 signal faded to, 3 signal faded from. Writes 0 and 1.
void kernelXfade(COperation& operation);
void kernelXfadeBatch(COperation* const* operations, int32_t count);

}  // namespace tarv
