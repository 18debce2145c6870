#pragma once

#include <cstdint>

namespace tarv {

/// Names a buffer of the context: the low 12 bits are the index in the table, the bits above a byte offset into the
/// storage.
using CBufferHandle = int32_t;
constexpr CBufferHandle kNoBuffer = -1;

constexpr int32_t kHandleIndexBits = 12;
constexpr int32_t kHandleIndexMask = (1 << kHandleIndexBits) - 1;

constexpr int32_t handleIndex(CBufferHandle handle) {
    return handle & kHandleIndexMask;
}
/// Bytes.
constexpr int32_t handleOffset(CBufferHandle handle) {
    return handle >> kHandleIndexBits;
}

}  // namespace tarv
