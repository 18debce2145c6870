#pragma once

#include "Audio/Context/COperation.h"

namespace tarv {

class CQPLEXContext;

/// Registers `denorm` and `denormn`; cheap if they are registered already.
void registerNoiseKernels(CQPLEXContext& context);

/// Adds a random square wave of 1e-11. Operands: 0 destination, 1 seed (one 32-bit word), 2 source. Writes 0 and 1.
void kernelDenorm(COperation& operation);
/// The same with a host's samples as source: 32-bit or 64-bit floats, of which those that are not finite count as 0.
template <class Sample>
void kernelDenormHost(COperation& operation);
/// The noise alone. Operands: 0 destination, 1 seed (one 32-bit word). Writes 0 and 1.
void kernelDenormN(COperation& operation);

}  // namespace tarv
