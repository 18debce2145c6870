// Thread ids of Windows.

#include "Platform/ThreadId.h"

#include <windows.h>

namespace tarv {

uint64_t currentThreadId() {
    return GetCurrentThreadId();
}

}  // namespace tarv
