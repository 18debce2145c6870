#pragma once

#include <cstdint>
#include <iosfwd>

namespace tarv {
class CLock;
}

namespace tarv::engine {

/// What a thread did between begin() and end(): the linker leads the program's calls of the C heap and of CLock through
/// counters, and the C++ heap uses the C heap.
struct CWatched {
    uint64_t allocations;  ///< malloc, calloc, realloc
    uint64_t frees;
    uint64_t poolAllocations;  ///< of the pool heap, of every thread
    uint64_t poolFrees;
    uint64_t locks;         ///< other than the allowed one and those that the pool heap takes
    uint64_t allowedLocks;  ///< entries of the allowed one
    uint64_t whileHeld;     ///< calls of the C heap and entries of other locks while the allowed one was held

    bool isQuiet() const { return allocations + frees + poolAllocations + poolFrees + locks == 0; }
};
std::ostream& operator<<(std::ostream& out, const CWatched& seen);

/// Watches the calling thread from its construction on. One at a time a thread.
class CAudioThreadWatch {
public:
    explicit CAudioThreadWatch(const CLock* allowed);
    ~CAudioThreadWatch();
    CAudioThreadWatch(const CAudioThreadWatch&) = delete;
    CAudioThreadWatch& operator=(const CAudioThreadWatch&) = delete;
    CWatched seen() const;

private:
    uint64_t poolAllocations_;
    uint64_t poolFrees_;
};

}  // namespace tarv::engine
