#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarv {

struct CXmlTextFault {
    size_t offset;
    std::string text;
};

/// Finds what the XML parser lets pass but a compiled tree can't keep: bytes that are no UTF-8, control characters,
/// characters beyond U+FFFF (a string of the program has no pairs), unknown entities and references to such characters.
std::optional<CXmlTextFault> findTextFault(std::string_view text);

/// True for a character that an XML text can hold and a string of the program keeps.
bool isKeptCharacter(uint32_t codePoint);

/// Decodes one UTF-8 sequence at `offset`, which it moves behind it; false if it is malformed, overlong or a surrogate.
bool decodeUtf8(std::string_view text, size_t& offset, uint32_t& codePoint);

}  // namespace tarv
