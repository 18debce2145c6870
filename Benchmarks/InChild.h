#pragma once

#include <functional>
#include <vector>

namespace tarv::bench {

/// Runs `work` in a child process, for what is chosen once a process, and returns the numbers that it gives. Empty if
/// the child ends otherwise, or gives none. Only while no other thread runs.
std::vector<double> inChild(const std::function<std::vector<double>()>& work);

}  // namespace tarv::bench
