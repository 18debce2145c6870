#pragma once

#include "Audio/Context/COperation.h"

namespace tarv {

class CQPLEXContext;

/// Registers `convacquire`, `convmult` and `convmultadd`.
void registerConvolutionKernels(CQPLEXContext& context);

/// Starts to use the coefficient set that was posted last. Operand 0: a buffer that holds a CConvolution*; it counts as
/// written, so that the operation waits for the products of the former set.
void kernelConvolutionAcquire(COperation& operation);
/// out = spectrum x the set's partition of the number in the immediate; 0 where the set has none. Operands:
/// 0 destination, 1 a buffer that holds a CConvolution*, 2 spectrum. `count`: numbers of a spectrum.
void kernelConvolutionMultiply(COperation& operation);
/// Adds the same to the destination. Operands are those of kernelConvolutionMultiply.
void kernelConvolutionMultiplyAdd(COperation& operation);

}  // namespace tarv
