#pragma once

#include "Audio/Context/COperation.h"

namespace tarv {

class CQPLEXContext;

/// Registers `metatube`, `metatubei` and `metatubec`; cheap if they are registered already.
void registerTubeKernels(CQPLEXContext& context);

/// The sample loop. Operands: 0 destination, 1 CTubeBlock, 2 signal to shape, 3 feed signal. Writes 0 and 1.
void kernelMetaTube(COperation& operation);
/// Designs the block's computed fields. Operand 0: CTubeBlock. Immediate: the sample rate in Hz.
void kernelMetaTubeInit(COperation& operation);
/// Clears the feed state. Operand 0: CTubeBlock.
void kernelMetaTubeClear(COperation& operation);

}  // namespace tarv
