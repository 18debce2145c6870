#pragma once

namespace tarv {

/// Delivers what waits for the windows of the calling thread, also what the handlers post to them meanwhile, and gives
/// the number delivered. Stands in for the message loop that a host runs.
int pumpEvents();

}  // namespace tarv
