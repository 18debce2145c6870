#pragma once

#include <bit>
#include <cstdint>

#include "Audio/Context/CBufferHandle.h"
#include "Audio/Context/CContextBuffer.h"
#include "Audio/Context/CWriteNotices.h"

namespace tarv {

class CRecordedRun;

/// The buffers of a context, each with a storage that it keeps while it is free. Free buffers wait in one list for each
/// size of storage. Thread: that of the context. Allocates only where a function says so.
class CBufferTable {
public:
    /// The most buffers that can be in use at once: twice what the largest tree takes (SystemTests, ContextRoom). The
    /// last index is that of kNoBuffer.
    static constexpr int32_t kUsableBuffers = 4095;

    CBufferTable();
    ~CBufferTable();
    CBufferTable(const CBufferTable&) = delete;
    CBufferTable& operator=(const CBufferTable&) = delete;

    /// Number of the smallest size of storage that holds `bytes`.
    static int32_t sizeClassOf(int32_t bytes) {
        const auto size =
            static_cast<uint32_t>(bytes > CContextBuffer::kSmallestStorage ? bytes : CContextBuffer::kSmallestStorage);
        return std::bit_width(size - 1) - std::bit_width(static_cast<uint32_t>(CContextBuffer::kSmallestStorage - 1));
    }
    /// The buffer of exactly this size that was given back last, with one reference; kNoBuffer if none is free.
    CBufferHandle takeWarm(int32_t sizeClass) {
        const int32_t index = freeBuffers_[sizeClass];
        if (index == kNoBuffer) [[unlikely]] {
            return kNoBuffer;
        }
        freeBuffers_[sizeClass] = buffers_[index].nextFree;
        return startUse(index);
    }
    /// The same from any size of its kind that is large enough.
    CBufferHandle takeLarger(int32_t sizeClass);
    /// The same from any size; may allocate. kNoBuffer if all buffers are in use.
    CBufferHandle takeAny(int32_t sizeClass);
    /// Makes sure that `count` free buffers of `bytes` exist, as far as the table has room. Allocates.
    void reserve(int32_t count, int32_t bytes);

    /// The buffer of a handle. kNoBuffer gives an entry that no buffer uses.
    CContextBuffer& at(CBufferHandle handle) { return buffers_[handleIndex(handle)]; }
    const CContextBuffer& at(CBufferHandle handle) const { return buffers_[handleIndex(handle)]; }
    void releaseReference(CContextBuffer& buffer) {
        buffer.state -= CContextBuffer::kOneReference;
        if (buffer.references() == 0) {
            giveBack(buffer);
        }
    }
    /// Makes a buffer without references free.
    void giveBack(CContextBuffer& buffer) {
        if (buffer.state >= CContextBuffer::kWatched) [[unlikely]] {
            notices_.forget(buffer);
        }
        --inUse_;
        if (recording_ != nullptr) {
            hold(buffer);
            return;
        }
        buffer.nextFree = freeBuffers_[buffer.sizeClass];
        freeBuffers_[buffer.sizeClass] = static_cast<int32_t>(&buffer - buffers_);
    }
    /// The size is that of state blocks, up to 1 KiB, which users write directly, and not that of signals.
    static constexpr bool isState(int32_t sizeClass) { return sizeClass <= kLargestStateClass; }
    /// While a run is recorded, buffers that are given back are held, and `recording` learns who read them last; null:
    /// no longer.
    void setRecording(CRecordedRun* recording) { recording_ = recording; }
    /// Makes the signals free that are held: no later operation of their call can run together with those that use
    /// them.
    void freeSignals() { freeList(heldSignals_); }
    /// Makes all free that are held: no operation waits.
    void freeHeld() {
        freeList(heldSignals_);
        freeList(heldStates_);
    }

    CWriteNotices& notices() { return notices_; }

    int32_t inUse() const { return inUse_; }
    /// Entries that have a storage, in use or not.
    int32_t storageCount() const { return storageCount_; }
    uint64_t storageBytes() const { return storageBytes_; }
    /// Allocations of storages.
    uint64_t storageGrowths() const { return storageGrowths_; }

private:
    static constexpr int32_t kBufferCount = kHandleIndexMask + 1;
    static constexpr int32_t kSizeClassCount = 25;
    static constexpr int32_t kLargestStateClass = 4;
    static_assert(kUsableBuffers < kBufferCount);

    CBufferHandle startUse(int32_t index) {
        buffers_[index].state = CContextBuffer::kOneReference;
        buffers_[index].lastRead = 0;
        ++inUse_;
        return index;
    }
    void hold(CContextBuffer& buffer);
    void freeList(int32_t& list);
    static int32_t endOfKind(int32_t sizeClass) {
        return isState(sizeClass) ? kLargestStateClass + 1 : kSizeClassCount;
    }
    int32_t popFree(int32_t sizeClass);
    int32_t popLarger(int32_t sizeClass);
    int32_t takeUnused(int32_t sizeClass);
    int32_t takeFree(int32_t sizeClass);
    void clearEntry(int32_t index);
    void allocateStorage(int32_t index, int32_t sizeClass);

    CContextBuffer buffers_[kBufferCount];
    int32_t freeBuffers_[kSizeClassCount];
    CRecordedRun* recording_ = nullptr;
    int32_t heldSignals_ = kNoBuffer;
    int32_t heldStates_ = kNoBuffer;
    CWriteNotices notices_;
    int32_t storageCount_ = 0;  // the entries behind are not in use yet and hold anything
    int32_t inUse_ = 0;
    uint64_t storageBytes_ = 0;
    uint64_t storageGrowths_ = 0;
};

}  // namespace tarv
