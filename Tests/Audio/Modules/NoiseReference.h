#pragma once

#include <cstdint>
#include <vector>

namespace tarv {

/// The first samples of the anti-denormal noise: a square wave of 1e-11 whose sign is bit 23 of a congruential
/// generator that starts at 0.
inline std::vector<double> antiDenormalNoise(int32_t count) {
    std::vector<double> noise;
    uint32_t seed = 0;
    for (int32_t i = 0; i < count; ++i) {
        noise.push_back((seed >> 23 & 1) * 2e-11 - 1e-11);
        seed = seed * 30013 + 30011;
    }
    return noise;
}

}  // namespace tarv
