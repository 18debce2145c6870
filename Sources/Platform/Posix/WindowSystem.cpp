// The windows of POSIX systems: none yet.

#include "Platform/WindowSystem.h"

namespace tarv {

CWindowSystem* systemWindows() {
    return nullptr;
}

}  // namespace tarv
