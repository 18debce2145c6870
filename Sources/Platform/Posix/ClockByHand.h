#pragma once

namespace tarv {

/// From now on clockSeconds() gives what is set here, until released.
void setClockByHand(double seconds);
void releaseClock();

}  // namespace tarv
