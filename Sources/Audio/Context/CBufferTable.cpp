#include "Audio/Context/CBufferTable.h"

#include <algorithm>
#include <iterator>

#include "Audio/Context/CRecordedRun.h"
#include "Core/CHeap.h"

namespace tarv {

namespace {

constexpr uintptr_t kPage = 4096;
constexpr uintptr_t kLine = 64;
// Signals that start at equal places of their pages collide in the cache when several are walked side by side.
// An odd number of lines gives 64 neighbours in the table 64 different places.
constexpr uintptr_t kStagger = 9 * kLine;

/// Room for the place of a signal within its page.
constexpr size_t marginOf(int32_t sizeClass) {
    return CBufferTable::isState(sizeClass) ? 0 : kPage + kLine;
}

}  // namespace

// Entries are written when they get a storage: a context takes a part of the table's memory.
CBufferTable::CBufferTable() {
    clearEntry(kBufferCount - 1);
    std::fill(std::begin(freeBuffers_), std::end(freeBuffers_), kNoBuffer);
}

CBufferTable::~CBufferTable() {
    for (int32_t i = 0; i < storageCount_; ++i) {
        CHeap::free(buffers_[i].allocation());
    }
}

void CBufferTable::clearEntry(int32_t index) {
    buffers_[index] = {.state = 0,
                       .data = nullptr,
                       .nextFree = kNoBuffer,
                       .firstWaiter = -1,
                       .lastWaiter = -1,
                       .dataOffset = 0,
                       .sizeClass = 0,
                       .lastWrite = 0};
}

void CBufferTable::allocateStorage(int32_t index, int32_t sizeClass) {
    CContextBuffer& buffer = buffers_[index];
    const int32_t capacity = CContextBuffer::kSmallestStorage << sizeClass;
    const size_t bytes = static_cast<size_t>(capacity) + marginOf(sizeClass);
    storageBytes_ += bytes;
    if (buffer.data) {
        storageBytes_ -= static_cast<size_t>(buffer.capacity()) + marginOf(buffer.sizeClass);
        CHeap::free(buffer.allocation());
    }
    auto* const allocation = static_cast<uint8_t*>(CHeap::alloc(bytes));
    uintptr_t offset = 0;
    if (marginOf(sizeClass) > 0) {
        const uintptr_t wanted = static_cast<uintptr_t>(index) * kStagger;
        offset = (wanted - reinterpret_cast<uintptr_t>(allocation)) & (kPage - 1);
    }
    buffer.data = allocation + offset;
    buffer.dataOffset = static_cast<uint16_t>(offset);
    buffer.sizeClass = static_cast<uint8_t>(sizeClass);
    ++storageGrowths_;
}

inline int32_t CBufferTable::popFree(int32_t sizeClass) {
    const int32_t index = freeBuffers_[sizeClass];
    if (index != kNoBuffer) {
        freeBuffers_[sizeClass] = buffers_[index].nextFree;
    }
    return index;
}

int32_t CBufferTable::takeUnused(int32_t sizeClass) {
    if (storageCount_ == kUsableBuffers) {
        return kNoBuffer;
    }
    const int32_t index = storageCount_++;
    clearEntry(index);
    allocateStorage(index, sizeClass);
    return index;
}

int32_t CBufferTable::popLarger(int32_t sizeClass) {
    int32_t index = kNoBuffer;
    for (int32_t c = sizeClass; c < endOfKind(sizeClass) && index == kNoBuffer; ++c) {
        index = popFree(c);
    }
    return index;
}

/// A larger storage of the same kind serves before a new one is made; the other kind, or growth, only when the table
/// has no unused entry any more.
int32_t CBufferTable::takeFree(int32_t sizeClass) {
    int32_t index = popLarger(sizeClass);
    if (index == kNoBuffer) {
        index = takeUnused(sizeClass);
    }
    for (int32_t c = endOfKind(sizeClass); c < kSizeClassCount && index == kNoBuffer; ++c) {
        index = popFree(c);
    }
    for (int32_t c = sizeClass - 1; c >= 0 && index == kNoBuffer; --c) {
        index = popFree(c);
        if (index != kNoBuffer) {
            allocateStorage(index, sizeClass);
        }
    }
    return index;
}

CBufferHandle CBufferTable::takeLarger(int32_t sizeClass) {
    const int32_t index = popLarger(sizeClass);
    return index == kNoBuffer ? kNoBuffer : startUse(index);
}

CBufferHandle CBufferTable::takeAny(int32_t sizeClass) {
    const int32_t index = takeFree(sizeClass);
    return index == kNoBuffer ? kNoBuffer : startUse(index);
}

void CBufferTable::hold(CContextBuffer& buffer) {
    recording_->noteLastRead(buffer);
    int32_t& list = isState(buffer.sizeClass) ? heldStates_ : heldSignals_;
    buffer.nextFree = list;
    list = static_cast<int32_t>(&buffer - buffers_);
}

void CBufferTable::freeList(int32_t& list) {
    while (list != kNoBuffer) {
        const int32_t index = list;
        list = buffers_[index].nextFree;
        buffers_[index].nextFree = freeBuffers_[buffers_[index].sizeClass];
        freeBuffers_[buffers_[index].sizeClass] = index;
    }
}

void CBufferTable::reserve(int32_t count, int32_t bytes) {
    const int32_t sizeClass = sizeClassOf(bytes);
    int32_t free = 0;
    for (int32_t index = freeBuffers_[sizeClass]; index != kNoBuffer && free < count;
         index = buffers_[index].nextFree) {
        ++free;
    }
    for (; free < count; ++free) {
        const int32_t index = takeUnused(sizeClass);
        if (index == kNoBuffer) {
            return;
        }
        buffers_[index].nextFree = freeBuffers_[sizeClass];
        freeBuffers_[sizeClass] = index;
    }
}

}  // namespace tarv
