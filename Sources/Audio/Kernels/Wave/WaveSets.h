#pragma once

#include "Audio/Kernels/Wave/CHalfBandPlan.h"
#include "Audio/Kernels/Wave/CWavePlan.h"

namespace tarv {

/// Runs a wave of `count` samples, 0 and up, whose plan was made for vectors of 2, 4 and 8 lanes. The wider ones only
/// where CInstructionSet says so.
void runWaveSse2(const CWavePlan& plan);
void runWaveAvx2(const CWavePlan& plan);
void runWaveAvx512(const CWavePlan& plan);

/// Runs a change of rate of `count` samples, 0 and up. Going up, all that the lines hold of odd samples is zero.
void runHalfBandsSse2(const CHalfBandPlan& plan);
void runHalfBandsAvx2(const CHalfBandPlan& plan);
void runHalfBandsAvx512(const CHalfBandPlan& plan);

}  // namespace tarv
