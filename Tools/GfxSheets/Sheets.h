#pragma once

#include <string>

#include "CSheetCanvas.h"

namespace tarv {

/// Every range of an image set on the panel, with the colours of its states, and frames at several sizes.
[[nodiscard]] bool writeImageSheet(CSheetResources& resources, const std::string& set, const std::string& path);
/// Frames in their nine pieces, and views of several sizes that are drawn from them; enlarged.
[[nodiscard]] bool writeFrameSheet(CSheetResources& resources, const std::string& path);
/// Surfaces with bars: flat, at the ends of the range, near zero, and a usual setting.
[[nodiscard]] bool writeBarSheet(CSheetResources& resources, const std::string& palette, const std::string& path);
/// A specimen: all glyphs, and paragraphs, of a font by its name with "_b" or without.
[[nodiscard]] bool writeFontSheet(CSheetResources& resources, const std::string& font, const std::string& path);
/// Every colour's ramp, and the figures of contrast.
[[nodiscard]] bool writePaletteSheet(CSheetResources& resources, const std::string& palette, const std::string& path);

}  // namespace tarv
