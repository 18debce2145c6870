#pragma once

#include <cstdint>

#ifdef _WIN32
#include <windows.h>
#else
#include <malloc.h>
#endif

namespace tarv::host {

/// Bytes that this process has allocated and not freed, over all of its heaps.
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
#else
    const struct mallinfo2 info = mallinfo2();
    bytes = static_cast<int64_t>(info.uordblks + info.hblkhd);
#endif
    return bytes;
}

}  // namespace tarv::host
