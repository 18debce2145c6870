#pragma once

#include <cstdint>

#ifdef _WIN32
#include <windows.h>
// Behind windows.h, whose types it needs.
#include <psapi.h>
#else
#include <unistd.h>

#include <cstdio>
#endif

namespace tarv::host {

/// Bytes of this process's own memory.
inline int64_t processMemory() {
#ifdef _WIN32
    PROCESS_MEMORY_COUNTERS_EX counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters), sizeof counters);
    return static_cast<int64_t>(counters.PrivateUsage);
#else
    long pages = 0;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%*d %ld", &pages) != 1) {
            pages = 0;
        }
        std::fclose(file);
    }
    return static_cast<int64_t>(pages) * sysconf(_SC_PAGESIZE);
#endif
}

}  // namespace tarv::host
