// The heap as a library of Linux calls it: by names that the program has first.

#include "Tests/Host/Editor/CHeapWatch.h"

#include <cstddef>

namespace {

thread_local bool isWatching = false;
thread_local int64_t callCount = 0;

[[maybe_unused]] void note() {
    callCount += isWatching ? 1 : 0;
}

}  // namespace

#ifndef TARV_SANITIZED
extern "C" {

// What the C library calls its own.
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void __libc_free(void* block);

void* malloc(size_t size) {
    note();
    return __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
    note();
    return __libc_calloc(count, size);
}

void* realloc(void* block, size_t size) {
    note();
    return __libc_realloc(block, size);
}

void free(void* block) {
    if (block) {
        note();
    }
    __libc_free(block);
}

}  // extern "C"
#endif

namespace tarv::host {

#ifdef TARV_SANITIZED
const bool CHeapWatch::kSeesHeap = false;
#else
const bool CHeapWatch::kSeesHeap = true;
#endif

void CHeapWatch::prepare(const CPluginLibrary&) {}

CHeapWatch::CHeapWatch() {
    callCount = 0;
    isWatching = true;
}

CHeapWatch::~CHeapWatch() {
    isWatching = false;
}

int64_t CHeapWatch::calls() const {
    return callCount;
}

}  // namespace tarv::host
