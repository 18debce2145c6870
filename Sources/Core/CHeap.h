#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

namespace tarv {

/// Figures of the pool heap since the library was loaded; what a test of the audio thread counts.
struct CHeapCounters {
    uint64_t allocations;  ///< calls of alloc, and of realloc that moved
    uint64_t frees;
    uint64_t platformBytes;      ///< bytes taken from the platform heap and not given back; 0 in sanitizer builds
    uint64_t peakPlatformBytes;  ///< the most that they were since resetPeak
};

/// The pool heap: 255 size classes of 16 bytes, each with its own lock; larger blocks come from the platform heap.
/// Any thread. Sanitizer builds pass every block to the system's heap, so that the tools see it.
class CHeap {
public:
    /// A block of at least `size` bytes, 8-aligned. Size 0 gives a valid block. Never null.
    static void* alloc(size_t size);
    /// Grows or shrinks a block, keeping the smaller of both contents. Null acts as alloc.
    static void* realloc(void* block, size_t size);
    /// Null does nothing.
    static void free(void* block);
    static CHeapCounters counters();
    /// What is held now becomes the peak.
    static void resetPeak();
};

/// Standard allocator over the pool heap, for the maps and vectors of long-lived objects.
template <class T>
struct CHeapAllocator {
    using value_type = T;
    CHeapAllocator() = default;
    template <class U>
    CHeapAllocator(const CHeapAllocator<U>&) {}
    T* allocate(size_t n) { return static_cast<T*>(CHeap::alloc(n * sizeof(T))); }
    void deallocate(T* p, size_t) { CHeap::free(p); }
    template <class U>
    bool operator==(const CHeapAllocator<U>&) const {
        return true;
    }
};

/// Base of everything that is made with `new` in the product: takes its memory from the pool heap.
class CHeapObject {
public:
    static void* operator new(size_t size) { return CHeap::alloc(size); }
    static void operator delete(void* p) { CHeap::free(p); }
    static void* operator new(size_t, void* p) { return p; }
    static void operator delete(void*, void*) {}
};

}  // namespace tarv
