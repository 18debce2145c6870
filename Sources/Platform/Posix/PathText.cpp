#include "Platform/Posix/PathText.h"

#include <algorithm>
#include <cstdint>

namespace tarv {

namespace {

bool isHighSurrogate(char16_t unit) {
    return unit >= 0xd800 && unit < 0xdc00;
}

bool isLowSurrogate(char16_t unit) {
    return unit >= 0xdc00 && unit < 0xe000;
}

void appendPoint(std::string& bytes, uint32_t point) {
    if (point < 0x80) {
        bytes += static_cast<char>(point);
        return;
    }
    const int followers = point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
    constexpr uint32_t kLeads[] = {0, 0xc0, 0xe0, 0xf0};
    bytes += static_cast<char>(kLeads[followers] | point >> (6 * followers));
    for (int i = followers - 1; i >= 0; --i) {
        bytes += static_cast<char>(0x80 | (point >> (6 * i) & 0x3f));
    }
}

}  // namespace

std::string utf16ToUtf8(const char16_t* text) {
    std::string bytes;
    for (; *text; ++text) {
        if (isHighSurrogate(*text) && isLowSurrogate(text[1])) {
            appendPoint(bytes, 0x10000 + ((uint32_t{*text} & 0x3ff) << 10) + (uint32_t{text[1]} & 0x3ff));
            ++text;
        } else {
            appendPoint(bytes, *text);
        }
    }
    return bytes;
}

std::string pathToUtf8(const char16_t* path) {
    std::string bytes = utf16ToUtf8(path);
    std::replace(bytes.begin(), bytes.end(), '\\', '/');
    return bytes;
}

std::u16string pathToUtf16(const char* path) {
    std::u16string units;
    const auto* bytes = reinterpret_cast<const uint8_t*>(path);
    while (*bytes) {
        const uint8_t lead = *bytes++;
        const int followers = lead < 0x80   ? 0
                              : lead < 0xc0 ? -1
                              : lead < 0xe0 ? 1
                              : lead < 0xf0 ? 2
                              : lead < 0xf8 ? 3
                                            : -1;
        uint32_t point = followers <= 0 ? lead : lead & (0x3fu >> followers);
        bool isGood = followers >= 0;
        for (int i = 0; isGood && i < followers; ++i) {
            isGood = (*bytes & 0xc0) == 0x80;
            if (isGood) {
                point = point << 6 | (*bytes++ & 0x3fu);
            }
        }
        if (!isGood) {
            units += u'\ufffd';
        } else if (point < 0x10000) {
            units += static_cast<char16_t>(point);
        } else {
            units += static_cast<char16_t>(0xd800 + ((point - 0x10000) >> 10));
            units += static_cast<char16_t>(0xdc00 + (point & 0x3ff));
        }
    }
    return units;
}

}  // namespace tarv
