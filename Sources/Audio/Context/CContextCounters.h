#pragma once

#include <cstdint>

namespace tarv {

/// What a context did and holds. For tests and for tools that look inside.
struct CContextCounters {
    uint64_t operations;  ///< issued
    uint64_t calls;       ///< kernel calls: a batch counts once
    uint64_t flushes;
    uint64_t forcedFlushes;   ///< of these, because a table was full
    uint64_t repeats;         ///< recorded runs that were run again; the other figures don't count what they did
    uint64_t rejected;        ///< operations that could not be issued
    uint64_t storageGrowths;  ///< allocations of buffer storage
    uint64_t storageBytes;
    int32_t buffersInUse;
    int32_t operationsWaiting;  ///< issued and not run yet
};

}  // namespace tarv
