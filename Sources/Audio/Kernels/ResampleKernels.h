#pragma once

#include "Audio/Context/COperation.h"

namespace tarv {

class CQPLEXContext;

/// Registers `interp2`, `decim2` and `decim2s`; cheap if they are registered already.
void registerResampleKernels(CQPLEXContext& context);

/// out[2i] = 2 x in[i], out[2i + 1] = 0. `count` is that of the source; the destination holds twice as many.
/// Operands: 0 destination, 1 source.
void kernelInterp2(COperation& operation);
/// The immediate of a decimation that keeps the even samples in every block to come, since all have an even count: what
/// is computed in front of it for the odd ones never reaches an output. The kernel does not read it.
constexpr double kAlwaysEven = 1.0;
/// out[i] = in[2i]. `count` is that of the destination. Immediate: kAlwaysEven, or 0. Operands: 0 destination, 1
/// source.
void kernelDecim2(COperation& operation);
/// out[i] = in[2i + 1]. `count` is that of the destination. Operands: 0 destination, 1 source.
void kernelDecim2s(COperation& operation);

}  // namespace tarv
