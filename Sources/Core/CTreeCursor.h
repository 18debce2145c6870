#pragma once

#include <cstdint>

#include "Core/CString.h"

namespace tarv {

/// Place in the bytes of a compiled tree, which somebody else keeps alive. Each read gives false at the end and then
/// leaves the place alone. Integers are little-endian; a text is a u32 byte count and that many bytes of UTF-8.
struct CTreeCursor {
    const uint8_t* at;
    const uint8_t* end;
    int32_t depth = 0;  ///< levels of nodes that enclose the place

    /// Deepest nesting that is followed: far above any definition, far below what a thread's stack holds.
    static constexpr int32_t kMaxDepth = 200;

    bool readBytes(uint32_t count, const uint8_t*& bytes) {
        if (static_cast<uint64_t>(end - at) < count) {
            return false;
        }
        bytes = at;
        at += count;
        return true;
    }
    bool readCount(uint32_t& value) {
        const uint8_t* bytes = nullptr;
        if (!readBytes(4, bytes)) {
            return false;
        }
        value = bytes[0] | static_cast<uint32_t>(bytes[1]) << 8 | static_cast<uint32_t>(bytes[2]) << 16 |
                static_cast<uint32_t>(bytes[3]) << 24;
        return true;
    }
    bool skipText() {
        uint32_t count = 0;
        const uint8_t* bytes = nullptr;
        return readCount(count) && readBytes(count, bytes);
    }
    bool readText(CString& text) {
        uint32_t count = 0;
        const uint8_t* bytes = nullptr;
        if (!readCount(count) || !readBytes(count, bytes)) {
            return false;
        }
        text = CString::fromUtf8(reinterpret_cast<const char*>(bytes), count);
        return true;
    }
};

}  // namespace tarv
