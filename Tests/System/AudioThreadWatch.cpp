#include "Tests/System/AudioThreadWatch.h"

#include <cstddef>
#include <ostream>

#include "Core/CHeap.h"
#include "Platform/Lock.h"

namespace {

thread_local bool isWatching = false;
thread_local bool isEntering = false;
thread_local const tarv::CLock* allowedLock = nullptr;
thread_local uint64_t allocationCount = 0;
thread_local uint64_t freeCount = 0;
thread_local uint64_t lockCount = 0;
thread_local uint64_t heapLockCount = 0;
thread_local uint64_t allowedLockCount = 0;
thread_local uint64_t whileHeldCount = 0;
thread_local int heldDepth = 0;
thread_local int heapDepth = 0;

void note(uint64_t& counter) {
    if (isWatching) {
        ++counter;
        whileHeldCount += heldDepth > 0 ? 1 : 0;
    }
}

void noteEntry(const void* lock) {
    if (lock != allowedLock) {
        note(heapDepth > 0 ? heapLockCount : lockCount);
    } else if (isWatching) {
        ++allowedLockCount;
        ++heldDepth;
    }
}

}  // namespace

// The names that the linker gives to a wrapped function and to the one behind it.
extern "C" {

void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
void* __real_realloc(void* block, size_t size);
void __real_free(void* block);
void* __real__ZN4tarv5CHeap5allocEm(size_t size);
void* __real__ZN4tarv5CHeap7reallocEPvm(void* block, size_t size);
void __real__ZN4tarv5CHeap4freeEPv(void* block);
void __real__ZN4tarv5CLock5enterEv(void* lock);
bool __real__ZN4tarv5CLock8tryEnterEv(void* lock);
void __real__ZN4tarv5CLock5leaveEv(void* lock);

void* __wrap_malloc(size_t size) {
    note(allocationCount);
    return __real_malloc(size);
}

void* __wrap_calloc(size_t count, size_t size) {
    note(allocationCount);
    return __real_calloc(count, size);
}

void* __wrap_realloc(void* block, size_t size) {
    note(allocationCount);
    return __real_realloc(block, size);
}

void __wrap_free(void* block) {
    if (block != nullptr) {
        note(freeCount);
    }
    __real_free(block);
}

void* __wrap__ZN4tarv5CHeap5allocEm(size_t size) {
    ++heapDepth;
    void* const block = __real__ZN4tarv5CHeap5allocEm(size);
    --heapDepth;
    return block;
}

void* __wrap__ZN4tarv5CHeap7reallocEPvm(void* block, size_t size) {
    ++heapDepth;
    void* const moved = __real__ZN4tarv5CHeap7reallocEPvm(block, size);
    --heapDepth;
    return moved;
}

void __wrap__ZN4tarv5CHeap4freeEPv(void* block) {
    ++heapDepth;
    __real__ZN4tarv5CHeap4freeEPv(block);
    --heapDepth;
}

void __wrap__ZN4tarv5CLock5enterEv(void* lock) {
    // Some linkers also wrap the call of tryEnter inside of enter: one entry counts once.
    isEntering = true;
    __real__ZN4tarv5CLock5enterEv(lock);
    isEntering = false;
    noteEntry(lock);
}

bool __wrap__ZN4tarv5CLock8tryEnterEv(void* lock) {
    if (!__real__ZN4tarv5CLock8tryEnterEv(lock)) {
        return false;
    }
    if (!isEntering) {
        noteEntry(lock);
    }
    return true;
}

void __wrap__ZN4tarv5CLock5leaveEv(void* lock) {
    heldDepth -= isWatching && lock == allowedLock && heldDepth > 0 ? 1 : 0;
    __real__ZN4tarv5CLock5leaveEv(lock);
}

}  // extern "C"

namespace tarv::engine {

std::ostream& operator<<(std::ostream& out, const CWatched& seen) {
    return out << seen.allocations << " allocations, " << seen.frees << " frees, of the pool " << seen.poolAllocations
               << " and " << seen.poolFrees << ", " << seen.locks << " locks, " << seen.whileHeld
               << " of the calls and locks while the allowed one was held";
}

CAudioThreadWatch::CAudioThreadWatch(const CLock* allowed)
    : poolAllocations_(CHeap::counters().allocations), poolFrees_(CHeap::counters().frees) {
    allowedLock = allowed;
    allocationCount = freeCount = lockCount = allowedLockCount = whileHeldCount = 0;
    heldDepth = 0;
    isWatching = true;
}

CAudioThreadWatch::~CAudioThreadWatch() {
    isWatching = false;
}

CWatched CAudioThreadWatch::seen() const {
    const CHeapCounters pool = CHeap::counters();
    return {allocationCount,  freeCount,     pool.allocations - poolAllocations_, pool.frees - poolFrees_, lockCount,
            allowedLockCount, whileHeldCount};
}

}  // namespace tarv::engine
