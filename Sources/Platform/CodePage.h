#pragma once

#include <cstddef>

namespace tarv {

/// Decodes bytes of the code page that the system has for narrow texts as UTF-16. Writes at most `count` units to
/// `units` and returns how many. Any thread.
size_t decodeCodePage(const char* bytes, size_t count, char16_t* units);

}  // namespace tarv
