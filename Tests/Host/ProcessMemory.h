#pragma once

#include <cstddef>
#include <cstdint>

#ifdef _WIN32
#include <windows.h>
#elif defined(TARV_SANITIZED)
// Of the sanitizers' runtime; not every compiler has its header.
extern "C" size_t __sanitizer_get_current_allocated_bytes();
#else
#include <malloc.h>
#endif

namespace tarv::host {

/// Bytes that this process has allocated and not freed, over all of its heaps. What a pool keeps for its next blocks
/// counts, except in a sanitizer build, where each block comes from the system's heap.
inline int64_t processMemory() {
    int64_t bytes = 0;
#ifdef _WIN32
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(64, heaps);
    for (DWORD i = 0; i < count && i < 64; ++i) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heaps[i]);
        while (HeapWalk(heaps[i], &entry)) {
            bytes += entry.wFlags & PROCESS_HEAP_ENTRY_BUSY ? static_cast<int64_t>(entry.cbData) : 0;
        }
        HeapUnlock(heaps[i]);
    }
#elif defined(TARV_SANITIZED)
    bytes = static_cast<int64_t>(__sanitizer_get_current_allocated_bytes());
#else
    const struct mallinfo2 info = mallinfo2();
    bytes = static_cast<int64_t>(info.uordblks + info.hblkhd);
#endif
    return bytes;
}

}  // namespace tarv::host
