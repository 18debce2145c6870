// The code page of systems that have none: Windows-1252.

#include "Platform/CodePage.h"

#include <cstdint>

namespace tarv {

namespace {

/// Windows-1252 from 0x80 to 0x9f; elsewhere it is Latin-1. Bytes that it leaves free stand for themselves.
constexpr char16_t kHighControls[32] = {0x20ac, 0x81,   0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021,
                                        0x02c6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8d,   0x017d, 0x8f,
                                        0x90,   0x2018, 0x2019, 0x201c, 0x201d, 0x2022, 0x2013, 0x2014,
                                        0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x9d,   0x017e, 0x0178};

}  // namespace

size_t decodeCodePage(const char* bytes, size_t count, char16_t* units) {
    for (size_t i = 0; i < count; ++i) {
        const auto byte = static_cast<uint8_t>(bytes[i]);
        units[i] = byte >= 0x80 && byte < 0xa0 ? kHighControls[byte - 0x80] : byte;
    }
    return count;
}

}  // namespace tarv
