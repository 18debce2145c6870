#pragma once

#include "Platform/File.h"

namespace tarv {

/// Registers a window class of this library whose windows do what the system does by default; a name that is taken
/// fails.
[[nodiscard]] CPlatformError registerWindowClass(const char16_t* name);
/// The last window of the class must be gone.
[[nodiscard]] CPlatformError unregisterWindowClass(const char16_t* name);

}  // namespace tarv
