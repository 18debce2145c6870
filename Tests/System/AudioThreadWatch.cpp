#include "Tests/System/AudioThreadWatch.h"

#include <cstddef>
#include <ostream>

#include "Core/CHeap.h"
#include "Platform/Lock.h"

namespace {

thread_local bool isWatching = false;
thread_local const tarv::CLock* allowedLock = nullptr;
thread_local uint64_t allocationCount = 0;
thread_local uint64_t freeCount = 0;
thread_local uint64_t lockCount = 0;
thread_local uint64_t allowedLockCount = 0;

void noteLock(const void* lock) {
    if (isWatching) {
        ++(lock == allowedLock ? allowedLockCount : lockCount);
    }
}

}  // namespace

// The names that the linker gives to a wrapped function and to the one behind it.
extern "C" {

void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
void* __real_realloc(void* block, size_t size);
void __real_free(void* block);
void __real__ZN4tarv5CLock5enterEv(void* lock);
bool __real__ZN4tarv5CLock8tryEnterEv(void* lock);

void* __wrap_malloc(size_t size) {
    allocationCount += isWatching ? 1 : 0;
    return __real_malloc(size);
}

void* __wrap_calloc(size_t count, size_t size) {
    allocationCount += isWatching ? 1 : 0;
    return __real_calloc(count, size);
}

void* __wrap_realloc(void* block, size_t size) {
    allocationCount += isWatching ? 1 : 0;
    return __real_realloc(block, size);
}

void __wrap_free(void* block) {
    freeCount += isWatching && block != nullptr ? 1 : 0;
    __real_free(block);
}

void __wrap__ZN4tarv5CLock5enterEv(void* lock) {
    noteLock(lock);
    __real__ZN4tarv5CLock5enterEv(lock);
}

bool __wrap__ZN4tarv5CLock8tryEnterEv(void* lock) {
    noteLock(lock);
    return __real__ZN4tarv5CLock8tryEnterEv(lock);
}

}  // extern "C"

namespace tarv::engine {

std::ostream& operator<<(std::ostream& out, const CWatched& seen) {
    return out << seen.allocations << " allocations, " << seen.frees << " frees, of the pool " << seen.poolAllocations
               << " and " << seen.poolFrees << ", " << seen.locks << " locks";
}

CAudioThreadWatch::CAudioThreadWatch(const CLock* allowed)
    : poolAllocations_(CHeap::counters().allocations), poolFrees_(CHeap::counters().frees) {
    allowedLock = allowed;
    allocationCount = freeCount = lockCount = allowedLockCount = 0;
    isWatching = true;
}

CAudioThreadWatch::~CAudioThreadWatch() {
    isWatching = false;
}

CWatched CAudioThreadWatch::seen() const {
    const CHeapCounters pool = CHeap::counters();
    return {allocationCount,         freeCount, pool.allocations - poolAllocations_,
            pool.frees - poolFrees_, lockCount, allowedLockCount};
}

}  // namespace tarv::engine
