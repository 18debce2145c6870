#include "Tests/Audio/Parameters/CountedNew.h"

#include <cstdlib>
#include <new>

namespace {
thread_local uint64_t news = 0;
thread_local uint64_t deletes = 0;
}  // namespace

void* operator new(size_t size) {
    ++news;
    if (void* block = std::malloc(size ? size : 1)) {
        return block;
    }
    std::abort();
}

void operator delete(void* block) noexcept {
    ++deletes;
    std::free(block);
}

void operator delete(void* block, size_t) noexcept {
    operator delete(block);
}

namespace tarv {

CNewCounters newCounters() {
    return {news, deletes};
}

}  // namespace tarv
