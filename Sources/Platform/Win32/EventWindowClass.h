#pragma once

#include "Platform/Win32/CModuleClass.h"

namespace tarv {

/// The class of the hidden windows that posts arrive at. Any thread.
CModuleClass& eventWindowClass();

}  // namespace tarv
