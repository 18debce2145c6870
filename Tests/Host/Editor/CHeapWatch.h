#pragma once

#include <cstdint>

#include "CPluginLibrary.h"

namespace tarv::host {

/// Counts calls of the heap (to take, to resize, to give back a block) that come from the library on one thread.
/// On Windows those of the library's own file alone, on Linux those of the whole process, which are as many where only
/// the library works. Under a sanitizer, which has a heap of its own, there are none to see.
class CHeapWatch {
public:
    /// Prepares a loaded library. Before its other threads start; once for a library suffices.
    static void prepare(const CPluginLibrary& library);
    static const bool kSeesHeap;

    /// Watches the calling thread while it lives. One at a time a thread.
    CHeapWatch();
    ~CHeapWatch();
    CHeapWatch(const CHeapWatch&) = delete;
    CHeapWatch& operator=(const CHeapWatch&) = delete;
    int64_t calls() const;
};

}  // namespace tarv::host
