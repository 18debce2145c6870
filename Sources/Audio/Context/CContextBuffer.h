#pragma once

#include <cstdint>

namespace tarv {

/// An entry of the context's table of buffers: a storage, its references and the claims of queued operations on it.
/// Half a line of the cache, since a context has thousands.
struct alignas(32) CContextBuffer {
    // `state` is one word, so that claiming an operand costs one addition: references in the low half, above them the
    // operations that hold the buffer for reading, a bit for the one that holds it for writing, and a bit for a buffer
    // that operations wait for or whose next write is reported.
    static constexpr uint64_t kOneReference = 1;
    static constexpr uint64_t kReferences = 0xffffffffu;
    static constexpr uint64_t kOneReader = uint64_t{1} << 32;
    static constexpr uint64_t kReaders = uint64_t{0xffffff} << 32;
    static constexpr uint64_t kWriter = uint64_t{1} << 56;
    static constexpr uint64_t kWatched = uint64_t{1} << 57;

    static constexpr int32_t kSmallestStorage = 64;

    uint64_t state;
    uint8_t* data;  ///< where the contents start; null: no storage yet
    union {
        int32_t nextFree;   ///< while free
        uint32_t lastRead;  ///< while in use: the last operand of a recorded operation that names it; 0: none
    };
    int16_t firstWaiter;  ///< operands that wait for the buffer, in order of issue; -1: none
    int16_t lastWaiter;
    uint16_t dataOffset;  ///< bytes from the start of the allocation to `data`
    uint8_t sizeClass;    ///< the storage has room for kSmallestStorage << sizeClass bytes
    uint32_t lastWrite;   ///< the last operand of a recorded operation that writes it

    int32_t references() const { return static_cast<int32_t>(state & kReferences); }
    /// Bytes.
    int32_t capacity() const { return data ? kSmallestStorage << sizeClass : 0; }
    void* allocation() const { return data ? data - dataOffset : nullptr; }
};

}  // namespace tarv
