#pragma once

#include "Core/CArray.h"

namespace tarv {

/// One section of a filter as a design delivers it: pure data, no audio state.
///
/// The kernels read one coefficient array: `numerators` followed by `denominators`.
/// | type     | filter                        | numerators                   | denominators    |
/// |----------|-------------------------------|------------------------------|-----------------|
/// | 0        | biquad                        | b1/b0, b2/b0                 | -a1/a0, -a2/a0  |
/// | 1 to 4   | low, high, band pass, notch   | as 0 (kernels ignore them)   | as 0            |
/// | 5 to 12  | one to four one-pole stages   | none                         | k               |
/// | 13 to 20 | half-band pair of order 2..16 | branch a                     | branch b        |
/// | 21       | FIR                           | the taps                     | none            |
/// | 22       | level-dependent biquad        | as 0, then p, q, r, t, k1, k2| as 0            |
/// | 23       | six first-order all-passes    | six coefficients in all over both lists      |
struct CFilterSection {
    static constexpr int32_t kFirType = 21;

    int32_t type = 0;
    double gain = 1.0;  ///< linear factor for the section's output; never folded into the coefficients
    int32_t flags = 0;  ///< reserved, 0
    CArray<double, 4> numerators;
    CArray<double, 4> denominators;
};

}  // namespace tarv
