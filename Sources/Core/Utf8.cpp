#include "Core/Utf8.h"

#include <algorithm>

#include "Core/CString.h"

namespace tarv {

namespace {

/// Bytes that follow a lead byte, or -1 if it begins nothing.
int followersOf(uint8_t lead) {
    if (lead < 0x80) {
        return 0;
    }
    if (lead < 0xc0 || lead >= 0xf8) {
        return -1;
    }
    return lead < 0xe0 ? 1 : lead < 0xf0 ? 2 : 3;
}

}  // namespace

void appendUtf8(CString& text, const char* bytes, size_t count) {
    // Most texts are plain: those units go in one run.
    const auto isPlain = [](char byte) { return static_cast<int8_t>(byte) > 0; };
    auto i = static_cast<size_t>(std::find_if_not(bytes, bytes + count, isPlain) - bytes);
    text.append(CString(bytes, static_cast<int32_t>(i)));
    while (i < count) {
        const auto lead = static_cast<uint8_t>(bytes[i++]);
        const int followers = followersOf(lead);
        if (followers < 0) {
            continue;
        }
        if (count - i < static_cast<size_t>(followers)) {
            return;
        }
        uint32_t point = followers == 0 ? lead : lead & (0x3fu >> followers);
        for (int k = 0; k < followers; ++k) {
            point = point << 6 | (static_cast<uint8_t>(bytes[i++]) & 0x3fu);
        }
        const auto unit = static_cast<uint16_t>(point);
        if (unit == 0) {
            return;
        }
        text.appendChar(unit);
    }
}

size_t encodeUtf8(uint16_t unit, char* bytes) {
    if (unit >= 0xd800 && unit <= 0xdfff) {
        return 0;
    }
    if (unit < 0x80) {
        bytes[0] = static_cast<char>(unit);
        return 1;
    }
    if (unit < 0x800) {
        bytes[0] = static_cast<char>(0xc0 | unit >> 6);
        bytes[1] = static_cast<char>(0x80 | (unit & 0x3f));
        return 2;
    }
    bytes[0] = static_cast<char>(0xe0 | unit >> 12);
    bytes[1] = static_cast<char>(0x80 | (unit >> 6 & 0x3f));
    bytes[2] = static_cast<char>(0x80 | (unit & 0x3f));
    return 3;
}

}  // namespace tarv
