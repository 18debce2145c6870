#pragma once

#include <cstdint>

namespace tarv {

/// Widens `frames` samples of a host. What is not finite becomes 0: it would stay in a recursion for ever. The ranges
/// do not overlap.
void widen(double* target, const float* source, int32_t frames);
void widen(double* target, const double* source, int32_t frames);

/// Rounds `frames` samples to the host's format; false if it can't hold all of them. The ranges do not overlap.
bool round(float* target, const double* source, int32_t frames);
bool round(double* target, const double* source, int32_t frames);

/// Whether all `frames` samples are finite.
bool areFinite(const double* source, int32_t frames);

}  // namespace tarv
