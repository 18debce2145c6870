#pragma once

#include "Audio/Context/COperation.h"

namespace tarv {

class CQPLEXContext;

/// Registers the kernels of an equaliser band in series, `fltbiqcommong`, `flthp1ag`, `metatube`, as a chain of the
/// context: each of the three recursions waits for its last result, so one loop computes one stage while another waits.
void registerBandChain(CQPLEXContext& context);

/// Runs `count` bands; see CChainFunction.
void runBandChain(COperation* const* const* stages, int32_t count);

}  // namespace tarv
