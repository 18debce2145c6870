#pragma once

#include "UI/Placement/CViewFormula.h"

namespace tarv {

/// Runs a program over a stack of floats, with the cells and constants of its network. True, and the result, if it ends
/// with exactly one value. Allocates nothing.
bool runViewFormula(const CViewAreaNet& net, const uint16_t* tokens, int32_t count, float& result);

}  // namespace tarv
