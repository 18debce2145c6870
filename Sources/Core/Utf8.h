#pragma once

#include <cstddef>
#include <cstdint>

namespace tarv {

class CString;

/// Appends text decoded from UTF-8 without validation of continuation bytes. A lead byte from 0xf8 and a stray
/// continuation byte are skipped, a cut sequence or a unit of 0 ends the text, a code point above 0xffff keeps its low
/// 16 bits. `text` widens at the first code point of 256 or more.
void appendUtf8(CString& text, const char* bytes, size_t count);

/// Longest code of one unit.
inline constexpr size_t kMaxUtf8Bytes = 3;

/// Writes the code of a unit and gives its length in bytes: 0 for 0xd800 to 0xdfff, which have none.
size_t encodeUtf8(uint16_t unit, char* bytes);

}  // namespace tarv
