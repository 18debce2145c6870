#pragma once

#include <cstdint>

namespace tarv {

/// Where things lie in the state block of a half-band pair with N coefficients a branch, in 64-bit floats: those of
/// branch A, those of B, what B gave for the sample before, the index, then the lines of each branch. The line in front
/// of a coefficient holds samples n-2 and n-1 at (index + 2) & 3 and (index + 1) & 3.
constexpr int32_t kHalfBandLine = 4;
constexpr int32_t heldOfHalfBand(int32_t n) {
    return 2 * n;
}
constexpr int32_t indexOfHalfBand(int32_t n) {
    return 2 * n + 1;
}
constexpr int32_t linesOfHalfBand(int32_t n, int32_t branch) {
    return 2 * n + 2 + branch * (n + 1) * kHalfBandLine;
}
constexpr int32_t sizeOfHalfBand(int32_t n) {
    return linesOfHalfBand(n, 2);
}

/// The most coefficients of a branch.
constexpr int32_t kMostHalfBand = 8;

}  // namespace tarv
