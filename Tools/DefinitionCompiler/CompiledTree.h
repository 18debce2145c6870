#pragma once

#include <string>
#include <string_view>

#include "CDefinitionNode.h"

namespace tarv {

/// The bytes of a compiled tree (before compression): integers are 32-bit little-endian, a string is its byte count and
/// its bytes. The same tree always gives the same bytes.
std::string serializeTree(const CDefinitionNode& root);

/// Reads a compiled tree that must fill all of `bytes`. Every count and length is checked against what is left.
[[nodiscard]] CDefinitionFailure parseTree(std::string_view bytes, CDefinitionNode& root);

}  // namespace tarv
