// The backend of windows that is in use.

#include "Platform/WindowSystem.h"

namespace tarv {

namespace {

CWindowSystem* chosen = nullptr;

}  // namespace

CWindowSystem* windowSystem() {
    return chosen ? chosen : systemWindows();
}

void setWindowSystem(CWindowSystem* system) {
    chosen = system;
}

}  // namespace tarv
