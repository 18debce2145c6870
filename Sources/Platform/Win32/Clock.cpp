// The clock of Windows.

#include "Platform/Clock.h"

#include <windows.h>

namespace tarv {

double clockSeconds() {
    LARGE_INTEGER ticks;
    LARGE_INTEGER perSecond;
    QueryPerformanceCounter(&ticks);
    QueryPerformanceFrequency(&perSecond);
    return static_cast<double>(ticks.QuadPart) / static_cast<double>(perSecond.QuadPart);
}

}  // namespace tarv
