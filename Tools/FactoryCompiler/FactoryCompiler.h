#pragma once

#include <string>

#include "CDefinitionNode.h"

namespace tarv {

/// A stream of factory data before compression, and the id of the block that it belongs into.
struct CFactoryStream {
    std::string id;
    std::string bytes;
};

/// Compiles a factory source, `<bank name>` or `<list>` of `<preset name>`, to a bank or list stream. A preset holds
/// `<record key definition>` elements with the values of its groups as `group0`, `group1`... (numbers between blanks;
/// with unit="dB" decibels, stored as factors) or with `texts` (one text for each element, between commas). Records
/// that stand directly in the bank or list belong to every preset that has none of that key. Records are written by the
/// engine's own writer, in ascending order of their keys.
[[nodiscard]] CDefinitionFailure compileFactoryData(const std::string& path, CFactoryStream& stream);

}  // namespace tarv
