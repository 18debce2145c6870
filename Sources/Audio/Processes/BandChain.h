#pragma once

#include "Audio/Processes/COperation.h"

namespace tarv {

class CQPLEXContext;

/// Registers the kernels of an equaliser band in series, `fltbiqcommong`, `flthp1ag`, `metatube`, as a chain of the
/// context: each of the three recursions waits for its own last result, so in one loop they fill each other's gaps.
void registerBandChain(CQPLEXContext& context);

/// Runs `count` bands with the bits of one kernel after the other. `stages[s][c]` is stage s of channel c; all have
/// one sample count, and each stage reads what the one before it writes.
void runBandChain(COperation* const* const* stages, int32_t count);

}  // namespace tarv
