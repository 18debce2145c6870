#pragma once

#include <cstdint>

#include "Audio/Context/COperation.h"
#include "Audio/Kernels/HalfBandLayout.h"

namespace tarv {

/// A change of rate by two: zeros and a half-band filter behind each sample, or a half-band filter of which every
/// second sample is kept. Only what reaches the output is computed: going up every second input is zero, going down
/// branch A sees the even samples and branch B the odd ones. Going down, what the lines hold of the other samples stays
/// as it is, where the kernels go on with it: it reaches no output as long as every block is even (kAlwaysEven).
struct CHalfBandPlan {
    bool isUp;
    int32_t order;     ///< coefficients of a branch, 1 to kMostHalfBand
    int32_t count;     ///< samples at the lower rate
    int32_t channels;  ///< 1 to kMaxBatch
    const double* in[kMaxBatch];
    double* out[kMaxBatch];
    double* block[kMaxBatch];
    double gain[kMaxBatch];
};

}  // namespace tarv
