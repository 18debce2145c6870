#include "Audio/Context/CQPLEXContext.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace tarv {

namespace {

constexpr int32_t kNone = -1;
constexpr size_t kNameLength = 64;

constexpr int32_t kLargestSmallClass = 4;  // up to 1 KiB: state blocks
constexpr uintptr_t kPage = 4096;
constexpr uintptr_t kLine = 64;
// Signals that start at equal places of their pages collide in the cache when several are walked side by side.
// An odd number of lines gives 64 neighbours in the table 64 different places.
constexpr uintptr_t kStagger = 9 * kLine;

uint32_t hashOf(const char* name) {
    uint32_t hash = 5555;
    for (size_t i = 0; i < kNameLength && name[i]; ++i) {
        hash = hash * 33 + static_cast<uint8_t>(name[i]);
    }
    return hash & 0x3ff;
}

}  // namespace

CQPLEXContext::CQPLEXContext() {
    for (int32_t i = 0; i < kBufferCount; ++i) {
        buffers_[i] = {0,      nullptr, i + 1 < kUsableBuffers ? i + 1 : kNone, 0, 0, kNone, kNone, {nullptr, nullptr},
                       nullptr};
    }
    for (CQueuedOperation& operation : operations_) {
        operation.next = freeOperations_;
        freeOperations_ = &operation;
    }
    for (int32_t i = 0; i < kWaiterCount; ++i) {
        waiters_[i].next = i + 1 < kWaiterCount ? i + 1 : kNone;
    }
    std::memset(hashHeads_, 0xff, sizeof(hashHeads_));
    std::memset(freeBuffers_, 0xff, sizeof(freeBuffers_));
    std::fill(std::begin(commonKernels_), std::end(commonKernels_), kNone);
    std::fill(std::begin(sectionKernels_), std::end(sectionKernels_),
              CSectionKernels{kNone, kNone, kNone, kNone, 0, 0});
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
    k.readyHead = nullptr;
    k.readyTail = nullptr;
    k.nextActive = nullptr;
    for (int32_t j = 0; j < kMaxOperands; ++j) {
        const bool isWritten = ((writeMask >> j) & 1u) != 0;
        k.holds[j] = kOneReference + (isWritten ? kWriter : kOneReader);
        k.limits[j] = isWritten ? kOneReader : kWriter;
    }
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
        freeBuffers_[sizeClass] = buffers_[index].nextFree;
    }
    return index;
}

