#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarv {

/// The bytes of a valid graphics data set with nothing in it, for a `kind` of imageset, font, brushset or palette;
/// nothing for another word. Each begins with the count of the bytes that follow and the version 1.
std::optional<std::string> emptyDataSet(std::string_view kind);

}  // namespace tarv
