#pragma once

#include "Platform/Win32/CModuleClass.h"
#include "Platform/Win32/CWin32Window.h"

namespace tarv {

/// What all windows of this class share.
struct CWin32Window::CShared {
    CModuleClass windowClass{L"TarveloWindow", &CWin32Window::procedure, CS_DBLCLKS};
};

}  // namespace tarv
