// The process's heap on POSIX systems.

#include "Platform/ProcessHeap.h"

#include <cstdlib>

namespace tarv {

void* processHeapAlloc(size_t size) {
    void* block = std::malloc(size ? size : 1);
    if (!block) {
        std::abort();
    }
    return block;
}

void processHeapFree(void* block) {
    std::free(block);
}

}  // namespace tarv
