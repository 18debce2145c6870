#pragma once

#include <cstdint>

#include "Benchmarks/BuildMeasures.h"

namespace tarv::bench {

/// Plays random scripts to an instance of each build, in a child process with this set of instructions: layouts, rates,
/// lengths of blocks, buffers for both directions, samples that are none, parameters that move at any block, pauses.
/// Returns how many of `count` scripts give the same bits in both, or -1 if a build does not load.
int32_t countSameSounds(const CBuilds& builds, const char* set, int32_t count);

}  // namespace tarv::bench
