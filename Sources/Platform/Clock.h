#pragma once

namespace tarv {

/// Seconds since an arbitrary start; never runs backwards. A test may drive it (Posix/ClockByHand.h). Any thread.
double clockSeconds();

}  // namespace tarv
