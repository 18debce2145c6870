#pragma once

#include "Core/CString.h"

namespace tarv {

/// Whether bytes are UTF-8 in its shortest forms, without surrogates, cut sequences or points beyond U+10FFFF.
bool isValidUtf8(const char* bytes, size_t count);

/// A text whose encoding nobody states, as older programs store and hosts send them: UTF-8 if it is valid, otherwise
/// the system's code page. A byte of 0 ends it. Any thread.
CString textOfUnknownEncoding(const char* bytes, size_t count);

/// The beginning of a text whose UTF-8 takes at most that many bytes.
CString withinUtf8Bytes(const CString& text, uint32_t limit);

}  // namespace tarv
