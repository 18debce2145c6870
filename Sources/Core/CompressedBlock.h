#pragma once

#include <cstdint>

namespace tarv {

/// A compressed block, little-endian: u32 id, u32 count of bytes after inflation, u32 Adler-32 (from 1) of the four
/// bytes of that count, then a zlib stream up to the end of the source. Nothing can follow it in a stream.
constexpr uint32_t blockId(const char (&text)[5]) {
    return uint32_t(uint8_t(text[0])) | uint32_t(uint8_t(text[1])) << 8 | uint32_t(uint8_t(text[2])) << 16 |
           uint32_t(uint8_t(text[3])) << 24;
}

inline constexpr uint32_t kTreeBlockId = blockId("cxml");
inline constexpr uint32_t kBankBlockId = blockId("abnk");
inline constexpr uint32_t kPresetBlockId = blockId("aprs");
inline constexpr uint32_t kListBlockId = blockId("alst");

}  // namespace tarv
