#pragma once

#include "Audio/Context/COperation.h"

namespace tarv {

class CQPLEXContext;

/// Registers `msenc` and `msdec`; cheap if they are registered already.
void registerMidSideKernels(CQPLEXContext& context);

/// d = (b - a) x -0.5; out1 = b + d (mid); out2 = d (side). Operands: 0 out1, 1 out2, 2 a, 3 b. Writes 0 and 1.
void kernelMsEnc(COperation& operation);
/// out1 = a + b; out2 = a - b. Operands: 0 out1, 1 out2, 2 a, 3 b. Writes 0 and 1.
void kernelMsDec(COperation& operation);

}  // namespace tarv
