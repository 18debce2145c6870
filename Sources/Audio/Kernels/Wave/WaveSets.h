#pragma once

#include "Audio/Kernels/Wave/CHalfBandPlan.h"
#include "Audio/Kernels/Wave/CWavePlan.h"

namespace tarv {

// Loops and what they call in their file follow the calling convention of System V, on Windows, too. By that of Windows
// each function would save up to ten vector registers for its caller, and GCC leaves spilled vectors of 32 and 64 bytes
// unaligned in functions that have Windows' unwind tables. The price: nothing unwinds through a loop, so a host that
// catches faults by frames does not catch one in it.

/// Runs a wave of `count` samples, 0 and up, whose plan was made for vectors of 2, 4 and 8 lanes. The wider ones only
/// where CInstructionSet says so.
[[gnu::sysv_abi]] void runWaveSse2(const CWavePlan& plan);
[[gnu::sysv_abi]] void runWaveAvx2(const CWavePlan& plan);
[[gnu::sysv_abi]] void runWaveAvx512(const CWavePlan& plan);
using CRunWave = decltype(&runWaveSse2);

/// Runs a change of rate of `count` samples, 0 and up. Going up, all that the lines hold of odd samples is zero.
[[gnu::sysv_abi]] void runHalfBandsSse2(const CHalfBandPlan& plan);
[[gnu::sysv_abi]] void runHalfBandsAvx2(const CHalfBandPlan& plan);
[[gnu::sysv_abi]] void runHalfBandsAvx512(const CHalfBandPlan& plan);
using CRunHalfBands = decltype(&runHalfBandsSse2);

}  // namespace tarv
