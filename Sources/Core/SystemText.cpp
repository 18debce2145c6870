// Texts from outside whose encoding is not known, and their length in bytes.

#include "Core/SystemText.h"

#include <algorithm>

#include "Core/CArray.h"
#include "Core/Utf8.h"
#include "Platform/CodePage.h"

namespace tarv {

namespace {

/// Length of the sequence that begins with a byte, 0 if none does, and the least point that needs that length.
size_t sequenceLength(uint8_t lead, uint32_t& least) {
    constexpr uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    const size_t length = lead < 0x80 ? 1 : lead < 0xc2 ? 0 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : lead < 0xf5 ? 4 : 0;
    least = kLeast[length];
    return length;
}

}  // namespace

bool isValidUtf8(const char* bytes, size_t count) {
    for (size_t i = 0; i < count;) {
        const auto lead = static_cast<uint8_t>(bytes[i]);
        uint32_t least = 0;
        const size_t length = sequenceLength(lead, least);
        if (length == 0 || length > count - i) {
            return false;
        }
        uint32_t point = length == 1 ? lead : lead & (0x7fu >> length);
        for (size_t k = 1; k < length; ++k) {
            const auto byte = static_cast<uint8_t>(bytes[i + k]);
            if ((byte & 0xc0) != 0x80) {
                return false;
            }
            point = point << 6 | (byte & 0x3fu);
        }
        if (point < least || point > 0x10ffff || (point >= 0xd800 && point <= 0xdfff)) {
            return false;
        }
        i += length;
    }
    return true;
}

CString textOfUnknownEncoding(const char* bytes, size_t count) {
    count = static_cast<size_t>(std::find(bytes, bytes + count, '\0') - bytes);
    if (isValidUtf8(bytes, count)) {
        return CString::fromUtf8(bytes, count);
    }
    CArray<char16_t, 64> units;
    units.resize(static_cast<int32_t>(count));
    const size_t written = decodeCodePage(bytes, count, units.data());
    CString text;
    for (size_t i = 0; i < written; ++i) {
        text.appendChar(units[static_cast<int32_t>(i)]);
    }
    return text;
}

CString withinUtf8Bytes(const CString& text, uint32_t limit) {
    char code[kMaxUtf8Bytes];
    uint32_t bytes = 0;
    for (int32_t i = 0; i < text.length(); ++i) {
        bytes += static_cast<uint32_t>(encodeUtf8(text.at(i), code));
        if (bytes > limit) {
            return text.substring(0, i);
        }
    }
    return text;
}

}  // namespace tarv
