#pragma once

#include <cstdint>

#include "CPluginLibrary.h"

namespace tarv::host {

/// Counts calls of the heap (to take, to resize, to give back a block) that come from the library on one thread.
/// On Windows it counts calls from the library's file. On Linux it counts those of the whole process, so nothing but
/// the library may work meanwhile. A sanitizer replaces the heap: there it counts nothing.
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
