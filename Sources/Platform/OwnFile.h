#pragma once

#include <string>

#include "Platform/File.h"

namespace tarv {

/// Path of the file that this code was loaded from, the library or else the program, with `/` between folders. It may
/// be relative where the loader was given a relative one. Any thread.
[[nodiscard]] CPlatformError ownFilePath(std::u16string& path);

}  // namespace tarv
