#pragma once

#include <string>

#include "CDefinitionNode.h"

namespace tarv {

/// Builds a data set from a drawable source, whose extension gives its kind: `.svg` an image set, `.font` a font,
/// `.brush` a brush set, `.palette` a palette. The forms are documented in Gfx/README.md. The same source gives the
/// same bytes.
[[nodiscard]] CDefinitionFailure buildGraphics(const std::string& path, std::string& bytes);

}  // namespace tarv
