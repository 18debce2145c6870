#pragma once

#include <string>

namespace tarv {

/// UTF-8 of a text in UTF-16.
std::string utf16ToUtf8(const char16_t* text);
/// The same for a path, with `/` for `\`.
std::string pathToUtf8(const char16_t* path);
/// UTF-16 of a path in UTF-8; what is no UTF-8 becomes U+FFFD.
std::u16string pathToUtf16(const char* path);

}  // namespace tarv
