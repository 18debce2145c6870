#pragma once

#include "Audio/Context/COperation.h"

namespace tarv {

/// Sets the ramp of a raised-cosine crossfade by recurrence. Operand 0: ramp, three 64-bit floats. `count`: the samples
/// of the whole fade (0 acts as 1). Immediate: where in the fade to start, from 0 for its beginning to 0.5 for its end.
void kernelXfadeInit(COperation& operation);
/// out = (0.5 - r0) x new + (0.5 + r0) x old; (r0, r1) = (r0 x r2 - r1, r0).
/// Operands: 0 destination, 1 ramp, 2 signal faded to, 3 signal faded from. Writes 0 and 1.
void kernelXfade(COperation& operation);
void kernelXfadeBatch(COperation* const* operations, int32_t count);

}  // namespace tarv
