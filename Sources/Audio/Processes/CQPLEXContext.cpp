#include "Audio/Processes/CQPLEXContext.h"

#include <bit>
#include <cstring>

#include "Audio/Processes/CommonKernels.h"
#include "Audio/Processes/ConvolutionKernels.h"
#include "Audio/Processes/FilterKernels.h"
#include "Audio/Processes/FourierKernels.h"

namespace tarv {

namespace {

constexpr int32_t kWriterHolds = -1;
constexpr int32_t kNone = -1;
constexpr size_t kNameLength = 64;
constexpr int32_t kMaxBatch = 16;

constexpr int32_t kSmallestStorage = 64;
constexpr int32_t kLargestSmallClass = 4;  // up to 1 KiB: state blocks
constexpr uintptr_t kPage = 4096;
constexpr uintptr_t kLine = 64;
// Signals that start at equal places of their pages collide in the cache when several are walked side by side.
// An odd number of lines gives 64 neighbours in the table 64 different places.
constexpr uintptr_t kStagger = 9 * kLine;

int32_t sizeClassOf(int32_t bytes) {
    const auto size = static_cast<uint32_t>(bytes > kSmallestStorage ? bytes : kSmallestStorage);
    return std::bit_width(size - 1) - std::bit_width(static_cast<uint32_t>(kSmallestStorage - 1));
}

uint32_t hashOf(const char* name) {
    uint32_t hash = 5555;
    for (size_t i = 0; i < kNameLength && name[i]; ++i) {
        hash = hash * 33 + static_cast<uint8_t>(name[i]);
    }
    return hash & 0x3ff;
}

/// Operands of an operation that claim a buffer, and those of them that claim it for writing.
struct CClaims {
    uint8_t all;
    uint8_t writing;
};

/// A buffer named more than once is claimed once, by its first operand, for writing if any of its operands is written.
CClaims mergedClaims(const int32_t* indexes, int32_t operandCount, uint32_t writeMask) {
    uint32_t all = 0;
    uint32_t writing = 0;
    for (int32_t j = 0; j < operandCount; ++j) {
        int32_t first = 0;
        while (indexes[first] != indexes[j]) {
            ++first;
        }
        all |= 1u << first;
        writing |= ((writeMask >> j) & 1u) << first;
    }
    return {static_cast<uint8_t>(all), static_cast<uint8_t>(writing)};
}

}  // namespace

CQPLEXContext::CQPLEXContext() {
    for (int32_t i = 0; i < kBufferCount; ++i) {
        buffers_[i] = {nullptr, i + 1 < kBufferCount ? i + 1 : kNone, 0, 0, kNone, kNone, {nullptr, nullptr}, nullptr,
                       0};
    }
    for (int32_t i = 0; i < kOperationCount; ++i) {
        operations_[i].next = i + 1 < kOperationCount ? i + 1 : kNone;
    }
    for (int32_t i = 0; i < kWaiterCount; ++i) {
        waiters_[i].next = i + 1 < kWaiterCount ? i + 1 : kNone;
    }
    std::memset(hashHeads_, 0xff, sizeof(hashHeads_));
    std::memset(freeBuffers_, 0xff, sizeof(freeBuffers_));
    registerCommonKernels(*this, commonKernels_);
    registerFilterKernels(*this, sectionKernels_);
    registerFourierKernels(*this);
    registerConvolutionKernels(*this);
}

CQPLEXContext::~CQPLEXContext() {
    for (CBuffer& buffer : buffers_) {
        CHeap::free(buffer.allocation);
    }
}

int32_t CQPLEXContext::findHashed(const char* name, uint32_t hash) const {
    int32_t number = hashHeads_[hash];
    while (number != kNone && std::strncmp(kernels_[number].name, name, kNameLength) != 0) {
        number = kernels_[number].next;
    }
    return number;
}

int32_t CQPLEXContext::registerKernel(const char* name, CKernelFunction function, int32_t operandCount,
                                      uint32_t writeMask, uint64_t extra, CKernelBatchFunction batch) {
    const uint32_t hash = hashOf(name);
    const int32_t old = findHashed(name, hash);
    if (old != kNone) {
        const CKernel& k = kernels_[old];
        const bool isEqual = k.function == function && k.batch == batch && k.operandCount == operandCount &&
                             k.writeMask == writeMask && k.extra == extra;
        return isEqual ? old : kNone;
    }
    if (kernelCount_ == kKernelCount || operandCount < 1 || operandCount > kMaxOperands) {
        return kNone;
    }
    CKernel& k = kernels_[kernelCount_];
    std::strncpy(k.name, name, kNameLength);
    k.name[kNameLength] = 0;
    k.function = function;
    k.batch = batch;
    k.operandCount = operandCount;
    k.writeMask = writeMask;
    k.extra = extra;
    k.next = hashHeads_[hash];
    k.readyHead = kNone;
    k.readyTail = kNone;
    k.nextActive = kNone;
    hashHeads_[hash] = kernelCount_;
    return kernelCount_++;
}

int32_t CQPLEXContext::findKernel(const char* name) const {
    return findHashed(name, hashOf(name));
}

// Buffers

void CQPLEXContext::allocateStorage(int32_t index, int32_t sizeClass) {
    CBuffer& buffer = buffers_[index];
    const int32_t capacity = kSmallestStorage << sizeClass;
    const bool isSignal = sizeClass > kLargestSmallClass;
    const size_t bytes = static_cast<size_t>(capacity) + (isSignal ? kPage + kLine : 0);
    counters_.storageBytes += bytes;
    if (buffer.allocation) {
        const int32_t oldCapacity = buffer.capacity;
        const bool wasSignal = buffer.sizeClass > kLargestSmallClass;
        counters_.storageBytes -= static_cast<size_t>(oldCapacity) + (wasSignal ? kPage + kLine : 0);
        CHeap::free(buffer.allocation);
    }
    buffer.allocation = CHeap::alloc(bytes);
    buffer.data = static_cast<uint8_t*>(buffer.allocation);
    if (isSignal) {
        const auto base = reinterpret_cast<uintptr_t>(buffer.allocation);
        const uintptr_t wanted = static_cast<uintptr_t>(index) * kStagger;
        buffer.data += (wanted - base) & (kPage - 1);
    }
    buffer.capacity = capacity;
    buffer.sizeClass = sizeClass;
    ++counters_.storageGrowths;
}

inline int32_t CQPLEXContext::popFree(int32_t sizeClass) {
    const int32_t index = freeBuffers_[sizeClass];
    if (index != kNone) {
        freeBuffers_[sizeClass] = buffers_[index].refs;
    }
    return index;
}

int32_t CQPLEXContext::takeUnused(int32_t sizeClass) {
    const int32_t index = unusedBuffers_;
    if (index != kNone) {
        unusedBuffers_ = buffers_[index].refs;
        allocateStorage(index, sizeClass);
    }
    return index;
}

/// A larger storage of the same kind serves before a new one is made; the other kind, or growth, only when the table
/// has no unused entry any more.
int32_t CQPLEXContext::takeFree(int32_t sizeClass) {
    const int32_t kindEnd = sizeClass <= kLargestSmallClass ? kLargestSmallClass + 1 : kSizeClassCount;
    for (int32_t c = sizeClass; c < kindEnd; ++c) {
        if (freeBuffers_[c] != kNone) {
            return popFree(c);
        }
    }
    int32_t index = takeUnused(sizeClass);
    for (int32_t c = kindEnd; c < kSizeClassCount && index == kNone; ++c) {
        index = popFree(c);
    }
    for (int32_t c = sizeClass - 1; c >= 0 && index == kNone; --c) {
        index = popFree(c);
        if (index != kNone) {
            allocateStorage(index, sizeClass);
        }
    }
    return index;
}

CBufferHandle CQPLEXContext::takeBuffer(int32_t bytes) {
    const int32_t sizeClass = sizeClassOf(bytes);
    int32_t index = popFree(sizeClass);
    if (index == kNone) [[unlikely]] {
        index = takeFree(sizeClass);
    }
    if (index == kNone) [[unlikely]] {
        ++counters_.forcedFlushes;
        flush();
        index = takeFree(sizeClass);
        if (index == kNone) {
            return kNoBuffer;
        }
    }
    buffers_[index].refs = 1;
    buffers_[index].notify[0] = nullptr;
    ++counters_.buffersInUse;
    return index;
}

void CQPLEXContext::addReference(CBufferHandle handle) {
    if (handle != kNoBuffer) {
        ++buffers_[indexOf(handle)].refs;
    }
}

inline void CQPLEXContext::dropReference(CBuffer& buffer, int32_t index) {
    if (--buffer.refs == 0) {
        buffer.refs = freeBuffers_[buffer.sizeClass];
        freeBuffers_[buffer.sizeClass] = index;
        --counters_.buffersInUse;
    }
}

void CQPLEXContext::releaseReference(CBufferHandle handle) {
    if (handle != kNoBuffer) {
        dropReference(buffers_[indexOf(handle)], indexOf(handle));
    }
}

void CQPLEXContext::notifyOnWrite(CBufferHandle handle, uint8_t* first, uint8_t* second) {
    CBuffer& buffer = buffers_[indexOf(handle)];
    buffer.notify[0] = first;
    buffer.notify[1] = second;
}

void CQPLEXContext::reserveBuffers(int32_t count, int32_t bytes) {
    const int32_t sizeClass = sizeClassOf(bytes);
    int32_t free = 0;
    for (int32_t index = freeBuffers_[sizeClass]; index != kNone && free < count; index = buffers_[index].refs) {
        ++free;
    }
    for (; free < count; ++free) {
        const int32_t index = takeUnused(sizeClass);
        if (index == kNone) {
            return;
        }
        buffers_[index].refs = freeBuffers_[sizeClass];
        freeBuffers_[sizeClass] = index;
    }
}

// Operations

template <int32_t N>
void CQPLEXContext::issueOperands(int32_t kernelNumber, int32_t count, double immediate, const CBufferHandle* handles) {
    bool isIssuable = kernelNumber >= 0 && kernelNumber < kernelCount_ && count >= 0;
    bool isRepeated = false;
    int32_t indexes[N];
#pragma GCC unroll 8
    for (int32_t j = 0; j < N; ++j) {
        isIssuable = isIssuable && handles[j] != kNoBuffer;
        indexes[j] = indexOf(handles[j]);
#pragma GCC unroll 8
        for (int32_t k = 0; k < j; ++k) {
            isRepeated |= indexes[k] == indexes[j];
        }
    }
    if (!isIssuable || kernels_[kernelNumber].operandCount != N) {
        ++counters_.rejected;
        return;
    }
    if (freeOperations_ == kNone) {
        ++counters_.forcedFlushes;
        flush();
    }
    COperation& operation = operations_[freeOperations_];
    freeOperations_ = operation.next;
    operation.immediate = immediate;
    operation.count = count;
    operation.pending = 0;
    operation.kernelNumber = kernelNumber;
    const uint32_t writeMask = kernels_[kernelNumber].writeMask;
    CClaims claims = {static_cast<uint8_t>((1u << N) - 1), static_cast<uint8_t>(writeMask)};
    if (isRepeated) [[unlikely]] {
        claims = mergedClaims(indexes, N, writeMask);
    }
    operation.claims = claims.all;
    operation.writeClaims = claims.writing;
#pragma GCC unroll 8
    for (int32_t j = 0; j < N; ++j) {
        CBuffer& buffer = buffers_[indexes[j]];
        operation.handles[j] = handles[j];
        operation.pointers[j] = buffer.data + offsetOf(handles[j]);
        ++buffer.refs;
        const bool isWrite = ((claims.writing >> j) & 1) != 0;
        const int32_t claim = buffer.claim;
        if (!((claims.all >> j) & 1)) [[unlikely]] {
            continue;
        }
        if (buffer.waitHead != kNone || claim == kWriterHolds || (isWrite && claim != 0)) [[unlikely]] {
            waitFor(buffer, operation, isWrite);
        } else {
            buffer.claim = isWrite ? kWriterHolds : claim + 1;
        }
    }
    ++counters_.operations;
    ++counters_.operationsWaiting;
    if (operation.pending == 0) {
        makeReady(operation);
    }
}

template void CQPLEXContext::issueOperands<1>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<2>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<3>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<4>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<5>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<6>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<7>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<8>(int32_t, int32_t, double, const CBufferHandle*);

void CQPLEXContext::waitFor(CBuffer& buffer, COperation& operation, bool isWrite) {
    const int32_t link = freeWaiters_;
    CWaiter& waiter = waiters_[link];
    freeWaiters_ = waiter.next;
    waiter.operation = static_cast<int16_t>(indexOf(operation));
    waiter.isWrite = isWrite;
    waiter.next = kNone;
    if (buffer.waitHead == kNone) {
        buffer.waitHead = link;
    } else {
        waiters_[buffer.waitTail].next = link;
    }
    buffer.waitTail = link;
    ++operation.pending;
}

inline void CQPLEXContext::makeReady(COperation& operation) {
    const int32_t operationIndex = indexOf(operation);
    CKernel& kernel = kernels_[operation.kernelNumber];
    operation.next = kNone;
    if (kernel.readyHead != kNone) {
        operations_[kernel.readyTail].next = operationIndex;
        kernel.readyTail = operationIndex;
        return;
    }
    kernel.readyHead = operationIndex;
    kernel.readyTail = operationIndex;
    kernel.nextActive = kNone;
    if (activeHead_ == kNone) {
        activeHead_ = operation.kernelNumber;
    } else {
        kernels_[activeTail_].nextActive = operation.kernelNumber;
    }
    activeTail_ = operation.kernelNumber;
}

void CQPLEXContext::flush() {
    ++counters_.flushes;
    while (activeHead_ != kNone) {
        CKernel& kernel = kernels_[activeHead_];
        activeHead_ = kernel.nextActive;
        runReady(kernel);
    }
}

void CQPLEXContext::runReady(CKernel& kernel) {
    int32_t next = kernel.readyHead;
    kernel.readyHead = kNone;
    while (next != kNone) {
        COperation* batch[kMaxBatch];
        int32_t n = 0;
        const int32_t count = operations_[next].count;
        while (next != kNone && n < kMaxBatch && operations_[next].count == count) {
            batch[n] = &operations_[next];
            next = batch[n]->next;
            ++n;
        }
        if (kernel.batch && n > 1) {
            kernel.batch(batch, n);
            ++counters_.calls;
        } else {
            for (int32_t i = 0; i < n; ++i) {
                kernel.function(*batch[i]);
            }
            counters_.calls += static_cast<uint64_t>(n);
        }
        for (int32_t i = 0; i < n; ++i) {
            complete(*batch[i], kernel.operandCount);
        }
    }
}

inline void CQPLEXContext::complete(COperation& operation, int32_t operandCount) {
    uint32_t claims = operation.claims;
    uint32_t writing = operation.writeClaims;
    for (int32_t j = 0; j < operandCount; ++j, claims >>= 1, writing >>= 1) {
        const int32_t index = indexOf(operation.handles[j]);
        CBuffer& buffer = buffers_[index];
        // A writer counts -1 and goes up to 0, a reader counts 1 and goes.
        buffer.claim += static_cast<int32_t>(2 * (writing & 1)) - static_cast<int32_t>(claims & 1);
        if (buffer.notify[0] && (writing & 1)) [[unlikely]] {
            *buffer.notify[0] = 1;
            *buffer.notify[1] = 1;
            buffer.notify[0] = nullptr;
        }
        if (buffer.waitHead != kNone) [[unlikely]] {
            settle(buffer);
        }
        dropReference(buffer, index);
    }
    operation.next = freeOperations_;
    freeOperations_ = indexOf(operation);
    --counters_.operationsWaiting;
}

/// Gives a buffer to those who wait for it, oldest first: one writer, or all readers up to the next writer.
void CQPLEXContext::settle(CBuffer& buffer) {
    while (buffer.waitHead != kNone && buffer.claim != kWriterHolds) {
        const int32_t link = buffer.waitHead;
        CWaiter& waiter = waiters_[link];
        if (waiter.isWrite && buffer.claim != 0) {
            return;
        }
        buffer.claim = waiter.isWrite ? kWriterHolds : buffer.claim + 1;
        buffer.waitHead = waiter.next;
        waiter.next = freeWaiters_;
        freeWaiters_ = link;
        COperation& operation = operations_[waiter.operation];
        if (--operation.pending == 0) {
            makeReady(operation);
        }
    }
}

}  // namespace tarv
