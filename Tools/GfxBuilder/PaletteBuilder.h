#pragma once

#include <map>
#include <string>
#include <vector>

#include "CTextSource.h"
#include "ColorMath.h"

namespace tarv {

struct CPaletteColor {
    double opacity = 1.0;
    CRamp ramp;
};

/// A palette as it was computed, before it is written.
struct CPaletteSource {
    std::map<std::string, CPaletteColor> colors;  ///< by name, in the order of their bytes
    std::map<std::string, uint32_t> frameCounts;  ///< of the animated colours
};

/// The brightest step of a face; above it lies the light on its edge (see litRamp).
constexpr int kFaceStep = 192;

/// Base colours (`key = RRGGBB`) by key.
using CBaseColors = std::map<std::string, CRgb, std::less<>>;

/// Reads the base colours of a `.palette`.
[[nodiscard]] CDefinitionFailure readBaseColors(const std::string& path, CBaseColors& colors);

/// Computes the palette of the base colours in `path` by the rules that lie in `rules.txt` beside it. The form of the
/// rules is documented in their file's head.
[[nodiscard]] CDefinitionFailure computePalette(const std::string& path, CPaletteSource& palette);

}  // namespace tarv
