#pragma once

#include <cstdint>

#include "Core/CString.h"

namespace tarv {

/// Writes a text as UTF-8 into a host's buffer of `size` bytes, which is at least 1: as many whole characters as fit
/// before the terminating zero. Any thread.
void copyVstText(char* to, const CString& text, int32_t size);

}  // namespace tarv
