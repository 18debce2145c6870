#pragma once

#include "CRaster.h"
#include "CSvgSource.h"

namespace tarv {

/// How far a drawing may reach out of its box, in device pixels.
constexpr int kOverhang = 64;

/// Draws one image of a drawing for a scale; its snapped shapes fill whole device pixels. Tiled directions come
/// out as wide as the box, with what crossed an edge drawn in again from the opposite one; in the others the whole
/// canvas with the overhang is given.
[[nodiscard]] CDefinitionFailure paintImage(const CSvgSource& source, const CSvgImage& image, double scale,
                                            CRaster& raster);

}  // namespace tarv
