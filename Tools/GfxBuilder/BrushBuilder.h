#pragma once

#include <string>
#include <vector>

#include "CTextSource.h"

namespace tarv {

constexpr int kSubpixelBits = 4;

/// The stamps of a brush for one scale: 16 * 16 of them, rows of y outside, one byte of cover a pixel.
struct CStampTable {
    int size = 0;           ///< of a stamp's side in pixels, odd
    double dotWidth = 0.0;  ///< diameter of the dot in device pixels
    std::vector<uint8_t> cover;
};

/// The diameter of the dot that draws a line of the nominal `width` (pixels at scale 1.0): the mean of one pixel and of
/// the line's width in device pixels. Dots overlap along a line and cover more in sum than each alone, so that a dot of
/// the full width would draw too fat a line; and the thinnest line still has a dot of half a pixel.
double dotWidthOf(double width, double scale);

/// The stamps of a dot. A stamp's middle pixel stands at the point's whole pixel; the fraction moves the dot to the
/// right and down from that pixel's top left corner.
CStampTable stampsOf(double dotWidth);

/// Reads a `.brush`: one line `widths = W W W` in pixels at scale 1.0, ascending.
[[nodiscard]] CDefinitionFailure readBrushWidths(const std::string& path, std::vector<double>& widths);

}  // namespace tarv
