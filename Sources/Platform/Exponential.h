#pragma once

namespace tarv {

/// e to the power of `x`: what std::exp gives, to the bit. Depends on `x` alone: not on the control word of the x87,
/// which differs from thread to thread in a host on Windows, and from which its C library takes the precision of the
/// steps. Any thread.
double exponential(double x);

}  // namespace tarv
