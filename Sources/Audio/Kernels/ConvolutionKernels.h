#pragma once

#include "Audio/Context/COperation.h"

namespace tarv {

class CQPLEXContext;

/// Registers `convacquire`, `convmult` and `convmultadd`.
void registerConvolutionKernels(CQPLEXContext& context);

/// Takes up the current coefficient set. Operand 0: a buffer that holds a CConvolution*; written, so that it waits for
/// the products of the set before.
void kernelConvolutionAcquire(COperation& operation);
/// out = spectrum x the set's partition of the number in the immediate; 0 where the set has none. Operands:
/// 0 destination, 1 a buffer that holds a CConvolution*, 2 spectrum. `count`: numbers of a spectrum.
void kernelConvolutionMultiply(COperation& operation);
/// The same added to the destination; operands as above.
void kernelConvolutionMultiplyAdd(COperation& operation);

}  // namespace tarv