int32_t CQPLEXContext::takeUnused(int32_t sizeClass) {
    const int32_t index = unusedBuffers_;
    if (index != kNone) {
        unusedBuffers_ = buffers_[index].nextFree;
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

CBufferHandle CQPLEXContext::takeOther(int32_t sizeClass) {
    int32_t index = takeFree(sizeClass);
    if (index == kNone) {
        ++counters_.forcedFlushes;
        flush();
        index = takeFree(sizeClass);
        if (index == kNone) {
            return kNoBuffer;
        }
    }
    buffers_[index].state = kOneReference;
    ++counters_.buffersInUse;
    isRecorded_ = false;
    return index;
}

void CQPLEXContext::notifyOnWrite(CBufferHandle handle, uint8_t* first, uint8_t* second) {
    if (handle == kNoBuffer) {
        return;
    }
    CBuffer& buffer = buffers_[indexOf(handle)];
    buffer.notify[0] = first;
    buffer.notify[1] = second;
    buffer.state |= kWatched;
}

void CQPLEXContext::reserveBuffers(int32_t count, int32_t bytes) {
    const int32_t sizeClass = sizeClassOf(bytes);
    int32_t free = 0;
    for (int32_t index = freeBuffers_[sizeClass]; index != kNone && free < count; index = buffers_[index].nextFree) {
        ++free;
    }
    for (; free < count; ++free) {
        const int32_t index = takeUnused(sizeClass);
        if (index == kNone) {
            return;
        }
        buffers_[index].nextFree = freeBuffers_[sizeClass];
        freeBuffers_[sizeClass] = index;
    }
}

// Operations

template <int32_t N>
void CQPLEXContext::issueOperands(int32_t kernelNumber, int32_t count, double immediate, const CBufferHandle* handles) {
    // Every number that makes an operation impossible is negative.
    int32_t signs = kernelNumber | count;
    CBuffer* buffers[N];
    bool isRepeated = false;
#pragma GCC unroll 8
    for (int32_t j = 0; j < N; ++j) {
        signs |= handles[j];
        buffers[j] = &buffers_[indexOf(handles[j])];
#pragma GCC unroll 8
        for (int32_t k = 0; k < j; ++k) {
            isRepeated |= buffers[k] == buffers[j];
        }
    }
    if (signs < 0 || kernelNumber >= kernelCount_ || kernels_[kernelNumber].operandCount != N) [[unlikely]] {
        ++counters_.rejected;
        return;
    }
    CKernel& kernel = kernels_[kernelNumber];
    const bool isChained = expectedKernel_ != kNone && joinsChain<N>(kernelNumber, count, buffers, handles, isRepeated);
    if (freeOperations_ == nullptr) [[unlikely]] {
        ++counters_.forcedFlushes;
        flush();
        leaveChain();
    }
    CQueuedOperation& operation = *freeOperations_;
    freeOperations_ = operation.next;
    operation.immediate = immediate;
    operation.count = count;
    operation.pending = 0;
    operation.kernel = &kernel;
    operation.holds = kernel.holds;
#pragma GCC unroll 8
    for (int32_t j = 0; j < N; ++j) {
        operation.buffers[j] = buffers[j];
        operation.pointers[j] = buffers[j]->data + offsetOf(handles[j]);
    }
    ++counters_.operations;
    ++counters_.operationsWaiting;
    isRecorded_ = false;
    if (isChained) {
        keepForChain<N>(operation);
        return;
    }
    if (isRepeated) [[unlikely]] {
        claimMerged(operation);
    } else {
        claim<N>(operation);
    }
    if (operation.pending == 0) {
        makeReady(operation);
    }
}

template <int32_t N>
inline void CQPLEXContext::claim(CQueuedOperation& operation) {
    const CKernel& kernel = *operation.kernel;
#pragma GCC unroll 8
    for (int32_t j = 0; j < N; ++j) {
        CBuffer& buffer = *operation.buffers[j];
        if (buffer.state < kernel.limits[j]) [[likely]] {
            buffer.state += kernel.holds[j];
        } else {
            waitFor(buffer, operation, kernel.holds[j]);
        }
    }
}

template <int32_t N>
inline void CQPLEXContext::keepForChain(CQueuedOperation& operation) {
    const int32_t link = chainStage_ > 0 ? kLinkOperand : kNone;
#pragma GCC unroll 8
    for (int32_t j = 0; j < N; ++j) {
        operation.buffers[j]->state += j == link ? kOneReference : operation.kernel->holds[j];
    }
    chain_[chainStage_][chainCounts_[chainStage_]++] = &operation;
}

/// Whether an operation goes on with the chain. If not the chain is left; what it begins anew it may still join.
template <int32_t N>
inline bool CQPLEXContext::joinsChain(int32_t kernelNumber, int32_t count, CBuffer* const* buffers,
                                      const CBufferHandle* handles, bool isRepeated) {
    if (kernelNumber != expectedKernel_ && chainStage_ > 0) {
        flush();
    }
    if constexpr (N > kLinkOperand) {
        const void* const source = buffers[kLinkOperand]->data + offsetOf(handles[kLinkOperand]);
        if (kernelNumber == expectedKernel_ && !isRepeated &&
            isNextOfChain<N>(kernels_[kernelNumber], count, buffers, source)) {
            return true;
        }
    }
    leaveChain();
    return false;
}

/// Whether an operation is the next of the chain: it waits for nothing, or for nothing but the stage before it. Then
/// nothing that a stage writes is anything else to its channel or to another: that would be claimed already.
template <int32_t N>
inline bool CQPLEXContext::isNextOfChain(const CKernel& kernel, int32_t count, CBuffer* const* buffers,
                                         const void* source) const {
    const int32_t stage = chainStage_;
    const int32_t channel = chainCounts_[stage];
    if (channel == kMaxBatch || freeOperations_ == nullptr) {
        return false;
    }
    if (stage > 0) {
        // The link is written by the stage before, and nobody reads it or waits for it yet.
        if (channel == chainCounts_[stage - 1] || chain_[stage - 1][channel]->pointers[0] != source ||
            (buffers[kLinkOperand]->state & ~kReferences) != kWriter) {
            return false;
        }
    }
    bool isFree = channel + stage == 0 || chain_[0][0]->count == count;
#pragma GCC unroll 8
    for (int32_t j = 0; j < N; ++j) {
        isFree &= buffers[j]->state < kernel.limits[j] || (j == kLinkOperand && stage > 0);
    }
    return isFree;
}

template void CQPLEXContext::issueOperands<1>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<2>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<3>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<4>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<5>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<6>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<7>(int32_t, int32_t, double, const CBufferHandle*);
template void CQPLEXContext::issueOperands<8>(int32_t, int32_t, double, const CBufferHandle*);

/// A buffer named more than once is claimed once, by its first operand, for writing if any of its operands is written.
void CQPLEXContext::claimMerged(CQueuedOperation& operation) {
    const int32_t n = operation.kernel->operandCount;
    for (int32_t j = 0; j < n; ++j) {
        int32_t first = 0;
        while (operation.buffers[first] != operation.buffers[j]) {
            ++first;
        }
        const uint64_t hold = operation.kernel->holds[j];
        if (first == j) {
            operation.ownHolds[j] = hold;
            continue;
        }
        operation.ownHolds[j] = kOneReference;
        if ((hold & kWriter) != 0) {
            operation.ownHolds[first] = hold;
        }
    }
    operation.holds = operation.ownHolds;
    for (int32_t j = 0; j < n; ++j) {
        if (operation.ownHolds[j] == kOneReference) {
            operation.buffers[j]->state += kOneReference;
        } else {
            waitFor(*operation.buffers[j], operation, operation.ownHolds[j]);
        }
    }
}

/// Takes the claim of `hold`, but not its reference, if nobody stands in its way.
bool CQPLEXContext::tryHold(CBuffer& buffer, uint64_t hold) {
    const uint64_t others = (hold & kWriter) != 0 ? kWriter | kReaders : kWriter;
    if ((buffer.state & others) != 0) {
        return false;
    }
    buffer.state += hold - kOneReference;
    return true;
}

void CQPLEXContext::waitFor(CBuffer& buffer, CQueuedOperation& operation, uint64_t hold) {
    buffer.state += kOneReference;
    if (buffer.waitHead == kNone && tryHold(buffer, hold)) {
        return;
    }
    const int32_t link = freeWaiters_;
    CWaiter& waiter = waiters_[link];
    freeWaiters_ = waiter.next;
    waiter.operation = &operation;
    waiter.hold = hold;
    waiter.next = kNone;
    if (buffer.waitHead == kNone) {
        buffer.waitHead = link;
    } else {
        waiters_[buffer.waitTail].next = link;
    }
    buffer.waitTail = link;
    buffer.state |= kWatched;
    ++operation.pending;
}

void CQPLEXContext::makeReady(CQueuedOperation& operation) {
    CKernel& kernel = *operation.kernel;
    operation.next = nullptr;
    if (kernel.readyHead != nullptr) {
        kernel.readyTail->next = &operation;
        kernel.readyTail = &operation;
        return;
    }
    kernel.readyHead = &operation;
    kernel.readyTail = &operation;
    kernel.nextActive = nullptr;
    if (activeHead_ == nullptr) {
        activeHead_ = &kernel;
    } else {
        activeTail_->nextActive = &kernel;
    }
    activeTail_ = &kernel;
}

void CQPLEXContext::flush() {
    ++counters_.flushes;
    if (chainCounts_[0] > 0) {
        runChain();
    }
    while (activeHead_ != nullptr) {
        CKernel& kernel = *activeHead_;
        activeHead_ = kernel.nextActive;
        runReady(kernel);
    }
    restartChain();
}

void CQPLEXContext::startRecording() {
    flush();
    recording_.clear();
    isRecording_ = true;
    isRecorded_ = false;
}

bool CQPLEXContext::endRecording() {
    flush();
    isRecording_ = false;
    isRecorded_ = recording_.isWhole();
    return isRecorded_;
}

void CQPLEXContext::repeat() {
    ++counters_.repeats;
    recording_.run();
}

void CQPLEXContext::runReady(CKernel& kernel) {
    CQueuedOperation* next = kernel.readyHead;
    kernel.readyHead = nullptr;
    while (next != nullptr) {
        CQueuedOperation* batch[kMaxBatch];
        int32_t n = 0;
        const int32_t count = next->count;
        while (next != nullptr && n < kMaxBatch && next->count == count) {
            batch[n] = next;
            next = next->next;
            ++n;
        }
        runBatch(kernel, batch, n);
    }
}

void CQPLEXContext::runBatch(CKernel& kernel, CQueuedOperation* const* batch, int32_t count) {
    COperation* operations[kMaxBatch] = {};
    std::copy_n(batch, count, operations);
    const CKernelBatchFunction together = count > 1 ? kernel.batch : nullptr;
    if (isRecording_) {
        recording_.add(kernel.function, together, operations, count);
    }
    if (together != nullptr) {
        together(operations, count);
        ++counters_.calls;
    } else {
        for (int32_t i = 0; i < count; ++i) {
            kernel.function(*operations[i]);
        }
        counters_.calls += static_cast<uint64_t>(count);
    }
    complete(batch, count);
}

void CQPLEXContext::complete(CQueuedOperation* const* operations, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        complete(*operations[i]);
    }
    counters_.operationsWaiting -= count;
}

inline void CQPLEXContext::complete(CQueuedOperation& operation) {
    const uint64_t* const holds = operation.holds;
    const int32_t n = operation.kernel->operandCount;
    for (int32_t j = 0; j < n; ++j) {
        CBuffer& buffer = *operation.buffers[j];
        buffer.state -= holds[j];
        // Watched, or the last reference is gone.
        if (buffer.state >= kWatched || (buffer.state & kReferences) == 0) {
            letGoSlowly(buffer, holds[j]);
        }
    }
    operation.next = freeOperations_;
    freeOperations_ = &operation;
}

void CQPLEXContext::letGoSlowly(CBuffer& buffer, uint64_t hold) {
    if (buffer.notify[0] != nullptr && (hold & kWriter) != 0) {
        *buffer.notify[0] = 1;
        *buffer.notify[1] = 1;
        buffer.notify[0] = nullptr;
    }
    settle(buffer);
    if (buffer.waitHead == kNone && buffer.notify[0] == nullptr) {
        buffer.state &= ~kWatched;
    }
    if ((buffer.state & kReferences) == 0) {
        giveBack(buffer);
    }
}

/// Gives a buffer to those who wait for it, oldest first: one writer, or all readers up to the next writer.
void CQPLEXContext::settle(CBuffer& buffer) {
    while (buffer.waitHead != kNone) {
        const int32_t link = buffer.waitHead;
        CWaiter& waiter = waiters_[link];
        if (!tryHold(buffer, waiter.hold)) {
            return;
        }
        buffer.waitHead = waiter.next;
        waiter.next = freeWaiters_;
        freeWaiters_ = link;
        CQueuedOperation& operation = *waiter.operation;
        if (--operation.pending == 0) {
            makeReady(operation);
        }
    }
}

}  // namespace tarv
