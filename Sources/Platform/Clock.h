#pragma once

namespace tarv {

/// Seconds from a start of its own; never runs backwards. A test may drive it (Posix/ClockByHand.h). Any thread.
double clockSeconds();

}  // namespace tarv
