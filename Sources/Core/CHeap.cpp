#include "Core/CHeap.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>

#include "Platform/Lock.h"
#include "Platform/ProcessHeap.h"

namespace tarv {

namespace {

std::atomic<uint64_t> allocationCount{0};
std::atomic<uint64_t> freeCount{0};
std::atomic<uint64_t> platformByteCount{0};
std::atomic<uint64_t> platformBytePeak{0};

void count(std::atomic<uint64_t>& counter) {
    counter.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace

#ifdef TARV_SANITIZED

void* CHeap::alloc(size_t size) {
    count(allocationCount);
    return processHeapAlloc(size);
}

void* CHeap::realloc(void* block, size_t size) {
    count(allocationCount);
    void* moved = std::realloc(block, std::max<size_t>(size, 1));
    if (!moved) {
        std::abort();
    }
    return moved;
}

void CHeap::free(void* block) {
    if (block) {
        count(freeCount);
        processHeapFree(block);
    }
}

#else

namespace {

constexpr size_t kClassStep = 16;
constexpr size_t kClassCount = 255;
constexpr uint8_t kLargeClass = 255;
constexpr size_t kChunkExtra = 17;
constexpr size_t kMaxChunkCount = 128;
// Before the payload of a large block: the size and the class byte.
constexpr size_t kLargeHeader = 9;
constexpr size_t kLargePattern = 8;

struct CFreeBlock {
    CFreeBlock* next;
};

struct CChunk {
    CChunk* next;
};

size_t classOf(size_t size) {
    return size == 0 ? 0 : (size + kClassStep - 1) / kClassStep - 1;
}

size_t payloadOfClass(size_t index) {
    return kClassStep * (index + 1);
}

uint8_t& classByte(void* payload) {
    return static_cast<uint8_t*>(payload)[-1];
}

void countPlatformBytes(uint64_t bytes) {
    const uint64_t now = platformByteCount.fetch_add(bytes, std::memory_order_relaxed) + bytes;
    uint64_t peak = platformBytePeak.load(std::memory_order_relaxed);
    while (peak < now && !platformBytePeak.compare_exchange_weak(peak, now, std::memory_order_relaxed)) {
    }
}

class CPool {
public:
    void* pop(size_t index) {
        CLockScope scope(lock_);
        if (!freeList_) {
            refill(index);
        }
        CFreeBlock* block = freeList_;
        freeList_ = block->next;
        return block;
    }

    void push(void* payload) {
        CLockScope scope(lock_);
        freeList_ = new (payload) CFreeBlock{freeList_};
    }

private:
    void refill(size_t index) {
        const size_t stride = payloadOfClass(index) + 8;
        const size_t bytes = stride * chunkCount_ + kChunkExtra;
        auto* memory = static_cast<uint8_t*>(processHeapAlloc(bytes));
        countPlatformBytes(bytes);
        chunks_ = new (memory) CChunk{chunks_};
        uint8_t* payload = memory + sizeof(CChunk) + 8;
        for (size_t i = 0; i < chunkCount_; ++i, payload += stride) {
            classByte(payload) = static_cast<uint8_t>(index);
            freeList_ = new (payload) CFreeBlock{freeList_};
        }
        if (chunkCount_ < kMaxChunkCount) {
            chunkCount_ *= 2;
        }
    }

    CLock lock_;
    CFreeBlock* freeList_ = nullptr;
    CChunk* chunks_ = nullptr;
    size_t chunkCount_ = 1;
};

struct CPools {
    CPool pools[kClassCount];
};

// Never destroyed: objects with static lifetime are freed after main has ended.
CPool& pool(size_t index) {
    alignas(CPools) static unsigned char storage[sizeof(CPools)];
    static CPools* pools = new (storage) CPools;
    return pools->pools[index];
}

void* allocLarge(size_t size) {
    const size_t bytes = size + kLargeHeader + kLargePattern;
    auto* start = static_cast<uint8_t*>(processHeapAlloc(bytes));
    countPlatformBytes(bytes);
    for (size_t i = 0; i < kLargePattern; ++i) {
        start[i] = static_cast<uint8_t>(i);
    }
    // The first 8-aligned place that leaves one pattern byte and the header in front of it.
    const auto first = reinterpret_cast<uintptr_t>(start) + kLargeHeader + 1;
    uint8_t* payload = start + kLargeHeader + 1 + (8 - first % 8) % 8;
    const uint64_t stored = size;
    std::memcpy(payload - kLargeHeader, &stored, sizeof(stored));
    classByte(payload) = kLargeClass;
    return payload;
}

size_t largeSize(const void* payload) {
    uint64_t stored;
    std::memcpy(&stored, static_cast<const uint8_t*>(payload) - kLargeHeader, sizeof(stored));
    return stored;
}

void freeLarge(void* payload) {
    auto* bytes = static_cast<uint8_t*>(payload);
    platformByteCount.fetch_sub(largeSize(payload) + kLargeHeader + kLargePattern, std::memory_order_relaxed);
    const size_t patternIndex = bytes[-10];
    processHeapFree(bytes - kLargeHeader - 1 - patternIndex);
}

}  // namespace

void* CHeap::alloc(size_t size) {
    count(allocationCount);
    const size_t index = classOf(size);
    return index < kClassCount ? pool(index).pop(index) : allocLarge(size);
}

void* CHeap::realloc(void* block, size_t size) {
    if (!block) {
        return alloc(size);
    }
    const uint8_t index = classByte(block);
    const size_t held = index == kLargeClass ? largeSize(block) : payloadOfClass(index);
    if (index == kLargeClass ? held == size : classOf(size) == index) {
        return block;
    }
    void* moved = alloc(size);
    std::memcpy(moved, block, std::min(held, size));
    free(block);
    return moved;
}

void CHeap::free(void* block) {
    if (!block) {
        return;
    }
    count(freeCount);
    const uint8_t index = classByte(block);
    if (index == kLargeClass) {
        freeLarge(block);
    } else {
        pool(index).push(block);
    }
}

#endif

CHeapCounters CHeap::counters() {
    return {allocationCount.load(std::memory_order_relaxed), freeCount.load(std::memory_order_relaxed),
            platformByteCount.load(std::memory_order_relaxed), platformBytePeak.load(std::memory_order_relaxed)};
}

void CHeap::resetPeak() {
    platformBytePeak.store(platformByteCount.load(std::memory_order_relaxed), std::memory_order_relaxed);
}

}  // namespace tarv
