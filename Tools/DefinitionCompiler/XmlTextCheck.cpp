#include "XmlTextCheck.h"

#include <charconv>
#include <cstdint>
#include <cstdio>

namespace tarv {

namespace {

constexpr std::string_view kEntities[] = {"lt", "gt", "amp", "quot", "apos"};

/// A stretch of XML in which "&" has no meaning.
struct CQuietStretch {
    std::string_view begin;
    std::string_view end;
};
constexpr CQuietStretch kQuietStretches[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};

std::string codePointName(uint32_t codePoint) {
    char text[16];
    std::snprintf(text, sizeof text, "U+%04X", static_cast<unsigned>(codePoint));
    return text;
}

std::string characterFault(uint32_t codePoint) {
    return "the character " + codePointName(codePoint) +
           (codePoint > 0xffff ? " lies beyond U+FFFF and can't be kept" : " has no place in a definition");
}

/// The fault of a reference whose text (between "&" and ";") is given.
std::optional<std::string> referenceFault(std::string_view reference) {
    for (std::string_view entity : kEntities) {
        if (reference == entity) {
            return std::nullopt;
        }
    }
    const std::string shown = "'&" + std::string(reference.substr(0, 16)) + ";'";
    if (reference.empty() || reference[0] != '#') {
        return "unknown entity " + shown;
    }
    const bool isHex = reference.size() > 1 && reference[1] == 'x';
    const std::string_view digits = reference.substr(isHex ? 2 : 1);
    uint32_t codePoint = 0;
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), codePoint, isHex ? 16 : 10);
    if (parsed.ec != std::errc() || parsed.ptr != digits.data() + digits.size()) {
        return "malformed character reference " + shown;
    }
    if (!isKeptCharacter(codePoint)) {
        return characterFault(codePoint);
    }
    return std::nullopt;
}

/// Offset behind the quiet stretch that begins at `offset`, or `offset` itself if none does.
size_t skipQuietStretch(std::string_view text, size_t offset) {
    for (const CQuietStretch& stretch : kQuietStretches) {
        if (text.substr(offset, stretch.begin.size()) == stretch.begin) {
            const size_t end = text.find(stretch.end, offset + stretch.begin.size());
            return end == std::string_view::npos ? text.size() : end + stretch.end.size();
        }
    }
    return offset;
}

std::optional<CXmlTextFault> findCharacterFault(std::string_view text) {
    for (size_t offset = 0; offset < text.size();) {
        const size_t start = offset;
        uint32_t codePoint = 0;
        if (!decodeUtf8(text, offset, codePoint)) {
            return CXmlTextFault{start, "these bytes are not UTF-8"};
        }
        if (!isKeptCharacter(codePoint)) {
            return CXmlTextFault{start, characterFault(codePoint)};
        }
    }
    return std::nullopt;
}

}  // namespace

bool isKeptCharacter(uint32_t codePoint) {
    const bool isControl = codePoint < 0x20 && codePoint != '\t' && codePoint != '\n' && codePoint != '\r';
    const bool isSurrogate = codePoint >= 0xd800 && codePoint <= 0xdfff;
    return !isControl && !isSurrogate && codePoint < 0xfffe;
}

bool decodeUtf8(std::string_view text, size_t& offset, uint32_t& codePoint) {
    const auto byteAt = [&](size_t i) { return i < text.size() ? static_cast<uint8_t>(text[i]) : uint8_t{0}; };
    const uint8_t lead = byteAt(offset);
    const int count = lead < 0x80             ? 1
                      : (lead & 0xe0) == 0xc0 ? 2
                      : (lead & 0xf0) == 0xe0 ? 3
                      : (lead & 0xf8) == 0xf0 ? 4
                                              : 0;
    constexpr uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    if (count == 0 || offset + count > text.size()) {
        return false;
    }
    codePoint = count == 1 ? lead : lead & (0xffu >> (count + 1));
    for (int i = 1; i < count; ++i) {
        const uint8_t next = byteAt(offset + i);
        if ((next & 0xc0) != 0x80) {
            return false;
        }
        codePoint = codePoint << 6 | (next & 0x3fu);
    }
    offset += count;
    return codePoint >= kLeast[count] && codePoint <= 0x10ffff && (codePoint < 0xd800 || codePoint > 0xdfff);
}

std::optional<CXmlTextFault> findTextFault(std::string_view text) {
    if (auto fault = findCharacterFault(text)) {
        return fault;
    }
    for (size_t offset = 0; offset < text.size();) {
        const size_t behind = skipQuietStretch(text, offset);
        if (behind != offset) {
            offset = behind;
            continue;
        }
        if (text[offset] == '&') {
            const size_t end = text.find(';', offset);
            if (end == std::string_view::npos) {
                return CXmlTextFault{offset, "'&' begins no entity; write '&amp;'"};
            }
            if (auto fault = referenceFault(text.substr(offset + 1, end - offset - 1))) {
                return CXmlTextFault{offset, *fault};
            }
        }
        ++offset;
    }
    return std::nullopt;
}

}  // namespace tarv
