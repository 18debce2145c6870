#pragma once

#include <cstdint>

namespace tarv {

/// Section types 0 to 23; CFilterSection documents each.
constexpr int32_t kSectionTypeCount = 24;
constexpr int32_t kSectionTypeFir = 21;

/// The kernels of one filter section type; -1 where there is none.
struct CSectionKernels {
    int32_t init;              ///< operands: new state block, coefficients
    int32_t update;            ///< operands: new state block, coefficients, old state block
    int32_t run;               ///< operands: destination, state block, source
    int32_t runGain;           ///< the same; the immediate multiplies the output
    int32_t stateSize;         ///< 64-bit floats of a state block
    int32_t coefficientCount;  ///< 64-bit floats that init and update read: numerators, then denominators
};

}  // namespace tarv
