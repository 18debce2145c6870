// The process's heap on Windows.

#include "Platform/ProcessHeap.h"

#include <windows.h>

#include <cstdlib>

namespace tarv {

void* processHeapAlloc(size_t size) {
    void* block = HeapAlloc(GetProcessHeap(), 0, size);
    if (!block) {
        std::abort();
    }
    return block;
}

void processHeapFree(void* block) {
    if (block) {
        HeapFree(GetProcessHeap(), 0, block);
    }
}

}  // namespace tarv
