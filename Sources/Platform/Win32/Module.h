#pragma once

#include <windows.h>

namespace tarv {

/// The library or program that this code was linked into.
HINSTANCE ownModule();

}  // namespace tarv
