#pragma once

#include <string>

#include "Core/CStreams.h"

namespace tarv {

/// The bytes of a file as text, chosen by the id of its block (at the first byte or behind a host's prefix of 16): a
/// preset, a bank, a preset list, a stored setting or a compiled tree. Numbers stand with all their digits. Fails with
/// what is wrong; nothing of a damaged block is printed.
[[nodiscard]] CError* blockText(const CByteBuffer& bytes, std::string& text);

}  // namespace tarv
