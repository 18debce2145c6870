#pragma once

#include "CSvgSource.h"

namespace tarv {

/// Moves shapes of the classes `snap`, `hair` and `hairfill` onto the device pixels of one scale; what that means for
/// which shape is documented in Gfx/README.md. `copy` is a copy of the image's group, which is changed. The source has
/// passed checkSnapped.
void snapImage(const CSvgImage& image, double scale, pugi::xml_node copy);

/// Checks the classes of a shape of an image and of all below it: known, on shapes that can be moved, under no
/// transform, with numbers that can be read.
[[nodiscard]] CDefinitionFailure checkSnapped(const CSvgSource& source, const CSvgImage& image, pugi::xml_node node);
/// Checks that nothing below a node asks to be moved: a shared shape has no place.
[[nodiscard]] CDefinitionFailure checkUnsnapped(const CSvgSource& source, pugi::xml_node node);

}  // namespace tarv
