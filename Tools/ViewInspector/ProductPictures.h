#pragma once

#include <string>

namespace tarv {

/// Draws the product's windows to PNG files in a folder, which must be there: each window, the states of the main
/// window, and the main window in each palette at each scale. `only` draws those pictures alone whose name holds it.
/// Failure, or "".
std::string drawProduct(const std::string& folder, const std::string& only);

}  // namespace tarv
